#include "platform/DocumentFile.h"

#include "platform/DocumentController.h"
#include "tests/support/QtPrinters.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
class GreedyDocument : public Document
{
public:
    using Document::Document;
    void makeWindowControllers() override {}
    QString fileType() const override { return {}; }
    bool readFromData(const QByteArray &, const QString &, DocumentError &) override
    {
        throw std::bad_alloc();
    }

protected:
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
    // A file with a hole of that size.
    QString fileOf(qint64 size) const
    {
        QFile file(folder_.filePath(QStringLiteral("file")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(size));
        return file.fileName();
    }

    QTemporaryDir folder_;
    DocumentError error_;
};
} // namespace

TEST_F(DocumentFileTest, IsNotReadWhenItIsTooLarge)
{
    const QString file = fileOf(DocumentFile::largestSize + 1);
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
    EXPECT_FALSE(DocumentFile::write(file, content(DocumentFile::largestSize + 1), error_));
    EXPECT_EQ(error_.reason, QStringLiteral("It would be too large."));
    EXPECT_EQ(QFileInfo(file).size(), 5);
    EXPECT_TRUE(DocumentFile::write(file, content(DocumentFile::largestSize), error_));
    EXPECT_EQ(QFileInfo(file).size(), DocumentFile::largestSize);
}

TEST_F(DocumentFileTest, TellsOfTooLittleMemory)
{
    GreedyDocuments documents;
    EXPECT_EQ(documents.openDocument(fileOf(5), error_), nullptr);
    EXPECT_EQ(error_.domain, DocumentFile::errorDomain);
    EXPECT_EQ(error_.reason, QStringLiteral("There is not enough memory."));
    EXPECT_TRUE(documents.documents().empty());
}
