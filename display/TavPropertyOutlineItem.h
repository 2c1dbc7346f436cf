// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"
#include "display/StyledText.h"
#include "model/TavRegistryProperty.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QStringList>

// A property node that renders its value as text in the format that the user chose for the entry's
// class and the property, else in the default one.
class TavPropertyOutlineItem : public TavRegistryProperty
{
    Q_DECLARE_TR_FUNCTIONS(TavPropertyOutlineItem)
public:
    explicit TavPropertyOutlineItem(PropertyTree &tree);
    ~TavPropertyOutlineItem() override;

    static const PropertyClass &staticPropertyClass();
    const PropertyClass &propertyClass() const override { return staticPropertyClass(); }

    // The default format, for registering at start-up.
    static QJsonObject defaultsToRegister();

    QString typeName() const; // null without contents
    // What is shown for a boolean, and for a value of a type without a text.
    static QString truthText(bool truth) { return truth ? tr("True") : tr("False"); }
    static QString unknownTypeText() { return tr("(Unknown value type)"); }
    // Rendered on first use and cached until reset.
    const StyledText &displayValue();
    void resetDisplayValueRecursive();
    // Describes the last rendering, so call it after the value.
    QString valueTooltip() const; // null: the type has none

    StyledText formattedNumberValue();
    StyledText formattedDataValue();
    StyledText formatNumberWithOptions(const PropertyFormatOptions &options);
    StyledText formatDataValueWithOptions(const PropertyFormatOptions &options);
    StyledText autoformattedDataValue();
    // Removes one unit from the bytes and returns its text; null if fewer remain.
    QString formatAndAdvanceBytes(QByteArrayView &bytes, const PropertyFormatOptions &options,
                                  const char *format) const;
    // A printf format, or empty.
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
        QString className; // the class that stores it
        bool isShared;     // stored for a property that contains this one
    };
    std::optional<StoredFormat> getPropertyFormats() const;
    // Always searches, along the entry's inheritance.
    std::optional<StoredFormat> _getPropertyFormats(const QStringList &inheritance) const;
    PropertyFormatOptions propertyFormat() const;
    void clearPropertyFormats(bool clearThis, bool clearChildren, const QString &className);
    void clearPropertyFormatsForSubclassesOfClass(const QString &className);
    // When a setting moves to the given class, removes the one of the class just below it.
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

    std::unique_ptr<Rendering> rendering_; // only for nodes that were shown
};

static_assert(sizeof(TavPropertyOutlineItem) == sizeof(TavRegistryProperty) + sizeof(void *));
