// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/ExportedEntries.h"
#include "display/export/JsonWriter.h"

class EntryList;
class NamesByPlane;

// Writes entries with everything that the registry knows of them, as docs/export-json.md describes.
// Any thread.
class JsonExport
{
public:
    // False if the device failed.
    static bool write(const ExportedEntries &entries, QIODevice &device,
                      const ExportedEntries::Reach &reach);

    // The members of one entry's object.
    static void addEntry(JsonWriter &json, const TavRegistryEntry &entry);

private:
    static void addHead(JsonWriter &json, const ExportedEntries &entries);
    static void addFacts(JsonWriter &json, const TavRegistryEntry &entry);
    static void addNames(JsonWriter &json, QLatin1String key, const NamesByPlane &names,
                         const QString &common);
    static void addRelatives(JsonWriter &json, QLatin1String key,
                             const PlaneMap<EntryList> &relatives);
};
