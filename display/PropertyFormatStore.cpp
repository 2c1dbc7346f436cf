#include "display/PropertyFormatStore.h"

#include "display/PropertyFormatDescriptor.h"
#include "platform/PreferencesStore.h"

namespace {
QString keyFor(QStringView classPath, QStringView propertyPath)
{
    QString key;
    key.reserve(classPath.size() + 1 + propertyPath.size());
    key += classPath;
    key += u':';
    key += propertyPath;
    return key;
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

std::optional<PropertyFormatOptions> PropertyFormatStore::format(QStringView classPath,
                                                                 QStringView propertyPath)
{
    const QString descriptor = preferences().string(keyFor(classPath, propertyPath));
    if (descriptor.isNull())
        return std::nullopt;
    return PropertyFormatDescriptor::propertyFormatForDescriptor(descriptor);
}

void PropertyFormatStore::setFormat(QStringView classPath, QStringView propertyPath,
                                    const PropertyFormatOptions &options)
{
    const QString descriptor = PropertyFormatDescriptor::descriptorForPropertyFormats(options);
    if (descriptor.isNull() || options.unit == PropertyFormatOptions::useDefault)
        remove(classPath, propertyPath);
    else
        preferences().setValue(keyFor(classPath, propertyPath), descriptor);
}

void PropertyFormatStore::remove(QStringView classPath, QStringView propertyPath)
{
    preferences().remove(keyFor(classPath, propertyPath));
}

void PropertyFormatStore::removeBelow(QStringView classPath)
{
    const QString ownKeys = keyFor(classPath, {});
    for (const QString &key : preferences().storedKeys()) {
        if (key.startsWith(classPath) && !key.startsWith(ownKeys))
            preferences().remove(key);
    }
}

void PropertyFormatStore::synchronize()
{
    preferences().synchronize();
}
