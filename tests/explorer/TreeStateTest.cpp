// However a state of the registry is reached, its tree is the same, and what the user sees of it
// stays where it is.
#include "ExplorerFixture.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavRegistryOutlineView.h"
#include "explorer/TavRegistryOutlineViewDataSource.h"
#include "store/TavDataStore.h"
#include "tests/support/SimulatedRunLoop.h"
#include "tests/support/TreeText.h"

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QTest>
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
        tester_.reset();
        close();
    }
    void openLive()
    {
        open();
        view_ = outlet<TavRegistryOutlineView>("registryOutlineView");
        tester_ = std::make_unique<QAbstractItemModelTester>(
            view_->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        store_->setAutoupdate(true);
    }
    void settle()
    {
        service_.tellOfChange();
        loop_.advance(2.0);
    }

    // Something comes, goes, moves or is renamed.
    void changeSomething()
    {
        const Node node = nodes_[number_() % nodes_.size()];
        const Node other = nodes_[number_() % nodes_.size()];
        const QByteArray name = "n" + QByteArray::number(static_cast<int>(number_() % 100));
        const bool isFixed =
            node == registry_["Host"] || node == registry_["bus"] || node == registry_["store"];
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

    std::string rows() const { return rowsOf(*view_); }
    std::string rowsOfNewWindow() const
    {
        TavWindowController fresh(*document_);
        if (controller_->selectedEntryPath())
            fresh.goToEntryPath(controller_->selectedEntryPath(), false, false);
        return rowsOf(*InterfaceLoader::outlet<TavRegistryOutlineView>(*fresh.window(),
                                                                       "registryOutlineView"));
    }
    QRect rowOf(std::initializer_list<const char *> labels) const
    {
        const auto items = view_->itemsForEntryPath(path(labels));
        const auto *const model =
            qobject_cast<const TavRegistryOutlineViewDataSource *>(view_->model());
        return items.size() == labels.size() ? view_->visualRect(model->indexOf(*items.back()))
                                             : QRect();
    }

    SimulatedRunLoop loop_;
    std::mt19937 number_{7};
    std::vector<Node> nodes_;
    QHash<Node, Node> parents_;
    bool subtreesLeave_ = false;
    TavRegistryOutlineView *view_ = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};
} // namespace

TEST_F(TreeStateTest, SnapshotsAndEventsLeadToTheSameTree)
{
    openLive();
    for (int step = 0; step < 60; ++step) {
        changeSomething();
        settle();
        if (step == 30) // another document joins in
            static_cast<TavDocument &>(documents_.newDocument(false))
                .dataStore()
                ->setAutoupdate(true);
    }
    auto &second = static_cast<TavDocument &>(*documents_.documents().back());
    settle();
    settle(); // an entry that was renamed takes its new place when it is next read
    for (const auto &store : {store_, second.dataStore()})
        store->clearTerminatedObjects();
    const auto rowsIn = [](const TavDocument &document) {
        const auto &controller =
            static_cast<TavWindowController &>(*document.windowControllers().front());
        return rowsOf(*InterfaceLoader::outlet<TavRegistryOutlineView>(*controller.window(),
                                                                       "registryOutlineView"));
    };
    auto &third = static_cast<TavDocument &>(documents_.newDocument(false));
    EXPECT_EQ(rows(), rowsIn(third)); // events only against snapshot only
    EXPECT_EQ(rowsIn(second), rowsIn(third));
    EXPECT_GT(nodes_.size(), 15U);
    documents_.closeDocument(second);
    documents_.closeDocument(third);
}

// A few changes are applied row by row, many at once by a reset.
TEST_F(TreeStateTest, ChangedRowsAreThoseOfANewWindow)
{
    openLive();
    subtreesLeave_ = true;
    for (int step = 0; step < 40; ++step) {
        const unsigned changes = step % 8 == 7 ? 80 : 1 + number_() % 6;
        for (unsigned i = 0; i < changes; ++i)
            changeSomething();
        settle();
        ASSERT_EQ(rows(), rowsOfNewWindow()) << "step " << step;
        if (step % 5 == 4)
            store_->clearTerminatedObjects();
        if (step % 7 == 5)
            controller_->toggleShowTerminatedObjects();
        if (controller_->showTerminatedObjects())
            ASSERT_EQ(rows(), rowsOfNewWindow()) << "after clearing in step " << step;
        else
            controller_->toggleShowTerminatedObjects();
    }
}

