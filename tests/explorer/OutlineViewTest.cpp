#include "ExplorerFixture.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavRegistryOutlineView.h"
#include "explorer/TavRegistryOutlineViewDataSource.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeText.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace {
class OutlineViewTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  a
                    part
                  b
                lone)");
        open();
        show();
    }
    void show()
    {
        view_ = outlet<TavRegistryOutlineView>("registryOutlineView");
        tester_ = std::make_unique<QAbstractItemModelTester>(
            view_->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override { tester_.reset(); }

    QModelIndex index(std::initializer_list<const char *> labels) const
    {
        const auto items = view_->itemsForEntryPath(path(labels));
        EXPECT_EQ(items.size(), labels.size());
        return dataSource().indexOf(*items.back());
    }
    const TavRegistryOutlineViewDataSource &dataSource() const
    {
        return *qobject_cast<TavRegistryOutlineViewDataSource *>(view_->model());
    }
    void clickExpander(const QModelIndex &row, Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint place(view_->visualRect(row).left() - view_->indentation() / 2,
                           view_->visualRect(row).center().y());
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers, place);
    }
    std::string rows() const { return rowsOf(*view_); }
    // Closes a and bus, and has the next change belong to another key press.
    void closeTheWayToPart()
    {
        clickExpander(index({"Root", "Host", "bus", "a"}));
        clickExpander(index({"Root", "Host", "bus"}));
        QTest::keyClick(view_, Qt::Key_Shift);
    }
    // Shows another plane for a moment.
    void resetRows()
    {
        const QSignalSpy resets(view_->model(), &QAbstractItemModel::modelReset);
        controller_->setRegistryPlane(QStringLiteral("DxPower"), true);
        controller_->setRegistryPlane(QStringLiteral("DxService"), true);
        EXPECT_EQ(resets.count(), 2);
    }

    TavRegistryOutlineView *view_ = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};
} // namespace

