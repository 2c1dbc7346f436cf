// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/tree/TavRegistryOutlineItem.h"

#include <QObject>

class ColumnBrowser;
class ExplorerContext;
class QMainWindow;
class QSplitter;
class QStackedWidget;
class SegmentedControl;
class SplitViewAutosave;
class TavBrowserDelegate;
class TavRegistryOutlineView;
class TavRegistryOutlineViewDataSource;

// The tree and the columns of a window, one of which is visible, and the divider below or beside
// them.
class ExplorerViews : public QObject
{
    Q_OBJECT
public:
    enum class Style : quint8 { Outline, Browser };
    using Path = std::optional<TavRegistryEntryPath>;

    // The window owns the views and must be destroyed before this.
    ExplorerViews(QMainWindow &window, const ExplorerContext &context);
    ~ExplorerViews() override;

    void show(Style style);
    bool browserIsVisible() const;
    QWidget *visibleView() const;
    bool isFirstResponder() const; // whether one of them has the keyboard
    void makeFirstResponder();

    TavRegistryOutlineView &tree() const { return *registryOutlineView_; }
    TavRegistryOutlineItem *rootOutlineItem() const; // of the plane; null without a registry
    void reloadTree();
    void reload();            // both, from the first column on
    void redisplay();         // the states of entries may be different
    void redisplayRows();     // icons or details of rows may be different
    void reloadAfterChange(); // entries have other children; the columns only if hidden
    void rereadHiddenNodes();
    void expandAll();
    void collapseAll();
    void windowWillClose(); // saves where the divider is
    void disposeOfNodes();  // when the window is gone

    // In the visible view. Returns the part of the path that was selected.
    TavRegistryEntryPath selectEntryPath(const TavRegistryEntryPath &path, bool scrollToVisible);
    void selectNothing();
    void scrollToSelection();
    bool hasSibling(int step) const; // of the selection: 1 the next, -1 the previous
    void selectSiblingInBrowser(int step);
    Path siblingInTree(int step) const;

Q_SIGNALS:
    void styleChosen(ExplorerViews::Style style);
    void selectionChanged(const ExplorerViews::Path &path);  // by the user
    void contextMenuRequested(const QPoint &globalPosition); // of the selected row

private:
    void connectOutlets(QMainWindow &window);
    void setUpTree();
    void setUpBrowser();
    void setUpStyleControl();
    void arrangeSplitView(Qt::Orientation panes);
    void setPaneMargins(bool isSideBySide);
    Path pathSelectedInBrowser() const;
    TavRegistryEntryPath selectInBrowser(const TavRegistryEntryPath &path, bool scrollToVisible);
    void scrollBrowserToPath(int selectedColumns, bool isWholePath);

    QMainWindow &window_;
    const ExplorerContext &context_;
    std::unique_ptr<TavRegistryOutlineViewDataSource> outlineDataSource_;
    std::unique_ptr<TavBrowserDelegate> browserDelegate_;
    std::unique_ptr<SplitViewAutosave> splitViewAutosave_;
    SegmentedControl *viewStyleControl_ = nullptr;
    QSplitter *explorerSplitView_ = nullptr;
    QStackedWidget *explorerTabView_ = nullptr;
    ColumnBrowser *registryBrowser_ = nullptr;
    TavRegistryOutlineView *registryOutlineView_ = nullptr;
};
