// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

#include <QMenu>

// Offers several entries of one name.
class EntryChooser : public QMenu
{
    Q_OBJECT
public:
    // Deletes itself when it is closed.
    EntryChooser(const std::vector<EntryRef> &entries, const QString &plane, QWidget &window);

    void popUp(); // in the window

Q_SIGNALS:
    void entryChosen(const EntryRef &entry);

private:
    void addEntry(const EntryRef &entry, const QString &plane);
};
