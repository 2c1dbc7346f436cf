// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "platform/host/DesktopServices.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <numeric>
#include <set>

namespace {
// A disk that has siblings and no child, stands in two planes and has a driver.
class MenuValidationTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        service_.addClass(QStringLiteral("DxDisk"), QStringLiteral("DxService"),
                          QStringLiteral("disk.driver"));
        service_.setBundlePath(QStringLiteral("disk.driver"), QStringLiteral("/lib/disk.ko"));
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  disk@0
                    part
                  disk@1 : DxDisk : DxService
                  disk@2)");
        registry_.plane("DxBlock", R"(
            Root
              disk@1)");
        open();
        QGuiApplication::clipboard()->setText(QStringLiteral("a text"));
        selectDisk();
    }
    void selectDisk() { select({"Root", "Host", "bus", "disk@1"}); }
    void archive()
    {
        openArchived("now & then.vandrel");
        selectDisk();
    }
    bool canRun(const char *command) const { return action(command).isEnabled(); }
    // The commands whose name begins so and that cannot run now, by name.
    std::string cannotRun(const char *beginning = "") const
    {
        std::set<std::string> names;
        for (QAction *command : window().findChildren<QAction *>()) {
            const QString name = command->objectName();
            EXPECT_EQ(controller_->validateMenuItem(*command), command->isEnabled())
                << name.toStdString();
            if (name.startsWith(QLatin1String(beginning)) && !command->isEnabled())
                names.insert(' ' + name.chopped(6).toStdString()); // without "Action"
        }
        return std::accumulate(names.begin(), names.end(), std::string());
    }
    bool haveSiblings(bool isExpected) const
    {
        return canRun("selectNextSiblingAction") == isExpected &&
               canRun("selectPreviousSiblingAction") == isExpected;
    }
    std::string menuTitle(const char *menu, const char *command) const
    {
        Q_EMIT outlet<QMenu>(menu)->aboutToShow();
        return action(command).text().remove(u'&').toStdString();
    }
};
} // namespace

TEST_F(MenuValidationTest, CommandsCanRunWhenTheySay)
{
    const std::string noPath = " copyKernelPath"; // the test's service gives none
    const std::string always =
        " exportComparison findNext findNextInAnyPlane findPrev findPrevInAnyPlane goForward "
        "goToNextDifference"; // the window shows no comparison
    EXPECT_EQ(cannotRun(),
              noPath + always +
                  " goToNextPathInPlane goToPreviousDifference readAttribute redo saveFilter "
                  "selectChild undo");
    EXPECT_TRUE(action("outlineViewAction").isChecked());

    controller_->browserView();
    selectNothing();
    EXPECT_EQ(cannotRun(), // Deliberate: not the previous sibling's
              " collapseAll collapseAroundSelection copyBundle copyClass copyEntryAsJson "
              "copyEntryAsText copyKernelPath copyName copyPath expandAll" +
                  always +
                  " goToNextPathCrossPlane goToNextPathInPlane goToPrevPathCrossPlane "
                  "goToPrevPathInPlane goToPreviousDifference openInNewWindow promptForBookmark "
                  "readAttribute redo "
                  "revealSelectionBundleInNavro saveFilter selectChild selectNextSibling "
                  "selectParent undo "
                  "updateSelectedObject");
    EXPECT_TRUE(action("browserViewAction").isChecked());
    EXPECT_FALSE(action("outlineViewAction").isChecked());
    action("browserViewAction").trigger(); // which is shown already
    EXPECT_TRUE(action("browserViewAction").isChecked());

    archive();
    click("findNameCheckbox");
    for (const char *query : {"", "nowhere"}) {
        find(query);
        EXPECT_EQ(cannotRun("find"), " findNext findNextInAnyPlane findPrev findPrevInAnyPlane");
    }
    find("disk@1");
    EXPECT_EQ(cannotRun("find"), "");
    find("disk@2"); // no matches of another plane follow
    EXPECT_EQ(cannotRun("find"), " findPrev");
    find("");
    selectDisk();
    EXPECT_EQ(cannotRun(),
              " changeTimedUpdate clearTerminatedObjects" + noPath + always +
                  " goToNextPathInPlane goToPreviousDifference markThisMoment readAttribute redo "
                  "saveFilter selectChild toggleAutoupdate toggleFollowValues toggleLog "
                  "togglePause togglePlots toggleRecentChanges toggleSparklines "
                  "toggleTimedUpdate undo update updateSelectedObject");
}

TEST_F(MenuValidationTest, TitlesAndCheckMarksTellTheState)
{
    store_->setPollInterval(2);
    EXPECT_EQ(menuTitle("registryMenu", "toggleTimedUpdateAction"), "Timed Update…");
    EXPECT_FALSE(action("toggleTimedUpdateAction").isChecked());
    store_->setPolledUpdate(true);
    store_->setAutoupdate(true);
    EXPECT_EQ(menuTitle("registryMenu", "toggleTimedUpdateAction"), "Timed Update (2s)");
    EXPECT_TRUE(action("toggleTimedUpdateAction").isChecked());
    EXPECT_TRUE(action("toggleAutoupdateAction").isChecked());
    store_->setPollInterval(0.25);
    EXPECT_EQ(menuTitle("registryMenu", "changeTimedUpdateAction"),
              "Set Timed Update Interval… (0.25s)");

    archive();
    EXPECT_FALSE(action("toggleTimedUpdateAction").isChecked());
    EXPECT_FALSE(action("toggleAutoupdateAction").isChecked());
    action("toggleTimedUpdateAction").setText(QStringLiteral("as it was"));
    EXPECT_EQ(menuTitle("registryMenu", "toggleTimedUpdateAction"), "as it was");
    EXPECT_EQ(menuTitle("windowMenu", "newDocumentWindowAction"),
              "New Viewer Window for 'now  then.vandrel'");
    EXPECT_TRUE(action("newDocumentWindowAction").text().contains(QLatin1String("now && then")));
}

