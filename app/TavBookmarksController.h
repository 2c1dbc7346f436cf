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

// The bookmarks: kept in the preferences, listed in menus, edited in a panel. One of them may be
// the default, which new windows go to. Every change is saved at once, and what another running
// copy of the program has saved is followed.
class TavBookmarksController : public QObject, public ExplorerBookmarks
{
    Q_OBJECT
public:
    // What the controller asks of the rest of the program.
    struct Surroundings
    {
        std::function<TavWindowController *()> mainWindow; // null without one
        std::function<bool()> hasDocuments;
        std::function<QComboBox *()> defaultBookmarkPopUp; // null until loaded
    };

    static QString pasteboardType() { return QStringLiteral("Vandrel Bookmark"); }

    explicit TavBookmarksController(Surroundings surroundings);
    ~TavBookmarksController() override;
    // The one that exists.
    static TavBookmarksController &sharedInstance();

    const std::vector<BookmarkRef> &bookmarks();
    void readBookmarksIfNeeded();
    void saveBookmarks() const;
    void sortBookmarks();
    QString defaultBookmarkPath() override;
    void addBookmarkNamed(const QString &name, const QString &path, bool setAsDefault) override;
    void setDefaultBookmark(const BookmarkRef &bookmark, bool updateMenu); // null: none
    // A window's menu. Its items go to the bookmarks in that window.
    void addBookmarksMenu(QMenu &menu, TavWindowController &window);
    void rebuildBookmarksMenus();
    void validateMenuItem(QAction &toggleItem) const;

    void toggleBookmarksPanel();
    QDialog *bookmarksPanel() const { return bookmarksPanel_.get(); } // null until shown
    void newBookmarkFromBookmarksPanel();
    void deleteBookmark();
    void goToSelectedBookmark();
    void defaultBookmarkButtonClicked();
    void clearDefaultBookmarkButtonClicked();
    void defaultBookmarkPopUpChanged();
    void checkForDocuments();
    bool keyDown(const QKeyEvent &event); // whether it did something

    // The table's rows.
    int numberOfRowsInTableView();
    QString objectValueForTableColumn(const QString &identifier, int row) const;
    void setObjectValue(const QString &value, const QString &identifier, int row);
    QFont willDisplayCell(int row) const;
    QMimeData *writeRowsWithIndexes(const QModelIndexList &indexes) const; // the caller's, or null
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
    int selectedRow() const; // -1 without one
    BookmarkRef selectedBookmark() const;
    void selectRow(int row); // one that is not there: none
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
    std::optional<std::vector<BookmarkRef>> bookmarks_; // none until first read
    BookmarkRef lastEditedBookmark_;
    BookmarkRef defaultBookmark_;
    QPushButton *deleteBookmarkButton_ = nullptr;
    QPushButton *setDefaultBookmarkButton_ = nullptr;
    QPushButton *goBookmarkButton_ = nullptr;
    QTableView *bookmarksTable_ = nullptr;
    NotificationCenter::Observation observation_;
};
