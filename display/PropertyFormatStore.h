// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/FormatChange.h"
#include "display/PropertyFormatOptions.h"

#include <QString>
#include <functional>
#include <map>
#include <optional>

class PreferencesStore;

// The formats chosen by the user, in their own preferences domain. Each is stored for a class path,
// such as "DxRegistryEntry:DxService:", and a property path, such as "//reg".
class PropertyFormatStore
{
public:
    static QString domain();

    static bool isEmpty();
    // Empty if nothing is stored. A malformed descriptor gives the unit "unreadable".
    static std::optional<PropertyFormatOptions> format(QStringView classPath,
                                                       QStringView propertyPath);
    // Options without a descriptor, and those to use the default, remove what is stored.
    static void setFormat(QStringView classPath, QStringView propertyPath,
                          const PropertyFormatOptions &options);
    static void remove(QStringView classPath, QStringView propertyPath);
    // Removes the formats of all class paths that continue the given one.
    static void removeBelow(QStringView classPath);
    // For properties without a stored format.
    static void setDefaultDescriptor(const QString &descriptor);
    // All that is stored, by class path, a colon and property path.
    static std::map<QString, PropertyFormatOptions> all();
    // For properties without a stored format; automatic unless the user chose another.
    static PropertyFormatOptions defaultFormat();
    static void synchronize();

    // Runs the action and records its changes, but not those that another running copy stores.
    static FormatChange changeBy(const std::function<void()> &action);
    // Restores the keys of the change and no others.
    static void undo(const FormatChange &change);
    static void redo(const FormatChange &change);

private:
    static PreferencesStore &preferences();
    static void store(const QString &domain, const QString &key, const QJsonValue &value);

    static FormatChange *recorded_; // null: not recording
};
