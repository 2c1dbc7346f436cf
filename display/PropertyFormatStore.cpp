#include "display/PropertyFormatStore.h"

#include "display/PropertyFormatDescriptor.h"
#include "platform/PreferencesStore.h"

namespace {
QString keyFor(const QString &classPath, const QString &propertyPath)
{
    return classPath + u':' + propertyPath;
}
} // namespace

QString PropertyFormatStore::domain()
{
    return PreferencesStore::applicationIdentifier() + QStringLiteral(".propertyFormats");
}

PreferencesStore &PropertyFormatStore::preferences()
{
    return PreferencesStore::shared(domain());
}

bool PropertyFormatStore::isEmpty()
{
    return preferences().isEmpty();
}

std::optional<PropertyFormatOptions> PropertyFormatStore::format(const QString &classPath,
                                                                 const QString &propertyPath)
{
    const QString descriptor = preferences().string(keyFor(classPath, propertyPath));
    if (descriptor.isNull())
        return std::nullopt;
    return PropertyFormatDescriptor::propertyFormatForDescriptor(descriptor);
}

void PropertyFormatStore::setFormat(const QString &classPath, const QString &propertyPath,
                                    const PropertyFormatOptions &options)
{
    const QString descriptor = PropertyFormatDescriptor::descriptorForPropertyFormats(options);
    if (descriptor.isNull() || options.unit == PropertyFormatOptions::useDefault)
        remove(classPath, propertyPath);
    else
        preferences().setValue(keyFor(classPath, propertyPath), descriptor);
}

void PropertyFormatStore::remove(const QString &classPath, const QString &propertyPath)
{
    preferences().remove(keyFor(classPath, propertyPath));
}

void PropertyFormatStore::removeBelow(const QString &classPath)
{
    const QString ownKeys = classPath + u':';
    for (const QString &key : preferences().storedKeys()) {
        if (key.startsWith(classPath) && !key.startsWith(ownKeys))
            preferences().remove(key);
    }
}

void PropertyFormatStore::synchronize()
{
    preferences().synchronize();
}
