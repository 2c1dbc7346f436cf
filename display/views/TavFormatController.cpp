// SPDX-License-Identifier: Apache-2.0
#include "display/views/TavFormatController.h"

#include "display/DisplayLogging.h"
#include "display/PropertyCounterparts.h"
#include "display/PropertyFormatDescriptor.h"
#include "display/PropertyFormatStore.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/FormatCommand.h"
#include "display/views/PropertyFormatPanel.h"
#include "display/views/PropertyTitle.h"
#include "model/TavRegistryEntry.h"
#include "platform/desktop/FloatingPanel.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/MenuText.h"

#include <QAction>
#include <QCoreApplication>
#include <QUndoStack>
#include <array>

using Type = RegistryValue::Type;

TavFormatController &TavFormatController::sharedInstance()
{
    // Its panel must be destroyed before the application.
    static TavFormatController *controller = nullptr;
    if (!controller) {
        controller = new TavFormatController;
        qAddPostRoutine([] { delete std::exchange(controller, nullptr); });
    }
    return *controller;
}

TavFormatController::TavFormatController() = default;
TavFormatController::~TavFormatController() = default;

// Deliberate: some states share a slot, such as a terminated root and a new entry that a search
// does not match. The first one requested determines the look of both.
const EntryTextAttributes &
TavFormatController::textAttributesForRegistryState(RegistryState registryState,
                                                    FindState findState, bool isRootEntry)
{
    static std::array<std::optional<EntryTextAttributes>, 3 + 6 * 3 + 4 + 1> cache;
    auto &slot = cache.at(registryState + 6 * findState + (isRootEntry ? 4 : 0));
    if (!slot)
        slot = EntryTextAttributes::forState(registryState, findState, isRootEntry);
    return *slot;
}

QString TavFormatController::descriptorForPropertyFormats(const PropertyFormatOptions &options)
{
    return PropertyFormatDescriptor::descriptorForPropertyFormats(options);
}

PropertyFormatOptions TavFormatController::propertyFormatForDescriptor(const QString &descriptor)
{
    return PropertyFormatDescriptor::propertyFormatForDescriptor(descriptor);
}

PropertyFormatPanel &TavFormatController::panel()
{
    if (panel_)
        return *panel_;
    panel_ = std::make_unique<PropertyFormatPanel>();
    connect(panel_.get(), &PropertyFormatPanel::optionChanged, this,
            [this] { dataViewOptionChanged(false); });
    connect(panel_.get(), &PropertyFormatPanel::classChanged, this,
            [this] { dataViewOptionChanged(true); });
    connect(panel_.get(), &PropertyFormatPanel::actionChosen, this,
            &TavFormatController::propertyFormatActionMenuChanged);
    connect(panel_.get(), &PropertyFormatPanel::visibilityChanged, this,
            &TavFormatController::validateMenuItems);
    addUndoKeys();
    showSelection();
    return *panel_;
}

// The keys of the windows' menus do not work in the panel.
void TavFormatController::addUndoKeys()
{
    QDialog &window = panel_->window();
    QAction *const undo = undoGroup_.createUndoAction(&window);
    QAction *const redo = undoGroup_.createRedoAction(&window);
    undo->setShortcuts(QKeySequence::Undo);
    redo->setShortcuts(QKeySequence::Redo);
    window.addActions({undo, redo});
}

QDialog &TavFormatController::propertyFormatPanel()
{
    return panel().window();
}

PropertyFormatOptions TavFormatController::propertyFormat()
{
    return panel().format();
}

QString TavFormatController::propertyFormatDescriptor()
{
    return descriptorForPropertyFormats(propertyFormat());
}

void TavFormatController::setPropertyFormats(const PropertyFormatOptions &options)
{
    panel();
    showFormat(options);
}

void TavFormatController::showFormat(const PropertyFormatOptions &options)
{
    if (options.unit == PropertyFormatOptions::useDefault) {
        _readDefaultPropertyFormats();
    } else if (panel_) {
        panel_->setMessage(message());
        panel_->showFormat(options, selectedItem_);
    }
}

QString TavFormatController::message() const
{
    if (!_hasEligibleDataSettingsTarget())
        return tr("View data/numbers within the selected registry entry as:");
    return (_hasCollectionDataSettingsTarget()
                ? tr("View data/numbers within the selected %1 property as:")
                : tr("View the selected %1 property as:"))
        .arg(selectedItem_->typeName().toLower());
}

void TavFormatController::setPropertyFormatsFromDescriptor(const QString &descriptor)
{
    if (!descriptor.isNull())
        setPropertyFormats(propertyFormatForDescriptor(descriptor));
}

void TavFormatController::setSelectedPropertyItem(TavRegistryProperty *item)
{
    if (panel_) {
        panel_->commitChoices(); // made for the previous selection
        if (item != selectedItem_)
            panel_->setTargetNote(QString());
    }
    selectItem(item);
    showSelection();
}

