#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"

#include <QAction>
#include <QKeyEvent>
#include <QMainWindow>
#include <QUndoStack>

void TavWindowController::setUpFormats()
{
    const auto action = [this](const char *name) {
        return InterfaceLoader::outlet<QAction>(*window_, name);
    };
    TavFormatController::sharedInstance().addTogglePropertyFormatPanelMenuItem(
        *action("togglePropertyFormatPanelAction"));
    window_->installEventFilter(this);
    undoStack_->setUndoLimit(200);
    connect(undoStack_.get(), &QUndoStack::indexChanged, window_.get(),
            [this] { validateActions(); });
    action("undoAction")->setShortcuts(QKeySequence::Undo);
    action("redoAction")->setShortcuts(QKeySequence::Redo);
}

void TavWindowController::undo()
{
    undoStack_->undo();
}

void TavWindowController::redo()
{
    undoStack_->redo();
}

QString TavWindowController::undoTitle() const
{
    const QString text = undoStack_->undoText();
    return text.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(text);
}

QString TavWindowController::redoTitle() const
{
    const QString text = undoStack_->redoText();
    return text.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(text);
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
    selectPropertyItem(selected ? selected : rootPropertyItem_.get());
}

void TavWindowController::selectPropertyItem(TavRegistryProperty *item)
{
    TavFormatController &formats = TavFormatController::sharedInstance();
    formats.setSelectedPropertyItem(item);
    formats.setUndoStack(*undoStack_);
}

// The view keeps its selection by itself. The formats follow, without seeing anything else selected
// in between, unless what they are for is another window's.
void TavWindowController::showProperties(const PropertyRef &previousRoot)
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
