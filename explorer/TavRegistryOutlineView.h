#pragma once

#include "model/TavRegistryEntryPath.h"
#include "platform/desktop/OutlineView.h"

#include <QTimer>

class TavRegistryOutlineItem;
class TavRegistryOutlineViewDataSource;

// Shows one plane of the registry as a tree. Which rows are open is kept in the nodes, so that it
// outlasts every reload.
class TavRegistryOutlineView : public OutlineView
{
    Q_OBJECT
public:
    explicit TavRegistryOutlineView(QWidget *parent = nullptr);

    // Once; takes no ownership. The data source must outlive the view's use.
    void setDataSource(TavRegistryOutlineViewDataSource &dataSource);

    // Shows what there is, after the change that rereads the nodes, or having reread them without.
    // Rows stay open; the selected row stays selected, silently, if it is still there, and where
    // it is on the screen.
    void reloadData(const std::function<void()> &change = {});
    void setAllRowsExpanded(bool isExpanded);

    // The nodes of the longest prefix of the path that is there.
    std::vector<TavRegistryOutlineItem *> itemsForEntryPath(const TavRegistryEntryPath &path) const;
    // The part of the path that was selected.
    TavRegistryEntryPath selectItemAtEntryPath(const TavRegistryEntryPath &path,
                                               bool scrollToVisible);
    void selectRow(const TavRegistryOutlineItem &item); // opens no rows and does not scroll
    void scrollToSelection();
    void deselectAll();

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    // A row and where it stands on the screen.
    struct Anchor
    {
        TavRegistryEntryPath path;
        int y;
    };

    void rowDidExpand(const QModelIndex &index);
    void openExpandedRows(const QModelIndex &top);
    void selectionDidChange();
    std::optional<TavRegistryEntryPath> selectedPath() const;
    std::optional<Anchor> anchor() const;
    std::vector<TavRegistryOutlineItem *> itemsStillThere(const TavRegistryEntryPath &path) const;
    void restoreAnchor(const Anchor &anchor);
    void restoreSelection(const TavRegistryEntryPath &path);
    void fitColumnLater(bool mayShrink);
    void fitColumn();

    TavRegistryOutlineViewDataSource *dataSource_ = nullptr;
    bool isReloading_ = false;
    bool scrollsOnShow_ = false;
    bool mayShrinkColumn_ = false;
    QTimer fitTimer_;
};
