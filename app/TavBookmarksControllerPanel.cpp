// SPDX-License-Identifier: Apache-2.0
// The Bookmarks panel.
#include "app/BookmarksTableModel.h"
#include "app/TavBookmarksController.h"
#include "explorer/window/TavWindowController.h"
#include "model/TavRegistryEntry.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/CloseKeys.h"

#include <QDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QTableView>

void TavBookmarksController::toggleBookmarksPanel()
{
    if (!bookmarksPanel_)
        loadPanel();
    if (bookmarksPanel_->isVisible()) {
        bookmarksPanel_->hide();
        return;
    }
    bookmarksPanel_->show();
    bookmarksPanel_->raise();
    bookmarksPanel_->activateWindow();
}

void TavBookmarksController::loadPanel()
{
    bookmarksPanel_.reset(qobject_cast<QDialog *>(
        InterfaceLoader().load(QStringLiteral("BookmarksPanel")).release()));
    CloseKeys::addTo(*bookmarksPanel_, {Qt::CTRL | Qt::SHIFT | Qt::Key_B});
    const auto button = [this](const char *name, auto action) {
        auto *const control = InterfaceLoader::outlet<QPushButton>(*bookmarksPanel_, name);
        connect(control, &QPushButton::clicked, this, action);
        return control;
    };
    button("addBookmarkButton", [this] { newBookmarkFromBookmarksPanel(); });
    deleteBookmarkButton_ = button("deleteBookmarkButton", [this] { deleteBookmark(); });
    setDefaultBookmarkButton_ =
        button("setDefaultBookmarkButton", [this] { defaultBookmarkButtonClicked(); });
    button("clearDefaultBookmarkButton", [this] { clearDefaultBookmarkButtonClicked(); });
    goBookmarkButton_ = button("goBookmarkButton", [this] { goToSelectedBookmark(); });

    tableModel_ = std::make_unique<BookmarksTableModel>(*this);
    bookmarksTable_ = InterfaceLoader::outlet<QTableView>(*bookmarksPanel_, "bookmarksTable");
    bookmarksTable_->setModel(tableModel_.get());
    bookmarksTable_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    bookmarksTable_->installEventFilter(this);
    bookmarksPanel_->installEventFilter(this); // a button may have the focus
    connect(bookmarksTable_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TavBookmarksController::tableViewSelectionDidChange);
    checkForDocuments();
}

bool TavBookmarksController::eventFilter(QObject *, QEvent *event)
{
    return event->type() == QEvent::KeyPress && keyDown(*static_cast<QKeyEvent *>(event));
}

bool TavBookmarksController::keyDown(const QKeyEvent &event)
{
    if ((event.key() != Qt::Key_Delete && event.key() != Qt::Key_Backspace) || selectedRow() < 0)
        return false;
    deleteBookmark();
    return true;
}

void TavBookmarksController::newBookmarkFromBookmarksPanel()
{
    QString name;
    QString path;
    TavWindowController *const window = surroundings_.mainWindow();
    if (const TavRegistryEntry *const entry = window ? window->selectedEntry() : nullptr) {
        const QString &plane = window->registryPlane();
        if (!entry->nameInPlane(plane).isNull()) {
            name = proposedName(*entry, plane);
            path = window->registryPathForSelectedEntry();
        }
    }
    if (name.isNull())
        name = tr("New Bookmark");
    refreshBookmarks();
    const auto bookmark = std::make_shared<Bookmark>(Bookmark::make(name, path));
    bookmarks_->push_back(bookmark);
    sortBookmarks();
    reloadTable();
    selectRow(rowOf(bookmark));
    bookmarksTable_->setFocus();
    bookmarksTable_->edit(tableModel_->index(rowOf(bookmark), 0)); // selects its text
    saveBookmarks();
    rebuildBookmarksMenus();
}

void TavBookmarksController::deleteBookmark()
{
    const BookmarkRef deleted = selectedBookmark();
    if (!deleted)
        return;
    refreshBookmarks();
    const int row = rowOf(deleted);
    if (row < 0) // another copy has deleted it
        return;
    if (deleted == defaultBookmark_) {
        defaultBookmark_.reset();
        PreferencesStore::standard().setValue(PreferenceKeys::defaultBookmark, -1);
    }
    bookmarks_->erase(bookmarks_->begin() + row);
    sortBookmarks(); // already sorted, but the default's index may change
    reloadTable();
    // Deliberate: deleting the first row asks for row -1, which selects nothing.
    selectRow(bookmarks_->empty() ? row : row - 1);
    saveBookmarks();
    rebuildBookmarksMenus();
}

void TavBookmarksController::goToSelectedBookmark()
{
    TavWindowController *const window = surroundings_.mainWindow();
    if (const BookmarkRef selected = selectedBookmark(); window && selected)
        window->goToRegistryPath(selected->path());
}

void TavBookmarksController::defaultBookmarkButtonClicked()
{
    if (const BookmarkRef selected = selectedBookmark())
        setDefaultBookmark(selected, true);
}

void TavBookmarksController::clearDefaultBookmarkButtonClicked()
{
    setDefaultBookmark(nullptr, true);
}

void TavBookmarksController::checkForDocuments()
{
    if (goBookmarkButton_)
        goBookmarkButton_->setEnabled(surroundings_.hasDocuments());
}

void TavBookmarksController::tableViewSelectionDidChange()
{
    const bool isSelected = selectedRow() >= 0;
    deleteBookmarkButton_->setEnabled(isSelected);
    setDefaultBookmarkButton_->setEnabled(isSelected);
}

// The index of the selected row stays the same.
void TavBookmarksController::reloadTable()
{
    if (!tableModel_)
        return;
    const int row = selectedRow();
    tableModel_->reloadData();
    selectRow(row);
}

void TavBookmarksController::reloadBookmarksAfterEdit()
{
    if (!tableModel_)
        return;
    tableModel_->reloadData();
    selectRow(lastEditedBookmark_ ? rowOf(lastEditedBookmark_) : -1);
}

int TavBookmarksController::selectedRow() const
{
    if (!bookmarksTable_)
        return -1;
    const QModelIndexList rows = bookmarksTable_->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

BookmarkRef TavBookmarksController::selectedBookmark() const
{
    const int row = selectedRow();
    return isRow(row) ? (*bookmarks_)[static_cast<std::size_t>(row)] : nullptr;
}

void TavBookmarksController::selectRow(int row)
{
    const QModelIndex index = tableModel_->index(row, 0);
    if (index.isValid())
        bookmarksTable_->setCurrentIndex(index); // also selects it
    else
        bookmarksTable_->clearSelection();
    tableViewSelectionDidChange();
}