TEST_F(MenuValidationTest, RelativesAndOtherPathsAreThoseInSight)
{
    for (const char *checkbox : {"findNameCheckbox", "filteredFindCheckbox"})
        click(checkbox);
    for (const bool isBrowser : {false, true}) {
        SCOPED_TRACE(isBrowser ? "columns" : "tree");
        isBrowser ? controller_->browserView() : controller_->outlineView();
        selectDisk();
        EXPECT_TRUE(haveSiblings(true));
        find("disk@1");
        EXPECT_TRUE(haveSiblings(false));
        click("filteredFindCheckbox");
        EXPECT_TRUE(haveSiblings(true));
        click("filteredFindCheckbox");
        EXPECT_TRUE(haveSiblings(false));
        find("");
        EXPECT_TRUE(haveSiblings(true));
    }

    terminate("disk@2");
    update();
    EXPECT_TRUE(haveSiblings(true));
    controller_->toggleShowTerminatedObjects();
    EXPECT_FALSE(canRun("selectNextSiblingAction"));
    controller_->outlineView();
    EXPECT_FALSE(canRun("selectNextSiblingAction"));
    controller_->toggleShowTerminatedObjects();
    select({"Root", "Host", "bus", "disk@0"});
    EXPECT_TRUE(canRun("selectNextSiblingAction"));
    EXPECT_FALSE(canRun("selectPreviousSiblingAction"));
    EXPECT_TRUE(canRun("selectChildAction"));
    service_.remove(registry_["part"]);
    update();
    store_->clearTerminatedObjects();
    EXPECT_FALSE(canRun("selectChildAction"));

    selectDisk();
    service_.link(registry_["Host"], registry_["disk@1"], "DxService");
    update();
    EXPECT_TRUE(canRun("goToNextPathInPlaneAction"));
    action("goToNextPathInPlaneAction").trigger();
    EXPECT_EQ(selected(), "DxService:/disk@1");
}

// The key of a command that cannot run does nothing in the focused view either.
TEST_F(MenuValidationTest, KeysOfCommandsThatCannotRunOnlyBeep)
{
    click("findNameCheckbox");
    action("toggleFindOptionsDrawerAction").trigger();
    find("disk@");
    auto &results = *outlet<QAbstractItemView>("findTableView");
    results.setCurrentIndex(results.model()->index(1, 0));
    const auto beepsFor = [&](const char *view, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        const int before = beeps_;
        outlet<QWidget>(view)->setFocus();
        press(key, modifiers);
        EXPECT_EQ(selected(), "DxService:/bus/disk@1") << view;
        return beeps_ - before;
    };
    for (const char *view :
         {"registryOutlineView", "propertiesOutlineView", "findTableView", "registryBrowser"}) {
        if (view == std::string("registryBrowser"))
            controller_->browserView();
        EXPECT_EQ(beepsFor(view, Qt::Key_Down, Qt::AltModifier), 1) << view; // it has no child
        EXPECT_EQ(beepsFor(view, Qt::Key_Right, Qt::AltModifier | Qt::KeypadModifier), 1) << view;
        EXPECT_EQ(beepsFor(view, Qt::Key_PageDown, Qt::ControlModifier), 1) << view;
        EXPECT_EQ(beepsFor(view, Qt::Key_F9, {}), 0) << view; // no command's
    }
    find("");
    EXPECT_EQ(beepsFor("registryBrowser", Qt::Key_F3, {}), 1);
}

TEST_F(MenuValidationTest, KeysDoNotGetPastTheTruth)
{
    QStringList revealed;
    DesktopServices::instance().revealFile = [&](const QString &file) { revealed.append(file); };
    const QAction &reveal = action("revealSelectionBundleInNavroAction");
    QTest::keySequence(&window(), reveal.shortcut());
    EXPECT_EQ(revealed, QStringList{QStringLiteral("/lib/disk.ko")});
    service_.setBundlePath(QStringLiteral("disk.driver"), {}); // unseen
    ASSERT_TRUE(reveal.isEnabled());
    QTest::keySequence(&window(), reveal.shortcut());
    EXPECT_EQ(revealed.size(), 1);
    EXPECT_EQ(beeps_, 1);
    EXPECT_FALSE(reveal.isEnabled());
    DesktopServices::instance().revealFile = nullptr;

    auto *const files = new QMimeData;
    files->setUrls({QUrl(QStringLiteral("file:///a"))});
    QGuiApplication::clipboard()->setMimeData(files);
    EXPECT_FALSE(canRun("pasteAction"));
}
