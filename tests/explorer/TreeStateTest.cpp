// SPDX-License-Identifier: Apache-2.0
// The tree of a registry does not depend on the order of changes, and the visible rows keep their
// place.
#include "ExplorerFixture.h"
#include "tests/support/SimulatedRunLoop.h"

#include <QScrollBar>
#include <random>

namespace {
class TreeStateTest : public ExplorerFixture
{
protected:
    using Node = FakeRegistry::Node;

    TreeStateTest()
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  keep
                store
                  disk)");
        nodes_ = {registry_["Host"], registry_["bus"], registry_["store"]};
        parents_ = {{registry_["bus"], registry_["Host"]}, {registry_["store"], registry_["Host"]}};
    }
    void TearDown() override
    {
        ExplorerFixture::TearDown();
        close();
    }
    void openLive()
    {
        open();
        view_ = &tree();
        testModelOf(*view_);
        store_->setAutoupdate(true);
    }
    // With more rows than there is room for.
    void openLargeTree()
    {
        openLive();
        for (int i = 0; i < 300; ++i)
            changeSomething();
        settle();
    }
    void settle()
    {
        service_.reportChange();
        loop_.advance(2.0);
    }

    // Something comes, goes, moves or is renamed.
    void changeSomething()
    {
        const auto which = number_() % nodes_.size();
        const Node node = nodes_[which];
        const Node other = nodes_[number_() % nodes_.size()];
        const QByteArray name = "n" + QByteArray::number(static_cast<int>(number_() % 100));
        const bool isFixed = which < 3;
        switch (isFixed ? 5 : number_() % 6) {
        case 0:
            leave(node);
            break;
        case 1:
            if (!isBelow(other, node)) {
                service_.unlink(parents_[node], node, "DxService");
                link(other, node);
            }
            break;
        case 2:
            service_.setName(node, name);
            break;
        default:
            nodes_.push_back(service_.add(QStringLiteral("DxDevice"), name));
            link(node, nodes_.back());
        }
    }
    void link(Node parent, Node child)
    {
        parents_[child] = parent;
        service_.link(parent, child, "DxService");
    }
    void leave(Node node)
    {
        const QList<Node> children = parents_.keys(node);
        if (!children.isEmpty() && !subtreesLeave_)
            return;
        for (const Node child : children)
            leave(child);
        parents_.remove(node);
        std::erase(nodes_, node);
        service_.terminate(node);
    }
    bool isBelow(Node node, Node top) const
    {
        for (; node != 0; node = parents_.value(node)) {
            if (node == top)
                return true;
        }
        return false;
    }

    std::string rowsOfNewWindow() const
    {
        TavWindowController fresh(*document_);
        if (controller_->selectedEntryPath())
            fresh.goToEntryPath(controller_->selectedEntryPath(), false, false);
        return rowsIn(fresh);
    }
    std::string rowsOfNewCapture()
    {
        auto &fresh = static_cast<TavDocument &>(*documents_.newDocument(false));
        const std::string rows =
            rowsIn(static_cast<TavWindowController &>(*fresh.windowControllers().front()));
        documents_.closeDocument(fresh);
        return rows;
    }
    static std::string rowsIn(const TavWindowController &controller)
    {
        return rowsOf(*InterfaceLoader::outlet<TavRegistryOutlineView>(*controller.window(),
                                                                       "registryOutlineView"));
    }
    QRect place(Labels labels) const { return view_->visualRect(row(labels)); }

    SimulatedRunLoop loop_;
    std::mt19937 number_{7};
    std::vector<Node> nodes_;
    QHash<Node, Node> parents_;
    bool subtreesLeave_ = false;
    TavRegistryOutlineView *view_ = nullptr;
};
} // namespace

