#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "explorer/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"

#include <QAction>
#include <QKeyEvent>
#include <QMainWindow>

void TavWindowController::setUpFormats()
{
    TavFormatController::sharedInstance().addTogglePropertyFormatPanelMenuItem(
        *InterfaceLoader::outlet<QAction>(*window_, "togglePropertyFormatPanelAction"));
    window_->installEventFilter(this);
}

bool TavWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window_.get() && event->type() == QEvent::WindowActivate)
        windowDidBecomeKey();
    if (event->type() == QEvent::KeyPress && takeKey(*static_cast<QKeyEvent *>(event)))
        return true;
    return QObject::eventFilter(watched, event);
}

void TavWindowController::windowDidBecomeKey()
{
    propertiesViewSelectionChanged();
    validateActions();
}

void TavWindowController::propertiesViewSelectionChanged()
{
    TavRegistryProperty *const selected = propertiesOutlineView_->selectedItem();
    TavFormatController::sharedInstance().setSelectedPropertyItem(
        selected ? selected : rootPropertyItem_.get());
}

// The formats follow a tree that has given way to another, unless they are of another window's.
void TavWindowController::replaceSelectedPropertyItem(const PropertyRef &previousRoot)
{
    TavRegistryProperty *const item = TavFormatController::sharedInstance().selectedPropertyItem();
    const PropertyRef edited = item ? item->ref() : nullptr;
    const bool isOfPreviousTree =
        !edited.owner_before(previousRoot) && !previousRoot.owner_before(edited);
    if (isOfPreviousTree)
        propertiesViewSelectionChanged();
}

void TavWindowController::dataViewOptionsChanged(TavRegistryProperty *item)
{
    auto *const changed = dynamic_cast<TavPropertyOutlineItem *>(item);
    if (!changed)
        return;
    changed->resetDisplayValueRecursive();
    // The same format may apply to properties of this window's entry.
    if (auto *const shown = dynamic_cast<TavPropertyOutlineItem *>(rootPropertyItem_.get()))
        shown->resetDisplayValueRecursive();
    refreshPropertiesOutlineView();
}
