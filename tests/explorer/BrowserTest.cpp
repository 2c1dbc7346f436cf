// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/ColumnResizer.h"

#include <QListView>
#include <QScrollBar>

namespace {
class BrowserTest : public ExplorerFixture
{
protected:
    void SetUp() override { plantDisks(); }
    void openColumns()
    {
        open();
        controller_->browserView();
        browser_ = outlet<ColumnBrowser>("registryBrowser");
    }
    // A line for each column: "*" marks a selected row, ">" one that another column belongs to.
    std::string columns() const
    {
        std::string text;
        for (int column = 0; column <= browser_->lastColumn(); ++column) {
            for (int row = 0; row < browser_->numberOfRows(column); ++row) {
                const ColumnBrowserCell &cell = *browser_->cell(row, column);
                text += (row > 0 ? ", " : "") + cell.text.toStdString() + (cell.isLeaf ? "" : ">") +
                        (browser_->selectedRow(column) == row ? "*" : "");
            }
            text += '\n';
        }
        return text;
    }
    void clickRow(int row, int column)
    {
        QListView &list = *browser_->list(column);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualRect(list.model()->index(row, 0)).center());
    }
    bool isInSight(int column) const
    {
        const QListView &list = *browser_->list(column);
        return browser_->viewport()->rect().contains(
            {list.mapTo(browser_->viewport(), QPoint()), list.size()});
    }

    ColumnBrowser *browser_ = nullptr;
};
} // namespace

TEST_F(BrowserTest, ShowsTheSelectionAndWhatIsBelowIt)
{
    openColumns();
    EXPECT_EQ(columns(), "Root>*\nHost>\n");
    select({"Root", "Host", "bus"});
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0>, disk@1\n");
    select({"Root", "Host", "module"});
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module*\n");
    EXPECT_EQ(beeps_, 0);

    select({"Root", "Host", "bus", "part@1"}); // which is not straight below
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0>, disk@1\n");
    select({"Host"}); // nothing of it is there
    EXPECT_EQ(beeps_, 2);
    EXPECT_EQ(selected(), "DxService:/bus");

    select({"Root", "Host", "bus", "disk@0"});
    const QListView &left = *browser_->list(4);
    EXPECT_EQ(left.model()->rowCount(), 1);
    showPlane("DxPower");
    EXPECT_EQ(left.model()->rowCount(), 0); // it is still seen, and may be painted
    window().grab();
    EXPECT_EQ(columns(), "Root>\n");
    controller_->goToEntryPath(std::nullopt, true, true);
    EXPECT_EQ(columns(), "Root>\n");
    EXPECT_FALSE(controller_->selectedEntry());
}

TEST_F(BrowserTest, KeysMoveInAllDirections)
{
    openColumns();
    controller_->makeExplorerFirstResponder();
    ASSERT_TRUE(controller_->isExplorerFirstResponder());
    const std::pair<Qt::Key, const char *> steps[] = {
        {Qt::Key_Left, "(DxService)"}, // there is nothing before the first column
        {Qt::Key_Right, "DxService:/"},
        {Qt::Key_Right, "DxService:/bus"},
        {Qt::Key_Down, "DxService:/module"},
        {Qt::Key_Right, "DxService:/module"}, // nor anything after a leaf
        {Qt::Key_Left, "DxService:/"},
        {Qt::Key_Right, "DxService:/bus"},
        {Qt::Key_Right, "DxService:/bus/disk@0"},
        {Qt::Key_End, "DxService:/bus/disk@1"},
        {Qt::Key_Up, "DxService:/bus/disk@0"},
        {Qt::Key_Left, "DxService:/bus"},
        {Qt::Key_M, "DxService:/module"},
    };
    for (const auto &[key, expected] : steps) {
        press(key);
        EXPECT_EQ(selected(), expected) << key;
    }
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module*\n");
    EXPECT_TRUE(controller_->isExplorerFirstResponder());
}

TEST_F(BrowserTest, ClicksSelectInAnyColumn)
{
    openColumns();
    select({"Root", "Host", "bus", "disk@0"});
    clickRow(1, 3);
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    clickRow(0, 1); // selected as it is, with more after it
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module\n");
    EXPECT_EQ(selected(), "DxService:/");
    clickRow(0, 2);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0>, disk@1\n");

    // A click beside its rows leaves the column.
    const auto clickBeside = [&](int column) {
        QWidget &rows = *browser_->list(column)->viewport();
        QTest::mouseClick(&rows, Qt::LeftButton, {}, {5, rows.height() - 5});
    };
    select({"Root", "Host", "bus", "disk@0", "part@1"});
    for (int i = 0; i < 2; ++i) { // the second time nothing is selected in it any more
        clickBeside(3);
        EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0>, disk@1\n");
        EXPECT_EQ(selected(), "DxService:/bus");
    }
    clickBeside(0);
    EXPECT_EQ(columns(), "Root>\n");
    EXPECT_FALSE(controller_->selectedEntry());
}

