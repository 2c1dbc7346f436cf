// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <memory>

class BookmarkSheet;
class EntrySelection;
class PathSheet;
class Sheet;
class TavDataStore;
class TimedUpdateSheet;

// The sheets of a window, each loaded when it is first used.
class WindowSheets : public QObject
{
    Q_OBJECT
public:
    // All must outlive this but the window.
    WindowSheets(QWidget &window, std::shared_ptr<TavDataStore> dataStore,
                 EntrySelection &selection);
    ~WindowSheets() override;

    void promptForPath();
    void cancelGoToPath();
    void promptForBookmark();
    void changeTimedUpdate();

Q_SIGNALS:
    void performed(); // what a sheet was for

private:
    template<class LoadedSheet>
    LoadedSheet &add(std::unique_ptr<LoadedSheet> &field, std::unique_ptr<LoadedSheet> sheet);
    void addBookmark(const QString &name, bool setAsDefault);

    QWidget &window_;
    std::shared_ptr<TavDataStore> dataStore_;
    EntrySelection &selection_;
    std::unique_ptr<PathSheet> goToPathSheet_;
    std::unique_ptr<BookmarkSheet> addBookmarkSheet_;
    std::unique_ptr<TimedUpdateSheet> timedUpdateSheet_;
};
