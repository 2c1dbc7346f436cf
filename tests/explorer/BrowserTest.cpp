#include "ExplorerFixture.h"
#include "explorer/TavRegistryBrowserCell.h"
#include "platform/desktop/ColumnBrowser.h"
#include "platform/desktop/ColumnResizer.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeText.h"

#include <QCheckBox>
#include <QListView>
#include <QScrollBar>
#include <QTest>

namespace {
class BrowserTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  disk@0
                  disk@1
                    part
                module)");
        registry_.plane("DxPower", R"(
            Root
              Host
                supply
                  disk@1)");
    }
    void openColumns()
    {
        open();
        controller_->browserView();
        browser_ = outlet<ColumnBrowser>("registryBrowser");
    }
    void go(std::initializer_list<const char *> labels)
    {
        controller_->goToEntryPath(path(labels), true, true);
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
    void press(int key) { QTest::keyClick(controller_->window()->focusWidget(), Qt::Key(key)); }
    void click(int row, int column)
    {
        QListView &list = *browser_->list(column);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualRect(list.model()->index(row, 0)).center());
    }
    QString selected() const { return controller_->registryPathForSelectedEntry(); }

    ColumnBrowser *browser_ = nullptr;
};
} // namespace

TEST_F(BrowserTest, KeepsTheSelectionInSightWhenItGetsNarrower)
{
    openColumns();
    go({"Root", "Host", "bus", "disk@1"});
    const auto isSeen = [&] {
        const QListView &list = *browser_->list(3);
        return browser_->viewport()->rect().contains(
            {list.mapTo(browser_->viewport(), QPoint()), list.size()});
    };
    controller_->window()->resize(1400, 600);
    EXPECT_TRUE(QTest::qWaitFor(isSeen));
    controller_->window()->resize(420, 600);
    EXPECT_TRUE(QTest::qWaitFor(isSeen));
    EXPECT_GT(browser_->horizontalScrollBar()->value(), 0);
}

TEST_F(BrowserTest, LetsGoOfColumnsThatAreLeft)
{
    openColumns();
    go({"Root", "Host", "bus", "disk@1"});
    const QListView &left = *browser_->list(4);
    EXPECT_EQ(left.model()->rowCount(), 1);
    controller_->setRegistryPlane(QStringLiteral("DxPower"), true);
    EXPECT_EQ(left.model()->rowCount(), 0); // it is still seen, and may be painted
    controller_->window()->grab();
}

TEST_F(BrowserTest, ShowsTheSelectionAndWhatIsBelowIt)
{
    openColumns();
    EXPECT_EQ(columns(), "Root>*\nHost>\n");
    go({"Root", "Host", "bus"});
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0, disk@1>\n");
    go({"Root", "Host", "bus", "disk@1"});
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0, disk@1>*\npart\n");
    go({"Root", "Host", "module"});
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module*\n");
    EXPECT_EQ(beeps_, 0);

    const auto *const cell = static_cast<const TavRegistryBrowserCell *>(browser_->selectedCell(2));
    EXPECT_EQ(cell->representedObject().get(), entry("module"));
    EXPECT_EQ(cell->browser(), browser_);
    EXPECT_TRUE(cell->state);
    EXPECT_EQ(cell->toolTip, controller_->toolTipForRegistryEntry(*entry("module")));

    go({"Root", "Host", "bus", "disk@1"});
    controller_->setRegistryPlane(QStringLiteral("DxPower"), true);
    EXPECT_EQ(columns(), "Root>\n");
    controller_->goToEntryPath(std::nullopt, true, true);
    EXPECT_EQ(columns(), "Root>\n");
    EXPECT_FALSE(controller_->selectedEntry());
}

TEST_F(BrowserTest, GoesAsFarAsThePathReaches)
{
    openColumns();
    go({"Root", "Host", "bus", "part"});
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0, disk@1>\n");
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus"));
    go({"Host"}); // nothing of it is there
    EXPECT_EQ(beeps_, 2);
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus"));
}