// A few changes are applied row by row, many at once by a reset.
TEST_F(TreeStateTest, ChangedRowsAreThoseOfANewWindowAndOfANewCapture)
{
    openLive();
    subtreesLeave_ = true;
    for (int step = 0; step < 40; ++step) {
        SCOPED_TRACE(step);
        const unsigned changes = step % 8 == 7 ? 80 : 1 + number_() % 6;
        for (unsigned i = 0; i < changes; ++i)
            changeSomething();
        settle();
        ASSERT_EQ(rows(), rowsOfNewWindow());
        if (step % 7 == 5)
            controller_->toggleShowTerminatedObjects();
        if (step % 5 == 4) {
            settle(); // an entry that was renamed takes its new place when it is next read
            store_->clearTerminatedObjects();
            ASSERT_EQ(rows(), rowsOfNewCapture());
        }
        if (!controller_->showTerminatedObjects())
            controller_->toggleShowTerminatedObjects();
        ASSERT_EQ(rows(), rowsOfNewWindow());
    }
}

TEST_F(TreeStateTest, WhatTheUserSeesStaysWhereItIs)
{
    openLargeTree();
    select({"Root", "Host", "bus"});
    QTest::keyClick(view_, Qt::Key_Left);
    select({"Root", "Host", "store", "disk"});
    view_->scrollTo(view_->currentIndex(), QAbstractItemView::PositionAtCenter);
    const QRect before = place({"Root", "Host", "store", "disk"});
    ASSERT_TRUE(view_->viewport()->rect().contains(before));
    int moves = 0;
    for (int step = 0; step < 30; ++step) {
        const int top = view_->verticalScrollBar()->value();
        for (int i = step % 6 == 5 ? 60 : 2; i > 0; --i)
            changeSomething();
        settle();
        ASSERT_EQ(place({"Root", "Host", "store", "disk"}), before) << "step " << step;
        ASSERT_EQ(controller_->selectedEntry(), entry("disk"));
        moves += view_->verticalScrollBar()->value() != top;
    }
    EXPECT_GT(moves, 3); // rows above did come and go
    EXPECT_NE(rows().find("    bus +\n"), std::string::npos);
    EXPECT_EQ(beeps_, 0);
}

TEST_F(TreeStateTest, WhatHasTerminatedIsHiddenAndNoOtherRowTakesItsPlace)
{
    registry_.plane("DxService", "Root\n  Host\n    store\n      next");
    openLive();
    service_.terminate(registry_["keep"]);
    loop_.advance(2.0);
    EXPECT_NE(rows().find("keep"), std::string::npos);
    controller_->toggleShowTerminatedObjects();
    select({"Root", "Host", "store", "disk"});
    EXPECT_EQ(rows(), "Root\n  Host\n    bus\n    store\n      disk *\n      next\n");

    TavRegistryEntry *const gone = entry("disk");
    service_.terminate(registry_["disk"]);
    loop_.advance(2.0);
    EXPECT_EQ(rows(), "Root\n  Host\n    bus\n    store\n      next\n");
    EXPECT_FALSE(tree().currentIndex().isValid());
    EXPECT_EQ(controller_->selectedEntry(), gone);
    QTest::mouseClick(tree().viewport(), Qt::LeftButton, {},
                      place({"Root", "Host", "store", "next"}).center());
    EXPECT_EQ(controller_->selectedEntry(), entry("next"));
    controller_->toggleShowTerminatedObjects();
    EXPECT_NE(rows().find("disk"), std::string::npos);
}

TEST_F(TreeStateTest, WhatIsInSightStaysWhereItIsWhenTheSelectedRowGoes)
{
    openLargeTree();
    controller_->toggleShowTerminatedObjects();
    select({"Root", "Host", "store", "disk"});
    view_->scrollTo(view_->currentIndex(), QAbstractItemView::PositionAtBottom);
    const QPersistentModelIndex first = view_->indexAt({1, 1});
    ASSERT_NE(TavRegistryOutlineViewDataSource::item(first)->registryEntry().get(), entry("store"));
    const QRect before = view_->visualRect(first);
    service_.terminate(registry_["disk"]);
    loop_.advance(2.0);
    EXPECT_EQ(rows().find("disk"), std::string::npos);
    EXPECT_EQ(view_->visualRect(first), before);
}

