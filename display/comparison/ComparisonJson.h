// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/comparison/ExportedDifferences.h"
#include "display/export/JsonWriter.h"

// Writes a comparison as docs/comparison-json.md describes. Any thread.
class ComparisonJson
{
public:
    using Reach = ExportedDifferences::Reach;

    // False if the device failed.
    static bool write(const ExportedDifferences &differences, QIODevice &device,
                      const Reach &reach);

    // The members of the objects.
    static void addSummary(JsonWriter &json, const ExportedDifferences &differences);
    static void addDifference(JsonWriter &json, const ExportedDifferences &differences,
                              const EntryDifference &difference);

private:
    static void addRegistry(JsonWriter &json, QLatin1String key, const ComparedRegistry &registry);
    static void addSide(JsonWriter &json, QLatin1String key, const TavRegistryEntry *entry,
                        bool isWhole);
    static void addFacts(JsonWriter &json, const ExportedDifferences &differences,
                         const EntryDifference &difference);
    static void addProperties(JsonWriter &json, const ExportedDifferences &differences,
                              const EntryDifference &difference);
};
