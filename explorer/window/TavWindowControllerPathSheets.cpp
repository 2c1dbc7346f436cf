// The sheets that ask for a path and for a bookmark's name.
#include "explorer/ExplorerBookmarks.h"
#include "explorer/selection/RegistryPathHint.h"
#include "explorer/sheets/EntryPathCompleter.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/FactField.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>

void TavWindowController::promptForPath()
{
    if (!goToPathSheet_)
        loadGoToPathSheet();
    goToPathSheet_->open();
    static_cast<EntryPathCompleter *>(goToPathField_->completer())->refresh();
    goToPathField_->setFocus(Qt::OtherFocusReason);
    goToPathField_->selectAll();
}

void TavWindowController::loadGoToPathSheet()
{
    goToPathSheet_ = loadSheet("PathSheetDialog");
    goToPathField_ = InterfaceLoader::outlet<QLineEdit>(*goToPathSheet_, "goToPathField");
    goToPathCancelButton_ =
        InterfaceLoader::outlet<QPushButton>(*goToPathSheet_, "goToPathCancelButton");
    goToPathGoButton_ = InterfaceLoader::outlet<QPushButton>(*goToPathSheet_, "goToPathGoButton");
    connect(goToPathCancelButton_, &QPushButton::clicked, this,
            &TavWindowController::cancelGoToPath);
    connect(goToPathGoButton_, &QPushButton::clicked, this, &TavWindowController::performGoToPath);
    auto *const completer = new EntryPathCompleter(*goToPathField_, dataStore_);
    auto *const hint = new RegistryPathHint(
        *goToPathField_,
        *InterfaceLoader::outlet<FactField>(*goToPathSheet_, "goToPathMessageField"));
    connect(completer, &EntryPathCompleter::problemRead, hint, &RegistryPathHint::show);
    // The list of what the path may go on as keeps the key from the sheet.
    connect(goToPathField_, &QLineEdit::returnPressed, this, [this] {
        QAbstractItemView &offers = *goToPathField_->completer()->popup();
        if (!offers.isVisible() || offers.currentIndex().isValid())
            return;
        offers.hide();
        performGoToPath();
    });
}

void TavWindowController::cancelGoToPath()
{
    goToPathSheet_->done(0);
}

void TavWindowController::performGoToPath()
{
    goToPathSheet_->done(1);
}

void TavWindowController::goToBookmark(const QAction &item)
{
    goToRegistryPath(item.data().toMap().value(QStringLiteral("Bookmark Path")).toString());
}

void TavWindowController::promptForBookmark()
{
    if (!selectedEntry_) {
        SystemBeep::beep();
        return;
    }
    if (!addBookmarkSheet_)
        loadAddBookmarkSheet();
    addBookmarkNameField_->setText(
        ExplorerBookmarks::proposedName(*selectedEntry_, registryPlane_));
    addBookmarkDefaultCheckbox_->setChecked(false);
    addBookmarkSheet_->open();
    addBookmarkNameField_->setFocus(Qt::OtherFocusReason);
    addBookmarkNameField_->selectAll();
}

void TavWindowController::loadAddBookmarkSheet()
{
    addBookmarkSheet_ = loadSheet("AddBookmarkSheet");
    addBookmarkNameField_ =
        InterfaceLoader::outlet<QLineEdit>(*addBookmarkSheet_, "addBookmarkNameField");
    addBookmarkDefaultCheckbox_ =
        InterfaceLoader::outlet<QCheckBox>(*addBookmarkSheet_, "addBookmarkDefaultCheckbox");
    addBookmarkCancelButton_ =
        InterfaceLoader::outlet<QPushButton>(*addBookmarkSheet_, "addBookmarkCancelButton");
    addBookmarkOKButton_ =
        InterfaceLoader::outlet<QPushButton>(*addBookmarkSheet_, "addBookmarkOKButton");
    connect(addBookmarkCancelButton_, &QPushButton::clicked, this,
            &TavWindowController::cancelAddBookmark);
    connect(addBookmarkOKButton_, &QPushButton::clicked, this,
            &TavWindowController::performAddBookmark);
}

void TavWindowController::cancelAddBookmark()
{
    addBookmarkSheet_->done(0);
}

void TavWindowController::performAddBookmark()
{
    addBookmarkSheet_->done(1);
}

void TavWindowController::addBookmark()
{
    if (ExplorerBookmarks *const bookmarks = ExplorerBookmarks::shared())
        bookmarks->addBookmarkNamed(addBookmarkNameField_->text(), registryPathForSelectedEntry(),
                                    addBookmarkDefaultCheckbox_->isChecked());
    else
        SystemBeep::beep();
}
