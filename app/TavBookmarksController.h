// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/Bookmark.h"
#include "explorer/ExplorerBookmarks.h"
#include "platform/runloop/NotificationCenter.h"

#include <QModelIndex>
#include <QObject>
#include <QPointer>
#include <optional>
#include <vector>

class BookmarksTableModel;
class QAction;
class QComboBox;
class QDialog;
class QKeyEvent;
class QMenu;
class QMimeData;
class QPushButton;
class QTableView;
class TavWindowController;

// The bookmarks: stored in the preferences, listed in menus, edited in a panel. One may be the
// default, which new windows go to. Every change is saved immediately, and changes saved by another
// running copy are merged.
class TavBookmarksController : public QObject, public ExplorerBookmarks
{
    Q_OBJECT
public:
    // What the controller needs from the rest of the program.
    struct Surroundings
    {
        std::function<TavWindowController *()> mainWindow; // null: none
        std::function<bool()> hasDocuments;
        std::function<QComboBox *()> defaultBookmarkPopUp; // null until loaded
    };

    static QString pasteboardType() { return QStringLiteral("Vandrel Bookmark"); }

    explicit TavBookmarksController(Surroundings surroundings);
    ~TavBookmarksController() override;
    // The existing instance.
    static TavBookmarksController &sharedInstance();

    const std::vector<BookmarkRef> &bookmarks();
    void readBookmarksIfNeeded();
    void saveBookmarks() const;
    void sortBookmarks();
    QString defaultBookmarkPath() override;
    void addBookmarkNamed(const QString &name, const QString &path, bool setAsDefault) override;
    void setDefaultBookmark(const BookmarkRef &bookmark, bool updateMenu); // null: none
    // Adds a window's menu, whose items go to the bookmarks in that window.
    void addBookmarksMenu(QMenu &menu, TavWindowController &window);
    void rebuildBookmarksMenus();
    void validateMenuItem(QAction &toggleItem) const;

    void toggleBookmarksPanel();
    QDialog *bookmarksPanel() const { return bookmarksPanel_.get(); } // null until first shown
    void newBookmarkFromBookmarksPanel();
    void deleteBookmark();
    void goToSelectedBookmark();
    void defaultBookmarkButtonClicked();
    void clearDefaultBookmarkButtonClicked();
    void defaultBookmarkPopUpChanged();
    void checkForDocuments();
    bool keyDown(const QKeyEvent &event); // whether the key was used

    // The table's rows.
    int numberOfRowsInTableView();
    QString objectValueForTableColumn(const QString &identifier, int row) const;
    void setObjectValue(const QString &value, const QString &identifier, int row);
    QFont willDisplayCell(int row) const;
    QMimeData *
    writeRowsWithIndexes(const QModelIndexList &indexes) const; // owned by the caller; may be null
    void tableViewSelectionDidChange();
    void reloadBookmarksAfterEdit();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refreshBookmarks();
    bool adoptStoredBookmarks();
    bool isAsStored() const;
    QJsonArray records() const;
    std::vector<BookmarkRef> storedBookmarks() const;
    void rebuildBookmarksMenu(QMenu &menu, TavWindowController &window);
    void rebuildDefaultBookmarkPopUp();

    void loadPanel();
    void reloadTable();
    int selectedRow() const; // -1: none
    BookmarkRef selectedBookmark() const;
    void selectRow(int row); // an invalid row selects none
    int rowOf(const BookmarkRef &bookmark) const;
    bool isRow(int row) const;

    struct WindowMenu
    {
        QPointer<QMenu> menu;
        TavWindowController *window;
    };

    Surroundings surroundings_;
    std::vector<WindowMenu> bookmarksMenus_;
    std::unique_ptr<BookmarksTableModel> tableModel_;
    std::unique_ptr<QDialog> bookmarksPanel_;
    std::optional<std::vector<BookmarkRef>> bookmarks_; // empty until first read
    BookmarkRef lastEditedBookmark_;
    BookmarkRef defaultBookmark_;
    QPushButton *deleteBookmarkButton_ = nullptr;
    QPushButton *setDefaultBookmarkButton_ = nullptr;
    QPushButton *goBookmarkButton_ = nullptr;
    QTableView *bookmarksTable_ = nullptr;
    NotificationCenter::Observation observation_;
};
