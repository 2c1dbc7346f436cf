// The selection of the properties view.
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "explorer/TavWindowController.h"

namespace {
TavRegistryProperty *child(const TavRegistryProperty &node, const PropertyPathMember &member)
{
    if (const auto *const number = std::get_if<qsizetype>(&member)) {
        return *number >= 0 && *number < node.numberOfChildren() ? node.childAtIndex(*number)
                                                                 : nullptr;
    }
    const std::vector<TavRegistryProperty *> children = node.children();
    const auto named = std::find_if(children.begin(), children.end(), [&](const auto *candidate) {
        const QString name = candidate->name();
        return !name.isNull() && name == std::get<QString>(member);
    });
    return named == children.end() ? nullptr : *named;
}

// Rows may be sorted by whatever the user likes.
QModelIndex rowOf(const TavPropertiesOutlineViewDataSource &rows, const QModelIndex &parent,
                  const TavRegistryProperty &node)
{
    for (int row = 0, count = rows.rowCount(parent); row < count; ++row) {
        const QModelIndex index = rows.index(row, 0, parent);
        if (rows.item(index) == &node)
            return index;
    }
    return {};
}
} // namespace

void TavWindowController::selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path)
{
    TavRegistryProperty *node = rootPropertyItem_.get();
    QModelIndex row;
    for (const PropertyPathMember &member : path) {
        node = node ? child(*node, member) : nullptr;
        if (!node)
            break;
        row = rowOf(*propertiesOutlineView_->dataSource(), row, *node);
        propertiesOutlineView_->expand(row);
    }
    if (!node) {
        propertiesOutlineView_->clearSelection();
    } else if (row.isValid()) {
        propertiesOutlineView_->selectionModel()->setCurrentIndex(
            row, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    TavFormatController::sharedInstance().setSelectedPropertyItem(node);
}

void TavWindowController::scrollToSelectedProperty()
{
    if (propertiesOutlineView_->selectedItem())
        propertiesOutlineView_->scrollTo(propertiesOutlineView_->currentIndex());
}
