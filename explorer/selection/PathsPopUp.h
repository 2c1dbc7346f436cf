// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntryPath.h"

#include <QObject>

class ExplorerContext;
class QComboBox;

// The pop-up of all the paths of the selected entry, and the steps through it.
class PathsPopUp : public QObject
{
    Q_OBJECT
public:
    using Path = std::optional<TavRegistryEntryPath>;

    // Both must outlive this.
    PathsPopUp(QComboBox &button, const ExplorerContext &context);

    // Lists the paths of the entry, or none, plane by plane.
    void populatePathsPopup(const EntryRef &entry, const Path &selected);
    void select(const TavRegistryEntryPath &path);
    void choose(int item);
    void goTo(const Path &path); // if there is one
    // None for no other path, or for one of another plane where the same one is asked for.
    Path nextEntryPath(bool inSamePlane) const;
    Path prevEntryPath(bool inSamePlane) const;

Q_SIGNALS:
    void pathChosen(const TavRegistryEntryPath &path);

private:
    void addPaths(TavRegistryEntry &entry, const QString &plane, const Path &selected);
    void addNote(const QString &text);
    bool canStep() const;
    Path pathOfItem(int item, bool inSamePlane) const;

    QComboBox &entryPathsButton_;
    const ExplorerContext &context_;
    std::vector<Path> entryPathsOfItems_; // none: a separator or a note
};
