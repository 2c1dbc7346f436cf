// The selection of the properties view, and the attributes that are read on request.
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/AttributeRequests.h"
#include "explorer/window/TavWindowController.h"

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

void TavWindowController::setUpAttributeRequests()
{
    connect(attributeRequests_.get(), &AttributeRequests::begun, this,
            &TavWindowController::refreshPropertiesOutlineView);
    connect(attributeRequests_.get(), &AttributeRequests::finished, this,
            &TavWindowController::showAttributeRead);
}

PropertiesViewController::Reading
TavWindowController::readingOfAttribute(const QString &attribute) const
{
    return selectedEntry_ ? attributeRequests_->reading(*selectedEntry_, attribute)
                          : Reading::NotOffered;
}

void TavWindowController::readAttribute(const QString &attribute)
{
    if (const EntryRef entry = selectedEntry_)
        attributeRequests_->read(*entry, attribute);
}

void TavWindowController::readSelectedAttribute()
{
    propertiesDataSource_->readAttribute(propertiesOutlineView_->currentIndex());
}

bool TavWindowController::canReadSelectedAttribute() const
{
    return propertiesDataSource_->reading(propertiesOutlineView_->currentIndex()) ==
           Reading::Offered;
}

// The value stands at its own place among the properties. The user is led there, unless busy
// elsewhere by now.
void TavWindowController::showAttributeRead(quint64 entryTag, const QString &attribute)
{
    const auto isCurrent = [&] {
        return propertiesDataSource_->attribute(propertiesOutlineView_->currentIndex()) ==
               attribute;
    };
    registryOutlineView_->reloadData(); // the entry's children may be more or fewer
    if (!selectedEntry_ || selectedEntry_->entryTag() != entryTag)
        return;
    const bool wasCurrent = isCurrent();
    setSelectedEntry(selectedEntry_);
    refreshPropertiesOutlineView();
    if (!wasCurrent || isCurrent()) // it may have failed, and be still unread
        return;
    std::vector<PropertyPathMember> way;
    for (const QString &name : attribute.split(u'/'))
        way.emplace_back(name);
    selectPropertyKeyIndexPath(way);
    scrollToSelectedProperty();
}
