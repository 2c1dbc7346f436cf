#include "app/TavBookmarksController.h"

#include "app/BookmarksTableModel.h"
#include "app/PopUpItem.h"
#include "explorer/TavWindowController.h"
#include "platform/PreferencesStore.h"
#include "platform/desktop/MenuText.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QJsonDocument>
#include <QMenu>
#include <QMimeData>

namespace {
const QString bookmarksKey = QStringLiteral("Bookmarks");
const QString defaultIndexKey = QStringLiteral("DefaultBookmarkIndex");

TavBookmarksController *instance = nullptr;

bool isMarker(const QAction &item)
{
    return item.property("tag").toInt() == PopUpItem::markerTag;
}
} // namespace

QJsonObject TavBookmarksController::defaultsToRegister()
{
    return {{defaultIndexKey, -1}};
}

TavBookmarksController::TavBookmarksController(Surroundings surroundings)
    : surroundings_(std::move(surroundings))
{
    Q_ASSERT(!instance);
    instance = this;
    ExplorerBookmarks::setShared(this);
}

TavBookmarksController::~TavBookmarksController()
{
    ExplorerBookmarks::setShared(nullptr);
    instance = nullptr;
}

TavBookmarksController &TavBookmarksController::sharedInstance()
{
    Q_ASSERT(instance);
    return *instance;
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
    const PreferencesStore &preferences = PreferencesStore::standard();
    defaultBookmark_.reset();
    bookmarks_.emplace();
    for (const auto &value : preferences.list(bookmarksKey)) {
        if (value.isObject())
            bookmarks_->push_back(std::make_shared<Bookmark>(Bookmark{value.toObject()}));
    }
    const qint64 index = preferences.integer(defaultIndexKey);
    if (index >= 0 && index < static_cast<qint64>(bookmarks_->size()))
        defaultBookmark_ = (*bookmarks_)[static_cast<std::size_t>(index)];
    sortBookmarks();
}

void TavBookmarksController::sortBookmarks()
{
    std::stable_sort(bookmarks_->begin(), bookmarks_->end(),
                     [](const auto &a, const auto &b) { return compareAsBookmarks(*a, *b) < 0; });
    if (defaultBookmark_)
        PreferencesStore::standard().setValue(defaultIndexKey, rowOf(defaultBookmark_));
}

void TavBookmarksController::saveBookmarks() const
{
    QJsonArray list;
    for (const BookmarkRef &bookmark : *bookmarks_)
        list.append(bookmark->record);
    PreferencesStore::standard().setValue(bookmarksKey, list);
}

QString TavBookmarksController::defaultBookmarkPath()
{
    readBookmarksIfNeeded();
    return defaultBookmark_ ? defaultBookmark_->path() : QString();
}

void TavBookmarksController::addBookmarkNamed(const QString &name, const QString &path,
                                              bool setAsDefault)
{
    readBookmarksIfNeeded();
    const auto bookmark = std::make_shared<Bookmark>(Bookmark::make(name, path));
    bookmarks_->insert(bookmarks_->begin() + std::max(selectedRow(), 0), bookmark);
    sortBookmarks();
    if (setAsDefault)
        setDefaultBookmark(bookmark, true);
    saveBookmarks();
    reloadTable();
    rebuildBookmarksMenus();
}

void TavBookmarksController::setDefaultBookmark(const BookmarkRef &bookmark, bool updateMenu)
{
    readBookmarksIfNeeded();
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
    PreferencesStore::standard().setValue(defaultIndexKey, index);
    reloadTable();
    if (updateMenu)
        rebuildBookmarksMenus();
}

void TavBookmarksController::addBookmarksMenu(QMenu &menu, TavWindowController &window)
{
    bookmarksMenus_.push_back({&menu, &window});
    for (QAction *item : menu.actions()) {
        if (isMarker(*item))
            item->setSeparator(true); // which an interface file cannot say
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
        connect(item, &QAction::triggered, &window,
                [&window, bookmark] { window.goToRegistryPath(bookmark->path()); });
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
    lastEditedBookmark_ = (*bookmarks_)[static_cast<std::size_t>(row)];
    lastEditedBookmark_->record.insert(identifier, value);
    if (identifier == Bookmark::nameKey()) {
        sortBookmarks();
        // Later, for the table is still ending the edit.
        QMetaObject::invokeMethod(
            this, [this] { reloadBookmarksAfterEdit(); }, Qt::QueuedConnection);
    }
    saveBookmarks();
    rebuildBookmarksMenus();
}

bool TavBookmarksController::isDefaultBookmark(int row) const
{
    return isRow(row) && (*bookmarks_)[static_cast<std::size_t>(row)] == defaultBookmark_;
}

QMimeData *TavBookmarksController::pasteboardForRow(int row) const
{
    if (!isRow(row))
        return nullptr;
    const Bookmark &bookmark = *(*bookmarks_)[static_cast<std::size_t>(row)];
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
