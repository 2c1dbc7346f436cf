// SPDX-License-Identifier: Apache-2.0
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/NotificationCenter.h"
#include "tests/support/EventLoop.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QLockFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

namespace {
class PreferencesStoreTest : public testing::Test
{
protected:
    PreferencesStore open() { return PreferencesStore(QStringLiteral("test"), folder()); }
    QString folder() const { return home_.filePath(QStringLiteral("vandrel")); }
    QString file() const { return folder() + QStringLiteral("/test.json"); }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files, QDir::Name); }

    void write(const QByteArray &bytes)
    {
        QDir().mkpath(folder());
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    static QByteArray read(const QString &path)
    {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    QTemporaryDir home_;
};

TEST_F(PreferencesStoreTest, ValuesAndKeysSurviveARestart)
{
    const QString formatKey = QStringLiteral("Dx::Root:Own::://reg//[0] \"ä\\");
    const QJsonObject record{{QStringLiteral("name"), QStringLiteral("Disk")},
                             {QStringLiteral("path"), QStringLiteral("DxService:/a//b")}};
    {
        PreferencesStore store = open();
        store.setValue(formatKey, QStringLiteral("4xhu"));
        store.setValue(QString(), 1);
        store.setValue(QStringLiteral("large"), Q_INT64_C(9007199254740993));
        store.setValue(QStringLiteral("list"), QJsonArray{record, 4294967295.0, true});
        store.setFlag(QStringLiteral("flag"), true);
        store.setValue(QStringLiteral("gone"), 1);
        store.remove(QStringLiteral("gone"));
    }
    PreferencesStore store = open();
    EXPECT_EQ(store.string(formatKey), QStringLiteral("4xhu"));
    EXPECT_EQ(store.integer(QString()), 1);
    EXPECT_EQ(store.integer(QStringLiteral("large")), Q_INT64_C(9007199254740993));
    EXPECT_EQ(store.list(QStringLiteral("list")), (QJsonArray{record, 4294967295.0, true}));
    EXPECT_TRUE(store.flag(QStringLiteral("flag")));
    EXPECT_EQ(store.storedKeys().size(), 5);
    EXPECT_EQ(store.problems(), QStringList());
}

TEST_F(PreferencesStoreTest, RegisteredDefaultsLieBeneathAndAreNotWritten)
{
    const QString key = QStringLiteral("PolledUpdateInterval");
    {
        PreferencesStore store = open();
        store.registerDefaults({{key, 30}, {QStringLiteral("DefaultView"), QStringLiteral("a")}});
        EXPECT_EQ(store.integer(key), 30);
        EXPECT_FALSE(store.isStored(key));
        store.setValue(key, 5);
        EXPECT_EQ(store.integer(key), 5);
        store.remove(key);
        EXPECT_EQ(store.integer(key), 30);
        store.setValue(QStringLiteral("other"), 1);
    }
    EXPECT_EQ(read(file()), "{\n    \"other\": 1\n}\n");
}

TEST_F(PreferencesStoreTest, ValuesOfWrongTypeReadAsTheDefault)
{
    write(R"({"string": 7, "integer": "7", "fraction": 1.5, "huge": 1e300, "list": {}, "null": null,
              "YES": "YES", "true": true, "no": "no"})");
    PreferencesStore store = open();
    store.registerDefaults(QJsonDocument::fromJson(R"({"string": "a", "integer": 30, "fraction": 31,
        "huge": 32, "list": [1], "null": 33, "true": "yes", "on": "yes"})")
                               .object());
    EXPECT_EQ(store.string(QStringLiteral("string")), QStringLiteral("a"));
    EXPECT_TRUE(store.string(QStringLiteral("unknown")).isNull());
    int expected = 30;
    for (const char *key : {"integer", "fraction", "huge", "null"})
        EXPECT_EQ(store.integer(QString::fromLatin1(key)), expected++) << key;
    EXPECT_EQ(store.list(QStringLiteral("list")), QJsonArray{1});
    // Only one stored value counts as true.
    for (const char *key : {"YES", "true", "no", "unknown"})
        EXPECT_FALSE(store.flag(QString::fromLatin1(key))) << key;
    EXPECT_TRUE(store.flag(QStringLiteral("on")));
}

