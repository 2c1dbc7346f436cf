// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"

#include <QScrollBar>
#include <QSignalSpy>

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
        view_ = &tree();
        testModelOf(*view_);
    }

    TavRegistryOutlineItem &node(Labels labels) const
    {
        return *TavRegistryOutlineViewDataSource::item(row(labels));
    }
    void click(Labels labels, Qt::KeyboardModifiers modifiers = {})
    {
        clickExpander(*view_, row(labels), modifiers);
    }
    bool isWholeTreeOpen() const { return rows().find('+') == std::string::npos; }
    void beginAction() { QTest::keyClick(view_, Qt::Key_Shift); } // by another key press
    void closeTheWayToPart()
    {
        click({"Root", "Host", "bus", "a"});
        click({"Root", "Host", "bus"});
        beginAction();
    }
    // Shows another plane for a moment.
    void resetRows()
    {
        const QSignalSpy resets(view_->model(), &QAbstractItemModel::modelReset);
        showPlane("DxPower");
        showPlane("DxService");
        EXPECT_EQ(resets.count(), 2);
    }

    TavRegistryOutlineView *view_ = nullptr;
    static constexpr auto whole = Qt::AltModifier | Qt::ShiftModifier; // for whole subtrees
};
} // namespace

TEST_F(OutlineViewTest, KeepsWhatTheUserClosedThroughUpdates)
{
    EXPECT_TRUE(isWholeTreeOpen());
    click({"Root", "Host", "bus", "a"});
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

TEST_F(OutlineViewTest, RemembersAPlainClickForItsRowAndAnAltClickForAllBelow)
{
    click({"Root", "Host"});
    EXPECT_EQ(rows(), "Root *\n  Host +\n");
    view_->reloadData();
    EXPECT_EQ(rows(), "Root *\n  Host +\n");
    click({"Root", "Host"});
    EXPECT_TRUE(isWholeTreeOpen());

    click({"Root", "Host"}, Qt::AltModifier);
    EXPECT_EQ(rows(), "Root *\n  Host +\n");
    click({"Root", "Host"});
    const std::string closedBelow = "Root *\n  Host\n    bus +\n    lone\n";
    EXPECT_EQ(rows(), closedBelow);
    update();
    EXPECT_EQ(rows(), closedBelow);

    view_->setCurrentIndex(row({"Root", "Host"}));
    QTest::keyClick(view_, Qt::Key_Right, whole);
    EXPECT_TRUE(isWholeTreeOpen());
    QTest::keyClick(view_, Qt::Key_Left, whole);
    EXPECT_EQ(rows(), "Root\n  Host + *\n");
}

TEST_F(OutlineViewTest, OneActionRemembersTheFirstRowThatItChangesAlone)
{
    const std::string before = rows();
    closeTheWayToPart();
    select({"Root", "Host", "bus", "a", "part"});
    EXPECT_TRUE(node({"Root", "Host", "bus"}).isExpanded());
    EXPECT_FALSE(node({"Root", "Host", "bus", "a"}).isExpanded());

    beginAction();
    controller_->collapseAll();
    EXPECT_FALSE(node({"Root"}).isExpanded());
    EXPECT_TRUE(node({"Root", "Host"}).isExpanded());
    EXPECT_TRUE(node({"Root", "Host", "bus"}).isExpanded());
    click({"Root"}); // opens what was open before
    EXPECT_EQ(rows().find("a +") + 2, rows().find('+'));
    beginAction();
    controller_->expandAll();
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(node({"Root", "Host", "bus", "a"}).isExpanded());
}

TEST_F(OutlineViewTest, RowsOpenedInPassingOutlastResets)
{
    const std::string before = rows();
    closeTheWayToPart();
    select({"Root", "Host", "bus", "a", "part"});
    select({"Root"});
    resetRows();
    EXPECT_EQ(rows(), before.substr(0, 4) + before.substr(6)); // without the selection

    closeTheWayToPart();
    view_->setCurrentIndex(row({"Root"}));
    QTest::keyClick(view_, Qt::Key_Asterisk);
    EXPECT_EQ(rows(), before);
    click({"Root", "Host", "bus", "a"});
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
    view_->setCurrentIndex(row({"Root", "Host"}));
    const QSignalSpy layouts(view_->verticalScrollBar(), &QScrollBar::rangeChanged);
    QTest::keyClick(view_, Qt::Key_Left, whole);
    EXPECT_EQ(layouts.count(), 1);
    QTest::keyClick(view_, Qt::Key_Right, whole);
    EXPECT_EQ(layouts.count(), 2);
    EXPECT_TRUE(isWholeTreeOpen());
}

TEST_F(OutlineViewTest, ExpandsAndCollapsesAllOrAroundTheSelection)
{
    add("lone", "card");
    update();
    select({"Root", "Host", "bus", "a"});
    controller_->collapseAroundSelection();
    const std::string around = dedented(R"(
        Root
          Host
            bus
              a *
                part
              b
            lone +)");
    EXPECT_EQ(rows(), around);
    update();
    EXPECT_EQ(rows(), around);
    for (int i = 0; i < 2; ++i) {
        controller_->expandAll();
        EXPECT_TRUE(isWholeTreeOpen());
        update();
        EXPECT_TRUE(isWholeTreeOpen());
        controller_->collapseAll();
        EXPECT_EQ(rows(), "Root + *\n");
        update();
        EXPECT_EQ(rows(), "Root + *\n");
    }
}

TEST_F(OutlineViewTest, GoesToTheLongestPrefixOfAPath)
{
    click({"Root", "Host"});
    select({"Root", "Host", "bus", "a", "part"}); // opens the way
    EXPECT_EQ(beeps_, 0);
    EXPECT_TRUE(view_->isExpanded(row({"Root", "Host", "bus", "a"})));
    EXPECT_EQ(selected(), "DxService:/bus/a/part");

    const TavRegistryEntryPath missing = path({"Root", "Host", "b"}); // b is not straight below
    EXPECT_EQ(view_->itemsForEntryPath(missing).size(), 2U);
    EXPECT_EQ(view_->selectItemAtEntryPath(missing, true).length(), 2U);
    EXPECT_EQ(view_->currentIndex(), row({"Root", "Host"}));
    EXPECT_EQ(view_->selectItemAtEntryPath(path({"b"}), true).length(), 0U);
    EXPECT_EQ(view_->currentIndex(), row({"Root", "Host"}));
    select({"Root", "Host", "bus", "lone"});
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));
    EXPECT_EQ(beeps_, 1);
}

