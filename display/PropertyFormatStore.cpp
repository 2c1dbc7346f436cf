// SPDX-License-Identifier: Apache-2.0
#include "display/PropertyFormatStore.h"

#include "display/PropertyFormatDescriptor.h"
#include "display/TavPropertyOutlineItem.h"
#include "platform/preferences/PreferencesStore.h"

#include <QScopedValueRollback>

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

FormatChange *PropertyFormatStore::recorded_ = nullptr;

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
        store(domain(), keyFor(classPath, propertyPath), descriptor);
}

void PropertyFormatStore::remove(QStringView classPath, QStringView propertyPath)
{
    store(domain(), keyFor(classPath, propertyPath), QJsonValue::Undefined);
}

void PropertyFormatStore::removeBelow(QStringView classPath)
{
    const QString ownKeys = keyFor(classPath, {});
    for (const QString &key : preferences().storedKeys()) {
        if (key.startsWith(classPath) && !key.startsWith(ownKeys))
            store(domain(), key, QJsonValue::Undefined);
    }
}

void PropertyFormatStore::setDefaultDescriptor(const QString &descriptor)
{
    store(PreferencesStore::applicationIdentifier(), PreferenceKeys::defaultFormat.toString(),
          descriptor);
    PreferencesStore::standard().synchronize();
}

std::map<QString, PropertyFormatOptions> PropertyFormatStore::all()
{
    std::map<QString, PropertyFormatOptions> formats;
    for (const QString &key : preferences().storedKeys()) {
        const QString descriptor = preferences().string(key);
        if (!descriptor.isNull())
            formats[key] = PropertyFormatDescriptor::propertyFormatForDescriptor(descriptor);
    }
    return formats;
}

PropertyFormatOptions PropertyFormatStore::defaultFormat()
{
    PropertyFormatOptions options = PropertyFormatDescriptor::propertyFormatForDescriptor(
        PreferencesStore::standard().string(PreferenceKeys::defaultFormat));
    if (options.unit == PropertyFormatOptions::useDefault)
        options.unit = PropertyFormatOptions::automatic;
    return options;
}

void PropertyFormatStore::synchronize()
{
    preferences().synchronize();
}

FormatChange PropertyFormatStore::changeBy(const std::function<void()> &action)
{
    FormatChange change;
    const QScopedValueRollback recording(recorded_, &change);
    action();
    return change;
}

void PropertyFormatStore::undo(const FormatChange &change)
{
    for (auto setting = change.settings.rbegin(); setting != change.settings.rend(); ++setting)
        store(setting->domain, setting->key, setting->before);
    synchronize();
    PreferencesStore::standard().synchronize();
}

void PropertyFormatStore::redo(const FormatChange &change)
{
    for (const FormatChange::Setting &setting : change.settings)
        store(setting.domain, setting.key, setting.after);
    synchronize();
    PreferencesStore::standard().synchronize();
}

void PropertyFormatStore::store(const QString &domain, const QString &key, const QJsonValue &value)
{
    PreferencesStore &preferences = PreferencesStore::shared(domain);
    const QJsonValue before =
        preferences.isStored(key) ? preferences.value(key) : QJsonValue(QJsonValue::Undefined);
    if (recorded_ && before != value)
        recorded_->settings.push_back({domain, key, before, value});
    preferences.setValue(key, value);
}