TEST_F(BrowserTest, WhatIsHiddenLeavesALeaf)
{
    openColumns();
    select({"Root", "Host", "bus", "disk@0"});
    const QString toolTip = controller_->toolTipForRegistryEntry(*entry("disk@0"));
    terminate("disk@0");
    terminate("part@1");
    controller_->noteDataStoreObjectsTerminated();
    EXPECT_TRUE(browser_->cell(0, 3)->color.isValid()); // styled again in its place
    EXPECT_EQ(browser_->cell(0, 3)->toolTip, toolTip);
    EXPECT_EQ(browser_->cell(0, 3)->accessibleText, QStringLiteral("disk@0, terminated"));
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@1\n");
    terminate("disk@1");
    controller_->refreshDisplay();
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus*, module\n");
}

TEST_F(BrowserTest, SearchLeavesMatchesAndTheWayToThem)
{
    openColumns();
    click("findNameCheckbox");
    find("module");
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module*\n");
    controller_->toggleShowTerminatedObjects(); // hides what is left out, too
    EXPECT_EQ(columns(), "Root>*\nHost>*\nmodule*\n");
    find("nothing");
    select({"Root"});
    EXPECT_EQ(columns(), "Root*\n");
    controller_->toggleShowTerminatedObjects();

    click("filteredFindCheckbox");
    find("part");
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*\ndisk@0>*\npart@1*\n");
    find("nothing");
    EXPECT_EQ(columns(), "\n");
    find("");
    EXPECT_EQ(columns().substr(0, columns().find('\n')), "Root>*");
}

TEST_F(BrowserTest, KeepsItsPlaceThroughUpdates)
{
    add("module", "row", 100, 300);
    openColumns();
    const auto &rows = entry("module")->childrenInPlane(QStringLiteral("DxService"));
    TavRegistryEntryPath middle = path({"Root", "Host", "module"});
    middle.appendRegistryEntry(rows[150]->shared_from_this());
    controller_->goToEntryPath(middle, true, true);
    QListView &list = *browser_->list(3);
    const auto top = [&] { return list.visualRect(list.currentIndex()).top(); };
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.currentIndex())));
    const int before = top();
    add("module", "a", 0, 7);
    update();
    EXPECT_EQ(list.currentIndex().data().toString(), QStringLiteral("row250"));
    EXPECT_EQ(top(), before);
}

// Deliberate: the row that is scrolled to in the column after the selection is counted in the one
// before.
TEST_F(BrowserTest, ScrollsTheNextColumnByTheRowsOfTheLast)
{
    add("Host", "a", 100, 80);
    add("module", "below", 100, 300);
    openColumns();
    select({"Root", "Host", "module"});
    const QListView &next = *browser_->list(3);
    const int rows = browser_->numberOfRows(2);
    EXPECT_GT(next.verticalScrollBar()->value(), 0);
    EXPECT_TRUE(next.viewport()->rect().contains(next.visualRect(next.model()->index(rows, 0))));
}

TEST_F(BrowserTest, KeepsTheSelectionInSightAndColumnWidths)
{
    std::string deep = "Root\n  Host\n    a";
    for (int level = 3; level < 9; ++level)
        deep += '\n' + std::string(2 * level, ' ') + static_cast<char>('a' + level - 2);
    registry_.plane("DxService", deep.c_str());
    openColumns();
    EXPECT_TRUE(isInSight(0));
    select({"Root", "Host", "a", "b", "c", "d", "e", "f", "g"});
    EXPECT_TRUE(isInSight(8) && !isInSight(0));
    select({"Root"});
    EXPECT_TRUE(isInSight(0));
    select({"Root", "Host", "a", "b"});
    for (const int width : {1400, 420}) {
        window().resize(width, 600);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isInSight(3); })) << width;
    }
    EXPECT_GT(browser_->horizontalScrollBar()->value(), 0);

    const int width = browser_->list(0)->width();
    auto *const edge = browser_->findChild<ColumnResizer *>();
    QTest::mousePress(edge, Qt::LeftButton, {}, {2, 10});
    QTest::mouseMove(edge, {52, 10});
    QTest::mouseRelease(edge, Qt::LeftButton, {}, {2, 10});
    EXPECT_EQ(browser_->list(0)->width(), width + 50);
    close();
    openColumns();
    EXPECT_EQ(browser_->list(0)->width(), width + 50);
}
