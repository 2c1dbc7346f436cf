// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/ExportedEntries.h"
#include "display/export/Utf8Output.h"

#include <QCoreApplication>

// Writes entries as an outline for people to read: facts, and properties as the window shows them.
// Any thread, while nobody changes the formats.
class PlainTextExport
{
    Q_DECLARE_TR_FUNCTIONS(PlainTextExport)
public:
    enum class Head : quint8 { None, Machine };

    // False if the device failed.
    static bool write(const ExportedEntries &entries, QIODevice &device, Head head,
                      const ExportedEntries::Reach &reach);

private:
    PlainTextExport(const ExportedEntries &entries, QIODevice &device);

    void addHead();
    void addEntry(const ExportedEntries::Item &item);
    void addFacts(const ExportedEntries::Item &item);
    void addProperties(const TavRegistryProperty &root, quint32 level);
    void addLine(quint32 level, const QString &text);

    const ExportedEntries &entries_;
    Utf8Output output_;
};