void TavFormatController::selectItem(TavRegistryProperty *item)
{
    const bool canBeShown =
        item && item->propertyClass().isKindOf(TavPropertyOutlineItem::staticPropertyClass());
    selectedItem_ = canBeShown ? static_cast<TavPropertyOutlineItem *>(item) : nullptr;
    keptItem_ = canBeShown ? item->ref() : nullptr;
    selectedRegistryEntry_ = canBeShown ? item->registryEntry() : nullptr;
}

void TavFormatController::noteEntryReread(const PropertyRef &olderRoot, const PropertyRef &newRoot)
{
    const bool isOfOlderTree =
        !keptItem_.owner_before(olderRoot) && !olderRoot.owner_before(keptItem_);
    if (!selectedItem_ || !isOfOlderTree)
        return;
    TavRegistryProperty *const found = PropertyCounterparts::find(*selectedItem_, *newRoot);
    const QString title = PropertyTitle::of(*selectedItem_);
    selectItem(found ? found : newRoot.get());
    // An unfinished choice still applies to the same property.
    if (found && panel_ && panel_->isChoosing())
        return;
    showSelection();
    if (!found)
        noteTargetGone(title);
}

void TavFormatController::noteTargetGone(const QString &title)
{
    if (panel_)
        panel_->setTargetNote(
            tr("“%1” is gone. The panel now applies to the whole entry.").arg(title));
}

void TavFormatController::showSelection()
{
    const auto stored = selectedItem_ ? selectedItem_->getPropertyFormats() : std::nullopt;
    status_ = DataSettingsStatus::Default;
    if (panel_) {
        QStringList classes =
            selectedRegistryEntry_ ? selectedRegistryEntry_->inheritance() : QStringList();
        std::reverse(classes.begin(), classes.end());
        panel_->setClasses(classes);
    }
    if (!stored) {
        _readDefaultPropertyFormats();
    } else {
        if (stored->isShared)
            setStatus(DataSettingsStatus::Shared, tr("Using Shared Settings"));
        else
            setStatus(DataSettingsStatus::Custom, tr("Using Custom Settings"));
        if (panel_)
            panel_->selectClass(stored->className);
        showFormat(stored->options);
    }
    validateMenuItems();
}

void TavFormatController::_readDefaultPropertyFormats()
{
    const PropertyFormatOptions options = propertyFormatForDescriptor(
        PreferencesStore::standard().string(PreferenceKeys::defaultFormat));
    if (options.unit == PropertyFormatOptions::useDefault) {
        qCWarning(displayLog, "Invalid default data view options!");
        return;
    }
    showFormat(options);
    setStatus(DataSettingsStatus::Default, tr("Using Default Settings"));
}

void TavFormatController::setStatus(DataSettingsStatus status, const QString &text)
{
    status_ = status;
    if (panel_)
        panel_->setStatusText(text);
    validateMenuItems();
}

void TavFormatController::dataViewOptionChanged(bool isClassChange)
{
    setStatus(DataSettingsStatus::Custom, QString());
    change(formatTitle(), [this, isClassChange] {
        if (!selectedItem_) {
            setDefaultPropertyFormats();
            return;
        }
        const QString className = panel().selectedClass();
        if (isClassChange)
            selectedItem_->clearPropertyFormatsForClassInheritanceUpTo(className);
        selectedItem_->setPropertyFormats(panel().format(), className);
    });
    showSelection();
    noteOptionsChanged();
}

void TavFormatController::change(const QString &title, const std::function<void()> &action)
{
    FormatChange change = PropertyFormatStore::changeBy(action);
    if (undoStack() && !change.settings.empty())
        undoStack()->push(new FormatCommand(title, std::move(change), selectedItem_));
}

// Escaped, as command titles go into menus.
QString TavFormatController::formatTitle() const
{
    if (!selectedItem_)
        return tr("Default Format");
    return selectedItem_->parent()
               ? tr("Format of “%1”").arg(menuText(PropertyTitle::of(*selectedItem_)))
               : tr("Format of Whole Entry");
}

QString TavFormatController::actionTitle(int tag) const
{
    switch (tag) {
    case PropertyFormatPanel::SetDefaults:
        return tr("Default Format");
    case PropertyFormatPanel::ClearContents:
        return tr("Clearing of Contained Formats");
    case PropertyFormatPanel::ClearSubclasses:
        return tr("Clearing of Subclass Formats");
    default:
        return formatTitle();
    }
}

void TavFormatController::setUndoStack(QUndoStack &stack)
{
    undoGroup_.addStack(&stack);
    undoGroup_.setActiveStack(&stack);
}

void TavFormatController::noteFormatsRestored(const PropertyRef &item)
{
    showSelection();
    Q_EMIT dataViewOptionsChanged(item ? item.get() : selectedItem_);
}

