// The Bookmarks panel.
#include "app/BookmarksTableModel.h"
#include "app/TavBookmarksController.h"
#include "explorer/TavWindowController.h"
#include "model/TavRegistryEntry.h"
#include "platform/PreferencesStore.h"
#include "platform/desktop/CloseKeys.h"
#include "platform/desktop/InterfaceLoader.h"

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
    setDefaultBookmarkButton_ = button("setDefaultBookmarkButton", [this] {
        if (const int row = selectedRow(); isRow(row))
            setDefaultBookmark((*bookmarks_)[static_cast<std::size_t>(row)], true);
    });
    button("clearDefaultBookmarkButton", [this] { setDefaultBookmark(nullptr, true); });
    goBookmarkButton_ = button("goBookmarkButton", [this] { goToSelectedBookmark(); });

    tableModel_ = std::make_unique<BookmarksTableModel>(*this);
    bookmarksTable_ = InterfaceLoader::outlet<QTableView>(*bookmarksPanel_, "bookmarksTable");
    bookmarksTable_->setModel(tableModel_.get());
    bookmarksTable_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    bookmarksTable_->installEventFilter(this);
    bookmarksPanel_->installEventFilter(this); // a button may have the keyboard
    connect(bookmarksTable_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TavBookmarksController::tableViewSelectionDidChange);
    checkForDocuments();
}

bool TavBookmarksController::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if ((key != Qt::Key_Delete && key != Qt::Key_Backspace) || selectedRow() < 0)
        return false;
    deleteBookmark();
    return true;
}

void TavBookmarksController::newBookmarkFromBookmarksPanel()
{
    QString name;
    QString path;
    TavWindowController *const window = surroundings_.mainWindow();
    if (TavRegistryEntry *const entry = window ? window->selectedEntry() : nullptr) {
        const QString &plane = window->registryPlane();
        const QString entryName = entry->nameInPlane(plane);
        if (!entryName.isNull()) {
            name = tr("%1 (%2)").arg(entryName, plane);
            path = window->registryPathForSelectedEntry();
        }
    }
    if (name.isNull())
        name = tr("New Bookmark");
    const auto bookmark = std::make_shared<Bookmark>(Bookmark::make(name, path));
    bookmarks_->push_back(bookmark);
    sortBookmarks();
    reloadTable();
    selectRow(rowOf(bookmark));
    bookmarksTable_->setFocus();
    bookmarksTable_->edit(tableModel_->index(rowOf(bookmark), 0)); // with its text selected
    saveBookmarks();
    rebuildBookmarksMenus();
}

void TavBookmarksController::deleteBookmark()
{
    const int row = selectedRow();
    if (!isRow(row))
        return;
    const auto deleted = bookmarks_->begin() + row;
    if (*deleted == defaultBookmark_) {
        defaultBookmark_.reset();
        PreferencesStore::standard().setValue(QStringLiteral("DefaultBookmarkIndex"), -1);
    }
    bookmarks_->erase(deleted);
    sortBookmarks(); // they are, but the default may have another place
    reloadTable();
    // For the first row this asks for the one before it, and selects none.
    selectRow(bookmarks_->empty() ? row : row - 1);
    saveBookmarks();
    rebuildBookmarksMenus();
}

void TavBookmarksController::goToSelectedBookmark()
{
    TavWindowController *const window = surroundings_.mainWindow();
    if (const int row = selectedRow(); window && isRow(row))
        window->goToRegistryPath((*bookmarks_)[static_cast<std::size_t>(row)]->path());
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

// The number of the selected row stays the same.
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

void TavBookmarksController::selectRow(int row)
{
    const QModelIndex index = tableModel_->index(row, 0);
    if (index.isValid())
        bookmarksTable_->setCurrentIndex(index); // and selects it
    else
        bookmarksTable_->clearSelection();
    tableViewSelectionDidChange();
}
