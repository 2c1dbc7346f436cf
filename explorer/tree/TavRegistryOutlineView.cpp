// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/TavRegistryOutlineView.h"

#include "explorer/tree/OutlineImages.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"
#include "platform/host/SystemBeep.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <functional>

TavRegistryOutlineView::TavRegistryOutlineView(QWidget *parent)
    : OutlineView(parent)
{
    _readIcons();
    setIndentation(OutlineImages::width);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    header()->setStretchLastSection(false);
    header()->setResizeContentsPrecision(0); // only the visible rows

    fitTimer_.setSingleShot(true);
    fitTimer_.setInterval(0);
    connect(&fitTimer_, &QTimer::timeout, this, &TavRegistryOutlineView::fitColumn);
}

void TavRegistryOutlineView::setDataSource(TavRegistryOutlineViewDataSource &dataSource)
{
    dataSource_ = &dataSource;
    setModel(&dataSource);
    connect(this, &QTreeView::expanded, this, &TavRegistryOutlineView::rowDidExpand);
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex &index) {
        dataSource_->itemDidCollapse(index);
        fitColumnLater(true);
    });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TavRegistryOutlineView::selectionDidChange);
}

void TavRegistryOutlineView::rowDidExpand(const QModelIndex &index)
{
    if (isOpeningRows())
        return;
    fitColumnLater(false);
    dataSource_->itemDidExpand(index);
    noteOpenedRow(index);
    if (isChangingSubtree())
        return;
    openExpandedRows({index});
    rereadMiscounted();
}

void TavRegistryOutlineView::openExpandedRows(const QModelIndexList &tops)
{
    openRows(tops, [this](const QModelIndex &index) {
        const bool isToBeOpen = TavRegistryOutlineViewDataSource::item(index)->isToBeOpen();
        if (isToBeOpen)
            noteOpenedRow(index);
        return isToBeOpen;
    });
}

void TavRegistryOutlineView::noteOpenedRow(const QModelIndex &index)
{
    hasOpenedMiscounted_ =
        hasOpenedMiscounted_ || TavRegistryOutlineViewDataSource::item(index)->isMiscounted();
}

// Once for all rows that were opened together, because a reload visits the whole tree.
void TavRegistryOutlineView::rereadMiscounted()
{
    if (std::exchange(hasOpenedMiscounted_, false))
        reloadData();
}

void TavRegistryOutlineView::setSubtreeExpanded(const QModelIndex &top, bool isExpanded)
{
    OutlineView::setSubtreeExpanded(top, isExpanded);
    rereadMiscounted();
}

qsizetype TavRegistryOutlineView::maxRowsInBulk() const
{
    constexpr qsizetype rowsOfAnEntry = 4; // most entries have one
    constexpr qsizetype least = 10'000;
    return std::max(least, rowsOfAnEntry * dataSource_->entryCount());
}

void TavRegistryOutlineView::redisplay()
{
    fitColumnLater(true);
    viewport()->update();
}

void TavRegistryOutlineView::setAllRowsExpanded(bool isExpanded)
{
    reloadData(); // rows that are open already may be miscounted, too
    const QModelIndex root = model()->index(0, 0);
    if (!root.isValid())
        return;
    // Only the root closes; what was open below it opens with it again.
    isExpanded ? dataSource_->itemDidExpand(root) : dataSource_->itemDidCollapse(root);
    TavRegistryOutlineViewDataSource::item(root)->setExpanded(isExpanded);
    setSubtreeExpanded(root, isExpanded);
}

void TavRegistryOutlineView::selectionDidChange()
{
    viewport()->update(); // the selection path shows in many rows
    if (isReloading_)
        return;
    const QModelIndexList rows = selectionModel()->selectedRows();
    dataSource_->selectionDidChange(
        rows.isEmpty() ? nullptr : TavRegistryOutlineViewDataSource::item(rows.first()));
}