TEST_F(BrowserTest, KeysMoveInAllDirections)
{
    openColumns();
    controller_->makeExplorerFirstResponder();
    ASSERT_TRUE(controller_->isExplorerFirstResponder());
    press(Qt::Key_Left); // there is nothing before the first column
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus"));
    press(Qt::Key_Down);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module*\n");
    press(Qt::Key_Right); // nor anything after a leaf
    EXPECT_EQ(selected(), QStringLiteral("DxService:/module"));
    press(Qt::Key_Left);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module\n");
    EXPECT_EQ(selected(), QStringLiteral("DxService:/"));
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_End);
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus/disk@1"));
    press(Qt::Key_Up);
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus/disk@0"));
    press(Qt::Key_Left);
    QTest::keyClicks(controller_->window()->focusWidget(), QStringLiteral("mo"));
    EXPECT_EQ(selected(), QStringLiteral("DxService:/module"));
    EXPECT_TRUE(controller_->isExplorerFirstResponder());
}

TEST_F(BrowserTest, ClicksSelectInAnyColumn)
{
    openColumns();
    go({"Root", "Host", "bus", "disk@1"});
    click(0, 3);
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus/disk@0"));
    click(0, 1); // selected as it is, with more after it
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module\n");
    EXPECT_EQ(selected(), QStringLiteral("DxService:/"));
    click(0, 2);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0, disk@1>\n");
}

TEST_F(BrowserTest, ClickBesideTheRowsLeavesTheColumn)
{
    openColumns();
    go({"Root", "Host", "bus", "disk@1", "part"});
    const auto clickBeside = [&](int column) {
        QWidget &rows = *browser_->list(column)->viewport();
        QTest::mouseClick(&rows, Qt::LeftButton, {}, {5, rows.height() - 5});
    };
    clickBeside(3);
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0, disk@1>\n");
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus"));
    clickBeside(3); // nothing is selected in it any more
    EXPECT_EQ(selected(), QStringLiteral("DxService:/bus"));
    clickBeside(0);
    EXPECT_EQ(columns(), "Root>\n");
    EXPECT_FALSE(controller_->selectedEntry());
}

TEST_F(BrowserTest, CellThatIsOffEndsThePath)
{
    openColumns();
    go({"Root", "Host", "bus", "disk@1"});
    browser_->selectedCell(2)->state = false;
    controller_->browserSelectionChanged();
    EXPECT_EQ(selected(), QStringLiteral("DxService:/"));
    browser_->selectedCell(0)->state = false;
    controller_->browserSelectionChanged();
    EXPECT_FALSE(controller_->selectedEntry());
}

TEST_F(BrowserTest, WhatIsHiddenLeavesALeaf)
{
    openColumns();
    go({"Root", "Host", "bus", "disk@1"});
    const QString toolTip = browser_->selectedCell(3)->toolTip;
    terminate("disk@1");
    terminate("part");
    controller_->noteDataStoreObjectsTerminated();
    EXPECT_TRUE(browser_->cell(1, 3)->color.isValid()); // styled anew in its place
    EXPECT_EQ(browser_->cell(1, 3)->toolTip, toolTip);
    EXPECT_EQ(browser_->cell(1, 3)->accessibleText, QStringLiteral("disk@1, terminated"));
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*, module\ndisk@0\n");
    terminate("disk@0");
    controller_->refreshDisplay();
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus*, module\n");
}

TEST_F(BrowserTest, SearchLeavesMatchesAndTheWayToThem)
{
    openColumns();
    for (const char *checkbox : {"findNameCheckbox", "filteredFindCheckbox"})
        QTest::mouseClick(outlet<QCheckBox>(checkbox), Qt::LeftButton);
    controller_->findWithString(QStringLiteral("part"));
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*\ndisk@1>*\npart*\n");
    controller_->findWithString(QStringLiteral("disk"));
    controller_->findNext();
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>*\ndisk@0, disk@1*\n");
    controller_->findWithString(QStringLiteral("nothing"));
    EXPECT_EQ(columns(), "\n");
    controller_->findWithString(QString());
    EXPECT_EQ(columns().substr(0, columns().find('\n')), "Root>*");
}

