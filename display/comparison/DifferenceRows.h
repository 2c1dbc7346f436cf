// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/comparison/ExportedDifferences.h"

// What differs in one entry, as rows of texts: its path, other facts, and properties as the window
// shows them. The formats of values must not change meanwhile.
class DifferenceRows
{
    Q_DECLARE_TR_FUNCTIONS(DifferenceRows)
public:
    static constexpr quint32 maxLevel = 60; // what is deeper is indented no more
    struct Row
    {
        QString title;
        std::optional<QString> before = {}; // none: new
        std::optional<QString> after = {};  // none: gone
        quint32 level = 0;                  // within a new or gone collection
        bool isCollection = false;          // the texts say how many values it has
    };

    DifferenceRows(const ExportedDifferences &differences, const EntryDifference &difference);

    const std::vector<Row> &rows() const { return rows_; }

    // "DxUsbDevice, driver usb"
    static QString classAndDriver(const TavRegistryEntry &entry);
    static QString pathOf(const TavRegistryEntry &entry); // in the service plane, if it is there

private:
    void addFacts(const EntryDifference &difference);
    void addChange(const PropertyDifferences::Change &change);
    void addAllProperties(const EntryDifference &difference);
    void addBelow(const TavRegistryProperty &node, quint32 level, bool isNew);
    void addSingle(const QString &title, const TavRegistryProperty &property, quint32 level,
                   bool isNew);

    const ExportedDifferences &differences_;
    std::vector<Row> rows_;
};