void TavRegistryOutlineView::selectRow(const TavRegistryOutlineItem &item)
{
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(dataSource_->indexOf(item),
                                      QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
}

std::vector<TavRegistryOutlineItem *>
TavRegistryOutlineView::itemsForEntryPath(const TavRegistryEntryPath &path) const
{
    std::vector<TavRegistryOutlineItem *> items;
    QModelIndex parent;
    for (const EntryRef &entry : path.registryEntries()) {
        TavRegistryOutlineItem *found = nullptr;
        for (int row = 0, rows = model()->rowCount(parent); row < rows && !found; ++row) {
            const QModelIndex index = model()->index(row, 0, parent);
            TavRegistryOutlineItem *const item = TavRegistryOutlineViewDataSource::item(index);
            if (item->registryEntry() == entry) {
                found = item;
                parent = index;
            }
        }
        if (!found)
            break;
        items.push_back(found);
    }
    return items;
}

// Rereads miscounted nodes on the way, so that the path may lead further.
std::vector<TavRegistryOutlineItem *>
TavRegistryOutlineView::itemsToSelect(const TavRegistryEntryPath &path)
{
    auto items = itemsForEntryPath(path);
    if (std::any_of(items.begin(), items.end(),
                    std::mem_fn(&TavRegistryOutlineItem::isMiscounted))) {
        reloadData();
        items = itemsForEntryPath(path);
    }
    items.resize(std::min<std::size_t>(items.size(), maxLevel));
    return items;
}

TavRegistryEntryPath TavRegistryOutlineView::selectItemAtEntryPath(const TavRegistryEntryPath &path,
                                                                   bool scrollToVisible)
{
    const auto items = itemsToSelect(path);
    const bool staysSelected =
        !scrollToVisible && !items.empty() && items.back() == dataSource_->selectedItem();
    const auto fixed = scrollToVisible ? std::vector<Anchor>() : anchors();
    for (const TavRegistryOutlineItem *item : items) {
        if (!staysSelected || item != items.back())
            expand(dataSource_->indexOf(*item));
    }
    restoreAnchor(fixed);
    if (!items.empty() && !staysSelected) {
        selectRow(*items.back());
        if (scrollToVisible)
            scrollToSelection();
    }
    return items.size() == path.length() ? path : path.subpathOfLength(items.size());
}

void TavRegistryOutlineView::deselectAll()
{
    selectionModel()->clear();
}

// Centres a row that is out of sight, so that its neighbours are visible too.
void TavRegistryOutlineView::scrollToSelection()
{
    const QModelIndex row = currentIndex();
    scrollsOnShow_ = !isVisible();
    if (!row.isValid() || !isVisible())
        return;
    const int x = horizontalScrollBar()->value();
    const int y = visualRect(row).center().y();
    scrollTo(row, y >= 0 && y < viewport()->height() ? EnsureVisible : PositionAtCenter);
    horizontalScrollBar()->setValue(x);
    scrollSidewaysTo(row);
}

// Scrolls to the row's name, or its beginning; the base class uses the width of all rows.
void TavRegistryOutlineView::scrollSidewaysTo(const QModelIndex &row)
{
    int start = 0;
    for (QModelIndex level = row.parent(); level.isValid(); level = level.parent())
        start += indentation();
    const int end = start + indentation() + sizeHintForIndex(row).width();
    QScrollBar &bar = *horizontalScrollBar();
    if (end > bar.value() + viewport()->width())
        bar.setValue(end - viewport()->width());
    if (start < bar.value())
        bar.setValue(start);
}

void TavRegistryOutlineView::showEvent(QShowEvent *event)
{
    OutlineView::showEvent(event);
    if (scrollsOnShow_)
        scrollToSelection();
}

void TavRegistryOutlineView::keyDown(QKeyEvent *event)
{
    const bool isModifier = event->key() == Qt::Key_Control || event->key() == Qt::Key_Shift ||
                            event->key() == Qt::Key_Alt || event->key() == Qt::Key_Meta ||
                            event->key() == Qt::Key_AltGr;
    if (event->modifiers() & Qt::ControlModifier && !isModifier) {
        SystemBeep::beep();
        event->accept();
        return;
    }
    OutlineView::keyPressEvent(event);
}

void TavRegistryOutlineView::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex row =
        isByKey ? selectionModel()->selectedRows().value(0) : indexAt(event->pos());
    if (!row.isValid())
        return;
    if (isByKey)
        scrollToSelection();
    else
        selectRow(*TavRegistryOutlineViewDataSource::item(row));
    const QPoint below = (visualRect(row) & viewport()->rect()).bottomLeft();
    Q_EMIT contextMenuRequested(isByKey ? viewport()->mapToGlobal(below) : event->globalPos());
}

void TavRegistryOutlineView::resizeEvent(QResizeEvent *event)
{
    OutlineView::resizeEvent(event);
    fitColumnLater(true);
    fitColumn();
}

void TavRegistryOutlineView::scrollContentsBy(int dx, int dy)
{
    OutlineView::scrollContentsBy(dx, dy);
    if (dy != 0)
        fitColumnLater(false);
}

void TavRegistryOutlineView::fitColumnLater(bool mayShrink)
{
    mayShrinkColumn_ = mayShrinkColumn_ || mayShrink;
    if (!fitTimer_.isActive())
        fitTimer_.start();
}

// Shows the visible names in full. Scrolling up and down only widens the column, so nothing jumps.
void TavRegistryOutlineView::fitColumn()
{
    if (!model())
        return;
    const int least = mayShrinkColumn_ ? viewport()->width() : columnWidth(0);
    mayShrinkColumn_ = false;
    header()->resizeSection(0, std::max(least, sizeHintForColumn(0)));
}
