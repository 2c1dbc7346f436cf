#include "ExplorerFixture.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "platform/PreferencesStore.h"
#include "tests/support/QtPrinters.h"

namespace {
class OutlineItemTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  a
                  b
                lone)");
        openTree();
    }
    // Nodes that no view shows, so that they may change at any time.
    void openTree()
    {
        root_.reset();
        open();
        root_ = std::make_unique<TavRegistryOutlineItem>(
            *controller_, nullptr, QStringLiteral("DxService"), entry("Root")->shared_from_this());
    }
    void TearDown() override { root_.reset(); }
    TavRegistryOutlineItem &root() const { return *root_; }
    TavRegistryOutlineItem &host() const { return *root().childAtIndex(0); }
    TavRegistryOutlineItem &bus() const { return *host().childAtIndex(0); }
    void updateTree()
    {
        update();
        root().rereadChildren();
    }

private:
    std::unique_ptr<TavRegistryOutlineItem> root_;
};
} // namespace

TEST_F(OutlineItemTest, KnowsItsChildren)
{
    EXPECT_EQ(root().numberOfChildren(), 1);
    EXPECT_EQ(host().numberOfChildren(), 2);
    EXPECT_EQ(host().childAtIndex(1)->numberOfChildren(), -1);
    EXPECT_FALSE(host().childAtIndex(1)->isExpandable());
    EXPECT_EQ(host().childAtIndex(2), nullptr);
    EXPECT_EQ(bus().childAtIndex(1)->registryPath(), QStringLiteral("DxService:/bus/b"));
    EXPECT_EQ(bus().childAtIndex(1)->row(), 1);
}

TEST_F(OutlineItemTest, KeepsNodesByEntryWhenRereading)
{
    TavRegistryOutlineItem *const b = bus().childAtIndex(1);
    b->setExpanded(false);
    b->setOnSelectionPath(true);
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              aa
              b
                part)");
    service_.unlink(registry_["bus"], registry_["a"], "DxService");
    store_->service()->prepare();
    entry("bus")->updateIsSingle(false);
    entry("b")->updateIsSingle(false);
    EXPECT_EQ(root().countRereads(TavRegistryOutlineItem::Reread::All, 9), 2);
    root().rereadChildren();
    EXPECT_EQ(root().countRereads(TavRegistryOutlineItem::Reread::All, 9), 0);

    ASSERT_EQ(bus().numberOfChildren(), 2);
    EXPECT_EQ(bus().childAtIndex(0)->name(), QStringLiteral("aa"));
    EXPECT_TRUE(bus().childAtIndex(0)->isExpanded());
    EXPECT_EQ(bus().childAtIndex(1), b);
    EXPECT_FALSE(b->isExpanded());
    EXPECT_TRUE(b->isOnSelectionPath());
    EXPECT_TRUE(host().isOnSelectionPath());
    EXPECT_FALSE(bus().childAtIndex(0)->isOnSelectionPath());
    EXPECT_EQ(b->numberOfChildren(), 1);
}

TEST_F(OutlineItemTest, RereadsWhenTheCountDiffers)
{
    ASSERT_EQ(bus().numberOfChildren(), 2);
    service_.unlink(registry_["bus"], registry_["a"], "DxService");
    entry("bus")->updateIsSingle(false);
    EXPECT_EQ(bus().numberOfChildren(), 2); // rows do not change by themselves
    root().rereadChildren(TavRegistryOutlineItem::Reread::Miscounted);
    EXPECT_EQ(bus().numberOfChildren(), 1);
    service_.unlink(registry_["bus"], registry_["b"], "DxService");
    entry("bus")->updateIsSingle(false);
    root().rereadChildren();
    EXPECT_EQ(bus().numberOfChildren(), -1);
}

TEST_F(OutlineItemTest, TellsStatesApart)
{
    using Color = EntryTextAttributes::Color;
    EXPECT_TRUE(root().displayName().attributes.isSlanted);
    EXPECT_EQ(host().displayName().attributes, EntryTextAttributes());
    terminate("a");
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              new)");
    bus().children();
    updateTree();
    const auto gone = bus().childAtIndex(0)->displayName();
    EXPECT_EQ(gone.text, QStringLiteral("a"));
    EXPECT_EQ(gone.attributes.color, Color::Terminated);
    EXPECT_TRUE(gone.attributes.isStruckOut);
    const auto come = bus().childAtIndex(2)->displayName();
    EXPECT_EQ(come.text, QStringLiteral("new"));
    EXPECT_EQ(come.attributes.color, Color::New);
    EXPECT_TRUE(come.attributes.isUnderlined);
    updateTree(); // nothing is new any more
    EXPECT_EQ(bus().childAtIndex(2)->displayName().attributes, EntryTextAttributes());
}

TEST_F(OutlineItemTest, CountsPathsWhenAsked)
{
    registry_.plane("DxService", R"(
        Root
          Host
            other
              a)");
    registry_.plane("DxPower", R"(
        Root
          Host
            a)");
    PreferencesStore::standard().setFlag(QStringLiteral("ShowNumPaths"), true);
    openTree();
    EXPECT_EQ(bus().childAtIndex(0)->name(), QStringLiteral("a (3/2)"));
    EXPECT_EQ(bus().childAtIndex(1)->name(), QStringLiteral("b"));
}

// A tree may be far deeper than the stack.
TEST_F(OutlineItemTest, HandlesDeepTrees)
{
    FakeRegistry::Node parent = registry_["lone"];
    for (int i = 0; i < 100'000; ++i) {
        const FakeRegistry::Node child = service_.add(QStringLiteral("DxDevice"), "x");
        service_.link(parent, child, "DxService");
        parent = child;
    }
    openTree();
    TavRegistryOutlineItem *deepest = &root();
    int depth = 0;
    for (; deepest->numberOfChildren() > 0; ++depth)
        deepest = deepest->childAtIndex(deepest->numberOfChildren() - 1);
    EXPECT_EQ(depth, 100'002);
    const TavRegistryEntryPath longest = deepest->entryPath();
    EXPECT_EQ(longest.length(), 100'003U);
    controller_->goToEntryPath(longest, true, true); // as deep as rows are opened
    EXPECT_GT(controller_->selectedEntryPath()->length(), 500U);
    update();
    TearDown();
    close();
}
