#pragma once

#include "display/PropertyFormatOptions.h"
#include "display/StyledText.h"
#include "model/TavRegistryProperty.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QStringList>

// A property node that renders its value as text, by a format that the user chose for the entry's
// class and the property, or else by the default one.
class TavPropertyOutlineItem : public TavRegistryProperty
{
    Q_DECLARE_TR_FUNCTIONS(TavPropertyOutlineItem)
public:
    explicit TavPropertyOutlineItem(PropertyTree &tree);
    ~TavPropertyOutlineItem() override;

    static const PropertyClass &staticPropertyClass();
    const PropertyClass &propertyClass() const override { return staticPropertyClass(); }

    // The preferences read here, to be registered at start-up.
    static QJsonObject defaultsToRegister();

    QString typeName() const; // null without contents
    // Rendered on first request and kept until reset.
    const StyledText &displayValue();
    void resetDisplayValueRecursive();
    // Tells what the last rendering found, so ask for it after the value.
    QString valueTooltip() const; // null for a type that has none

    StyledText formattedNumberValue();
    StyledText formattedDataValue();
    StyledText formatNumberWithOptions(const PropertyFormatOptions &options);
    StyledText formatDataValueWithOptions(const PropertyFormatOptions &options);
    StyledText autoformattedDataValue();
    // The text of one unit, which is taken off the bytes; null if fewer remain.
    QString formatAndAdvanceBytes(QByteArrayView &bytes, const PropertyFormatOptions &options,
                                  const char *format) const;
    // A printf format, or none.
    const char *propertyFormatStringForOptions(const PropertyFormatOptions &options) const;
    static PropertyFormatOptions automaticPropertyFormatOptions();
    QString descriptionOfData(quint64 byteCount, const PropertyFormatOptions &options) const;

    // Side results of the last rendering.
    quint32 numStringsInDataValue() const;
    quint32 numCharsInDataValue() const;
    bool leftoverBytesInDataValue() const;

    // "Root:Mid:" for the class Mid; null for a class that the entry does not inherit.
    QString classPathForClass(const QString &className) const;
    void setPropertyFormats(const PropertyFormatOptions &options, const QString &className);
    struct StoredFormat
    {
        PropertyFormatOptions options;
        QString className; // where it is stored
        bool isShared;     // found on a property that contains this one
    };
    std::optional<StoredFormat> getPropertyFormats() const;
    // Looks in any case, for the entry's inheritance.
    std::optional<StoredFormat> _getPropertyFormats(const QStringList &inheritance) const;
    PropertyFormatOptions propertyFormat() const;
    void clearPropertyFormats(bool clearThis, bool clearChildren, const QString &className);
    void clearPropertyFormatsForSubclassesOfClass(const QString &className);
    // For a setting that moves to the given class: removes the one of the class just below it.
    void clearPropertyFormatsForClassInheritanceUpTo(const QString &className);

private:
    struct Rendering
    {
        StyledText value; // null until rendered
        quint32 strings = 0;
        quint32 characters = 0;
        bool hasLeftoverBytes = false;
    };

    bool isNumber() const { return contents().type() == Type::Number; }
    qint32 machineByteOrder() const;
    Rendering &rendering();
    StyledText render();
    QString plainText() const;

    std::unique_ptr<Rendering> rendering_; // of the few nodes that were ever shown
};

static_assert(sizeof(TavPropertyOutlineItem) == sizeof(TavRegistryProperty) + sizeof(void *));
