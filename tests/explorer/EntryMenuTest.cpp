// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "platform/host/DesktopServices.h"
#include "platform/widgets/ColumnBrowser.h"

#include <QContextMenuEvent>
#include <QDockWidget>
#include <QListView>
#include <QMenu>

namespace {
class EntryMenuTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        service_.addClass(QStringLiteral("DxDisk"), QStringLiteral("DxService"),
                          QStringLiteral("disk.driver"));
        service_.setBundlePath(QStringLiteral("disk.driver"), QStringLiteral("/lib/disk.ko"));
        plantDisks();
        open();
    }
    QMenu *menu() const { return window().findChild<QMenu *>(QStringLiteral("entryMenu")); }
    static QPoint placeOf(const QAbstractItemView &view, int row)
    {
        return view.visualRect(view.model()->index(row, 0)).center();
    }
    // Opens a view's menu as the pointer does or, without a place, as the key does.
    static void askForMenu(QAbstractItemView &view, std::optional<QPoint> place = {})
    {
        if (place)
            QTest::mouseClick(view.viewport(), Qt::RightButton, {}, *place);
        QContextMenuEvent event(place ? QContextMenuEvent::Mouse : QContextMenuEvent::Keyboard,
                                place.value_or(QPoint()),
                                view.viewport()->mapToGlobal(place.value_or(QPoint())));
        QCoreApplication::sendEvent(place ? view.viewport() : &view, &event);
    }
    void choose(const char *command)
    {
        ASSERT_TRUE(menu()) << command;
        ASSERT_TRUE(menu()->actions().contains(&action(command))) << command;
        action(command).trigger();
        menu()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    std::string copiedBy(const char *command)
    {
        choose(command);
        return copied();
    }
};
} // namespace

TEST_F(EntryMenuTest, ActsOnTheRowUnderThePointer)
{
    QStringList revealed;
    DesktopServices::instance().revealFile = [&](const QString &file) { revealed.append(file); };
    const QPoint place = tree().visualRect(row({"Root", "Host", "bus", "disk@0"})).center();
    select({"Root", "Host"});
    const std::pair<const char *, const char *> copies[] = {
        {"copyNameAction", "disk@0"},
        {"copyPathAction", "DxService:/bus/disk@0"},
        {"copyClassAction", "DxDisk"},
        {"copyBundleAction", "disk.driver"},
    };
    for (const auto &[command, expected] : copies) {
        askForMenu(tree(), place);
        EXPECT_EQ(copiedBy(command), expected);
    }
    askForMenu(tree()); // by key, where the selection is
    EXPECT_EQ(copiedBy("copyNameAction"), "disk@0");
    askForMenu(tree(), place);
    choose("revealSelectionBundleInNavroAction");
    EXPECT_EQ(revealed, QStringList{QStringLiteral("/lib/disk.ko")});
    DesktopServices::instance().revealFile = nullptr;

    askForMenu(tree(), tree().viewport()->rect().bottomLeft()); // below the rows
    EXPECT_FALSE(menu());
    tree().deselectAll();
    askForMenu(tree());
    EXPECT_FALSE(menu());
}

TEST_F(EntryMenuTest, OpensInColumnsAndSearchResultsToo)
{
    select({"Root", "Host", "bus", "disk@0"});
    controller_->browserView();
    const auto &browser = *outlet<ColumnBrowser>("registryBrowser");
    QTest::qWait(1); // until the columns are laid out
    askForMenu(*browser.list(3), placeOf(*browser.list(3), 1));
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@1"));
    EXPECT_FALSE(action("copyBundleAction").isEnabled());
    EXPECT_EQ(copiedBy("copyNameAction"), "disk@1");

    QTest::keySequence(&window(), QKeySequence(Qt::SHIFT | Qt::Key_F10));
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@1"));
    choose("openInNewWindowAction");
    ASSERT_EQ(document_->windowControllers().size(), 2U);
    QTest::qWait(1);
    EXPECT_EQ(controller(1).selectedEntry(), entry("disk@1"));

    // In an earlier column, where the row is selected already.
    askForMenu(*browser.list(1), placeOf(*browser.list(1), 0));
    EXPECT_EQ(controller_->selectedEntry(), entry("Host"));
    EXPECT_EQ(browser.selectedColumn(), 1);
    EXPECT_EQ(copiedBy("copyPathAction"), "DxService:/");

    click("findNameCheckbox");
    find("disk");
    outlet<QDockWidget>("findOptionsDrawer")->show();
    auto &results = *outlet<QAbstractItemView>("findTableView");
    askForMenu(results, placeOf(results, 1));
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@1"));
    EXPECT_EQ(copiedBy("copyNameAction"), "disk@1");
}
