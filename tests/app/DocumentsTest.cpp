#include "ApplicationFixture.h"
#include "platform/PreferencesStore.h"
#include "platform/RunLoop.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "tests/support/EventLoop.h"
#include "tests/support/SmallStore.h"

#include <QAction>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QUrl>
#include <sys/stat.h>
#include <unistd.h>

namespace {
class DocumentsTest : public ApplicationFixture
{
protected:
    QString host() const { return document().dataStore()->hostName(); }
    QString numbered(int number) const
    {
        return QStringLiteral("%1 (%2)").arg(host(), QString::number(number));
    }
    void save(const QString &file)
    {
        DocumentError error;
        ASSERT_TRUE(document().save(file, error)) << qPrintable(error.reason);
    }
    // A saved live document whose registry has been read anew since.
    void edit(const QString &file)
    {
        launch();
        save(file);
        document().dataStore()->update();
        ASSERT_TRUE(document().isDocumentEdited());
    }
};
} // namespace

TEST_F(DocumentsTest, NumbersLiveDocuments)
{
    launch();
    EXPECT_EQ(titles(), QStringList(host()));
    trigger("newDocumentAction");
    EXPECT_EQ(titles(), QStringList({numbered(1), numbered(2)}));
    window(0).window()->close();
    turnEventLoop();
    EXPECT_EQ(titles(), QStringList(host()));
    EXPECT_EQ(document().index(), 1U);
    trigger("newDocumentAction");
    window(1).window()->close();
    turnEventLoop();
    EXPECT_EQ(titles(), QStringList(host()));
    // A second window shows the same document.
    trigger("newDocumentWindowAction");
    EXPECT_EQ(titles(), QStringList({host(), host()}));
    window(0, 0).window()->close();
    turnEventLoop();
    EXPECT_EQ(titles(), QStringList(host()));
}

TEST_F(DocumentsTest, SavesAndOpens)
{
    launch();
    trigger("saveDocumentAction");
    chooseFile(path("desk"));
    const QString file = path("desk.vandrel");
    EXPECT_EQ(document().fileName(), file);
    EXPECT_EQ(titles(), QStringList(QStringLiteral("desk.vandrel (%1)").arg(host())));
    trigger("saveDocumentAsAction");
    chooseFile(path("other.vandrel"));
    EXPECT_EQ(document().fileName(), path("other.vandrel"));

    trigger("openDocumentAction");
    chooseFile(file);
    ASSERT_EQ(documentCount(), 2U);
    EXPECT_FALSE(document(1).dataStore()->isLive());
    EXPECT_EQ(document(1).dataStore()->registryEntries().size(),
              document(0).dataStore()->registryEntries().size());
    EXPECT_TRUE(titles().contains(QStringLiteral("desk.vandrel")));
    // One that is open is shown instead of opened again, and its file is not another's to save in.
    delegate_->documentCommands().openFiles({file}, nullptr);
    EXPECT_EQ(documentCount(), 2U);
    trigger("saveDocumentAsAction");
    chooseFile(file);
    EXPECT_THAT(alertText().toStdString(), testing::HasSubstr("open in another window"));
    answer("OK");
    EXPECT_EQ(document(0).fileName(), path("other.vandrel"));

    const QList<QAction *> recent =
        outlet<QMenu>(window().window(), "recentDocumentsMenu")->actions();
    EXPECT_EQ(recent.at(0)->toolTip(), file);
    EXPECT_EQ(recent.at(1)->toolTip(), path("other.vandrel"));
    window(1).window()->close();
    turnEventLoop();
    recent.at(0)->trigger();
    turnEventLoop();
    EXPECT_EQ(documentCount(), 2U);
}

