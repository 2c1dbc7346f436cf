// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "display/EncodingManager.h"
#include "display/views/EncodingPopUpButton.h"
#include "display/views/SelectEncodingsPanel.h"
#include "platform/preferences/PreferencesStore.h"
#include "tests/support/PopUpChoice.h"

#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {
class EncodingPopUpTest : public testing::Test
{
protected:
    EncodingPopUpTest()
    {
        manager_.revertToDefault();
        popUp_.show();
    }
    ~EncodingPopUpTest() override
    {
        if (QWidget *const window = panel_.window())
            window->hide();
        manager_.revertToDefault();
    }
    // The tags, "-" for items without an encoding, "*" after the selected one.
    std::string items() const
    {
        QStringList tags;
        for (int i = 0; i < popUp_.count(); ++i) {
            const quint32 tag = popUp_.itemData(i).toUInt();
            tags << (tag == TextEncodings::none ? QStringLiteral("-") : QString::number(tag)) +
                        (i == popUp_.currentIndex() ? QStringLiteral("*") : QString());
        }
        return tags.join(u' ').toStdString();
    }
    void chooseLast() { chooseInList(popUp_, popUp_.count() - 1); }
    bool isPanelShown() const { return panel_.window() && panel_.window()->isVisible(); }
    template<class Control>
    Control *control(const char *name) const
    {
        return panel_.window()->findChild<Control *>(QString::fromLatin1(name));
    }
    void clickButton(const char *name)
    {
        QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton);
    }
    std::vector<quint32> checkedRows() const
    {
        std::vector<quint32> checked;
        const auto *const list = control<QListWidget>("encodingsList");
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->checkState() == Qt::Checked)
                checked.push_back(list->item(i)->data(Qt::UserRole).toUInt());
        }
        return checked;
    }
    static bool isStored()
    {
        return PreferencesStore::standard().isStored(QStringLiteral("Encodings"));
    }

    PreferencesFolder preferences_;
    EncodingManager &manager_ = EncodingManager::sharedInstance();
    SelectEncodingsPanel &panel_ = SelectEncodingsPanel::sharedInstance();
    EncodingPopUpButton popUp_;
};

TEST_F(EncodingPopUpTest, OffersTheEnabledOnesAndThePresentOne)
{
    popUp_.setEncoding(4, false);
    EXPECT_EQ(items(), "1 10 4* 30 12 - -");
    popUp_.setEncoding(5, false);
    EXPECT_EQ(items(), "1 10 4 30 12 5* - -");
    popUp_.setEncoding(4, true);
    EXPECT_EQ(items(), "- 1 10 4* 30 12 - -");
    popUp_.setEncoding(5, true);
    EXPECT_EQ(items(), "-* 1 10 4 30 12 - -");

    manager_.clearAll();
    EXPECT_EQ(items(), "-* - -");
    EXPECT_EQ(popUp_.currentText(), QStringLiteral("Automatic"));
    popUp_.setEncoding(5, false);
    EXPECT_EQ(items(), "5* - -");
    popUp_.setEncoding(TextEncodings::none, false);
    EXPECT_EQ(items(), "-");
    popUp_.setEncoding(99999999, false); // stored by another program
    EXPECT_EQ(popUp_.currentText(), QStringLiteral("Encoding 99999999"));
}

TEST_F(EncodingPopUpTest, TheLastItemOpensThePanelAndIsNeverSelected)
{
    popUp_.setEncoding(4, false);
    QSignalSpy chosen(&popUp_, &EncodingPopUpButton::chosen);
    QTest::keyClick(&popUp_, Qt::Key_Down);
    EXPECT_EQ(items(), "1 10 4 30* 12 - -");
    QTest::keyClick(&popUp_, Qt::Key_End);
    EXPECT_EQ(items(), "1 10 4 30* 12 - -");
    EXPECT_FALSE(isPanelShown()); // only the user may open it
    EXPECT_EQ(chosen.size(), 0);
    QTest::keyClick(&popUp_, Qt::Key_Return);
    EXPECT_EQ(chosen.size(), 1);
    chooseLast();
    EXPECT_EQ(items(), "1 10 4 30* 12 - -");
    EXPECT_TRUE(isPanelShown());
    EXPECT_EQ(chosen.size(), 1);
}

TEST_F(EncodingPopUpTest, ThePanelChangesWhatEveryPopUpOffers)
{
    popUp_.setEncoding(4, false);
    panel_.showPanel();
    EXPECT_EQ(control<QListWidget>("encodingsList")->count(),
              static_cast<int>(EncodingManager::allAvailableStringEncodings().size()));
    EXPECT_EQ(checkedRows(), (std::vector<quint32>{4, 10, 1, 12, 30}));

    control<QListWidget>("encodingsList")->setFocus(); // on the first row: the pop-up's choice
    QTest::keyClick(control<QListWidget>("encodingsList"), Qt::Key_Space);
    EXPECT_EQ(items(), "10 1 12 30 4* - -");
    EXPECT_TRUE(isStored());
    clickButton("clearAllButton");
    EXPECT_EQ(items(), "4* - -");
    EXPECT_TRUE(checkedRows().empty());
    clickButton("selectAllButton");
    EXPECT_EQ(checkedRows(), EncodingManager::allAvailableStringEncodings());
    EXPECT_EQ(popUp_.selectedEncoding(), 4U);
    clickButton("revertToDefaultButton");
    EXPECT_EQ(items(), "1 10 4* 30 12 - -");
    EXPECT_EQ(checkedRows(), (std::vector<quint32>{4, 10, 1, 12, 30}));
    EXPECT_FALSE(isStored());
}
} // namespace