TEST_F(PreferencesStoreTest, RealChangesAreToldAndWrittenWhenTheEventLoopIsIdle)
{
    PreferencesStore store = open();
    int changes = 0;
    const auto observation = NotificationCenter::defaultCenter().observe(
        PreferencesStore::didChangeNotification(), &store, [&](const auto &) { ++changes; });
    const QString key = QStringLiteral("key");
    store.setValue(key, 1);
    store.setValue(key, 1);
    store.setValue(key, 2);
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(files().isEmpty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(read(file()).contains("\"key\": 2"));
    store.remove(key);
    store.remove(key);
    EXPECT_EQ(changes, 3);
}

TEST_F(PreferencesStoreTest, DamagedFilesAreSetAsideAndKept)
{
    QStringList expected{QStringLiteral("test.json")};
    for (const QByteArray &damage : {QByteArray("{\"a\": 1"), QByteArray("[1, 2]"), QByteArray(),
                                     QByteArray("\0\xff", 2), QByteArray(5000, '[')}) {
        write(damage);
        {
            PreferencesStore store = open();
            ASSERT_EQ(store.problems().size(), 1);
            expected += QStringLiteral("test.json.damaged-%1").arg(expected.size());
            const QString kept = folder() + u'/' + expected.back();
            EXPECT_TRUE(store.problems().front().contains(kept));
            EXPECT_EQ(read(kept), damage);
            EXPECT_TRUE(store.storedKeys().isEmpty());
            store.setValue(QStringLiteral("a"), 1);
        }
        EXPECT_EQ(files(), expected);
        EXPECT_EQ(open().integer(QStringLiteral("a")), 1);
    }
}

TEST_F(PreferencesStoreTest, LeavesOtherThanFilesAlone)
{
    QDir().mkpath(file());
    PreferencesStore store = open();
    EXPECT_EQ(store.problems().size(), 1);
    store.setValue(QStringLiteral("a"), 1);
    EXPECT_FALSE(store.synchronize());
    EXPECT_EQ(store.integer(QStringLiteral("a")), 1);
    EXPECT_EQ(store.problems().size(), 1); // reported once
    EXPECT_TRUE(QFileInfo(file()).isDir());
}

TEST_F(PreferencesStoreTest, WarnsOnceWhileItCannotBeWritten)
{
    QFile blocker(folder());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    PreferencesStore store = open();
    int reports = 0;
    const auto observation = NotificationCenter::defaultCenter().observe(
        PreferencesStore::problemNotification(), &store, [&](const auto &) { ++reports; });
    for (int i = 0; i < 3; ++i) {
        store.setValue(QStringLiteral("a"), i);
        EXPECT_FALSE(store.synchronize());
    }
    EXPECT_EQ(reports, 1);
    ASSERT_EQ(store.problems().size(), 1);
    EXPECT_TRUE(store.problems().front().contains(file()));
    blocker.remove();
    EXPECT_TRUE(store.synchronize());
    EXPECT_EQ(open().integer(QStringLiteral("a")), 2);
}

TEST_F(PreferencesStoreTest, ALinkedFileStaysALink)
{
    const QString target = home_.filePath(QStringLiteral("dotfile.json"));
    QDir().mkpath(folder());
    write("{}");
    ASSERT_TRUE(QFile::rename(file(), target));
    ASSERT_TRUE(QFile::link(target, file()));
    open().setValue(QStringLiteral("a"), 1);
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_TRUE(read(target).contains("\"a\": 1"));
}

TEST_F(PreferencesStoreTest, CopiesMergeWhatTheyWrite)
{
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
    write(R"({"a": 1, "b": 1, "c": 1})");
    PreferencesStore mine = open();
    PreferencesStore other = open();
    other.setValue(a, 2);
    other.remove(b);
    EXPECT_TRUE(other.synchronize());
    mine.setValue(c, 3);
    EXPECT_TRUE(mine.synchronize());
    other.refresh();
    for (const PreferencesStore &store : {std::cref(mine), std::cref(other)}) {
        EXPECT_EQ(store.integer(a), 2);
        EXPECT_FALSE(store.isStored(b));
        EXPECT_EQ(store.integer(c), 3);
    }
    // Unwritten changes win, removals too; then what another copy writes later.
    mine.setValue(a, 4);
    mine.remove(c);
    other.setValue(a, 5);
    other.setValue(c, 5);
    other.synchronize();
    mine.refresh();
    EXPECT_EQ(mine.integer(a), 4);
    EXPECT_FALSE(mine.isStored(c));
    mine.synchronize();
    other.refresh();
    EXPECT_EQ(other.integer(a), 4);
    EXPECT_FALSE(other.isStored(c));
    // A missing or half-written file changes nothing.
    write("{\"a\": ");
    mine.refresh();
    EXPECT_EQ(files(), QStringList(QStringLiteral("test.json")));
    QFile::remove(file());
    mine.refresh();
    EXPECT_EQ(mine.integer(a), 4);
    mine.setValue(b, 1);
    mine.synchronize();
    EXPECT_EQ(open().integer(a), 4);
}

TEST_F(PreferencesStoreTest, NoticesWhatOthersWrite)
{
    const QString key = QStringLiteral("key");
    PreferencesStore store = open(); // without a folder
    int changes = 0;
    int merges = 0;
    const auto count = [&store](const QString &name, int &number) {
        return NotificationCenter::defaultCenter().observe(name, &store,
                                                           [&](const auto &) { ++number; });
    };
    const auto changed = count(PreferencesStore::didChangeNotification(), changes);
    const auto merged = count(PreferencesStore::didMergeNotification(), merges);
    for (int i = 1; i <= 2; ++i) { // each replaces the file
        open().setValue(key, i);
        ASSERT_TRUE(waitFor([&] { return merges == i; }));
        EXPECT_EQ(store.integer(key), i);
    }
    write(R"({"key": 3})"); // in place
    ASSERT_TRUE(waitFor([&] { return store.integer(key) == 3; }));
    turnEventLoopFor(100);
    EXPECT_EQ(merges, changes);
    const int former = changes;
    store.setValue(key, 4);
    turnEventLoopFor(100);
    EXPECT_EQ(changes, former + 1); // its own write is not reported
    EXPECT_EQ(merges, former);
}

TEST_F(PreferencesStoreTest, AHeldLockDelaysAChangeOnly)
{
    const QString key = QStringLiteral("key");
    QElapsedTimer time;
    QDir().mkpath(folder());
    QLockFile lock(file() + QStringLiteral(".lock"));
    ASSERT_TRUE(lock.tryLock(0));
    std::optional<PreferencesStore> store(std::in_place, QStringLiteral("test"), folder());
    store->setValue(key, 1);
    time.start();
    EXPECT_FALSE(store->synchronize());
    EXPECT_LT(time.elapsed(), 1000);
    EXPECT_EQ(store->problems(), QStringList());
    lock.unlock();
    EXPECT_TRUE(waitFor([&] { return read(file()).contains("\"key\": 1"); }));

    ASSERT_TRUE(lock.tryLock(0)); // by a copy that hangs
    store->setValue(key, 2);
    time.start();
    store.reset();
    EXPECT_LT(time.elapsed(), 3000);
    EXPECT_TRUE(read(file()).contains("\"key\": 2"));
}

TEST_F(PreferencesStoreTest, KeepsAFileDamagedLater)
{
    write("{}");
    PreferencesStore store = open();
    store.setValue(QStringLiteral("a"), 1);
    store.synchronize();
    write("{\"a\"");
    store.setValue(QStringLiteral("b"), 2);
    EXPECT_TRUE(store.synchronize());
    EXPECT_EQ(store.problems().size(), 1);
    EXPECT_EQ(read(file() + QStringLiteral(".damaged-1")), "{\"a\"");
    EXPECT_EQ(open().storedKeys().size(), 2);
}

TEST_F(PreferencesStoreTest, SharedStoresOfAFolderAreOnePerDomain)
{
    PreferencesStore::setFolder(folder());
    PreferencesStore::standard().setValue(QStringLiteral("a"), 1);
    PreferencesStore::shared(QStringLiteral("other")).setValue(QStringLiteral("a"), 2);
    PreferencesStore::setFolder(folder()); // like a restart
    EXPECT_EQ(files(), (QStringList{QStringLiteral("org.vandrel.Vandrel.json"),
                                    QStringLiteral("other.json")}));
    EXPECT_EQ(PreferencesStore::standard().integer(QStringLiteral("a")), 1);
    EXPECT_EQ(PreferencesStore::shared(QStringLiteral("other")).integer(QStringLiteral("a")), 2);
}
} // namespace
