// SPDX-License-Identifier: Apache-2.0
// Hides the rows that the filter does not choose. The model stays as it is, so that selection,
// editor and open rows do too.
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"

#include <QScopedValueRollback>
#include <QScrollBar>

void TavPropertiesOutlineView::setFilter(const QString &text)
{
    if (text.isEmpty() && !filter_)
        return;
    if (!filter_)
        setUnfilteredPlace(verticalScrollBar()->value());
    filter_.reset();
    if (!text.isEmpty())
        filter_.emplace(text);
    showRows();
    if (!filter_)
        goBackToUnfiltered();
}

void TavPropertiesOutlineView::refilter()
{
    if (filter_)
        showRows();
}

void TavPropertiesOutlineView::showRows()
{
    const QScopedValueRollback filtering(isFiltering_, true);
    scheduleDelayedItemsLayout(); // opening, closing and hiding a row only records it
    closeRowsOfFilter();
    for (const QPersistentModelIndex &row : std::exchange(hiddenRows_, {})) {
        if (row.isValid())
            setRowHidden(row.row(), row.parent(), false);
    }
    const PropertyRef &root = dataSource_->rootItem();
    if (filter_ && root) {
        filter_->read(*root);
        hideRowsBelow({});
        openRowsOfFilter();
    }
    executeDelayedItemsLayout();
    Q_EMIT filtered(filter_ && root && root->numberOfChildren() > 0 && !filter_->showsAny());
}

void TavPropertiesOutlineView::hideRowsBelow(const QModelIndex &parent)
{
    std::vector<QModelIndex> pending{parent};
    while (!pending.empty()) {
        const QModelIndex collection = pending.back();
        pending.pop_back();
        for (int row = 0; row < dataSource_->rowCount(collection); ++row) {
            const QModelIndex index = dataSource_->index(row, 0, collection);
            const TavRegistryProperty &item = *dataSource_->item(index);
            if (!filter_->shows(item)) {
                setRowHidden(row, collection, true);
                hiddenRows_.emplace_back(index);
            } else if (item.isCollection() && !filter_->showsAllBelow(item)) {
                pending.push_back(index);
            }
        }
    }
}

void TavPropertiesOutlineView::openRowsOfFilter()
{
    openRows({QModelIndex()}, [this](const QModelIndex &index) {
        const TavRegistryProperty &item = *dataSource_->item(index);
        const bool isRemembered = dataSource_->isItemExpanded(item);
        const bool leadsToMatch = filter_->shows(item) && !filter_->showsAllBelow(item);
        if (leadsToMatch && !isRemembered && !isExpanded(index))
            openedRows_.emplace_back(index);
        return leadsToMatch || isRemembered;
    });
}

void TavPropertiesOutlineView::closeRowsOfFilter()
{
    for (const QPersistentModelIndex &row : std::exchange(openedRows_, {})) {
        if (row.isValid() && !isKeptOpen(row))
            collapse(row);
    }
}

// What the user has opened since, and what leads to the property that the user has selected while
// the others were hidden.
bool TavPropertiesOutlineView::isKeptOpen(const QModelIndex &index) const
{
    if (dataSource_->isItemExpanded(*dataSource_->item(index)))
        return true;
    if (filter_ || !selectedItem())
        return false;
    QModelIndex selected = currentIndex();
    while (selected.isValid() && selected.siblingAtColumn(0) != index)
        selected = selected.parent();
    return selected.isValid();
}

void TavPropertiesOutlineView::goBackToUnfiltered()
{
    verticalScrollBar()->setValue(scrollBeforeFilter_);
    if (selectedItem() && currentIndex() != currentRowBeforeFilter_)
        scrollTo(currentIndex());
}

void TavPropertiesOutlineView::setUnfilteredPlace(int scroll)
{
    scrollBeforeFilter_ = scroll;
    currentRowBeforeFilter_ = currentIndex();
}

int TavPropertiesOutlineView::unfilteredScroll() const
{
    return filter_ ? scrollBeforeFilter_ : verticalScrollBar()->value();
}
