// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "tests/support/RegistryValues.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>

namespace {
class FindResultsTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        service_.setProperties(registry_["disk@0"],
                               values::dictionary({{"Serial", values::text("Q-77\nB")},
                                                   {"Size", values::number(512)}}));
        prefer("FindOptions", 1);
        open();
        table_ = outlet<QTableView>("findTableView");
    }
    std::string cell(int row, int column) const
    {
        return table_->model()->index(row, column).data().toString().toStdString();
    }
    static void pressRow(QTableView &table, int row)
    {
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                          table.visualRect(table.model()->index(row, 0)).center());
    }

    QTableView *table_ = nullptr;
};
} // namespace

TEST_F(FindResultsTest, PreviewAPropertyAndLeadToTheirEntry)
{
    outlet<QDockWidget>("findOptionsDrawer")->show();
    const auto header = [&] { return table_->model()->headerData(1, Qt::Horizontal).toString(); };
    EXPECT_EQ(header(), QStringLiteral("Property"));
    auto *const preview = outlet<QLineEdit>("findPreviewField");
    const auto shown = [&](const char *key) {
        preview->setText(QString::fromUtf8(key));
        return cell(0, 1) + ' ' + cell(1, 1);
    };
    find("disk");
    EXPECT_EQ(shown(""), " ");
    EXPECT_EQ(shown("Serial"), "Q-77␊B ");
    EXPECT_EQ(header(), QStringLiteral("Serial"));
    EXPECT_GT(shown("Size").size(), 1U);
    EXPECT_EQ(shown("BUSY"), "0 0");
    EXPECT_EQ(shown("Registered"), "True True");

    pressRow(*table_, 1);
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    controller_->findPrev();
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    pressRow(*table_, 1); // selected as it is
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    find("supply");
    table_->selectRow(0); // not in the visible plane
    EXPECT_EQ(selected(), "DxPower:/supply");
    EXPECT_EQ(beeps_, 1); // by the last search, in the plane before
}

TEST_F(FindResultsTest, AreToldApartByLocationAndPath)
{
    find("disk");
    EXPECT_EQ(cell(0, 0) + ' ' + cell(1, 0), "disk@0 disk@1");
    const auto says = [this](int row, int role) {
        return table_->model()
            ->index(row, 0)
            .data(role)
            .toString()
            .section(u'\n', 0, 1)
            .toStdString();
    };
    EXPECT_EQ(says(1, Qt::ToolTipRole), "DxService:/bus/disk@1\ndisk@1");
    EXPECT_EQ(says(1, Qt::AccessibleTextRole), "disk@1");
    const auto *const count = outlet<QLabel>("findNumMatchedField");
    EXPECT_EQ(count->text(), QStringLiteral("2 objects match"));
    select({"Root", "Host", "supply"}, "DxPower"); // where only one of them is
    EXPECT_EQ(count->text(), QStringLiteral("2 objects match, 1 in this plane"));
    EXPECT_EQ(says(0, Qt::ToolTipRole), "DxPower:/supply/disk@0\ndisk@0");
    EXPECT_EQ(says(1, Qt::ToolTipRole), "DxService:/bus/disk@1\ndisk@1");
    find("part");
    EXPECT_EQ(count->text(), QStringLiteral("1 object matches, 0 in this plane"));
    find("Root"); // which is in all
    EXPECT_EQ(count->text(), QStringLiteral("1 object matches"));
}

TEST_F(FindResultsTest, FollowTheRegistryWhereTheyAreScrolledTo)
{
    add("bus", "disk", 100, 200);
    update();
    find("disk");
    outlet<QDockWidget>("findOptionsDrawer")->show();
    QScrollBar &bar = *table_->verticalScrollBar();
    table_->selectRow(50);
    table_->scrollTo(table_->model()->index(50, 0), QAbstractItemView::PositionAtCenter);
    const int place = table_->rowViewportPosition(50);
    const std::string before = selected();
    add("bus", "a disk");
    update();
    const auto *const count = outlet<QLabel>("findNumMatchedField");
    EXPECT_EQ(count->text(), QStringLiteral("203 objects match"));
    EXPECT_EQ(cell(0, 0), "a disk");
    EXPECT_TRUE(table_->selectionModel()->isRowSelected(51)); // the same entry as before
    EXPECT_EQ(selected(), before);
    EXPECT_EQ(table_->rowViewportPosition(51), place);
    bar.setValue(bar.maximum()); // away from the selected row
    const int scrolled = bar.value();
    update();
    EXPECT_EQ(bar.value(), scrolled);
    EXPECT_TRUE(table_->selectionModel()->isRowSelected(51));

    terminate("disk@1");
    controller_->noteDataStoreObjectsTerminated();
    table_->grab();
    store_->clearTerminatedObjects();
    EXPECT_EQ(count->text(), QStringLiteral("202 objects match"));
    EXPECT_EQ(rows().find("disk@1"), std::string::npos);
    action("findNextAction").trigger();
}

