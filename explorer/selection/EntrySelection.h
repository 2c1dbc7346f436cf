// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/selection/SelectionHistory.h"

#include <QObject>

class ExplorerViews;
class PlaneMenu;
class TavDataStore;

// The plane that a window shows, the entry selected in it, and how the user moves between entries.
class EntrySelection : public QObject
{
    Q_OBJECT
public:
    using Path = std::optional<TavRegistryEntryPath>;

    // All must outlive this.
    EntrySelection(std::shared_ptr<TavDataStore> dataStore, ExplorerViews &views,
                   PlaneMenu &planeMenu);

    const QString &registryPlane() const { return registryPlane_; }
    const Path &entryPath() const { return selectedEntryPath_; }
    const EntryRef &entry() const { return selectedEntry_; }
    QString registryPath() const; // null without a selection

    void setRegistryPlane(const QString &plane, bool updatePopup);
    void planePopupChanged();

    void selectEntryPath(const Path &path);
    void setSelectedEntry(const EntryRef &entry); // also reports an entry that was reread
    // Selects the path in the visible view as far as it leads.
    void goToEntryPath(Path path, bool scrollToVisible, bool beepOnFail);
    void goToRegistryPath(const QString &path);
    // By a path in the plane on view, or else in the first plane that has one.
    void goToEntry(TavRegistryEntry &entry);

    void selectParent();
    void selectChild();
    void selectNextSibling();
    void selectPreviousSibling();
    bool canSelectParent() const;
    bool canSelectChild() const;
    void goBack(); // to the selection before
    void goForward();
    bool canGoBack() const { return history_.canGoBack(); }
    bool canGoForward() const { return history_.canGoForward(); }
    void forgetWhatIsGone();

Q_SIGNALS:
    void planeChanged();
    void entryChanged(); // or was reread
    void entryPathChanged();
    void historyChanged();
    void pathFound(bool isAmbiguous);
    void pathNotFound(const QString &path);
    // The text is not a path, but names several entries.
    void entriesFound(const std::vector<EntryRef> &entries);

private:
    void goToNamedEntries(const QString &name);
    void selectSibling(int step);
    void goToVisited(const TavRegistryEntryPath &path);
    std::vector<TavRegistryEntryPath> entryPathsForRegistryPath(const QString &path) const;

    std::shared_ptr<TavDataStore> dataStore_;
    ExplorerViews &views_;
    PlaneMenu &planeMenu_;
    QString registryPlane_;
    Path selectedEntryPath_;
    EntryRef selectedEntry_;
    SelectionHistory history_;
    bool isRevisiting_ = false; // on the way back or forward
};