TEST_F(OutlineViewTest, OpensWithTheWholeTreeAndTheRootSelected)
{
    EXPECT_EQ(rows(), dedented(R"(
        Root *
          Host
            bus
              a
                part
              b
            lone)"));
}

TEST_F(OutlineViewTest, KeepsWhatTheUserClosedThroughUpdates)
{
    clickExpander(index({"Root", "Host", "bus", "a"}));
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              aa
                inner
              b
                under)");
    service_.unlink(registry_["Host"], registry_["lone"], "DxService");
    update();
    EXPECT_EQ(rows(), dedented(R"(
        Root *
          Host
            bus
              a +
              aa
                inner
              b
                under)"));
}

TEST_F(OutlineViewTest, RemembersAPlainClickForItsRowAlone)
{
    clickExpander(index({"Root", "Host"}));
    EXPECT_EQ(rows(), "Root *\n  Host +\n");
    view_->reloadData();
    EXPECT_EQ(rows(), "Root *\n  Host +\n");
    clickExpander(index({"Root", "Host"}));
    EXPECT_TRUE(view_->isExpanded(index({"Root", "Host", "bus", "a"})));
}

TEST_F(OutlineViewTest, AltClickClosesAndOpensWholeSubtrees)
{
    clickExpander(index({"Root", "Host"}), Qt::AltModifier);
    EXPECT_EQ(rows(), "Root *\n  Host +\n");
    clickExpander(index({"Root", "Host"}));
    const std::string closedBelow = dedented(R"(
        Root *
          Host
            bus +
            lone)");
    EXPECT_EQ(rows(), closedBelow);
    update();
    EXPECT_EQ(rows(), closedBelow);

    view_->setCurrentIndex(index({"Root", "Host"}));
    QTest::keyClick(view_, Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_TRUE(view_->isExpanded(index({"Root", "Host", "bus", "a"})));
    QTest::keyClick(view_, Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(rows(), "Root\n  Host + *\n");
}

TEST_F(OutlineViewTest, OneActionRemembersTheFirstRowThatItChangesAlone)
{
    const std::string before = rows();
    closeTheWayToPart();
    const auto isMarked = [this](std::initializer_list<const char *> labels) {
        return view_->itemsForEntryPath(path(labels)).back()->isExpanded();
    };
    controller_->goToEntryPath(path({"Root", "Host", "bus", "a", "part"}), true, true);
    EXPECT_TRUE(isMarked({"Root", "Host", "bus"}));
    EXPECT_FALSE(isMarked({"Root", "Host", "bus", "a"}));

    QTest::keyClick(view_, Qt::Key_Shift);
    controller_->collapseAll();
    EXPECT_FALSE(isMarked({"Root"}));
    EXPECT_TRUE(isMarked({"Root", "Host"}));
    EXPECT_TRUE(isMarked({"Root", "Host", "bus"}));
    clickExpander(index({"Root"})); // opens what was open before
    EXPECT_EQ(rows().find("a +") + 2, rows().find('+'));
    QTest::keyClick(view_, Qt::Key_Shift);
    controller_->expandAll();
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(isMarked({"Root", "Host", "bus", "a"}));
}

TEST_F(OutlineViewTest, RowsOpenedInPassingOutlastResets)
{
    const std::string before = rows();
    closeTheWayToPart();
    controller_->goToEntryPath(path({"Root", "Host", "bus", "a", "part"}), true, true);
    controller_->goToEntryPath(path({"Root"}), true, true);
    resetRows();
    EXPECT_EQ(rows(), before.substr(0, 4) + before.substr(6)); // without the selection

    closeTheWayToPart();
    view_->setCurrentIndex(index({"Root"}));
    QTest::keyClick(view_, Qt::Key_Asterisk);
    EXPECT_EQ(rows(), before);
    clickExpander(index({"Root", "Host", "bus", "a"}));
    resetRows();
    EXPECT_NE(rows().find("a +\n      b\n"), std::string::npos);
}

// With a layout for each row, large trees would open and close slowly.
TEST_F(OutlineViewTest, LaysOutOnceHoweverManyRowsOpenOrClose)
{
    FakeRegistry::Node parent = registry_["lone"];
    for (int i = 0; i < 200; ++i) {
        const auto child = service_.add(QStringLiteral("DxDevice"), "m" + QByteArray::number(i));
        service_.link(parent, child, "DxService");
        parent = i % 8 == 7 ? registry_["lone"] : child;
    }
    update();
    view_->setCurrentIndex(index({"Root", "Host"}));
    const QSignalSpy layouts(view_->verticalScrollBar(), &QScrollBar::rangeChanged);
    QTest::keyClick(view_, Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(layouts.count(), 1);
    QTest::keyClick(view_, Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(layouts.count(), 2);
    QTest::keyClick(view_, Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
    QTest::keyClick(view_, Qt::Key_Asterisk);
    EXPECT_EQ(layouts.count(), 4);
    EXPECT_TRUE(view_->isExpanded(index({"Root", "Host", "bus", "a"})));
}

TEST_F(OutlineViewTest, ExpandsAndCollapsesAll)
{
    controller_->goToEntryPath(path({"Root", "Host", "bus", "a"}), true, true);
    controller_->collapseAll();
    EXPECT_EQ(rows(), "Root + *\n");
    update();
    EXPECT_EQ(rows(), "Root + *\n");
    controller_->expandAll();
    EXPECT_TRUE(view_->isExpanded(index({"Root", "Host", "bus", "a"})));
    update();
    EXPECT_TRUE(view_->isExpanded(index({"Root", "Host", "bus", "a"})));
}

TEST_F(OutlineViewTest, FindsTheLongestPrefixOfAPath)
{
    TavRegistryEntryPath missing = path({"Root", "Host", "b"}); // b is not straight below
    EXPECT_EQ(view_->itemsForEntryPath(missing).size(), 2U);
    EXPECT_EQ(view_->selectItemAtEntryPath(missing, true).length(), 2U);
    EXPECT_EQ(dataSource().selectedItem()->name(), QStringLiteral("Host"));
    EXPECT_EQ(view_->selectItemAtEntryPath(path({"b"}), true).length(), 0U);
    EXPECT_EQ(dataSource().selectedItem()->name(), QStringLiteral("Host"));
}

TEST_F(OutlineViewTest, GoingToAPathOpensIt)
{
    clickExpander(index({"Root", "Host"}));
    controller_->goToEntryPath(path({"Root", "Host", "bus", "a", "part"}), true, true);
    EXPECT_EQ(beeps_, 0);
    EXPECT_TRUE(view_->isExpanded(index({"Root", "Host", "bus", "a"})));
    EXPECT_EQ(dataSource().selectedItem()->name(), QStringLiteral("part"));
}

TEST_F(OutlineViewTest, MarksThePathToTheSelection)
{
    controller_->goToEntryPath(path({"Root", "Host", "bus", "a"}), true, true);
    const auto isMarked = [this](std::initializer_list<const char *> labels) {
        return view_->itemsForEntryPath(path(labels)).back()->isOnSelectionPath();
    };
    EXPECT_TRUE(isMarked({"Root", "Host", "bus", "a"}));
    EXPECT_TRUE(isMarked({"Root"}));
    EXPECT_FALSE(isMarked({"Root", "Host", "bus", "b"}));
    view_->setCurrentIndex(index({"Root", "Host", "lone"}));
    EXPECT_FALSE(isMarked({"Root", "Host", "bus"}));
    EXPECT_TRUE(isMarked({"Root", "Host", "lone"}));
    update();
    EXPECT_TRUE(isMarked({"Root", "Host", "lone"}));
    EXPECT_TRUE(isMarked({"Root"}));
    EXPECT_FALSE(isMarked({"Root", "Host", "bus"}));
}

TEST_F(OutlineViewTest, HoldsTheSelectedRowStillOnTheScreen)
{
    for (int i = 0; i < 200; ++i)
        service_.link(registry_["Host"],
                      service_.add(QStringLiteral("DxDevice"), "m" + QByteArray::number(1000 + i)),
                      "DxService");
    update();
    const auto rowAt = [this] { return view_->visualRect(index({"Root", "Host", "lone"})).top(); };
    view_->setCurrentIndex(index({"Root", "Host", "lone"}));
    view_->scrollTo(view_->currentIndex(), QAbstractItemView::PositionAtTop);
    view_->verticalScrollBar()->setValue(view_->verticalScrollBar()->value() - 90);
    const int before = rowAt();
    for (int i = 0; i < 20; ++i)
        service_.link(registry_["bus"],
                      service_.add(QStringLiteral("DxDevice"), "c" + QByteArray::number(i)),
                      "DxService");
    update();
    EXPECT_EQ(rowAt(), before);
    EXPECT_TRUE(view_->selectionModel()->isSelected(index({"Root", "Host", "lone"})));
    EXPECT_EQ(controller_->selectedEntry(), entry("lone"));
}

TEST_F(OutlineViewTest, BeepsAtCommandKeys)
{
    view_->setFocus();
    QTest::keyClick(view_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(dataSource().selectedItem()->name(), QStringLiteral("Root"));
    QTest::keyClick(view_, Qt::Key_Down);
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(dataSource().selectedItem()->name(), QStringLiteral("Host"));
}

TEST_F(OutlineViewTest, SpeaksNamesAndStates)
{
    terminate("lone");
    registry_.plane("DxService", R"(
        Root
          Host
            come)");
    update();
    const auto spoken = [this](const char *label) {
        return index({"Root", "Host", label}).data(Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(spoken("lone"), QStringLiteral("lone, terminated"));
    EXPECT_EQ(spoken("come"), QStringLiteral("come, new"));
    EXPECT_EQ(spoken("bus"), QStringLiteral("bus"));
}

TEST_F(OutlineViewTest, ControlsHaveTheirRoles)
{
    const auto roleOf = [this](const char *name) {
        return QAccessible::queryAccessibleInterface(outlet<QWidget>(name))->role();
    };
    EXPECT_EQ(roleOf("registryOutlineView"), QAccessible::Tree);
    EXPECT_EQ(roleOf("propertiesOutlineView"), QAccessible::Tree);
    EXPECT_EQ(roleOf("planeListButton"), QAccessible::ComboBox);
    EXPECT_EQ(roleOf("entryPathsButton"), QAccessible::ComboBox);
    EXPECT_EQ(roleOf("findField"), QAccessible::EditableText);
    EXPECT_EQ(roleOf("objectNameField"), QAccessible::EditableText);
    EXPECT_EQ(roleOf("objectRegisteredCell"), QAccessible::CheckBox);
    EXPECT_EQ(roleOf("findNextButton"), QAccessible::Button);
    EXPECT_EQ(roleOf("findTableView"), QAccessible::Table);
    const QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(view_)->child(2);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->role(), QAccessible::TreeItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("Host"));
    EXPECT_TRUE(row->state().expandable && row->state().expanded);
}

// Rows change in reloads alone, so indexes stay good when one entry was re-read.
TEST_F(OutlineViewTest, SurvivesEntriesThatChangeBehindItsBack)
{
    service_.unlink(registry_["bus"], registry_["a"], "DxService");
    store_->updateObject(*entry("bus"));
    view_->grab();
    EXPECT_EQ(view_->model()->rowCount(index({"Root", "Host", "bus"})), 2);
    controller_->noteDataStoreObjectsTerminated();
    EXPECT_EQ(view_->model()->rowCount(index({"Root", "Host", "bus"})), 1);
}