TEST_F(FindResultsTest, AreSortedByAHeaderAsPeopleCount)
{
    add("bus", "disk", 8, 4);
    for (const int size : {9, 10})
        service_.setProperties(
            registry_[size == 9 ? "disk@1" : "part@1"],
            values::dictionary({{"Size", values::number(static_cast<quint64>(size))}}));
    update();
    find("disk");
    outlet<QDockWidget>("findOptionsDrawer")->show();
    outlet<QLineEdit>("findPreviewField")->setText(QStringLiteral("Size"));
    const auto names = [this] {
        std::string all;
        for (int row = 0; row < table_->model()->rowCount(); ++row)
            all += cell(row, 0) + ' ';
        return all;
    };
    const auto click = [this](int column) {
        const QHeaderView *const header = table_->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    };
    const std::string byEntry = names();
    EXPECT_EQ(byEntry, "disk10 disk11 disk8 disk9 disk@0 disk@1 ");
    table_->selectRow(2);
    click(0);
    EXPECT_EQ(names(), "disk8 disk9 disk10 disk11 disk@0 disk@1 ");
    EXPECT_TRUE(table_->selectionModel()->isRowSelected(0));
    click(0);
    EXPECT_EQ(names(), "disk@1 disk@0 disk11 disk10 disk9 disk8 ");
    click(0);
    EXPECT_EQ(names(), byEntry);
    click(1);
    EXPECT_EQ(names(), "disk10 disk11 disk8 disk9 disk@1 disk@0 ");
}

TEST_F(FindResultsTest, TheDrawerLeavesRoomForTheTree)
{
    auto &drawer = *outlet<QDockWidget>("findOptionsDrawer");
    action("toggleFindOptionsDrawerAction").trigger();
    const std::pair<QSize, Qt::DockWidgetArea> sizes[] = {
        {{1120, 720}, Qt::RightDockWidgetArea},
        {{700, 600}, Qt::BottomDockWidgetArea},
        {{960, 400}, Qt::RightDockWidgetArea},
    };
    for (const auto &[size, area] : sizes) {
        window().resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(window().dockWidgetArea(&drawer), area);
        EXPECT_EQ(window().width(), size.width());
        EXPECT_TRUE(drawer.isVisible());
        EXPECT_GE(tree().width(), 220) << size.width();
        EXPECT_GE(table_->width(), 180) << size.width();
    }
    window().resize(700, 360); // too low for what is below the tree
    QCoreApplication::processEvents();
    EXPECT_LE(window().geometry().bottom(), window().screen()->availableGeometry().bottom());
    EXPECT_GT(window().height(), 360);
    action("toggleFindOptionsDrawerAction").trigger();
    EXPECT_EQ(window().minimumHeight(), 360);
}

// A window that is not notified yet still lists what has left the store.
TEST_F(FindResultsTest, ListEntriesThatHaveGone)
{
    TavWindowController untold(*document_);
    untold.findWithString(QStringLiteral("disk@1"));
    auto &table = *InterfaceLoader::outlet<QTableView>(*untold.window(), "findTableView");
    terminate("disk@1");
    store_->clearTerminatedObjects();
    EXPECT_EQ(table.model()->index(0, 0).data().toString(), QStringLiteral("disk@1"));
    untold.window()->grab();
    for (int beeps = 1; beeps <= 2; ++beeps) {
        pressRow(table, 0);
        EXPECT_EQ(beeps_, beeps);
    }
    untold.findNext();
    untold.window()->grab();
    untold.refreshDisplay();
    EXPECT_EQ(table.model()->rowCount(), 0);
}
