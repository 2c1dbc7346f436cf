// SPDX-License-Identifier: Apache-2.0
#include "ApplicationFixture.h"
#include "app/SessionEnd.h"
#include "platform/documents/RecentDocuments.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/RunLoop.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "tests/support/EventLoop.h"
#include "tests/support/ScriptedWait.h"
#include "tests/support/SmallStore.h"

#include <QAction>
#include <QCheckBox>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <sys/stat.h>
#include <unistd.h>

namespace {
class DocumentsTest : public ApplicationFixture
{
protected:
    QString host() const { return document().dataStore()->hostName(); }
    void save(const char *name)
    {
        DocumentError error;
        ASSERT_TRUE(document().save(path(name), error)) << qPrintable(error.reason);
    }
    // A saved live document whose registry has been reread since.
    void edit(const char *name)
    {
        launch();
        save(name);
        document().dataStore()->update();
        ASSERT_TRUE(document().isDocumentEdited());
    }
    QString proposedFile() const
    {
        return window().window()->findChild<QFileDialog *>()->selectedFiles().value(0);
    }
    QList<QAction *> recentItems() const
    {
        return outlet<QMenu>(window().window(), "recentDocumentsMenu")->actions();
    }
    void expectAlert(const char *words) const
    {
        EXPECT_THAT(alertText(), testing::HasSubstr(words));
    }
};
} // namespace

TEST_F(DocumentsTest, EndOfTheSessionAsksAboutWhatIsNotSaved)
{
    edit("a.vandrel");
    SessionEnd end(delegate_->documents(), delegate_->documentCommands());
    EXPECT_EQ(end.restartCommand().mid(1), QStringList{path("a.vandrel")});
    const auto mayEndAfter = [&](const char *button) {
        QTimer soon;
        soon.setSingleShot(true);
        soon.callOnTimeout([&] { answer(button); });
        soon.start(50);
        return end.askAboutUnsaved();
    };
    EXPECT_FALSE(mayEndAfter("Cancel"));
    EXPECT_TRUE(mayEndAfter("Don’t Save"));
    EXPECT_TRUE(document().isDocumentEdited());
    EXPECT_TRUE(mayEndAfter("Save"));
    EXPECT_FALSE(document().isDocumentEdited());
    EXPECT_TRUE(end.askAboutUnsaved());
}

TEST_F(DocumentsTest, NumbersLiveDocuments)
{
    launch();
    const QString name = host();
    EXPECT_EQ(titles(), QStringList(name));
    trigger("newDocumentAction");
    EXPECT_EQ(titles(), QStringList({name + QLatin1String(" (1)"), name + QLatin1String(" (2)")}));
    closeWindow(0);
    EXPECT_EQ(titles(), QStringList(name));
}

