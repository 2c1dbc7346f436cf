// SPDX-License-Identifier: Apache-2.0
#include "display/views/TavPropertiesOutlineView.h"

#include "display/PropertyCounterparts.h"
#include "display/views/PropertiesContextMenu.h"
#include "display/views/PropertyValueDelegate.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>

TavPropertiesOutlineView::TavPropertiesOutlineView(QWidget *parent)
    : OutlineView(parent)
{
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
}

void TavPropertiesOutlineView::setDataSource(TavPropertiesOutlineViewDataSource &dataSource)
{
    dataSource_ = &dataSource;
    delegate_ = new PropertyValueDelegate(*this, dataSource);
    setItemDelegate(delegate_);
    connect(delegate_, &PropertyValueDelegate::readRequested, &dataSource,
            &TavPropertiesOutlineViewDataSource::readAttribute);
    setModel(&dataSource);
    setUpHeader();
    connect(header(), &QHeaderView::sectionResized, this, [this] { noteHeightOfAllRowsChanged(); });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        if (isOpeningRows())
            return;
        dataSource_->itemDidExpand(index);
        openRememberedRows(index);
    });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex &index) {
        if (!isFiltering_)
            dataSource_->itemDidCollapse(index);
    });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!isReloading_)
            dataSource_->selectionDidChange();
    });
    // Immediately: the rows in the layout may be gone.
    connect(&dataSource, &QAbstractItemModel::layoutChanged, this,
            [this] { executeDelayedItemsLayout(); });
}

void TavPropertiesOutlineView::setUpHeader()
{
    const int character = fontMetrics().averageCharWidth();
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    header()->resizeSection(TavPropertiesOutlineViewDataSource::KeyColumn, 30 * character);
    header()->resizeSection(TavPropertiesOutlineViewDataSource::TypeColumn, 13 * character);
    using DataSource = TavPropertiesOutlineViewDataSource;
    if (dataSource_->columnCount() > DataSource::OldValueColumn) { // before the new one
        header()->moveSection(DataSource::OldValueColumn, DataSource::ValueColumn);
        header()->resizeSection(DataSource::OldValueColumn, 24 * character);
    }
    header()->setMinimumSectionSize(8 * character);
    // The third click on a header restores the natural order.
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
}

// Return follows a link, Ctrl+Return in a new window.
void TavPropertiesOutlineView::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && state() != EditingState && dataSource_->isLink(currentIndex())) {
        event->accept();
        dataSource_->followLink(currentIndex(), event->modifiers() & Qt::ControlModifier);
        return;
    }
    OutlineView::keyPressEvent(event);
}

// A plain click selects, so that a link can be copied, too.
void TavPropertiesOutlineView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool inNewWindow = event->button() == Qt::MiddleButton;
    const bool isOnLink = index.column() == TavPropertiesOutlineViewDataSource::ValueColumn &&
                          dataSource_->isLink(index);
    if (isOnLink && (inNewWindow || (event->button() == Qt::LeftButton &&
                                     event->modifiers() == Qt::ControlModifier))) {
        event->accept();
        setCurrentIndex(index);
        dataSource_->followLink(index, inNewWindow);
        return;
    }
    OutlineView::mousePressEvent(event);
}

void TavPropertiesOutlineView::reloadData()
{
    const QScopedValueRollback reloading(isReloading_, true);
    delegate_->forgetLayouts();
    if (dataSource_->isOfSameEntry())
        showRereadTree();
    else
        showOtherTree();
}

void TavPropertiesOutlineView::showRereadTree()
{
    const QPersistentModelIndex anchor = anchorRow();
    const int top = visualRect(anchor).top();
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    dataSource_->reload();
    openRememberedRows({});
    refilter();
    if (anchor.isValid())
        verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(anchor).top() -
                                      top);
    refreshEditor();
    if (hadFocus && !isAncestorOf(QApplication::focusWidget()))
        setFocus(); // the editor had the focus, and its row is gone
}