// Only a refresh notices children that were replaced by as many others, unless a node above them is
// miscounted.
TEST_F(TreeStateTest, MiscountedNodesAreRereadBeforeTheirRowsAreUsed)
{
    registry_.plane("DxService", "Root\n  Host\n    bus\n      box\n        old");
    openLive();
    service_.unlink(registry_["bus"], registry_["keep"], "DxService");
    service_.unlink(registry_["box"], registry_["old"], "DxService");
    service_.unlink(registry_["store"], registry_["disk"], "DxService");
    add("box", "young");
    add("store", "other");
    for (const char *label : {"bus", "box", "store"})
        store_->updateObject(*entry(label));
    view_->grab();
    controller_->goToRegistryPath(QStringLiteral("DxService:/bus/box/young"));
    EXPECT_EQ(selected(), "DxService:/bus/box/young");
    const std::string before = "Root\n  Host\n    bus\n      box\n        young *\n    store\n";
    EXPECT_EQ(rows(), before + "      disk\n");
    controller_->refreshDisplay();
    EXPECT_EQ(rows(), before + "      other\n");
}

TEST_F(TreeStateTest, ARowOpensWithTheChildrenThatItHasByThen)
{
    openLive();
    const std::string closed = "Root\n  Host\n    bus + *\n    store\n      disk\n";
    const auto readAlone = [this](const char *label) {
        select({"Root", "Host", label});
        controller_->updateSelectedObject();
    };
    select({"Root", "Host", "bus"});
    QTest::keyClick(view_, Qt::Key_Left);
    EXPECT_EQ(rows(), closed);
    add("keep", "card"); // which had no children
    add("bus", "late");
    for (const char *label : {"bus", "keep"})
        store_->updateObject(*entry(label));
    QTest::keyClick(view_, Qt::Key_Right);
    const std::string open = "Root\n  Host\n    bus *\n      keep\n        card\n      late\n";
    EXPECT_EQ(rows(), open + "    store\n      disk\n");

    // One by one and many, where all rows are open; others keep theirs.
    add("store", "new");
    readAlone("store");
    EXPECT_NE(rows().find("    store *\n      disk\n      new\n"), std::string::npos);
    QTest::keyClick(view_, Qt::Key_Left);
    for (int i = 0; i < 20; ++i) {
        const QByteArray script = "Root\n  Host\n    store\n      n" + QByteArray::number(i);
        registry_.plane("DxService", script.constData());
    }
    store_->updateObject(*entry("store"));
    for (int i = 0; i < 20; ++i) {
        const std::string name = "n" + std::to_string(i);
        add(name.c_str(), "below");
        store_->updateObject(*entry(name.c_str()));
    }
    QTest::keyClick(view_, Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_NE(rows().find("    store *\n      disk\n      n0\n        below\n"), std::string::npos)
        << rows();
    EXPECT_EQ(beeps_, 0);
}

TEST_F(TreeStateTest, ARefreshOpensTheWayToTheSelection)
{
    registry_.plane("DxService", "Root\n  Host\n    store\n      disk\n        part\n    zone");
    add("zone", "z", 0, 100);
    openLive();
    select({"Root", "Host", "store", "disk"});
    clickExpander(*view_, row({"Root", "Host", "store"}));
    view_->scrollToBottom();
    const QRect below = place({"Root", "Host", "zone"});
    settle();
    EXPECT_TRUE(view_->isExpanded(row({"Root", "Host", "store"})));
    EXPECT_EQ(place({"Root", "Host", "zone"}), below); // what is in sight stays there
    clickExpander(*view_, row({"Root", "Host", "zone"}));
    view_->scrollToTop();
    select({"Root", "Host", "store", "disk"});
    for (const bool isOpen : {true, false}) {
        if (!isOpen)
            QTest::keyClick(view_, Qt::Key_Left);
        const std::string expected = rows();
        EXPECT_EQ(expected.find("part") != std::string::npos, isOpen);
        clickExpander(*view_, row({"Root", "Host", "store"}));
        clickExpander(*view_, row({"Root", "Host"}));
        EXPECT_EQ(rows(), "Root\n  Host +\n");
        settle();
        EXPECT_EQ(rows(), expected);
        EXPECT_EQ(controller_->selectedEntry(), entry("disk"));
    }
}
