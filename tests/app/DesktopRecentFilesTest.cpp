// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DesktopRecentFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

class DesktopRecentFilesTest : public testing::Test
{
protected:
    bool add(const char *file)
    {
        return DesktopRecentFiles(list_).add(QString::fromUtf8(file), QStringLiteral("a/b"),
                                             QDateTime(QDate(2026, 5, 1), QTime(1, 2), Qt::UTC));
    }
    std::string content() const
    {
        QFile list(list_);
        return list.open(QIODevice::ReadOnly) ? list.readAll().toStdString() : std::string();
    }
    void write(const QByteArray &content) const
    {
        QFile list(list_);
        ASSERT_TRUE(list.open(QIODevice::WriteOnly));
        list.write(content);
    }
    static std::size_t count(const std::string &text, const char *part)
    {
        std::size_t found = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++found;
        return found;
    }

    QTemporaryDir folder_;
    const QString list_ = folder_.filePath(QStringLiteral("data/recently-used.xbel"));
};

TEST_F(DesktopRecentFilesTest, AddsToTheListThatAllProgramsShare)
{
    ASSERT_TRUE(add("/tmp/a b&c.vandrel"));
    ASSERT_TRUE(add("/tmp/a b&c.vandrel"));
    EXPECT_EQ(count(content(), "<bookmark "), 1U);
    EXPECT_EQ(count(content(), "href=\"file:///tmp/a%20b&amp;c.vandrel\""), 1U);
    EXPECT_EQ(count(content(), "modified=\"2026-05-01T01:02:00Z\""), 2U);
    EXPECT_EQ(count(content(), "count=\"2\""), 1U);
    EXPECT_EQ(count(content(), "<mime:mime-type type=\"a/b\"/>"), 1U);
}

TEST_F(DesktopRecentFilesTest, KeepsWhatOthersWrote)
{
    ASSERT_TRUE(add("/tmp/a"));
    const QByteArray others =
        "<?xml version=\"1.0\"?><xbel version=\"1.0\"><bookmark href=\"file:///tmp/x\"><info>"
        "<metadata owner=\"http://freedesktop.org\"><other:thing name=\"kept\"/></metadata>"
        "</info></bookmark></xbel>";
    write(others);
    ASSERT_TRUE(add("/tmp/x"));
    EXPECT_EQ(count(content(), "<other:thing name=\"kept\"/>"), 1U);
    EXPECT_EQ(count(content(), "<bookmark "), 1U);
    for (const QByteArray &damaged :
         {QByteArray("<xbel><bookmark"), QByteArray("<html/>"), QByteArray()}) {
        write(damaged);
        EXPECT_FALSE(add("/tmp/y"));
        EXPECT_EQ(content(), damaged.toStdString());
    }
}
