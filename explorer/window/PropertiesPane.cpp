// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/PropertiesPane.h"

#include "activity/Plots.h"
#include "compare/ComparisonStore.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "explorer/window/AttributeRequests.h"
#include "explorer/window/FollowedValues.h"
#include "explorer/window/ValuePreferences.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/ClearButton.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/ViewNote.h"
#include "store/TavDataStore.h"

#include <QAction>
#include <QMainWindow>
#include <QUndoStack>

namespace {
constexpr int maxUndoSteps = 200;

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

PropertiesPane::PropertiesPane(QMainWindow &window, const std::shared_ptr<TavDataStore> &dataStore,
                               const ComparisonStore *comparison, Plots &plots,
                               const ValuePreferences &preferences)
    : dataStore_(dataStore)
    , comparison_(comparison)
    , dataSource_(std::make_unique<TavPropertiesOutlineViewDataSource>(*this))
    , attributeRequests_(std::make_unique<AttributeRequests>(dataStore))
    , plots_(plots)
    , valuePreferences_(preferences)
    , followedValues_(std::make_unique<FollowedValues>(window, dataStore, preferences))
    , undoStack_(std::make_unique<QUndoStack>())
    , propertiesOutlineView_(
          InterfaceLoader::outlet<TavPropertiesOutlineView>(window, "propertiesOutlineView"))
    , filterField_(InterfaceLoader::outlet<SearchField>(window, "propertiesFilterField"))
{
    propertiesOutlineView_->setDataSource(*dataSource_);
    setUpFormats(window);
    setUpFilter();
    setUpFollowing();
    setUpPlots();
    connect(attributeRequests_.get(), &AttributeRequests::begun, this,
            &PropertiesPane::refreshPropertiesOutlineView);
    connect(attributeRequests_.get(), &AttributeRequests::finished, this,
            &PropertiesPane::attributeRead);
}

PropertiesPane::~PropertiesPane() = default;

void PropertiesPane::setUpFormats(QMainWindow &window)
{
    const auto action = [&window](const char *name) {
        return InterfaceLoader::outlet<QAction>(window, name);
    };
    TavFormatController::sharedInstance().addTogglePropertyFormatPanelMenuItem(
        *action("togglePropertyFormatPanelAction"));
    undoStack_->setUndoLimit(maxUndoSteps);
    connect(undoStack_.get(), &QUndoStack::indexChanged, &window,
            [this] { Q_EMIT undoStackChanged(); });
    action("undoAction")->setShortcuts(QKeySequence::Undo);
    action("redoAction")->setShortcuts(QKeySequence::Redo);
}

void PropertiesPane::setUpFilter()
{
    nameClearButton(*filterField_);
    auto *const note = new ViewNote(tr("No property matches"), *propertiesOutlineView_);
    connect(filterField_, &SearchField::searchRequested, propertiesOutlineView_,
            [this] { propertiesOutlineView_->setFilter(filterField_->text()); });
    connect(filterField_, &SearchField::cancelled, propertiesOutlineView_, [this] {
        propertiesOutlineView_->setFilter({});
        propertiesOutlineView_->setFocus();
    });
    connect(propertiesOutlineView_, &TavPropertiesOutlineView::filtered, note,
            &ViewNote::setVisible);
}

void PropertiesPane::setUpFollowing()
{
    connect(followedValues_.get(), &FollowedValues::changed, this,
            [this] { showPropertiesOf(entry_); });
    connect(followedValues_.get(), &FollowedValues::tintsFaded, propertiesOutlineView_,
            [this] { propertiesOutlineView_->viewport()->update(); });
    connect(followedValues_.get(), &FollowedValues::attributeStopped, this,
            &PropertiesPane::followingStopped);
}

void PropertiesPane::setUpPlots()
{
    const auto relayOut = [this] {
        propertiesOutlineView_->noteHeightOfAllRowsChanged(); // the text has other room
        propertiesOutlineView_->viewport()->update();
    };
    connect(&plots_, &Plots::changed, this, relayOut);
    connect(&valuePreferences_, &ValuePreferences::changed, this, relayOut);
    connect(&plots_, &Plots::sampled, this, [this] {
        if (valuePreferences_.showsSparklines() && !dataStore_->isPaused())
            propertiesOutlineView_->viewport()->update();
    });
}

const PlotLine *PropertiesPane::plotOf(const TavRegistryProperty &item) const
{
    return entry_ && !plots_.lines().empty() ? plots_.lineOf(*entry_, ValuePath::of(item))
                                             : nullptr;
}

PropertiesPane::Plotting PropertiesPane::plotting(const TavRegistryProperty &item) const
{
    if (!dataStore_->isLive() || comparison_ || !entry_ || entry_->kernelPath().isEmpty())
        return Plotting::NotOffered;
    return plotOf(item)      ? Plotting::Plotted
           : plots_.isFull() ? Plotting::NoRoom
                             : Plotting::Offered;
}

void PropertiesPane::togglePlot(const TavRegistryProperty &item)
{
    if (const PlotLine *const line = plotOf(item))
        plots_.remove(line->number);
    else if (entry_ && plots_.add(*entry_, ValuePath::of(item)))
        Q_EMIT plotAdded();
}

const PlotLine *PropertiesPane::sparklineOf(const TavRegistryProperty &item) const
{
    return valuePreferences_.showsSparklines() ? plotOf(item) : nullptr;
}

void PropertiesPane::updateFollowing()
{
    followedValues_->updateActivity();
}

std::optional<ValueChange> PropertiesPane::changeOf(const TavRegistryProperty &item) const
{
    return followedValues_->changeOf(item);
}

QWidget *PropertiesPane::filterField() const
{
    return filterField_;
}

void PropertiesPane::beginFilter()
{
    filterField_->selectAll();
    filterField_->setFocus(Qt::ShortcutFocusReason);
}

void PropertiesPane::showPropertiesOf(const EntryRef &entry)
{
    const PropertyRef previousRoot = rootPropertyItem_;
    entry_ = entry;
    if (comparison_)
        noteDifferences();
    else
        rootPropertyItem_ = followedValues_->treeFor(entry);
    if (rootPropertyItem_ == previousRoot)
        return;
    const bool isReread = previousRoot && rootPropertyItem_ &&
                          previousRoot->registryEntry() == rootPropertyItem_->registryEntry();
    if (isReread && valuePreferences_.follows())
        followedValues_->noteChanges(*previousRoot, *rootPropertyItem_);
    else
        followedValues_->forgetChanges();
    showChangedTree(previousRoot);
    if (!isReread) // else the user may be reading something else
        showFirstDifference();
}

void PropertiesPane::noteDifferences()
{
    differences_ =
        entry_ ? comparison_->propertyDifferences(*entry_, TavRegistryEntry::currentPropertyClass())
               : PropertyDifferences();
    rootPropertyItem_ = differences_.tree();
    firstDiffering_ = nullptr;
    differing_.clear();
    aboveDiffering_.clear();
    const bool showsVolatile = comparison_->comparison().options().showsVolatile;
    for (const auto &change : differences_.changes()) {
        if (change.isIgnored || (change.isVolatile && !showsVolatile))
            continue;
        const TavRegistryProperty &node = change.after ? *change.after : *change.before;
        differing_.insert(&node);
        firstDiffering_ = firstDiffering_ ? firstDiffering_ : &node;
        for (const auto *above = node.parent(); above && !aboveDiffering_.contains(above);
             above = above->parent())
            aboveDiffering_.insert(above);
    }
}

// Opens the collections that it is in. What was added or removed as a whole is shown from its
// start.
void PropertiesPane::showFirstDifference()
{
    if (!firstDiffering_)
        return;
    const QModelIndex row = dataSource_->indexOf(*firstDiffering_);
    for (QModelIndex above = row.parent(); above.isValid(); above = above.parent())
        propertiesOutlineView_->expand(above);
    propertiesOutlineView_->scrollTo(row);
}

const TavRegistryProperty *PropertiesPane::olderOf(const TavRegistryProperty &item) const
{
    return entry_ && comparison_->differenceOf(*entry_).kind == DifferenceKind::Removed
               ? &item
               : differences_.olderOf(item);
}

RegistryState PropertiesPane::differenceState(const TavRegistryProperty &item) const
{
    const DifferenceKind kind =
        entry_ ? comparison_->differenceOf(*entry_).kind : DifferenceKind::Same;
    if (kind == DifferenceKind::Added)
        return RegistryStateNew;
    if (kind == DifferenceKind::Removed)
        return RegistryStateTerminated;
    if (item.registryState() == RegistryStateTerminated || aboveDiffering_.contains(&item))
        return item.registryState();
    for (const auto *node = &item; node; node = node->parent()) {
        if (differing_.contains(node))
            return item.registryState();
    }
    return RegistryStateUnchanged;
}

// The view keeps its selection by itself. The formats follow, without seeing anything else selected
// in between, unless what they are for is another window's.
void PropertiesPane::showChangedTree(const PropertyRef &previousRoot)
{
    TavFormatController &formats = TavFormatController::sharedInstance();
    const bool isReread = previousRoot && rootPropertyItem_ &&
                          previousRoot->registryEntry() == rootPropertyItem_->registryEntry();
    propertiesOutlineView_->reloadData();
    if (isReread)
        formats.noteEntryReread(previousRoot, rootPropertyItem_);
    else if (!formats.undoStack() || formats.undoStack() == undoStack_.get())
        propertiesViewSelectionChanged();
}

QWidget *PropertiesPane::view() const
{
    return propertiesOutlineView_;
}

void PropertiesPane::clearSelection()
{
    propertiesOutlineView_->clearSelection();
}

void PropertiesPane::refreshPropertiesOutlineView()
{
    propertiesOutlineView_->noteHeightOfAllRowsChanged();
}

void PropertiesPane::propertiesViewSelectionChanged()
{
    TavRegistryProperty *const selected = propertiesOutlineView_->selectedItem();
    selectPropertyItem(selected ? selected : rootPropertyItem_.get());
}

void PropertiesPane::selectPropertyItem(TavRegistryProperty *item)
{
    TavFormatController &formats = TavFormatController::sharedInstance();
    formats.setSelectedPropertyItem(item);
    formats.setUndoStack(*undoStack_);
}

void PropertiesPane::dataViewOptionsChanged(TavRegistryProperty *item)
{
    auto *const changed = dynamic_cast<TavPropertyOutlineItem *>(item);
    if (!changed)
        return;
    changed->resetDisplayValueRecursive();
    // The same format may apply to properties of this window's entry.
    if (auto *const shown = dynamic_cast<TavPropertyOutlineItem *>(rootPropertyItem_.get()))
        shown->resetDisplayValueRecursive();
    propertiesOutlineView_->refilter();
    refreshPropertiesOutlineView();
}

void PropertiesPane::selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path)
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

