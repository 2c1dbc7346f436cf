// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/ViewNote.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryValues.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace {
class FindTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        prefer("FindOptions", 5);
        PreferencesStore::standard().setFlag(QStringLiteral("FilteredFind"), true);
        open();
    }
    std::string count() const
    {
        return outlet<QLabel>("findNumMatchedField")->text().toStdString();
    }
    FindState state(const char *label) const
    {
        return controller_->findStateForRegistryEntry(*entry(label));
    }
    SearchField &field() const { return *outlet<SearchField>("findField"); }
    ViewNote *nothingFoundNote() const
    {
        for (ViewNote *note : window().findChildren<ViewNote *>()) {
            if (note->button())
                return note;
        }
        return nullptr;
    }
    void type(const char *text)
    {
        field().setFocus();
        field().clear();
        QTest::keyClicks(&field(), QString::fromUtf8(text));
    }
};
} // namespace

TEST_F(FindTest, ShowsMatchesAndTheWaysToThem)
{
    EXPECT_EQ(count(), "No search");
    find("PART");
    EXPECT_EQ(rows(), "Root\n  Host\n    bus\n      disk@0\n        part@1 *\n");
    EXPECT_EQ(count(), "1 object matches");
    find("k@");
    EXPECT_EQ(count(), "2 objects match");
    EXPECT_EQ(selected(), "DxService:/bus/disk@1"); // the nearest after the last selection
    EXPECT_EQ(state("bus"), FindStateParentOfMatch);
    EXPECT_EQ(state("disk@1"), FindStateMatching);
    EXPECT_EQ(state("module"), FindStateNotMatching);
    find("@");
    EXPECT_EQ(state("disk@0"), FindStateMatching); // and it leads to a match as well
    EXPECT_EQ(beeps_, 0);

    find("nowhere");
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(count(), "0 objects match");
    EXPECT_EQ(beeps_, 1);
    find("");
    EXPECT_EQ(count(), "No search");
    EXPECT_FALSE(controller_->foundObjects().has_value());
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    EXPECT_NE(rows().find("module"), std::string::npos);
}

TEST_F(FindTest, FindsWhileTheUserTypes)
{
    type("part");
    EXPECT_EQ(controller_->findQuery(), QString()); // not yet
    EXPECT_TRUE(waitFor([&] { return controller_->findQuery() == QLatin1String("part"); }));
    EXPECT_TRUE(field().hasFocus());
    type("disk");
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(controller_->findQuery(), QStringLiteral("disk"));
    QTest::keyClick(&field(), Qt::Key_Escape);
    EXPECT_TRUE(controller_->findQuery().isNull());
    EXPECT_EQ(field().text(), QString());
    EXPECT_TRUE(tree().hasFocus());
    action("beginFindAction").trigger();
    EXPECT_TRUE(field().hasFocus());

    click("findOptionsDrawerButton");
    for (const char *view : {"registryOutlineView", "findTableView", "registryBrowser"}) {
        if (view == std::string("registryBrowser"))
            controller_->browserView();
        type("disk");
        controller_->find();
        outlet<QWidget>(view)->setFocus();
        for (int i = 0; i < 2; ++i) {
            press(Qt::Key_Escape);
            EXPECT_FALSE(controller_->foundObjects().has_value()) << view;
            EXPECT_TRUE(controller_->isExplorerFirstResponder()) << view;
            EXPECT_EQ(field().text(), QString()) << view;
        }
    }
    EXPECT_EQ(beeps_, 0);
}

TEST_F(FindTest, StepsThroughTheMatches)
{
    find("disk");
    find("disk"); // a match that is selected stays so
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    const std::pair<const char *, const char *> steps[] = {
        {"findNextAction", "DxService:/bus/disk@1"},
        {"findNextAction", "DxService:/bus/disk@0"},
        {"findNextInAnyPlaneAction", "DxService:/bus/disk@1"},
        {"findNextInAnyPlaneAction", "DxPower:/supply/disk@0"},
        {"findNextInAnyPlaneAction", "DxService:/bus/disk@0"},
        {"findPrevInAnyPlaneAction", "DxPower:/supply/disk@0"},
    };
    for (const auto &[command, expected] : steps) {
        action(command).trigger();
        EXPECT_EQ(selected(), expected) << command;
    }
    EXPECT_FALSE(action("findPrevAction").isEnabled()); // the one before is in another plane
    EXPECT_TRUE(action("findNextAction").isEnabled());
    controller_->findPrev();
    EXPECT_EQ(beeps_, 1);
    select({"Root", "Host", "bus", "disk@0"});
    click("findPrevButton"); // wraps, for the other plane's matches follow
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    click("findNextButton");
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");

    find("supply");
    EXPECT_FALSE(outlet<QWidget>("findStepper")->isEnabled());
    EXPECT_TRUE(action("findNextInAnyPlaneAction").isEnabled());
    showPlane("DxPower");
    EXPECT_TRUE(outlet<QWidget>("findStepper")->isEnabled());
}

