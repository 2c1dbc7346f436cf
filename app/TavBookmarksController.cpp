// SPDX-License-Identifier: Apache-2.0
#include "app/TavBookmarksController.h"

#include "app/BookmarksTableModel.h"
#include "app/PopUpItem.h"
#include "explorer/window/TavWindowController.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/MenuText.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QFontDatabase>
#include <QJsonDocument>
#include <QMenu>
#include <QMimeData>

namespace {
constexpr double smallSize = 0.9; // relative to the general font
TavBookmarksController *bookmarksInstance = nullptr;

bool isBefore(const BookmarkRef &a, const BookmarkRef &b)
{
    return compareAsBookmarks(*a, *b) < 0;
}

// Removes and returns the first match; null without one.
BookmarkRef take(std::vector<BookmarkRef> &bookmarks, const auto &matches)
{
    const auto found =
        std::find_if(bookmarks.begin(), bookmarks.end(),
                     [&](const BookmarkRef &bookmark) { return matches(*bookmark); });
    if (found == bookmarks.end())
        return nullptr;
    BookmarkRef taken = *found;
    bookmarks.erase(found);
    return taken;
}

bool isMarker(const QAction &item)
{
    return item.property("tag").toInt() == PopUpItem::markerTag;
}
} // namespace

TavBookmarksController::TavBookmarksController(Surroundings surroundings)
    : surroundings_(std::move(surroundings))
{
    Q_ASSERT(!bookmarksInstance);
    bookmarksInstance = this;
    ExplorerBookmarks::setShared(this);
    observation_ = NotificationCenter::defaultCenter().observe(
        PreferencesStore::didMergeNotification(), &PreferencesStore::standard(),
        [this](const auto &) {
            if (bookmarks_ && adoptStoredBookmarks())
                rebuildBookmarksMenus();
        });
}

TavBookmarksController::~TavBookmarksController()
{
    ExplorerBookmarks::setShared(nullptr);
    bookmarksInstance = nullptr;
}

TavBookmarksController &TavBookmarksController::sharedInstance()
{
    Q_ASSERT(bookmarksInstance);
    return *bookmarksInstance;
}

const std::vector<BookmarkRef> &TavBookmarksController::bookmarks()
{
    readBookmarksIfNeeded();
    return *bookmarks_;
}

void TavBookmarksController::readBookmarksIfNeeded()
{
    if (bookmarks_)
        return;
    bookmarks_.emplace();
    adoptStoredBookmarks();
}

// Call this before a change, to merge what another copy has saved.
void TavBookmarksController::refreshBookmarks()
{
    PreferencesStore::standard().refresh();
    readBookmarksIfNeeded();
    adoptStoredBookmarks();
}

// False if they have not changed.
bool TavBookmarksController::adoptStoredBookmarks()
{
    if (isAsStored())
        return false;
    std::vector<BookmarkRef> stored = storedBookmarks();
    const qint64 index = PreferencesStore::standard().integer(PreferenceKeys::defaultBookmark);
    const bool hasDefault = index >= 0 && index < static_cast<qint64>(stored.size());
    defaultBookmark_ = hasDefault ? stored[static_cast<std::size_t>(index)] : nullptr;
    const bool isInOrder = std::is_sorted(stored.begin(), stored.end(), isBefore);
    std::stable_sort(stored.begin(), stored.end(), isBefore);
    if (tableModel_)
        tableModel_->changeRows(*bookmarks_, stored);
    else
        *bookmarks_ = std::move(stored);
    if (!isInOrder) { // else the default's index would refer to the old order
        sortBookmarks();
        saveBookmarks();
    }
    return true;
}

bool TavBookmarksController::isAsStored() const
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    return preferences.list(PreferenceKeys::bookmarks) == records() &&
           preferences.integer(PreferenceKeys::defaultBookmark) == rowOf(defaultBookmark_);
}

