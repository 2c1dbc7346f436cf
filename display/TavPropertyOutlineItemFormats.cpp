// SPDX-License-Identifier: Apache-2.0
// Finds and stores the item's formats by class.
#include "display/DisplayLogging.h"
#include "display/PropertyFormatStore.h"
#include "display/TavPropertyOutlineItem.h"
#include "model/TavRegistryEntry.h"

namespace {
// The entry's own class first, the root class last.
QStringList inheritanceOf(const TavRegistryProperty &property)
{
    const std::shared_ptr<TavRegistryEntry> entry = property.registryEntry();
    return entry ? entry->inheritance() : QStringList();
}

// Class names from the root class to the one at the index, each followed by a colon.
QString classPathAt(const QStringList &inheritance, qsizetype index)
{
    QString path;
    for (qsizetype i = inheritance.size() - 1; i >= index; --i)
        path += inheritance[i] + u':';
    return path;
}

// Appends the descendants of the properties, at any depth.
void appendDescendants(std::vector<const TavRegistryProperty *> &properties)
{
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const TavRegistryProperty *property = properties[i];
        for (qsizetype child = 0; child < property->numberOfChildren(); ++child)
            properties.push_back(property->childAtIndex(child));
    }
}
} // namespace

QString TavPropertyOutlineItem::classPathForClass(const QString &className) const
{
    const QStringList inheritance = inheritanceOf(*this);
    const qsizetype index = inheritance.indexOf(className);
    if (index < 0) {
        qCWarning(displayLog, "Error scanning class inheritance");
        return {};
    }
    return classPathAt(inheritance, index);
}

void TavPropertyOutlineItem::setPropertyFormats(const PropertyFormatOptions &options,
                                                const QString &className)
{
    const QString classPath = classPathForClass(className);
    if (classPath.isNull())
        return;
    PropertyFormatStore::setFormat(classPath, propertyPath(), options);
    PropertyFormatStore::synchronize();
}

std::optional<TavPropertyOutlineItem::StoredFormat>
TavPropertyOutlineItem::getPropertyFormats() const
{
    // Fast path: most users have no stored formats, and every shown value asks.
    if (PropertyFormatStore::isEmpty())
        return std::nullopt;
    return _getPropertyFormats(inheritanceOf(*this));
}

std::optional<TavPropertyOutlineItem::StoredFormat>
TavPropertyOutlineItem::_getPropertyFormats(const QStringList &inheritance) const
{
    const QString ownClassPath = classPathAt(inheritance, 0);
    for (const TavRegistryProperty *property = this; property; property = property->parent()) {
        const QString path = property->propertyPath();
        QStringView classPath = ownClassPath;
        for (const QString &className : inheritance) {
            if (const auto format = PropertyFormatStore::format(classPath, path))
                return StoredFormat{*format, className, property != this};
            classPath.chop(className.size() + 1); // the parent class's path
        }
    }
    return std::nullopt;
}

PropertyFormatOptions TavPropertyOutlineItem::propertyFormat() const
{
    const std::optional<StoredFormat> stored = getPropertyFormats();
    return stored ? stored->options : PropertyFormatStore::defaultFormat();
}

void TavPropertyOutlineItem::clearPropertyFormats(bool clearThis, bool clearChildren,
                                                  const QString &className)
{
    const QStringList inheritance = inheritanceOf(*this);
    std::vector<const TavRegistryProperty *> cleared{this};
    if (clearChildren)
        appendDescendants(cleared);
    if (!clearThis)
        cleared.erase(cleared.begin());
    for (qsizetype i = inheritance.indexOf(className); i >= 0; --i) {
        const QString classPath = classPathAt(inheritance, i);
        for (const TavRegistryProperty *property : cleared)
            PropertyFormatStore::remove(classPath, property->propertyPath());
    }
    PropertyFormatStore::synchronize();
}

void TavPropertyOutlineItem::clearPropertyFormatsForSubclassesOfClass(const QString &className)
{
    const QString classPath = classPathForClass(className);
    if (classPath.isNull())
        return;
    PropertyFormatStore::removeBelow(classPath);
    PropertyFormatStore::synchronize();
}

void TavPropertyOutlineItem::clearPropertyFormatsForClassInheritanceUpTo(const QString &className)
{
    const QStringList inheritance = inheritanceOf(*this);
    const qsizetype index = inheritance.indexOf(className);
    // Deliberate: only the nearest subclass loses its setting; those further down stay.
    if (index > 0)
        PropertyFormatStore::remove(classPathAt(inheritance, index - 1), propertyPath());
    PropertyFormatStore::synchronize();
}
