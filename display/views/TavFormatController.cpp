#include "display/views/TavFormatController.h"

#include "display/DisplayLogging.h"
#include "display/PropertyFormatDescriptor.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/PropertyFormatPanel.h"
#include "model/TavRegistryEntry.h"
#include "platform/PreferencesStore.h"
#include "platform/desktop/FloatingPanel.h"

#include <QAction>
#include <QCoreApplication>
#include <array>

using Type = RegistryValue::Type;

TavFormatController &TavFormatController::sharedInstance()
{
    // Its panel must go before the application does.
    static TavFormatController *controller = nullptr;
    if (!controller) {
        controller = new TavFormatController;
        qAddPostRoutine([] { delete std::exchange(controller, nullptr); });
    }
    return *controller;
}

TavFormatController::TavFormatController() = default;
TavFormatController::~TavFormatController() = default;

// Some states share a slot, such as those of the terminated root and of a new entry that a search
// does not match. Which look they have is settled by the first one asked for.
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
    showSelection();
    return *panel_;
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
    if (options.unit == PropertyFormatOptions::useDefault)
        _readDefaultPropertyFormats();
    else
        panel().showFormat(options, selectedItem_);
}

void TavFormatController::setPropertyFormatsFromDescriptor(const QString &descriptor)
{
    if (!descriptor.isNull())
        setPropertyFormats(propertyFormatForDescriptor(descriptor));
}

void TavFormatController::setSelectedPropertyItem(TavRegistryProperty *item)
{
    const bool canBeShown =
        item && item->propertyClass().isKindOf(TavPropertyOutlineItem::staticPropertyClass());
    selectedItem_ = canBeShown ? static_cast<TavPropertyOutlineItem *>(item) : nullptr;
    keptItem_ = canBeShown ? item->ref() : nullptr;
    selectedRegistryEntry_ = canBeShown ? item->registryEntry() : nullptr;
    if (panel_)
        showSelection();
}

void TavFormatController::showSelection()
{
    status_ = DataSettingsStatus::Default;
    QStringList classes =
        selectedRegistryEntry_ ? selectedRegistryEntry_->inheritance() : QStringList();
    std::reverse(classes.begin(), classes.end());
    panel_->setClasses(classes);
    const auto stored = selectedItem_ ? selectedItem_->getPropertyFormats() : std::nullopt;
    if (!stored) {
        _readDefaultPropertyFormats();
    } else {
        if (stored->isShared)
            setStatus(DataSettingsStatus::Shared, tr("Using Shared Settings"));
        else
            setStatus(DataSettingsStatus::Custom, tr("Using Custom Settings"));
        panel_->selectClass(stored->className);
        setPropertyFormats(stored->options);
    }
    validateMenuItems();
}

void TavFormatController::_readDefaultPropertyFormats()
{
    const PropertyFormatOptions options = propertyFormatForDescriptor(
        PreferencesStore::standard().string(TavPropertyOutlineItem::defaultFormatKey()));
    if (options.unit == PropertyFormatOptions::useDefault) {
        qCWarning(displayLog, "Invalid default data view options!");
        return;
    }
    panel().showFormat(options, selectedItem_);
    setStatus(DataSettingsStatus::Default, tr("Using Default Settings"));
}

void TavFormatController::setStatus(DataSettingsStatus status, const QString &text)
{
    status_ = status;
    panel().setStatusText(text);
    validateMenuItems();
}

void TavFormatController::dataViewOptionChanged(bool isClassChange)
{
    setStatus(DataSettingsStatus::Custom, QString());
    if (selectedItem_) {
        const QString className = panel_->selectedClass();
        if (isClassChange)
            selectedItem_->clearPropertyFormatsForClassInheritanceUpTo(className);
        selectedItem_->setPropertyFormats(panel_->format(), className);
    } else {
        setDefaultPropertyFormats();
    }
    showSelection();
    noteOptionsChanged();
}

void TavFormatController::propertyFormatActionMenuChanged(int tag)
{
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
    noteOptionsChanged();
}

void TavFormatController::setDefaultPropertyFormats()
{
    PreferencesStore &preferences = PreferencesStore::standard();
    preferences.setValue(TavPropertyOutlineItem::defaultFormatKey(), propertyFormatDescriptor());
    preferences.synchronize();
}

void TavFormatController::clearCustomSettings()
{
    if (selectedItem_)
        selectedItem_->setPropertyFormats({.unit = PropertyFormatOptions::useDefault},
                                          panel_->selectedClass());
    showSelection();
}

void TavFormatController::clearContainedPropertySettings()
{
    if (selectedItem_)
        selectedItem_->clearPropertyFormats(false, true, panel_->selectedClass());
}

void TavFormatController::clearSubclassSettings()
{
    if (selectedItem_)
        selectedItem_->clearPropertyFormatsForSubclassesOfClass(panel_->selectedClass());
    showSelection(); // the one shown may have been among them
}

void TavFormatController::noteOptionsChanged()
{
    Q_EMIT dataViewOptionsChanged(selectedItem_);
}

bool TavFormatController::_hasCollectionDataSettingsTarget() const
{
    return selectedItem_ && (selectedItem_->valueType() == Type::Dictionary ||
                             selectedItem_->valueType() == Type::Array);
}

void TavFormatController::validateMenuItems()
{
    const QString title = isPropertyFormatPanelVisible() ? tr("Hide Property &Format Panel")
                                                         : tr("Show Property &Format Panel");
    for (const QPointer<QAction> &item : toggleItems_) {
        if (item)
            item->setText(title);
    }
    if (!panel_)
        return;
    panel_->action(PropertyFormatPanel::SetDefaults)
        ->setEnabled(status_ != DataSettingsStatus::Default);
    panel_->action(PropertyFormatPanel::UseShared)
        ->setEnabled(status_ == DataSettingsStatus::Custom);
    panel_->action(PropertyFormatPanel::ClearContents)
        ->setEnabled(_hasCollectionDataSettingsTarget());
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
