// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/JsonWriter.h"

class TavRegistryEntry;

// The facts by which an entry is recognised in a list.
namespace EntrySummary {
QString path(const TavRegistryEntry &entry, const QString &plane);
QStringList paths(TavRegistryEntry &entry, const QString &plane); // all in the plane
void addMembers(JsonWriter &json, const TavRegistryEntry &entry, const QString &plane);
// The same with one of several paths.
void addMembers(JsonWriter &json, const TavRegistryEntry &entry, const QString &plane,
                const QString &path);
} // namespace EntrySummary