TEST_F(DocumentsTest, OpensWhatIsDropped)
{
    launch();
    save(path("desk.vandrel"));
    quit();
    launch();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path("desk.vandrel"))});
    const auto drop = [&](auto event) {
        QCoreApplication::sendEvent(window().window(), &event);
        return event.isAccepted();
    };
    EXPECT_TRUE(drop(QDragEnterEvent({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {})));
    EXPECT_TRUE(drop(QDropEvent({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {})));
    turnEventLoop();
    EXPECT_EQ(documentCount(), 2U);
    data.setUrls({QUrl(QStringLiteral("https://example.org/desk.vandrel"))});
    EXPECT_FALSE(drop(QDragEnterEvent({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {})));
}

TEST_F(DocumentsTest, AsksBeforeChangesAreLost)
{
    const QString file = path("desk.vandrel");
    edit(file);
    EXPECT_TRUE(window().window()->isWindowModified());
    const QByteArray former = contentOf(file);

    window().window()->close();
    answer("Cancel");
    EXPECT_TRUE(window().window()->isVisible());
    window().window()->close();
    answer("Save");
    EXPECT_EQ(documentCount(), 0U);
    EXPECT_NE(contentOf(file), former);
    quit();

    edit(file);
    const QByteArray saved = contentOf(file);
    trigger("newDocumentAction");
    QSignalSpy ready(&delegate_->documentCommands(), &DocumentCommands::readyToTerminate);
    trigger("quitAction");
    answer("Cancel");
    EXPECT_EQ(documentCount(), 2U);
    trigger("quitAction");
    answer("Don’t Save");
    EXPECT_EQ(documentCount(), 0U);
    EXPECT_EQ(ready.count(), 1);
    EXPECT_EQ(contentOf(file), saved);
}

TEST_F(DocumentsTest, ChangesNoDocumentsWhileTheRegistryIsWaitedFor)
{
    launch();
    const std::vector<const char *> commands{"newDocumentAction", "quitAction"};
    std::size_t count = documentCount();
    for (const char *command : commands) {
        int turns = 0;
        RunLoop::main().wait([&](auto) {
            if (turns == 0)
                outlet<QAction>(window().window(), command)->trigger();
            turnEventLoop();
            EXPECT_EQ(documentCount(), count) << command;
            return ++turns == 2;
        });
        ASSERT_TRUE(waitFor([&] { return documentCount() != count; })) << command;
        count = documentCount();
    }
    EXPECT_EQ(count, 0U);
}

TEST_F(DocumentsTest, KeepsTheFormerFileWhenSavingFails)
{
    launch();
    save(path("desk.vandrel"));
    document().dataStore()->update();
    ASSERT_EQ(mkdir(qPrintable(path("folder")), 0755), 0);
    DocumentError error;
    EXPECT_FALSE(document().save(path("folder"), error));
    EXPECT_FALSE(document().save(path("nowhere/desk.vandrel"), error));
    EXPECT_THAT(error.description.toStdString(), testing::HasSubstr("could not be saved"));
    EXPECT_FALSE(error.reason.isEmpty());
    EXPECT_TRUE(document().isDocumentEdited());
    EXPECT_EQ(document().fileName(), path("desk.vandrel"));
    EXPECT_FALSE(contentOf(path("desk.vandrel")).isEmpty());
}

TEST_F(DocumentsTest, TellsWhatCannotBeOpened)
{
    write(path("empty"), {});
    write(path("text"), "{\"Vandrel\": true}");
    write(path("damaged"), SmallStore::current().bytes().chopped(9));
    ArchiveSketch newer = SmallStore::current();
    newer.objects[SmallStore::Store].set(QLatin1String("dataStoreVersion"), qint64(3));
    write(path("newer"), newer.bytes());
    ArchiveSketch older = SmallStore::current();
    older.objects[SmallStore::Store].remove(QLatin1String("dataStoreVersion"));
    write(path("older"), older.bytes());
    write(path("unreadable"), SmallStore::current().bytes());
    ASSERT_EQ(chmod(qPrintable(path("unreadable")), 0), 0);
    QFile zeros(path("zeros"));
    ASSERT_TRUE(zeros.open(QIODevice::WriteOnly));
    ASSERT_TRUE(zeros.resize(qint64(2) << 30));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0644), 0);

    struct Case
    {
        const char *file;
        const char *words;
    };
    std::vector<Case> cases{
        {"empty", "cannot read this document"},
        {"text", "cannot read this document"},
        {"damaged", "cannot read this document"},
        {"zeros", "cannot read this document"},
        {"newer", "needs a newer version"},
        {"older", "too old"},
        {"vanished", "no such file"},
        {".", "is a folder"},
        {"pipe", "not a regular file"},
    };
    if (geteuid() != 0) // who may read everything
        cases.push_back({"unreadable", "Permission denied"});
    launch();
    for (const auto &[file, words] : cases) {
        QElapsedTimer time;
        time.start();
        delegate_->documentCommands().openFiles({path(file)}, window().window());
        EXPECT_LT(time.elapsed(), 1000) << file;
        EXPECT_THAT(alertText().toStdString(), testing::HasSubstr(words)) << file;
        EXPECT_THAT(alertText().toStdString(), testing::HasSubstr(file)) << file;
        answer("OK");
        EXPECT_EQ(alert(), nullptr) << file;
        EXPECT_EQ(titles(), QStringList(host())) << file;
    }
    EXPECT_FALSE(outlet<QMenu>(window().window(), "recentDocumentsMenu")->isEnabled());
    quit();

    // On the command line a document that is none leaves a new one; what can be opened is.
    write(path("good"), SmallStore::current().bytes());
    launch({path("empty"), path("vanished")});
    EXPECT_THAT(alertText().toStdString(), testing::HasSubstr("Some documents"));
    answer("OK");
    EXPECT_TRUE(document().dataStore()->isLive());
    quit();
    launch({path("empty"), path("good")});
    answer("OK");
    EXPECT_EQ(titles(), QStringList(QStringLiteral("good")));
}