void TavFormatController::propertyFormatActionMenuChanged(int tag)
{
    change(actionTitle(tag), [this, tag] {
        switch (tag) {
        case PropertyFormatPanel::SetDefaults:
            setDefaultPropertyFormats();
            break;
        case PropertyFormatPanel::UseShared:
            clearCustomSettings();
            break;
        case PropertyFormatPanel::ClearContents:
            clearContainedPropertySettings();
            break;
        case PropertyFormatPanel::ClearSubclasses:
            clearSubclassSettings();
            break;
        default:
            break;
        }
    });
    noteOptionsChanged();
}

void TavFormatController::formatSelectionForItsClass(const PropertyFormatOptions &options)
{
    if (!selectedItem_ || selectedRegistryEntry_->inheritance().isEmpty())
        return;
    change(formatTitle(), [this, &options] {
        selectedItem_->setPropertyFormats(options, selectedRegistryEntry_->inheritance().first());
    });
    showSelection();
    noteOptionsChanged();
}

void TavFormatController::resetFormatOfSelection()
{
    const auto stored = selectedItem_ ? selectedItem_->getPropertyFormats() : std::nullopt;
    if (!stored || stored->isShared)
        return;
    change(formatTitle(), [this, &stored] {
        selectedItem_->setPropertyFormats({.unit = PropertyFormatOptions::useDefault},
                                          stored->className);
    });
    showSelection();
    noteOptionsChanged();
}

void TavFormatController::setDefaultPropertyFormats()
{
    PropertyFormatStore::setDefaultDescriptor(propertyFormatDescriptor());
}

void TavFormatController::clearCustomSettings()
{
    if (selectedItem_)
        selectedItem_->setPropertyFormats({.unit = PropertyFormatOptions::useDefault},
                                          panel().selectedClass());
    showSelection();
}

void TavFormatController::clearContainedPropertySettings()
{
    if (selectedItem_)
        selectedItem_->clearPropertyFormats(false, true, panel().selectedClass());
}

void TavFormatController::clearSubclassSettings()
{
    if (selectedItem_)
        selectedItem_->clearPropertyFormatsForSubclassesOfClass(panel().selectedClass());
    showSelection(); // the shown format may have changed
}

void TavFormatController::noteOptionsChanged()
{
    Q_EMIT dataViewOptionsChanged(selectedItem_);
}

bool TavFormatController::_hasEligibleDataSettingsTarget() const
{
    return _hasCollectionDataSettingsTarget() ||
           (selectedItem_ && (selectedItem_->valueType() == Type::Data ||
                              selectedItem_->valueType() == Type::Number));
}

bool TavFormatController::_hasCollectionDataSettingsTarget() const
{
    return selectedItem_ && (selectedItem_->valueType() == Type::Dictionary ||
                             selectedItem_->valueType() == Type::Array);
}

bool TavFormatController::validateMenuItem(QAction &item) const
{
    if (std::find(toggleItems_.begin(), toggleItems_.end(), &item) != toggleItems_.end())
        item.setText(isPropertyFormatPanelVisible() ? tr("Hide Property &Format Panel")
                                                    : tr("Show Property &Format Panel"));
    const auto is = [&](PropertyFormatPanel::ActionTag tag) {
        return panel_ && &item == panel_->action(tag);
    };
    if (is(PropertyFormatPanel::SetDefaults))
        return status_ != DataSettingsStatus::Default;
    if (is(PropertyFormatPanel::UseShared))
        return status_ == DataSettingsStatus::Custom;
    return !is(PropertyFormatPanel::ClearContents) || _hasCollectionDataSettingsTarget();
}

void TavFormatController::validateMenuItems()
{
    for (const QPointer<QAction> &item : toggleItems_) {
        if (item)
            item->setEnabled(validateMenuItem(*item));
    }
    for (int tag = 0; panel_ && tag < PropertyFormatPanel::ActionCount; ++tag) {
        QAction *const item = panel_->action(static_cast<PropertyFormatPanel::ActionTag>(tag));
        item->setEnabled(validateMenuItem(*item));
    }
}

bool TavFormatController::isPropertyFormatPanelVisible() const
{
    return panel_ && panel_->window().isVisible();
}

void TavFormatController::togglePropertyFormatPanel()
{
    if (isPropertyFormatPanelVisible())
        panel_->window().hide();
    else
        showPropertyFormatPanel();
}

void TavFormatController::showPropertyFormatPanel()
{
    FloatingPanel::makeKey(panel().window());
}

void TavFormatController::addTogglePropertyFormatPanelMenuItem(QAction &action)
{
    std::erase_if(toggleItems_, [](const auto &item) { return item.isNull(); });
    toggleItems_.emplace_back(&action);
    connect(&action, &QAction::triggered, this, &TavFormatController::togglePropertyFormatPanel);
    validateMenuItems();
}
