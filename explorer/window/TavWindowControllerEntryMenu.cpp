// The menu of an entry, and its commands.
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/FileManager.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/ContextMenuKey.h"
#include "store/TavDocument.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMainWindow>
#include <QMenu>
#include <QTableView>
#include <QTimer>

void TavWindowController::connectContextMenus()
{
    connect(registryOutlineView_, &TavRegistryOutlineView::contextMenuRequested, this,
            &TavWindowController::showEntryMenu);
    connect(registryBrowser_, &ColumnBrowser::contextMenuRequested, this,
            &TavWindowController::showEntryMenu);
    connect(findTableView_, &QTableView::customContextMenuRequested, this,
            [this](const QPoint &place) {
                const int row = findTableView_->rowAt(place.y());
                if (selectedEntry_ && findDataSource_->entryAtIndex(row) == selectedEntry_)
                    showEntryMenu(findTableView_->viewport()->mapToGlobal(place));
            });
    ContextMenuKey::addTo(*window_);
}

// Its items are those of the window's menus, so that they show the same.
void TavWindowController::showEntryMenu(const QPoint &place)
{
    static constexpr const char *separator = nullptr;
    auto *const menu = new QMenu(window_.get());
    menu->setObjectName(QStringLiteral("entryMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const char *const item :
         {"copyNameAction", "copyPathAction", "copyClassAction", "copyBundleAction", separator,
          "promptForBookmarkAction", "revealSelectionBundleInNavroAction", "openInNewWindowAction",
          separator, "updateSelectedObjectAction"}) {
        if (item)
            menu->addAction(InterfaceLoader::outlet<QAction>(*window_, item));
        else
            menu->addSeparator();
    }
    validateActions();
    menu->popup(place);
}

bool TavWindowController::hasBundle() const
{
    return selectedEntry_ && !selectedEntry_->bundleID().isEmpty();
}

bool TavWindowController::hasBundlePath() const
{
    return selectedEntry_ && !selectedEntry_->bundlePath().isEmpty();
}

void TavWindowController::copyName()
{
    QGuiApplication::clipboard()->setText(selectedEntry_->nameAtLocationInPlane(registryPlane_));
}

void TavWindowController::copyPath()
{
    QGuiApplication::clipboard()->setText(registryPathForSelectedEntry());
}

void TavWindowController::copyClass()
{
    QGuiApplication::clipboard()->setText(selectedEntry_->DxcoreClass());
}

void TavWindowController::copyBundle()
{
    QGuiApplication::clipboard()->setText(selectedEntry_->bundleID());
}

void TavWindowController::revealSelectionBundleInNavro()
{
    const QString bundle = selectedEntry_ ? selectedEntry_->bundlePath() : QString();
    if (!bundle.isEmpty())
        FileManager::reveal(bundle);
}

TavWindowController &TavWindowController::addWindow()
{
    auto controller = std::make_unique<TavWindowController>(document_);
    TavWindowController &added = *controller;
    document_.addWindowController(std::move(controller));
    added.showWindow();
    return added;
}

void TavWindowController::newDocumentWindow()
{
    addWindow();
}

void TavWindowController::openInNewWindow()
{
    TavWindowController &added = addWindow();
    // Later: the window is about to go to the default bookmark by itself.
    QTimer::singleShot(
        0, &added, [&added, path = selectedEntryPath_] { added.goToEntryPath(path, true, true); });
}