TEST_F(DocumentsTest, TellsOnceThatThereIsNoRegistry)
{
    hasRegistry_ = false;
    launch();
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->windowTitle(), QStringLiteral("DxRegistry Error"));
    EXPECT_EQ(alert()->text(),
              QStringLiteral("Could not access the DxRegistry. No data can be read.Other "
                             "documents may also fail to read data."));
    answer("Continue");
    trigger("newDocumentAction");
    document(0).dataStore()->update();
    document(1).dataStore()->update();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(documentCount(), 2U);
    quit();

    launch();
    QSignalSpy ready(&delegate_->documentCommands(), &DocumentCommands::readyToTerminate);
    answer("Quit");
    EXPECT_EQ(ready.count(), 1);
    EXPECT_EQ(documentCount(), 0U);
}

// The life of a user's settings and documents over several runs.
TEST_F(DocumentsTest, Journey)
{
    launch();
    EXPECT_EQ(window().registryPlane(), QStringLiteral("DxService"));
    EXPECT_FALSE(window().browserIsVisible());
    EXPECT_TRUE(document().dataStore()->isAutoupdate());
    window().goToRegistryPath(QStringLiteral("DxService:/bus/disk@1"));
    delegate_->bookmarksController().addBookmarkNamed(
        QStringLiteral("Second disk"), window().registryPathForSelectedEntry(), true);
    trigger("saveDocumentAction");
    chooseFile(path("desk.vandrel"));
    trigger("quitAction");
    EXPECT_EQ(documentCount(), 0U);
    quit();

    launch({path("desk.vandrel")});
    trigger("newDocumentAction");
    EXPECT_EQ(titles(), QStringList({QStringLiteral("desk.vandrel"), host()}));
    EXPECT_EQ(document(1).index(), 1U);
    for (std::size_t i : {0U, 1U})
        EXPECT_EQ(window(i).registryPathForSelectedEntry(),
                  QStringLiteral("DxService:/bus/disk@1"));
    EXPECT_EQ(outlet<QMenu>(window(1).window(), "recentDocumentsMenu")->actions().at(0)->toolTip(),
              path("desk.vandrel"));
    quit();

    write(preferencesFile(), "{ \"Bookmarks\": [");
    PreferencesStore::setFolder(path("settings"));
    launch();
    EXPECT_THAT(alertText().toStdString(), testing::HasSubstr("damaged"));
    EXPECT_EQ(contentOf(preferencesFile() + QStringLiteral(".damaged-1")), "{ \"Bookmarks\": [");
    EXPECT_EQ(window().registryPathForSelectedEntry(),
              window()
                  .document()
                  .dataStore()
                  ->registryRoot()
                  ->entryPathInPlane(QStringLiteral("DxService"), 0)
                  ->registryPath());
    EXPECT_EQ(outlet<QMenu>(window().window(), "recentDocumentsMenu")->actions().at(0)->toolTip(),
              path("desk.vandrel"));
}