TEST_F(FindTest, FollowsItsOptions)
{
    type("dxdisk");
    controller_->find();
    EXPECT_EQ(count(), "1 object matches");
    click("findInheritanceCheckbox");
    EXPECT_EQ(count(), "0 objects match");
    click("findClassCheckbox");
    EXPECT_EQ(count(), "1 object matches");
    type("part");
    click("findClassCheckbox"); // searches for the typed text immediately
    EXPECT_EQ(count(), "1 object matches");
    type("dxdisk");
    click("findNameCheckbox"); // the last one
    EXPECT_FALSE(field().isEnabled());
    QTest::qWait(300); // the pending search does not run
    EXPECT_EQ(count(), "No search");
    EXPECT_EQ(beeps_, 1);
    controller_->beginFind();
    EXPECT_EQ(beeps_, 2);
    click("resetFindOptionsButton");
    EXPECT_EQ(controller_->findOptions().toInt(), 5);
    EXPECT_TRUE(outlet<QCheckBox>("findInheritanceCheckbox")->isChecked());
    EXPECT_EQ(count(), "1 object matches");
}

TEST_F(FindTest, SaysWhyItShowsNothing)
{
    const auto *const note = nothingFoundNote();
    ASSERT_TRUE(note);
    const auto says = [&] { return note->isVisibleTo(&window()); };
    find("disk");
    EXPECT_FALSE(says());
    find("disks");
    EXPECT_TRUE(says());
    click("filteredFindCheckbox"); // now they are paler
    EXPECT_FALSE(says());
    click("filteredFindCheckbox");
    controller_->browserView();
    EXPECT_TRUE(says());
    find("");
    EXPECT_FALSE(says());
}

TEST_F(FindTest, OffersToSearchPropertiesWhereNothingMatches)
{
    service_.setProperties(registry_["disk@0"],
                           values::dictionary({{"vendor", values::number(0x8086)}}));
    update();
    const auto *const note = nothingFoundNote();
    ASSERT_TRUE(note);
    auto *const inDrawer = outlet<QPushButton>("searchPropertiesButton");
    const auto offers = [&] { return note->button()->isVisibleTo(&window()); };
    const auto search = [this](const char *text) {
        field().setText(QString::fromUtf8(text));
        controller_->find();
    };
    search("disk");
    EXPECT_FALSE(offers());
    search("32902");
    EXPECT_TRUE(offers());
    field().setFocus();
    press(Qt::Key_Tab);
    EXPECT_TRUE(note->button()->hasFocus());
    press(Qt::Key_Return);
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    EXPECT_FALSE(offers());
    EXPECT_TRUE(field().hasFocus());
    for (const char *box : {"findNameCheckbox", "findInheritanceCheckbox", "findKeysCheckbox",
                            "findValuesCheckbox", "findShownValuesCheckbox"})
        EXPECT_TRUE(outlet<QCheckBox>(box)->isChecked()) << box;
    EXPECT_FALSE(outlet<QCheckBox>("findSpecialCheckbox")->isChecked());

    search("0x8087"); // nothing more to search in
    EXPECT_EQ(count(), "0 objects match");
    EXPECT_FALSE(offers());
    click("resetFindOptionsButton");
    EXPECT_TRUE(offers());
    click("filteredFindCheckbox"); // the tree is there, but the drawer offers the same
    EXPECT_FALSE(offers());
    click("findOptionsDrawerButton");
    EXPECT_TRUE(inDrawer->isVisible());
    search("0x8086");
    click("searchPropertiesButton");
    EXPECT_EQ(count(), "1 object matches");
    EXPECT_FALSE(inDrawer->isVisible());
}

TEST_F(FindTest, APlaneIsChosenThoughTheFilterHidesAllOfIt)
{
    find("nowhere");
    auto *const planes = outlet<QComboBox>("planeListButton");
    planes->setCurrentText(QStringLiteral("DxPower"));
    controller_->planePopupChanged();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxPower"));
        EXPECT_EQ(planes->currentText(), QStringLiteral("DxPower"));
        EXPECT_TRUE(window().windowTitle().contains(QStringLiteral("DxPower")));
        update();
    }
    const int beeps = beeps_;
    controller_->outlineView(); // shows no selection
    EXPECT_EQ(beeps_, beeps + 1);
}
