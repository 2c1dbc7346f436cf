// SPDX-License-Identifier: Apache-2.0
// How TavRegistryOutlineView keeps its place when what it shows is reread.
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"

#include <QScopedValueRollback>
#include <QScrollBar>

void TavRegistryOutlineView::reloadData(TavRegistryOutlineItem::Reread which)
{
    const QScopedValueRollback reloading(isReloading_, true);
    const TavRegistryOutlineItem *const selected = dataSource_->selectedItem();
    const std::optional selection = selected ? std::optional(selected->entryPath()) : std::nullopt;
    const std::vector<Anchor> fixed = anchors();
    setAutoScroll(false); // the row after a removed selected one becomes current for a moment
    const auto reloaded = dataSource_->reload(which);
    setAutoScroll(true);
    if (reloaded.isChanged)
        openAfterReload(reloaded);
    restoreSelection(selection);
    if (reloaded.isChanged)
        restoreAnchor(fixed);
    viewport()->update();
    fitColumnLater(true);
}

void TavRegistryOutlineView::openAfterReload(
    const TavRegistryOutlineViewDataSource::Reloaded &reloaded)
{
    QModelIndexList tops;
    for (TavRegistryOutlineItem *item : reloaded.toOpen) {
        if (item->isToBeOpen() && item->isExpandable())
            tops.append(dataSource_->indexOf(*item));
    }
    if (reloaded.isReset)
        tops.append(QModelIndex());
    if (tops.isEmpty())
        scheduleDelayedItemsLayout(); // rows may have gained or lost their expanders
    else
        openExpandedRows(tops);
}

QModelIndexList TavRegistryOutlineView::rowsInSight() const
{
    QModelIndexList rows;
    const QRect view = viewport()->rect();
    for (QModelIndex row = indexAt(view.topLeft() + QPoint(0, 1));
         row.isValid() && visualRect(row).top() <= view.bottom(); row = indexBelow(row))
        rows.append(row);
    return rows;
}

// The selected row first, then the others downwards.
std::vector<TavRegistryOutlineView::Anchor> TavRegistryOutlineView::anchors() const
{
    QModelIndexList rows = rowsInSight();
    if (const auto selected = rows.indexOf(currentIndex()); selected > 0)
        rows.move(selected, 0);
    std::vector<Anchor> anchors;
    for (const QModelIndex &row : rows)
        anchors.push_back(
            {TavRegistryOutlineViewDataSource::item(row)->entryPath(), visualRect(row).top()});
    return anchors;
}

// The nodes of a path that was visible before a reload, which may show another plane.
std::vector<TavRegistryOutlineItem *>
TavRegistryOutlineView::itemsStillThere(const TavRegistryEntryPath &path) const
{
    const TavRegistryOutlineItem *const root =
        TavRegistryOutlineViewDataSource::item(model()->index(0, 0));
    return root && root->plane() == path.plane() ? itemsForEntryPath(path)
                                                 : std::vector<TavRegistryOutlineItem *>();
}

// When no visible row is left, keeps the nearest ancestor of the first one in place.
void TavRegistryOutlineView::restoreAnchor(const std::vector<Anchor> &anchors)
{
    const auto hold = [this](const TavRegistryOutlineItem &item, int y) {
        const QRect row = visualRect(dataSource_->indexOf(item));
        if (row.isValid())
            verticalScrollBar()->setValue(verticalScrollBar()->value() + row.top() - y);
        return row.isValid();
    };
    for (const Anchor &anchor : anchors) {
        const auto items = itemsStillThere(anchor.path);
        if (items.size() == anchor.path.length() && hold(*items.back(), anchor.y))
            return;
    }
    const auto items = anchors.empty() ? std::vector<TavRegistryOutlineItem *>()
                                       : itemsStillThere(anchors.front().path);
    if (!items.empty())
        hold(*items.back(), anchors.front().y);
}

void TavRegistryOutlineView::restoreSelection(const std::optional<TavRegistryEntryPath> &path)
{
    const auto items = path ? itemsStillThere(*path) : std::vector<TavRegistryOutlineItem *>();
    if (items.empty() || items.size() < path->length()) {
        deselectAll();
        return;
    }
    dataSource_->setSelectedItem(items.back());
    selectRow(*items.back());
}
