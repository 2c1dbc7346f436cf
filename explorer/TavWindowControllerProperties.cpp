// The selection of the properties view.
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
} // namespace

void TavWindowController::selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path)
{
    TavRegistryProperty *node = rootPropertyItem_.get();
    for (const PropertyPathMember &member : path)
        node = node ? child(*node, member) : nullptr;
    const QModelIndex row =
        node ? propertiesOutlineView_->dataSource()->indexOf(*node) : QModelIndex();
    for (QModelIndex opened = row; opened.isValid(); opened = opened.parent())
        propertiesOutlineView_->expand(opened);
    if (!node) {
        propertiesOutlineView_->clearSelection();
    } else if (row.isValid()) {
        propertiesOutlineView_->selectionModel()->setCurrentIndex(
            row, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    selectPropertyItem(node);
}

void TavWindowController::scrollToSelectedProperty()
{
    if (propertiesOutlineView_->selectedItem())
        propertiesOutlineView_->scrollTo(propertiesOutlineView_->currentIndex());
}
