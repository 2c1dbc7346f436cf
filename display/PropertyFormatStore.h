#pragma once

#include "display/FormatChange.h"
#include "display/PropertyFormatOptions.h"

#include <QString>
#include <functional>
#include <optional>

class PreferencesStore;

// The formats chosen by the user, in a preferences domain of their own. Each is stored for a class
// path, such as "DxRegistryEntry:DxService:", and a property path, such as "//reg".
class PropertyFormatStore
{
public:
    static QString domain();

    static bool isEmpty();
    // None if nothing is stored. What is stored but cannot be read has the unit "unreadable".
    static std::optional<PropertyFormatOptions> format(QStringView classPath,
                                                       QStringView propertyPath);
    // Options that have no descriptor, and those to use the default, remove what is stored.
    static void setFormat(QStringView classPath, QStringView propertyPath,
                          const PropertyFormatOptions &options);
    static void remove(QStringView classPath, QStringView propertyPath);
    // Removes what is stored for the class paths that continue the given one.
    static void removeBelow(QStringView classPath);
    // For properties of which no format is stored.
    static void setDefaultDescriptor(const QString &descriptor);
    static void synchronize();

    // Runs the action. What it does not change itself is left out, such as the settings that
    // another running copy of the program stores meanwhile.
    static FormatChange changeBy(const std::function<void()> &action);
    // Of the keys of the change, and no others.
    static void undo(const FormatChange &change);
    static void redo(const FormatChange &change);

private:
    static PreferencesStore &preferences();
    static void store(const QString &domain, const QString &key, const QJsonValue &value);

    static FormatChange *recorded_; // null: no action is recorded
};
