#pragma once

#include "display/PropertyFormatOptions.h"

#include <QString>
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
    static void synchronize();

private:
    static PreferencesStore &preferences();
};