// A known bookmark keeps its object even when another copy renamed or moved it, because rows, menus
// and an edit refer to it.
std::vector<BookmarkRef> TavBookmarksController::storedBookmarks() const
{
    std::vector<BookmarkRef> known = *bookmarks_;
    std::vector<Bookmark> records;
    for (const auto &value : PreferencesStore::standard().list(PreferenceKeys::bookmarks)) {
        if (value.isObject())
            records.push_back({value.toObject()});
    }
    std::vector<BookmarkRef> bookmarks;
    bookmarks.reserve(records.size());
    for (const Bookmark &stored : records)
        bookmarks.push_back(take(
            known, [&](const Bookmark &bookmark) { return bookmark.record == stored.record; }));
    for (std::size_t i = 0; i < bookmarks.size(); ++i) {
        if (bookmarks[i])
            continue;
        bookmarks[i] = take(known, [&](const Bookmark &bookmark) {
            return bookmark.name() == records[i].name() || bookmark.path() == records[i].path();
        });
        if (bookmarks[i])
            *bookmarks[i] = records[i];
        else
            bookmarks[i] = std::make_shared<Bookmark>(records[i]);
    }
    return bookmarks;
}

void TavBookmarksController::sortBookmarks()
{
    std::stable_sort(bookmarks_->begin(), bookmarks_->end(), isBefore);
    if (defaultBookmark_)
        PreferencesStore::standard().setValue(PreferenceKeys::defaultBookmark,
                                              rowOf(defaultBookmark_));
}

void TavBookmarksController::saveBookmarks() const
{
    PreferencesStore::standard().setValue(PreferenceKeys::bookmarks, records());
}

QJsonArray TavBookmarksController::records() const
{
    QJsonArray records;
    for (const BookmarkRef &bookmark : *bookmarks_)
        records.append(bookmark->record);
    return records;
}

QString TavBookmarksController::defaultBookmarkPath()
{
    readBookmarksIfNeeded();
    return defaultBookmark_ ? defaultBookmark_->path() : QString();
}

void TavBookmarksController::addBookmarkNamed(const QString &name, const QString &path,
                                              bool setAsDefault)
{
    refreshBookmarks();
    const BookmarkRef selected = selectedBookmark();
    const auto bookmark = std::make_shared<Bookmark>(Bookmark::make(name, path));
    bookmarks_->insert(bookmarks_->begin() + std::max(selectedRow(), 0), bookmark);
    sortBookmarks();
    saveBookmarks();
    if (setAsDefault)
        setDefaultBookmark(bookmark, true);
    reloadTable();
    if (selected)
        selectRow(rowOf(selected));
    rebuildBookmarksMenus();
}

void TavBookmarksController::setDefaultBookmark(const BookmarkRef &bookmark, bool updateMenu)
{
    refreshBookmarks();
    defaultBookmark_ = bookmark;
    int index = -1;
    if (bookmark) {
        const auto equal =
            std::find_if(bookmarks_->begin(), bookmarks_->end(), [&](const BookmarkRef &other) {
                return other->record == bookmark->record;
            });
        if (equal != bookmarks_->end())
            index = static_cast<int>(equal - bookmarks_->begin());
    }
    PreferencesStore::standard().setValue(PreferenceKeys::defaultBookmark, index);
    reloadTable();
    if (updateMenu)
        rebuildBookmarksMenus();
}

void TavBookmarksController::addBookmarksMenu(QMenu &menu, TavWindowController &window)
{
    bookmarksMenus_.push_back({&menu, &window});
    for (QAction *item : menu.actions()) {
        if (isMarker(*item))
            item->setSeparator(true); // which an interface file cannot set
        else if (item->objectName() == QLatin1String("toggleBookmarksPanelAction"))
            connect(&menu, &QMenu::aboutToShow, this, [this, item] { validateMenuItem(*item); });
    }
    rebuildBookmarksMenu(menu, window);
}

void TavBookmarksController::validateMenuItem(QAction &toggleItem) const
{
    const bool isShown = bookmarksPanel_ && bookmarksPanel_->isVisible();
    toggleItem.setText(isShown ? tr("Hide All &Bookmarks") : tr("Show All &Bookmarks"));
}