void PropertiesPane::scrollToSelection()
{
    if (propertiesOutlineView_->selectedItem())
        propertiesOutlineView_->scrollTo(propertiesOutlineView_->currentIndex());
}

QString PropertiesPane::selectedText() const
{
    return propertiesOutlineView_->hasFocus() && propertiesOutlineView_->selectedItem()
               ? propertiesOutlineView_->selectedText()
               : QString();
}

PropertiesPane::Reading PropertiesPane::readingOfAttribute(const QString &attribute) const
{
    return entry_ ? attributeRequests_->reading(*entry_, attribute) : Reading::NotOffered;
}

void PropertiesPane::readAttribute(const QString &attribute)
{
    if (const EntryRef entry = entry_)
        attributeRequests_->read(*entry, attribute);
}

TavRegistryEntry *PropertiesPane::linkTarget(const TavRegistryProperty &item) const
{
    TavRegistryEntry *const target = dataStore_->locator().atLink(item.value().toString());
    return target == entry_.get() ? nullptr : target;
}

bool PropertiesPane::isLink(const TavRegistryProperty &item) const
{
    return linkTarget(item);
}

void PropertiesPane::followLink(const TavRegistryProperty &item, bool inNewWindow)
{
    if (TavRegistryEntry *const target = linkTarget(item))
        Q_EMIT linkFollowed(target->shared_from_this(), inNewWindow);
}

