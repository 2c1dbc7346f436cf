// SPDX-License-Identifier: Apache-2.0
#include "app/HelpWindow.h"

#include "platform/desktop/InterfaceLoader.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

namespace {
class HelpWindowTest : public testing::Test
{
protected:
    HelpWindowTest()
    {
        window_.showHelp();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    std::string search(const char *text)
    {
        field_->setText(QString::fromUtf8(text));
        return status();
    }
    std::string key(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
        return status();
    }
    std::string status() const { return status_->text().toStdString(); }
    std::string selected() const { return guide_->textCursor().selectedText().toStdString(); }

    HelpWindow window_;
    QLineEdit *field_ = InterfaceLoader::outlet<QLineEdit>(window_, "guideSearchField");
    QLabel *status_ = InterfaceLoader::outlet<QLabel>(window_, "guideSearchStatus");
    QListWidget *contents_ = InterfaceLoader::outlet<QListWidget>(window_, "guideContents");
    GuideView *guide_ = window_.findChild<GuideView *>();
};
} // namespace

TEST_F(HelpWindowTest, ContentsLeadToTheirSections)
{
    const auto rows = contents_->findItems(QStringLiteral("Bookmarks"), Qt::MatchExactly);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_GT(contents_->row(rows[0]), 0);
    contents_->setCurrentItem(rows[0]);
    EXPECT_EQ(guide_->cursorForPosition({20, 8}).block().text(), QStringLiteral("Bookmarks"));
    guide_->verticalScrollBar()->setValue(0);
    QTest::mouseClick(contents_->viewport(), Qt::LeftButton, {},
                      contents_->visualItemRect(rows[0]).center());
    EXPECT_GT(guide_->verticalScrollBar()->value(), 0);
}

TEST_F(HelpWindowTest, SearchStepsThroughTheMatchesAndSaysWhenThereAreNone)
{
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), field_);
    const std::string first = search("PLANE");
    ASSERT_TRUE(first.starts_with("1 of ")) << first;
    EXPECT_EQ(QString::fromStdString(selected()).toLower(), QStringLiteral("plane"));
    const std::string count = first.substr(1);
    EXPECT_EQ(key(Qt::Key_Return), '2' + count);
    EXPECT_EQ(key(Qt::Key_F3), '3' + count);
    EXPECT_EQ(key(Qt::Key_Return, Qt::ShiftModifier), '2' + count);
    EXPECT_EQ(key(Qt::Key_F3, Qt::ShiftModifier), first);
    EXPECT_EQ(key(Qt::Key_F3, Qt::ShiftModifier), count.substr(4) + count); // the last one
    EXPECT_EQ(search("no such words"), "Not found");
    key(Qt::Key_F3);
    EXPECT_EQ(key(Qt::Key_Escape), "");
    EXPECT_TRUE(window_.isVisible());
    key(Qt::Key_Escape);
    EXPECT_FALSE(window_.isVisible());
}
