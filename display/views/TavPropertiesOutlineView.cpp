#include "display/views/TavPropertiesOutlineView.h"

#include "display/views/PropertiesContextMenu.h"
#include "display/views/PropertyValueDelegate.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QScrollBar>

TavPropertiesOutlineView::TavPropertiesOutlineView(QWidget *parent)
    : OutlineView(parent)
{
    setSelectionMode(SingleSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
}

void TavPropertiesOutlineView::setDataSource(TavPropertiesOutlineViewDataSource &dataSource)
{
    dataSource_ = &dataSource;
    delegate_ = new PropertyValueDelegate(*this, dataSource);
    setItemDelegate(delegate_);
    setModel(&dataSource);
    setUpHeader();
    connect(header(), &QHeaderView::sectionResized, this, [this] { noteHeightOfAllRowsChanged(); });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        if (isOpeningRows())
            return;
        dataSource_->itemDidExpand(index);
        openRememberedRows(index);
    });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { dataSource_->itemDidCollapse(index); });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { dataSource_->selectionDidChange(); });
}

void TavPropertiesOutlineView::setUpHeader()
{
    const int character = fontMetrics().averageCharWidth();
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    header()->resizeSection(TavPropertiesOutlineViewDataSource::KeyColumn, 30 * character);
    header()->resizeSection(TavPropertiesOutlineViewDataSource::TypeColumn, 13 * character);
    header()->setMinimumSectionSize(8 * character);
    // The third click on a header brings the natural order back.
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
}

void TavPropertiesOutlineView::reloadData()
{
    delegate_->forgetLayouts();
    const int position = verticalScrollBar()->value();
    const bool isSameEntry = dataSource_->reload();
    openRememberedRows({});
    verticalScrollBar()->setValue(isSameEntry ? position : 0);
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
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : dataSource_->item(rows.first());
}

void TavPropertiesOutlineView::changeEvent(QEvent *event)
{
    OutlineView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange)
        noteHeightOfAllRowsChanged();
}