void PropertiesPane::readSelectedAttribute()
{
    dataSource_->readAttribute(propertiesOutlineView_->currentIndex());
}

bool PropertiesPane::canReadSelectedAttribute() const
{
    return dataSource_->reading(propertiesOutlineView_->currentIndex()) == Reading::Offered;
}

bool PropertiesPane::isCurrent(const QString &attribute) const
{
    return dataSource_->attribute(propertiesOutlineView_->currentIndex()) == attribute;
}

void PropertiesPane::goToAttribute(const QString &attribute)
{
    std::vector<PropertyPathMember> path;
    for (const QString &name : attribute.split(u'/'))
        path.emplace_back(name);
    selectPropertyKeyIndexPath(path);
    scrollToSelection();
}

void PropertiesPane::undo()
{
    undoStack_->undo();
}

void PropertiesPane::redo()
{
    undoStack_->redo();
}

bool PropertiesPane::canUndo() const
{
    return undoStack_->canUndo();
}

bool PropertiesPane::canRedo() const
{
    return undoStack_->canRedo();
}

QString PropertiesPane::undoTitle() const
{
    const QString text = undoStack_->undoText();
    return text.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(text);
}

QString PropertiesPane::redoTitle() const
{
    const QString text = undoStack_->redoText();
    return text.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(text);
}
