// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/ExportedEntries.h"
#include "display/export/Utf8Output.h"

// Writes entries with everything that the registry knows of them, as docs/export-json.md describes.
// Any thread.
class JsonExport
{
public:
    // False if the device failed.
    static bool write(const ExportedEntries &entries, QIODevice &device,
                      const ExportedEntries::Reach &reach);

private:
    JsonExport(const ExportedEntries &entries, QIODevice &device);

    void addHead();
    void addEntry(const TavRegistryEntry &entry);
    void addFacts(const TavRegistryEntry &entry);
    void addNames(QLatin1String key, const NamesByPlane &names, const QString &common);
    void addRelatives(QLatin1String key, const PlaneMap<EntryList> &relatives);
    void addProperties(const TavRegistryProperty &root);

    struct Level; // a collection whose children are being written
    using Levels = std::vector<Level>;
    void open(const TavRegistryProperty &node, Levels &levels);
    void addChild(Level &level, Levels &levels);
    void addScalar(const TavRegistryProperty &node);
    void addNumber(const RegistryValue &number);

    void addKey(QLatin1String key); // with a comma before it
    void addText(QLatin1String key, const QString &text);
    void addTexts(QLatin1String key, const QStringList &texts);
    void addFlag(QLatin1String key, bool flag);
    void addCount(QLatin1String key, quint64 count);
    void addDate(QLatin1String key, const QDateTime &date);

    const ExportedEntries &entries_;
    Utf8Output output_;
};
