// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/tree/TavRegistryOutlineViewDataSource.h"
#include "platform/widgets/OutlineView.h"

#include <QTimer>

// Shows one plane of the registry as a tree. The nodes know which rows are open, so that this
// survives every reload.
class TavRegistryOutlineView : public OutlineView
{
    Q_OBJECT
public:
    explicit TavRegistryOutlineView(QWidget *parent = nullptr);
    static void _readIcons(); // when they are first needed

    // Once; takes no ownership. The data source must outlive the view's use.
    void setDataSource(TavRegistryOutlineViewDataSource &dataSource);

    // Shows the current children of the chosen nodes. Open rows stay open and the selected row
    // stays selected, without a signal. That row keeps its place on the screen; if it is gone or
    // out of sight, the first visible row does.
    void
    reloadData(TavRegistryOutlineItem::Reread which = TavRegistryOutlineItem::Reread::Miscounted);
    void redisplay(); // rows may look different, and be wider or narrower
    void setAllRowsExpanded(bool isExpanded);
    void setSubtreeExpanded(const QModelIndex &top, bool isExpanded) override;
    // Closes every visible row whose entry is not on the path.
    void collapseRowsOutside(const TavRegistryEntryPath &path);

    // The nodes of the longest prefix of the path that exists.
    std::vector<TavRegistryOutlineItem *> itemsForEntryPath(const TavRegistryEntryPath &path) const;
    // Returns the part of the path that was selected. A row that stays selected and is not scrolled
    // to stays open or closed, and the visible rows stay where they are.
    TavRegistryEntryPath selectItemAtEntryPath(const TavRegistryEntryPath &path,
                                               bool scrollToVisible);
    void selectRow(const TavRegistryOutlineItem &item); // opens no rows and does not scroll
    void scrollToSelection();
    void deselectAll();

    // The colour of the frames around other rows that show the selected entry.
    void setSameEntryHighlightColor(const QColor &color);
    // Repaints those rows, in another colour if the window was activated or deactivated.
    void checkRowsNeedingRedisplay(bool windowChanged);

    // Events of the toolkit.
    void drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                 const QModelIndex &index) const override;
    void keyDown(QKeyEvent *event);
    void becomeFirstResponder();
    void resignFirstResponder();

Q_SIGNALS:
    // For the selected row, which is the one under the pointer.
    void contextMenuRequested(const QPoint &globalPosition);

protected:
    qsizetype maxRowsInBulk() const override;
    void drawBranches(QPainter *painter, const QRect &rect,
                      const QModelIndex &index) const override;
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override { keyDown(event); }
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    // A row and where it stands on the screen.
    struct Anchor
    {
        TavRegistryEntryPath path;
        int y;
    };

    void drawConnectors(QPainter &painter, const QRect &row, TavRegistryOutlineItem &item) const;
    bool showsSelectedEntry(const TavRegistryOutlineItem &item) const; // and is not selected
    QColor highlightColor(bool isActive) const;
    void rowDidExpand(const QModelIndex &index);
    void openExpandedRows(const QModelIndexList &tops);
    void noteOpenedRow(const QModelIndex &index);
    std::vector<TavRegistryOutlineItem *> itemsToSelect(const TavRegistryEntryPath &path);
    void rereadMiscounted();
    void openAfterReload(const TavRegistryOutlineViewDataSource::Reloaded &reloaded);
    void selectionDidChange();
    void scrollSidewaysTo(const QModelIndex &row);
    QModelIndexList rowsInSight() const;
    std::vector<Anchor> anchors() const;
    std::vector<TavRegistryOutlineItem *> itemsStillThere(const TavRegistryEntryPath &path) const;
    void restoreAnchor(const std::vector<Anchor> &anchors);
    void restoreSelection(const std::optional<TavRegistryEntryPath> &path);
    void fitColumnLater(bool mayShrink);
    void fitColumn();

    TavRegistryOutlineViewDataSource *dataSource_ = nullptr;
    std::optional<QColor> sameEntryHighlightColor_;
    bool isReloading_ = false;
    bool hasOpenedMiscounted_ = false; // rows, since nodes were last reread
    bool scrollsOnShow_ = false;
    bool mayShrinkColumn_ = false;
    QTimer fitTimer_;
};
