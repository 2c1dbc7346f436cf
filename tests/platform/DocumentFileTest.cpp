// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/DocumentFile.h"

#include "platform/documents/DocumentController.h"
#include "platform/documents/SaveLeftovers.h"
#include "tests/support/QtPrinters.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
class GreedyDocument : public Document
{
public:
    using Document::Document;
    void makeWindowControllers() override {}
    QString fileType() const override { return {}; }

protected:
    Content decode(const QByteArray &, const QString &, WorkProgress &) override
    {
        throw std::bad_alloc();
    }
    bool writeData(QIODevice &, const QString &, DocumentError &) override { return true; }
};

class GreedyDocuments : public DocumentController
{
protected:
    std::unique_ptr<Document> makeUntitledDocument() override { return makeDocument(); }
    std::unique_ptr<Document> makeDocument() override
    {
        return std::make_unique<GreedyDocument>(*this);
    }
};

class DocumentFileTest : public testing::Test
{
protected:
    // A sparse file of that size.
    QString fileOf(qint64 size) const
    {
        QFile file(folder_.filePath(QStringLiteral("file")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(size));
        return file.fileName();
    }

    QByteArray path(const QByteArray &name) const
    {
        return QFile::encodeName(folder_.path()) + '/' + name;
    }
    // Makes it two minutes old.
    void makeOld(const QByteArray &name) const
    {
        const timespec then{time(nullptr) - 120, 0};
        const timespec times[] = {then, then};
        EXPECT_EQ(utimensat(AT_FDCWD, path(name).constData(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
    QByteArray make(const QByteArray &name) const
    {
        EXPECT_EQ(mknod(path(name).constData(), S_IFREG | 0600, 0), 0);
        makeOld(name);
        return name;
    }
    QStringList names() const
    {
        return QDir(folder_.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    bool save(const QByteArray &name)
    {
        const auto content = [](QIODevice &device, DocumentError &) {
            return device.write("new") == 3;
        };
        return DocumentFile::write(QFile::decodeName(path(name)), content, error_);
    }

    QTemporaryDir folder_;
    DocumentError error_;
};
} // namespace

TEST_F(DocumentFileTest, IsNotReadWhenItIsTooLarge)
{
    const QString file = fileOf(DocumentFile::maxSize + 1);
    const auto acceptAny = [](const QByteArray &, DocumentError &) { return true; };
    EXPECT_FALSE(DocumentFile::read(file, acceptAny, error_));
    EXPECT_EQ(error_.reason, QStringLiteral("It is too large."));
}

TEST_F(DocumentFileTest, KeepsWhatItHoldsWhenTheNewContentIsTooLarge)
{
    const QString file = fileOf(5);
    const auto content = [](qint64 size) {
        return [size](QIODevice &device, DocumentError &) {
            return device.seek(size - 1) && device.write("x", 1) == 1;
        };
    };
    EXPECT_FALSE(DocumentFile::write(file, content(DocumentFile::maxSize + 1), error_));
    EXPECT_EQ(error_.reason, QStringLiteral("It would be too large."));
    EXPECT_EQ(QFileInfo(file).size(), 5);
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
    EXPECT_TRUE(DocumentFile::write(file, content(DocumentFile::maxSize), error_));
    EXPECT_EQ(QFileInfo(file).size(), DocumentFile::maxSize);
}

TEST_F(DocumentFileTest, IsReplacedWithItsModeAndWhereLinksLead)
{
    make("desk");
    ASSERT_EQ(chmod(path("desk").constData(), 0640), 0);
    ASSERT_EQ(symlink("desk", path("near").constData()), 0);
    ASSERT_EQ(symlink("near", path("link").constData()), 0);
    ASSERT_EQ(symlink("fresh", path("dangling").constData()), 0);
    EXPECT_TRUE(save("link") && save("dangling"));
    EXPECT_TRUE(QFileInfo(QFile::decodeName(path("link"))).isSymLink());
    struct stat status;
    ASSERT_EQ(stat(path("desk").constData(), &status), 0);
    EXPECT_EQ(status.st_size, 3);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
    ASSERT_EQ(stat(path("fresh").constData(), &status), 0);
    EXPECT_EQ(status.st_size, 3);
    EXPECT_FALSE(DocumentFile::write(folder_.path(), {}, error_));
    EXPECT_EQ(names().join(u' '), QStringLiteral("dangling desk fresh link near"));
}

TEST_F(DocumentFileTest, IsSavedWithoutWhatAKilledSaveLeft)
{
    const auto leftover = [] { return SaveLeftovers::newName("desk"); };
    const QByteArray longName(240, 'x');
    make(leftover());
    make(leftover());
    make(SaveLeftovers::newName(longName));
    const QByteArray written = make(leftover());
    const int lock = open(path(written).constData(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    const QByteArray linked = make(leftover());
    ASSERT_EQ(link(path(linked).constData(), path("other name").constData()), 0);
    const QByteArray young = leftover();
    ASSERT_EQ(mknod(path(young).constData(), S_IFREG | 0600, 0), 0);
    const QByteArray folder = leftover();
    ASSERT_EQ(mkdir(path(folder).constData(), 0700), 0);
    makeOld(folder);
    const QByteArray symbolic = leftover();
    ASSERT_EQ(symlink("desk.backup", path(symbolic).constData()), 0);
    makeOld(symbolic);
    QByteArrayList expected{make("desk.backup"), make(".desk.saving-other!"),
                            make(leftover() + 'x'), make(SaveLeftovers::newName("desks"))};
    expected += {"desk", longName, written, linked, "other name", young, folder, symbolic};
    EXPECT_TRUE(save("desk") && save(longName));
    close(lock);
    std::sort(expected.begin(), expected.end());
    QStringList found = names();
    found.sort();
    EXPECT_EQ(found.join(u'\n').toStdString(), expected.join('\n').toStdString());
}

TEST_F(DocumentFileTest, ReportsTooLittleMemory)
{
    GreedyDocuments documents;
    EXPECT_EQ(documents.openDocument(fileOf(5), error_), nullptr);
    EXPECT_EQ(error_.domain, DocumentFile::errorDomain);
    EXPECT_EQ(error_.reason, QStringLiteral("There is not enough memory."));
    EXPECT_TRUE(documents.documents().empty());
}