// The selected row if visible, else the first visible one.
QModelIndex TavPropertiesOutlineView::anchorRow() const
{
    const QModelIndex current = currentIndex();
    const bool isInSight = current.isValid() && viewport()->rect().intersects(visualRect(current));
    return isInSight ? current : indexAt({viewport()->rect().center().x(), 0});
}

// The text in the value editor may have changed, or no longer be text.
void TavPropertiesOutlineView::refreshEditor()
{
    QWidget *const editor = indexWidget(currentIndex());
    if (!editor)
        return;
    if (currentIndex().flags() & Qt::ItemIsEditable)
        delegate_->setEditorData(editor, currentIndex());
    else
        closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void TavPropertiesOutlineView::showOtherTree()
{
    if (dataSource_->rootItem())
        places_.keep(place());
    const std::optional<PropertyPlaces::Place> known = places_.take(dataSource_->nextRootItem());
    dataSource_->reload(known ? known->root : nullptr);
    openRememberedRows({});
    refilter();
    if (known)
        goToPlace(*known);
    setUnfilteredPlace(known ? known->scroll : 0);
    verticalScrollBar()->setValue(filter_ ? 0 : scrollBeforeFilter_);
    if (filter_ && selectedItem())
        scrollTo(currentIndex());
}

PropertyPlaces::Place TavPropertiesOutlineView::place() const
{
    const TavRegistryProperty *const current = dataSource_->item(currentIndex());
    return {dataSource_->rootItem(), current, currentIndex().column(), selectedItem() == current,
            unfilteredScroll()};
}

void TavPropertiesOutlineView::goToPlace(const PropertyPlaces::Place &place)
{
    const PropertyRef &root = dataSource_->rootItem();
    const TavRegistryProperty *const current =
        place.current ? PropertyCounterparts::find(*place.current, *root) : nullptr;
    if (current)
        selectionModel()->setCurrentIndex(
            dataSource_->indexOf(*current).siblingAtColumn(place.column),
            place.isSelected ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                             : QItemSelectionModel::NoUpdate);
}

void TavPropertiesOutlineView::openRememberedRows(const QModelIndex &top)
{
    openRows({top}, [this](const QModelIndex &index) {
        return dataSource_->isItemExpanded(*dataSource_->item(index));
    });
}

void TavPropertiesOutlineView::setAllRowsExpanded(bool isExpanded)
{
    dataSource_->noteAllItemsExpanded(isExpanded);
    if (isExpanded)
        openRememberedRows({});
    else
        collapseAll();
}

void TavPropertiesOutlineView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    const QPoint place = isByKey && index.isValid() ? visualRect(index).bottomLeft() : event->pos();
    auto *const menu = new PropertiesContextMenu(*this, index);
    menu->popup(viewport()->mapToGlobal(place));
    event->accept();
}

void TavPropertiesOutlineView::noteHeightOfAllRowsChanged()
{
    if (!delegate_)
        return;
    delegate_->forgetLayouts();
    scheduleDelayedItemsLayout();
    viewport()->update();
}

TavRegistryProperty *TavPropertiesOutlineView::selectedItem() const
{
    const QModelIndex current = currentIndex();
    if (selectionModel()->isRowSelected(current.row(), current.parent()))
        return dataSource_->item(current);
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : dataSource_->item(rows.first());
}

QString TavPropertiesOutlineView::selectedText() const
{
    struct Row
    {
        std::vector<int> place; // the rows from the top down to it
        QModelIndex index;
    };
    std::vector<Row> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows()) {
        Row &row = rows.emplace_back(Row{{}, index});
        for (QModelIndex at = index; at.isValid(); at = at.parent())
            row.place.push_back(at.row());
        std::reverse(row.place.begin(), row.place.end());
    }
    std::sort(rows.begin(), rows.end(),
              [](const Row &a, const Row &b) { return a.place < b.place; });
    QStringList lines;
    for (const Row &row : rows)
        lines.append(dataSource_->line(row.index));
    return lines.join(u'\n');
}

void TavPropertiesOutlineView::changeEvent(QEvent *event)
{
    OutlineView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange)
        noteHeightOfAllRowsChanged();
}
