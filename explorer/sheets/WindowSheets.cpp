// SPDX-License-Identifier: Apache-2.0
#include "explorer/sheets/WindowSheets.h"

#include "explorer/ExplorerBookmarks.h"
#include "explorer/selection/EntrySelection.h"
#include "explorer/sheets/BookmarkSheet.h"
#include "explorer/sheets/PathSheet.h"
#include "explorer/sheets/TimedUpdateSheet.h"
#include "platform/host/SystemBeep.h"
#include "store/TavDataStore.h"

#include <QWidget>

WindowSheets::WindowSheets(QWidget &window, std::shared_ptr<TavDataStore> dataStore,
                           EntrySelection &selection)
    : window_(window)
    , dataStore_(std::move(dataStore))
    , selection_(selection)
{}

WindowSheets::~WindowSheets() = default;

template<class LoadedSheet>
LoadedSheet &WindowSheets::add(std::unique_ptr<LoadedSheet> &field,
                               std::unique_ptr<LoadedSheet> sheet)
{
    field = std::move(sheet);
    connect(field.get(), &Sheet::performed, this, &WindowSheets::performed);
    return *field;
}

void WindowSheets::promptForPath()
{
    if (!goToPathSheet_) {
        PathSheet &sheet = add(goToPathSheet_, std::make_unique<PathSheet>(window_, dataStore_));
        connect(&sheet, &PathSheet::pathEntered, &selection_, &EntrySelection::goToRegistryPath);
    }
    goToPathSheet_->open();
}

void WindowSheets::cancelGoToPath()
{
    goToPathSheet_->cancel();
}

void WindowSheets::promptForBookmark()
{
    if (!selection_.entry()) {
        SystemBeep::beep();
        return;
    }
    if (!addBookmarkSheet_) {
        BookmarkSheet &sheet = add(addBookmarkSheet_, std::make_unique<BookmarkSheet>(window_));
        connect(&sheet, &BookmarkSheet::bookmarkNamed, this, &WindowSheets::addBookmark);
    }
    addBookmarkSheet_->open(
        ExplorerBookmarks::proposedName(*selection_.entry(), selection_.registryPlane()));
}

void WindowSheets::addBookmark(const QString &name, bool setAsDefault)
{
    if (ExplorerBookmarks *const bookmarks = ExplorerBookmarks::shared())
        bookmarks->addBookmarkNamed(name, selection_.registryPath(), setAsDefault);
    else
        SystemBeep::beep();
}

void WindowSheets::changeTimedUpdate()
{
    // Deliberate: once the sheet for paths has been loaded, this one is not loaded any more.
    if (!goToPathSheet_) {
        TimedUpdateSheet &sheet =
            add(timedUpdateSheet_, std::make_unique<TimedUpdateSheet>(window_));
        connect(&sheet, &TimedUpdateSheet::pollIntervalEntered, this,
                [this](double seconds) { dataStore_->setPollInterval(seconds); });
    }
    if (!timedUpdateSheet_) {
        SystemBeep::beep();
        return;
    }
    timedUpdateSheet_->open(dataStore_->pollInterval());
}