void TavBookmarksController::rebuildBookmarksMenus()
{
    readBookmarksIfNeeded();
    std::erase_if(bookmarksMenus_, [](const WindowMenu &entry) { return !entry.menu; });
    for (const WindowMenu &entry : bookmarksMenus_)
        rebuildBookmarksMenu(*entry.menu, *entry.window);
    rebuildDefaultBookmarkPopUp();
}

void TavBookmarksController::rebuildBookmarksMenu(QMenu &menu, TavWindowController &window)
{
    const auto items = menu.actions();
    const auto marker = std::find_if(items.begin(), items.end(),
                                     [](const QAction *item) { return isMarker(*item); });
    if (marker != items.end())
        qDeleteAll(marker + 1, items.end());
    for (const BookmarkRef &bookmark : bookmarks()) {
        QAction *const item = menu.addAction(menuText(bookmark->name()));
        item->setData(bookmark->record.toVariantMap());
        connect(item, &QAction::triggered, &window,
                [&window, item] { window.goToBookmark(*item); });
    }
}

void TavBookmarksController::rebuildDefaultBookmarkPopUp()
{
    QComboBox *const popUp = surroundings_.defaultBookmarkPopUp();
    if (!popUp)
        return;
    PopUpItem::removeItemsAfterMarker(*popUp);
    int selected = 0;
    for (const BookmarkRef &bookmark : *bookmarks_) {
        popUp->addItem(bookmark->name(), QVariant::fromValue(bookmark));
        if (bookmark == defaultBookmark_)
            selected = popUp->count() - 1;
    }
    popUp->setCurrentIndex(selected);
}

void TavBookmarksController::defaultBookmarkPopUpChanged()
{
    const QComboBox &popUp = *surroundings_.defaultBookmarkPopUp();
    setDefaultBookmark(popUp.currentData().value<BookmarkRef>(), false);
}

int TavBookmarksController::numberOfRowsInTableView()
{
    return static_cast<int>(bookmarks().size());
}

QString TavBookmarksController::objectValueForTableColumn(const QString &identifier, int row) const
{
    return isRow(row)
               ? (*bookmarks_)[static_cast<std::size_t>(row)]->record.value(identifier).toString()
               : QString();
}

void TavBookmarksController::setObjectValue(const QString &value, const QString &identifier,
                                            int row)
{
    if (!isRow(row) || objectValueForTableColumn(identifier, row) == value)
        return;
    const BookmarkRef edited = (*bookmarks_)[static_cast<std::size_t>(row)];
    refreshBookmarks();
    if (rowOf(edited) < 0) // another copy has deleted it
        return;
    lastEditedBookmark_ = edited;
    lastEditedBookmark_->record.insert(identifier, value);
    if (identifier == Bookmark::nameKey()) {
        sortBookmarks();
        // Deferred: the table is still ending the edit.
        QMetaObject::invokeMethod(
            this, [this] { reloadBookmarksAfterEdit(); }, Qt::QueuedConnection);
    }
    saveBookmarks();
    rebuildBookmarksMenus();
}

QFont TavBookmarksController::willDisplayCell(int row) const
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(font.pointSizeF() * smallSize);
    font.setBold(isRow(row) && (*bookmarks_)[static_cast<std::size_t>(row)] == defaultBookmark_);
    return font;
}

QMimeData *TavBookmarksController::writeRowsWithIndexes(const QModelIndexList &indexes) const
{
    if (indexes.isEmpty() || !isRow(indexes.first().row()))
        return nullptr;
    const Bookmark &bookmark = *(*bookmarks_)[static_cast<std::size_t>(indexes.first().row())];
    auto *const data = new QMimeData;
    data->setText(bookmark.path());
    data->setData(pasteboardType(), QJsonDocument(bookmark.record).toJson(QJsonDocument::Compact));
    return data;
}

bool TavBookmarksController::isRow(int row) const
{
    return bookmarks_ && row >= 0 && row < static_cast<int>(bookmarks_->size());
}

int TavBookmarksController::rowOf(const BookmarkRef &bookmark) const
{
    const auto found = std::find(bookmarks_->begin(), bookmarks_->end(), bookmark);
    return found != bookmarks_->end() ? static_cast<int>(found - bookmarks_->begin()) : -1;
}
