// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"

#include "explorer/EntryTextStyle.h"
#include "explorer/ExplorerContext.h"
#include "platform/runloop/Disposal.h"
#include "platform/widgets/OutlineRowDelegate.h"
#include "platform/widgets/PlainToolTip.h"
#include "store/TavDataStore.h"

namespace {
// Up to this number of changed nodes, rows are changed one by one.
constexpr int fewNodes = 16;
} // namespace

TavRegistryOutlineViewDataSource::TavRegistryOutlineViewDataSource(const ExplorerContext &context,
                                                                   QObject *parent)
    : QAbstractItemModel(parent)
    , context_(context)
{}

TavRegistryOutlineItem *TavRegistryOutlineViewDataSource::rootOutlineItem()
{
    const QString &plane = context_.registryPlane();
    auto &item = rootOutlineItemsInPlanes_[plane];
    TavRegistryEntry *const root = context_.dataStore()->registryRoot();
    if (!item && root)
        item = std::make_shared<TavRegistryOutlineItem>(context_, nullptr, plane,
                                                        root->shared_from_this());
    return item.get();
}

void TavRegistryOutlineViewDataSource::rereadHiddenNodes()
{
    const TavRegistryOutlineItem *const shown = rootOutlineItem();
    for (const auto &item : std::as_const(rootOutlineItemsInPlanes_)) {
        if (item && item.get() != shown)
            item->rereadChildren();
    }
}

void TavRegistryOutlineViewDataSource::disposeOfNodes()
{
    for (auto &item : rootOutlineItemsInPlanes_)
        Disposal::later(std::move(item));
}

bool TavRegistryOutlineViewDataSource::showsRoot() const
{
    return !context_.hidesEverything();
}

qsizetype TavRegistryOutlineViewDataSource::entryCount() const
{
    return static_cast<qsizetype>(context_.dataStore()->registryEntries().size());
}

TavRegistryOutlineViewDataSource::Reloaded
TavRegistryOutlineViewDataSource::reload(TavRegistryOutlineItem::Reread which)
{
    setSelectedItem(nullptr);
    TavRegistryOutlineItem *const root = rootOutlineItem();
    TavRegistryOutlineItem *const shown = showsRoot() ? root : nullptr;
    if (root == nullptr || shown != root_ || root->countRereads(which, fewNodes + 1) > fewNodes) {
        beginResetModel();
        root_ = shown;
        if (root)
            root->rereadChildren(which);
        endResetModel();
        return {.isReset = true, .isChanged = true, .toOpen = {}};
    }
    if (root->countRereads(which, 1) == 0)
        return {};
    root->rereadChildren(which, this);
    return {.isReset = false, .isChanged = true, .toOpen = std::exchange(toOpen_, {})};
}

void TavRegistryOutlineViewDataSource::willRemoveRows(TavRegistryOutlineItem &parent, int first,
                                                      int last)
{
    beginRemoveRows(indexOf(parent), first, last);
}

void TavRegistryOutlineViewDataSource::didRemoveRows()
{
    endRemoveRows();
}

void TavRegistryOutlineViewDataSource::willInsertRows(TavRegistryOutlineItem &parent, int first,
                                                      int last)
{
    beginInsertRows(indexOf(parent), first, last);
}

void TavRegistryOutlineViewDataSource::didInsertRows(TavRegistryOutlineItem &parent, int first,
                                                     int last)
{
    endInsertRows();
    if (first == 0)
        toOpen_.push_back(&parent); // it may have had no children before
    for (int row = first; row <= last; ++row)
        toOpen_.push_back(parent.childAtIndex(row));
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
    Q_EMIT outlineViewSelectionChanged();
}

void TavRegistryOutlineViewDataSource::itemDidExpand(const QModelIndex &index)
{
    if (expansionRecorder_.shouldRecord())
        item(index)->setExpanded(true);
    else
        item(index)->setOpenedInPassing(true);
}

void TavRegistryOutlineViewDataSource::itemDidCollapse(const QModelIndex &index)
{
    item(index)->setOpenedInPassing(false);
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
    return std::max(0, item(parent)->numberOfChildren());
}

int TavRegistryOutlineViewDataSource::columnCount(const QModelIndex &) const
{
    return 1;
}

bool TavRegistryOutlineViewDataSource::hasChildren(const QModelIndex &parent) const
{
    return parent.isValid() ? item(parent)->isExpandable() : root_ != nullptr;
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
        return context_.colorForEntry(*shown->registryEntry(), shown->displayName().attributes);
    case Qt::ToolTipRole:
        return plainToolTip(context_.toolTipForRegistryEntry(*shown->registryEntry()));
    case Qt::DecorationRole:
        return context_.markForEntry(*shown->registryEntry());
    case Qt::AccessibleTextRole:
        return context_.accessibleNameForEntry(*shown->registryEntry(), shown->name());
    case OutlineRowDelegate::DetailRole:
        return context_.detailForEntry(*shown->registryEntry());
    case Qt::AccessibleDescriptionRole:
        return context_.warningForEntry(*shown->registryEntry());
    default:
        return {};
    }
}

QVariant TavRegistryOutlineViewDataSource::headerData(int section, Qt::Orientation orientation,
                                                      int role) const
{
    return orientation == Qt::Horizontal && section == 0 && role == Qt::DisplayRole ? tr("Entry")
                                                                                    : QVariant();
}