TEST_F(BrowserTest, HidingWhatIsTerminatedHidesWhatASearchLeavesOut)
{
    openColumns();
    QTest::mouseClick(outlet<QCheckBox>("findNameCheckbox"), Qt::LeftButton);
    controller_->findWithString(QStringLiteral("module"));
    EXPECT_EQ(columns(), "Root>*\nHost>*\nbus>, module*\n");
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(columns(), "Root>*\nHost>*\nmodule*\n");
    controller_->findWithString(QStringLiteral("nothing"));
    controller_->goToEntryPath(path({"Root"}), true, true);
    EXPECT_EQ(columns(), "Root*\n");
}

TEST_F(BrowserTest, KeepsItsPlaceThroughUpdates)
{
    std::string tree = "Root\n  Host\n    many\n";
    for (int i = 100; i < 400; ++i)
        tree += "      row" + std::to_string(i) + "\n";
    registry_.plane("DxService", tree.c_str());
    openColumns();
    go({"Root", "Host", "many", "row250"});
    QListView &list = *browser_->list(3);
    const auto top = [&] { return list.visualRect(list.currentIndex()).top(); };
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.currentIndex())));
    const int before = top();
    for (int i = 0; i < 7; ++i)
        service_.link(registry_["many"],
                      service_.add(QStringLiteral("DxDevice"), "a" + QByteArray::number(i)),
                      "DxService");
    update();
    EXPECT_EQ(list.currentIndex().data().toString(), QStringLiteral("row250"));
    EXPECT_EQ(top(), before);
}

// In the column after the selection the row that comes into sight is counted in the one before.
TEST_F(BrowserTest, ScrollsTheNextColumnByTheRowsOfTheLast)
{
    std::string tree = "Root\n  Host\n";
    for (int i = 100; i < 180; ++i)
        tree += "    row" + std::to_string(i) + "\n";
    for (int i = 100; i < 400; ++i)
        tree += "      below" + std::to_string(i) + "\n";
    registry_.plane("DxService", tree.c_str());
    openColumns();
    go({"Root", "Host", "row179"});
    const QListView &next = *browser_->list(3);
    const int rows = browser_->numberOfRows(2);
    EXPECT_GT(next.verticalScrollBar()->value(), 0);
    EXPECT_TRUE(next.viewport()->rect().contains(next.visualRect(next.model()->index(rows, 0))));
}

TEST_F(BrowserTest, ScrollsSidewaysAndKeepsColumnWidths)
{
    std::string tree;
    std::vector<const char *> labels{"Root", "Host", "a", "b", "c", "d", "e", "f", "g"};
    for (std::size_t i = 0; i < labels.size(); ++i)
        tree += std::string(2 * i, ' ') + labels[i] + '\n';
    registry_.plane("DxService", tree.c_str());
    openColumns();
    const auto isSeen = [&](int column) {
        const QListView &list = *browser_->list(column);
        return browser_->viewport()->rect().contains(
            QRect(list.mapTo(browser_->viewport(), QPoint()), list.size()));
    };
    EXPECT_TRUE(isSeen(0));
    go({"Root", "Host", "a", "b", "c", "d", "e", "f", "g"});
    EXPECT_TRUE(isSeen(8) && !isSeen(0));
    go({"Root"});
    EXPECT_TRUE(isSeen(0));

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

TEST_F(BrowserTest, ComesUpWithoutARegistry)
{
    open();
    controller_->browserView();
    service_.setRoot(0);
    update();
    controller_->refreshDisplay();
    controller_->goToEntryPath(std::nullopt, true, true);
}