TEST_F(TreeStateTest, WhatTheUserSeesStaysWhereItIs)
{
    openLive();
    for (int i = 0; i < 300; ++i)
        changeSomething();
    settle();
    controller_->goToEntryPath(path({"Root", "Host", "bus"}), true, true);
    QTest::keyClick(view_, Qt::Key_Left);
    controller_->goToEntryPath(path({"Root", "Host", "store", "disk"}), true, true);
    view_->scrollTo(view_->currentIndex(), QAbstractItemView::PositionAtCenter);
    const QRect before = rowOf({"Root", "Host", "store", "disk"});
    ASSERT_TRUE(view_->viewport()->rect().contains(before));
    int moves = 0;
    for (int step = 0; step < 30; ++step) {
        const int top = view_->verticalScrollBar()->value();
        for (int i = step % 6 == 5 ? 60 : 2; i > 0; --i)
            changeSomething();
        settle();
        ASSERT_EQ(rowOf({"Root", "Host", "store", "disk"}), before) << "step " << step;
        ASSERT_EQ(controller_->selectedEntry(), entry("disk"));
        moves += view_->verticalScrollBar()->value() != top;
    }
    EXPECT_GT(moves, 3); // rows above did come and go
    EXPECT_NE(rows().find("    bus +\n"), std::string::npos);
    EXPECT_EQ(beeps_, 0);
}

TEST_F(TreeStateTest, HidesWhatHasTerminated)
{
    openLive();
    service_.terminate(registry_["disk"]);
    loop_.advance(2.0);
    EXPECT_NE(rows().find("disk"), std::string::npos);
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(rows(), dedented(R"(
        Root *
          Host
            bus
              keep
            store)"));
    const TavRegistryOutlineItem *const store =
        view_->itemsForEntryPath(path({"Root", "Host", "store"})).back();
    EXPECT_EQ(const_cast<TavRegistryOutlineItem *>(store)->numberOfChildren(), -1);
    controller_->toggleShowTerminatedObjects();
    EXPECT_NE(rows().find("disk"), std::string::npos);
}

TEST_F(TreeStateTest, NoOtherRowTakesThePlaceOfASelectedOneThatGoes)
{
    registry_.plane("DxService", R"(
        Root
          Host
            store
              next)");
    openLive();
    controller_->toggleShowTerminatedObjects();
    controller_->goToEntryPath(path({"Root", "Host", "store", "disk"}), true, true);
    TavRegistryEntry *const gone = entry("disk");
    service_.terminate(registry_["disk"]);
    loop_.advance(2.0);
    EXPECT_EQ(rows().find_first_of('*'), std::string::npos);
    EXPECT_FALSE(view_->currentIndex().isValid());
    EXPECT_EQ(controller_->selectedEntry(), gone);
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {},
                      rowOf({"Root", "Host", "store", "next"}).center());
    EXPECT_EQ(controller_->selectedEntry(), entry("next"));
}

TEST_F(TreeStateTest, WhatIsInSightStaysWhereItIsWhenTheSelectedRowGoes)
{
    openLive();
    for (int i = 0; i < 300; ++i)
        changeSomething();
    settle();
    controller_->toggleShowTerminatedObjects();
    controller_->goToEntryPath(path({"Root", "Host", "store", "disk"}), true, true);
    view_->scrollTo(view_->currentIndex(), QAbstractItemView::PositionAtBottom);
    const QPersistentModelIndex first = view_->indexAt({1, 1});
    ASSERT_NE(TavRegistryOutlineViewDataSource::item(first)->registryEntry().get(), entry("store"));
    const QRect before = view_->visualRect(first);
    service_.terminate(registry_["disk"]);
    loop_.advance(2.0);
    EXPECT_EQ(rows().find("disk"), std::string::npos);
    EXPECT_EQ(view_->visualRect(first), before);
}

// Only a refresh follows an entry whose children are others but as many.
TEST_F(TreeStateTest, PlainReloadsRereadMiscountedNodesAlone)
{
    openLive();
    service_.link(registry_["store"], service_.add(QStringLiteral("DxDevice"), "other"),
                  "DxService");
    service_.unlink(registry_["store"], registry_["disk"], "DxService");
    store_->updateObject(*entry("store"));
    controller_->noteDataStoreObjectsTerminated();
    EXPECT_NE(rows().find("disk"), std::string::npos);
    controller_->refreshDisplay();
    EXPECT_EQ(rows().find("disk"), std::string::npos);
    EXPECT_NE(rows().find("other"), std::string::npos);
}