TEST_F(OutlineViewTest, TheKeyboardFindsItsWay)
{
    view_->setFocus();
    press(Qt::Key_Down, Qt::ControlModifier); // a command's
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(selected(), "(DxService)");
    const std::pair<Qt::Key, const char *> steps[] = {
        {Qt::Key_End, "DxService:/lone"},        {Qt::Key_Home, "(DxService)"},
        {Qt::Key_P, "DxService:/bus/a/part"},    {Qt::Key_Up, "DxService:/bus/a"},
        {Qt::Key_Left, "DxService:/bus/a"},      {Qt::Key_Down, "DxService:/bus/b"},
        {Qt::Key_Up, "DxService:/bus/a"},        {Qt::Key_Right, "DxService:/bus/a"},
        {Qt::Key_Down, "DxService:/bus/a/part"},
    };
    for (const auto &[key, expected] : steps) {
        press(key);
        EXPECT_EQ(selected(), expected) << key;
    }
    EXPECT_EQ(beeps_, 1);
}

TEST_F(OutlineViewTest, NodesTellTheirStateAndTheirPaths)
{
    // The node's name, its spoken name, and its style.
    const auto styled = [this](Labels labels) {
        const auto &[text, attributes] = node(labels).displayName();
        using Color = EntryTextAttributes::Color;
        return text.toStdString() + " = " +
               row(labels).data(Qt::AccessibleTextRole).toString().toStdString() +
               (attributes.isSlanted ? " slanted" : "") +
               (attributes.isUnderlined ? " underlined" : "") +
               (attributes.isStruckOut ? " struck out" : "") +
               (attributes.color == Color::New ? " new" : "") +
               (attributes.color == Color::Terminated ? " terminated" : "");
    };
    EXPECT_EQ(styled({"Root"}), "Root = Root slanted");
    EXPECT_EQ(styled({"Root", "Host"}), "Host = Host");
    terminate("lone");
    registry_.plane("DxService", "Root\n  Host\n    come");
    update();
    EXPECT_EQ(styled({"Root", "Host", "lone"}), "lone = lone, terminated struck out terminated");
    EXPECT_EQ(styled({"Root", "Host", "come"}), "come = come, new underlined new");
    update(); // clears the new marks
    EXPECT_EQ(styled({"Root", "Host", "come"}), "come = come");

    registry_.plane("DxService", "Root\n  Host\n    other\n      a");
    registry_.plane("DxPower", "Root\n  Host\n    a");
    tester_.reset();
    prefer("ShowNumPaths", QStringLiteral("yes"));
    open();
    EXPECT_EQ(styled({"Root", "Host", "bus", "a"}), "a (3/2) = a (3/2)");
    EXPECT_EQ(styled({"Root", "Host", "bus", "b"}), "b = b");
}

// A tree may be much deeper than the stack.
TEST_F(OutlineViewTest, HandlesDeepTrees)
{
    FakeRegistry::Node parent = registry_["lone"];
    for (int i = 0; i < 100'000; ++i) {
        const FakeRegistry::Node child = service_.add(QStringLiteral("DxDevice"), "x");
        service_.link(parent, child, "DxService");
        parent = child;
    }
    update();
    TavRegistryOutlineItem *deepest = controller_->rootOutlineItem();
    while (deepest->numberOfChildren() > 0)
        deepest = deepest->childAtIndex(deepest->numberOfChildren() - 1);
    const TavRegistryEntryPath longest = deepest->entryPath();
    EXPECT_EQ(longest.length(), 100'003U);
    controller_->goToEntryPath(longest, true, true); // as deep as rows are opened
    EXPECT_GT(controller_->selectedEntryPath()->length(), 500U);
    update();
    tester_.reset();
    close();
}
