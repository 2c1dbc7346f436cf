// The commands of navigation, and when each can run.
#include "explorer/HistoryButtons.h"
#include "explorer/SelectionHistory.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavRegistryOutlineViewDataSource.h"
#include "explorer/TavWindowController.h"
#include "platform/desktop/ColumnBrowser.h"
#include "platform/desktop/InterfaceLoader.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMimeData>

void TavWindowController::connectNavigationActions()
{
    using Command = void (TavWindowController::*)();
    const auto add = [this](const char *name, Command command, std::function<bool()> canRun = {}) {
        auto *const action = InterfaceLoader::outlet<QAction>(*window_, name);
        connect(action, &QAction::triggered, this, command);
        if (canRun)
            navigationActions_.emplace_back(action, std::move(canRun));
    };
    using Controller = TavWindowController;
    add("pasteAction", &Controller::paste, [] {
        const QMimeData *const data = QGuiApplication::clipboard()->mimeData();
        return data && data->hasText();
    });
    add("goBackAction", &Controller::goBack, [this] { return history_->canGoBack(); });
    add("goForwardAction", &Controller::goForward, [this] { return history_->canGoForward(); });
    add("goToNextPathInPlaneAction", &Controller::goToNextPathInPlane,
        [this] { return nextEntryPathInPlane(true).has_value(); });
    add("goToPrevPathInPlaneAction", &Controller::goToPrevPathInPlane,
        [this] { return prevEntryPathInPlane(true).has_value(); });
    add("goToNextPathCrossPlaneAction", &Controller::goToNextPathCrossPlane,
        [this] { return nextEntryPathInPlane(false).has_value(); });
    add("goToPrevPathCrossPlaneAction", &Controller::goToPrevPathCrossPlane,
        [this] { return prevEntryPathInPlane(false).has_value(); });
    add("selectParentAction", &Controller::selectParent,
        [this] { return selectedEntryPath_ && selectedEntryPath_->length() >= 2; });
    add("selectChildAction", &Controller::selectChild, [this] {
        return selectedEntry_ && !selectedEntry_->childrenInPlane(registryPlane_).empty();
    });
    add("selectNextSiblingAction", &Controller::selectNextSibling,
        [this] { return canSelectNextSibling(); });
    add("selectPreviousSiblingAction", &Controller::selectPreviousSibling,
        [this] { return canSelectPreviousSibling(); });
    add("promptForPathAction", &Controller::promptForPath);
    add("promptForBookmarkAction", &Controller::promptForBookmark,
        [this] { return selectedEntry_ != nullptr; });
    add("jumpToSelectionAction", &Controller::jumpToSelection);
    add("collapseAroundSelectionAction", &Controller::collapseAroundSelection, [this] {
        return !browserIsVisible() && selectedEntryPath_ && selectedEntryPath_->length() >= 2;
    });
    add("goToNextSnapshotAction", &Controller::goToNextSnapshot);
    add("goToPrevSnapshotAction", &Controller::goToPrevSnapshot);
    connectNavigationControls();
}

void TavWindowController::connectNavigationControls()
{
    auto *const buttons = new HistoryButtons(*window_);
    connect(buttons, &HistoryButtons::backPressed, this, &TavWindowController::goBack);
    connect(buttons, &HistoryButtons::forwardPressed, this, &TavWindowController::goForward);
    connect(entryPathsButton_, &QComboBox::activated, this, &TavWindowController::pathPopupChanged);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &TavWindowController::validateNavigationActions);
}

void TavWindowController::validateNavigationActions()
{
    for (const auto &[action, canRun] : navigationActions_)
        action->setEnabled(canRun());
}

bool TavWindowController::canSelectNextSibling() const
{
    if (!browserIsVisible()) {
        const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
        return selected && selected->nextSibling();
    }
    const int column = registryBrowser_->selectedColumn();
    return registryBrowser_->selectedRow(column) != registryBrowser_->numberOfRows(column) - 1;
}

// In the browser only the first row has none before it, so that it can be asked for with no row
// selected; kept, for it has always been so.
bool TavWindowController::canSelectPreviousSibling() const
{
    if (browserIsVisible())
        return registryBrowser_->selectedRow(registryBrowser_->selectedColumn()) != 0;
    const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
    return selected && selected->previousSibling();
}

void TavWindowController::paste()
{
    QClipboard *const clipboard = QGuiApplication::clipboard();
    // A field that is being edited takes the text itself.
    auto *const field = qobject_cast<QLineEdit *>(window_->focusWidget());
    if (field && !field->isReadOnly())
        field->paste();
    else if (const QMimeData *data = clipboard->mimeData(); data && data->hasText())
        goToRegistryPath(data->text());
}
