#include "explorer/TavRegistryOutlineViewDataSource.h"

#include "explorer/EntryTextStyle.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavWindowController.h"
#include "platform/desktop/PlainToolTip.h"

TavRegistryOutlineViewDataSource::TavRegistryOutlineViewDataSource(
    TavWindowController &windowController, QObject *parent)
    : QAbstractItemModel(parent)
    , windowController_(windowController)
{}

bool TavRegistryOutlineViewDataSource::isUpToDate() const
{
    TavRegistryOutlineItem *const root = windowController_.rootOutlineItem();
    return root == root_ && (!root || root->isUpToDate());
}

bool TavRegistryOutlineViewDataSource::reload(const std::function<void()> &change)
{
    setSelectedItem(nullptr);
    const bool isReset = !isUpToDate();
    if (isReset)
        beginResetModel();
    root_ = windowController_.rootOutlineItem();
    if (change)
        change();
    else if (root_)
        root_->rereadChildren();
    if (isReset)
        endResetModel();
    return isReset;
}

TavRegistryOutlineItem *TavRegistryOutlineViewDataSource::item(const QModelIndex &index)
{
    return static_cast<TavRegistryOutlineItem *>(index.internalPointer());
}

QModelIndex TavRegistryOutlineViewDataSource::indexOf(const TavRegistryOutlineItem &item) const
{
    return createIndex(item.row(), 0, &item);
}

void TavRegistryOutlineViewDataSource::setSelectedItem(TavRegistryOutlineItem *item)
{
    if (selectedItem_)
        selectedItem_->setOnSelectionPath(false);
    selectedItem_ = item;
    if (selectedItem_)
        selectedItem_->setOnSelectionPath(true);
}

void TavRegistryOutlineViewDataSource::selectionDidChange(TavRegistryOutlineItem *selected)
{
    setSelectedItem(selected);
    windowController_.outlineViewSelectionChanged();
}

void TavRegistryOutlineViewDataSource::itemDidExpand(const QModelIndex &index)
{
    if (expansionRecorder_.shouldRecord())
        item(index)->setExpanded(true);
}

void TavRegistryOutlineViewDataSource::itemDidCollapse(const QModelIndex &index)
{
    if (expansionRecorder_.shouldRecord())
        item(index)->setExpanded(false);
}

QModelIndex TavRegistryOutlineViewDataSource::index(int row, int column,
                                                    const QModelIndex &parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent))
        return {};
    return createIndex(row, 0, parent.isValid() ? item(parent)->childAtIndex(row) : root_);
}

QModelIndex TavRegistryOutlineViewDataSource::parent(const QModelIndex &index) const
{
    const TavRegistryOutlineItem *const parent = index.isValid() ? item(index)->parent() : nullptr;
    return parent ? indexOf(*parent) : QModelIndex();
}

int TavRegistryOutlineViewDataSource::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return root_ ? 1 : 0;
    return static_cast<int>(item(parent)->children().size());
}

int TavRegistryOutlineViewDataSource::columnCount(const QModelIndex &) const
{
    return 1;
}

bool TavRegistryOutlineViewDataSource::hasChildren(const QModelIndex &parent) const
{
    return parent.isValid() ? !item(parent)->isLeaf() : root_ != nullptr;
}

QVariant TavRegistryOutlineViewDataSource::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    TavRegistryOutlineItem *const shown = item(index);
    switch (role) {
    case Qt::DisplayRole:
        return shown->displayName().text;
    case Qt::FontRole:
        return EntryTextStyle::font(shown->displayName().attributes);
    case Qt::ForegroundRole:
        return EntryTextStyle::color(shown->displayName().attributes);
    case Qt::ToolTipRole:
        return plainToolTip(windowController_.toolTipForRegistryEntry(*shown->registryEntry()));
    case Qt::AccessibleTextRole:
        return windowController_.accessibleNameForOutlineItem(*shown);
    default:
        return {};
    }
}