TEST_F(DocumentsTest, SavesACopyWithoutSerialNumbersByABox)
{
    launch();
    const QStringList before = titles();
    trigger("saveDocumentAsAction");
    auto *const dialog = window().window()->findChild<QFileDialog *>();
    dialog->findChild<QCheckBox *>()->click();
    chooseFile(path("copy"));
    EXPECT_TRUE(QFileInfo::exists(path("copy.vandrel")));
    EXPECT_FALSE(document().hasFile());
    EXPECT_EQ(titles(), before);
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
    EXPECT_EQ(proposedFile(), file);
    chooseFile(path("other.vandrel"));
    EXPECT_EQ(document().fileName(), path("other.vandrel"));
    DocumentError error;
    EXPECT_EQ(document().dataOfType(document().fileType(), error), contentOf("other.vandrel"));

    trigger("openDocumentAction");
    chooseFile(file);
    ASSERT_EQ(documentCount(), 2U);
    EXPECT_FALSE(document(1).dataStore()->isLive());
    EXPECT_EQ(document(1).dataStore()->registryEntries().size(),
              document(0).dataStore()->registryEntries().size());
    EXPECT_TRUE(titles().contains(QStringLiteral("desk.vandrel")));
    // An open document is shown, not opened again, and no other document can be saved to its file.
    delegate_->documentCommands().openFiles({file}, nullptr);
    EXPECT_EQ(documentCount(), 2U);
    trigger("saveDocumentAsAction");
    chooseFile(file);
    expectAlert("open in another window");
    answer("OK");
    EXPECT_EQ(document(0).fileName(), path("other.vandrel"));

    const QList<QAction *> recent = recentItems();
    EXPECT_EQ(recent.at(0)->toolTip(), file);
    EXPECT_EQ(recent.at(1)->toolTip(), path("other.vandrel"));
    closeWindow(1);
    recent.at(0)->trigger();
    turnEventLoop();
    EXPECT_EQ(documentCount(), 2U);

    // Also when opened by another running copy.
    PreferencesStore(RecentDocuments::domain(), path("settings"))
        .setValue(QStringLiteral("RecentDocuments"), QJsonArray{path("third"), file});
    EXPECT_TRUE(waitFor([&] { return recentItems().at(0)->toolTip() == path("third"); }));
    const std::size_t former = documentCount();
    delegate_->openFilesOfOtherCopy({path("other.vandrel"), path("third")});
    expectAlert("no such file");
    answer("OK");
    EXPECT_EQ(documentCount(), former);
    EXPECT_EQ(recentItems().at(0)->toolTip(), path("other.vandrel"));

    // Dropped files too.
    closeWindow(1);
    QMimeData data;
    const auto drop = [&](auto event) {
        QCoreApplication::sendEvent(window().window(), &event);
        return event.isAccepted();
    };
    data.setUrls({QUrl::fromLocalFile(file)});
    EXPECT_TRUE(drop(QDragEnterEvent({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {})));
    EXPECT_TRUE(drop(QDropEvent({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {})));
    turnEventLoop();
    EXPECT_EQ(documentCount(), 2U);
    data.setUrls({QUrl(QStringLiteral("https://example.org/desk.vandrel"))});
    EXPECT_FALSE(drop(QDragEnterEvent({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {})));
}

TEST_F(DocumentsTest, AsksInTheWindowThatIsInUse)
{
    launch();
    trigger("newDocumentWindowAction");
    QMainWindow *const second = window(0, 1).window();
    second->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(second));
    trigger("saveDocumentAction");
    EXPECT_TRUE(second->findChild<QFileDialog *>());
    chooseFile(path("no/folder/desk"));
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->parentWidget(), second);
    answer("OK");
}

TEST_F(DocumentsTest, AsksBeforeChangesAreLost)
{
    const char *const name = "desk.vandrel";
    edit(name);
    EXPECT_TRUE(window().window()->isWindowModified());
    const QByteArray former = contentOf(name);
    closeWindow();
    answer("Cancel");
    EXPECT_TRUE(window().window()->isVisible());
    closeWindow();
    answer("Save");
    EXPECT_EQ(documentCount(), 0U);
    EXPECT_NE(contentOf(name), former);
    quit();

    edit(name);
    const QByteArray saved = contentOf(name);
    trigger("newDocumentAction");
    QSignalSpy ready(&delegate_->documentCommands(), &DocumentCommands::readyToTerminate);
    trigger("quitAction");
    answer("Cancel");
    EXPECT_EQ(documentCount(), 2U);
    trigger("quitAction");
    answer("Don’t Save");
    EXPECT_EQ(documentCount(), 0U);
    EXPECT_EQ(ready.count(), 1);
    EXPECT_EQ(contentOf(name), saved);
}

TEST_F(DocumentsTest, ChangesNoDocumentsWhileTheRegistryIsWaitedFor)
{
    launch();
    std::size_t count = documentCount();
    for (const char *command : {"newDocumentAction", "quitAction"}) {
        int turns = 0;
        ScriptedWait wait;
        RunLoop::main().wait(wait, [&](auto) {
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

TEST_F(DocumentsTest, OpensNoDocumentWhoseReadingIsCancelled)
{
    launch();
    const QStringList before = titles();
    service_->cancelNextPreparation();
    trigger("newDocumentAction");
    EXPECT_EQ(titles(), before);
    EXPECT_FALSE(alert());
    trigger("newDocumentAction");
    EXPECT_EQ(documentCount(), 2U);
    EXPECT_THAT(titles(), testing::Contains(host() + QStringLiteral(" (2)")));
}

TEST_F(DocumentsTest, KeepsTheFormerFileWhenSavingFails)
{
    edit("desk.vandrel");
    DocumentError error;
    EXPECT_FALSE(document().save(path("nowhere/desk.vandrel"), error));
    EXPECT_THAT(error.description.toStdString(), testing::HasSubstr("could not be saved"));
    EXPECT_TRUE(document().isDocumentEdited());
    EXPECT_EQ(document().fileName(), path("desk.vandrel"));
}

TEST_F(DocumentsTest, ReportsWhatCannotBeOpened)
{
    write("empty", {});
    write("text", "{\"Vandrel\": true}");
    write("damaged", SmallStore::current().bytes().chopped(9));
    ArchiveSketch newer = SmallStore::current();
    newer.objects[SmallStore::Store].set(QLatin1String("dataStoreVersion"), qint64(3));
    write("newer", newer.bytes());
    ArchiveSketch older = SmallStore::current();
    older.objects[SmallStore::Store].remove(QLatin1String("dataStoreVersion"));
    write("older", older.bytes());
    write("unreadable", SmallStore::current().bytes());
    ASSERT_EQ(chmod(qPrintable(path("unreadable")), 0), 0);
    write("zeros", {});
    ASSERT_TRUE(QFile::resize(path("zeros"), qint64(2) << 30));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0644), 0);

    const char *const unknown = "cannot read this document";
    std::vector<std::pair<const char *, const char *>> cases{
        {"empty", unknown},           {"text", unknown},    {"damaged", unknown},
        {"zeros", unknown},           {"older", "too old"}, {"newer", "needs a newer version"},
        {"vanished", "no such file"}, {".", "is a folder"}, {"pipe", "not a regular file"},
    };
    if (geteuid() != 0) // root may read everything
        cases.emplace_back("unreadable", "Permission denied");
    launch();
    for (const auto &[file, words] : cases) {
        SCOPED_TRACE(file);
        QElapsedTimer time;
        time.start();
        delegate_->documentCommands().openFiles({path(file)}, window().window());
        EXPECT_LT(time.elapsed(), 1000);
        expectAlert(words);
        expectAlert(file);
        answer("OK");
        EXPECT_EQ(alert(), nullptr);
        EXPECT_EQ(titles(), QStringList(host()));
    }
    EXPECT_FALSE(outlet<QMenu>(window().window(), "recentDocumentsMenu")->isEnabled());
    quit();

    // A file on the command line that cannot be opened gives a new document; the others open.
    write("good", SmallStore::current().bytes());
    launch({path("empty"), path("vanished")});
    expectAlert("Some documents");
    answer("OK");
    EXPECT_TRUE(document().dataStore()->isLive());
    quit();
    launch({path("empty"), path("good")});
    answer("OK");
    EXPECT_EQ(titles(), QStringList(QStringLiteral("good")));
}

TEST_F(DocumentsTest, ReportsAMissingRegistryOnce)
{
    hasRegistry_ = false;
    launch();
    expectAlert("Could not access the DxRegistry");
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

// A user's settings and documents over several runs.
TEST_F(DocumentsTest, Journey)
{
    const QString place = QStringLiteral("DxService:/bus/disk@1");
    launch();
    EXPECT_EQ(window().registryPlane(), QStringLiteral("DxService"));
    EXPECT_FALSE(window().browserIsVisible());
    EXPECT_TRUE(document().dataStore()->isAutoupdate());
    delegate_->bookmarksController().addBookmarkNamed(QStringLiteral("Disk"), place, true);
    save("desk.vandrel");
    trigger("quitAction");
    EXPECT_EQ(documentCount(), 0U);
    quit();

    launch({path("desk.vandrel")});
    trigger("newDocumentAction");
    EXPECT_EQ(titles(), QStringList({QStringLiteral("desk.vandrel"), host()}));
    EXPECT_EQ(document(1).index(), 1U);
    for (std::size_t i : {0U, 1U})
        EXPECT_EQ(selectedPath(i), place);
    EXPECT_EQ(recentItems().at(0)->toolTip(), path("desk.vandrel"));
    quit();

    const QString settings =
        QStringLiteral("settings/%1.json").arg(PreferencesStore::applicationIdentifier());
    write(qPrintable(settings), "{ \"Bookmarks\": [");
    PreferencesStore::setFolder(path("settings"));
    launch();
    expectAlert("damaged");
    EXPECT_EQ(contentOf(qPrintable(settings + QLatin1String(".damaged-1"))), "{ \"Bookmarks\": [");
    EXPECT_EQ(selectedPath(), QStringLiteral("(DxService)"));
    EXPECT_EQ(recentItems().at(0)->toolTip(), path("desk.vandrel"));
}
