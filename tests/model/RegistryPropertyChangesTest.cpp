// SPDX-License-Identifier: Apache-2.0
#include "tests/support/RegistryValues.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace values;

// Every test drops the older tree before it checks, like an entry that is reread.
class RegistryPropertyChangesTest : public testing::Test
{
protected:
    bool note(const RegistryValue &older, const RegistryValue &newer)
    {
        tree_ = build(older);
        tree_->clearIsNew();
        return noteNext(newer);
    }
    bool noteNext(const RegistryValue &newer)
    {
        const PropertyRef older = std::exchange(tree_, build(newer));
        tree_->clearIsNew();
        return tree_->noteChangesFromProperty(*older);
    }
    std::string tree() const { return TreePrinter::properties(*tree_); }

    PropertyRef tree_;
};

TEST_F(RegistryPropertyChangesTest, MarksKeysThatCameWentAndChanged)
{
    EXPECT_TRUE(note(dictionary({{"same", number(1)},
                                 {"type", number(2)},
                                 {"deep", dictionary({{"list", array({text("x")})}})},
                                 {"lost", dictionary({{"inner", text("old")}})}}),
                     dictionary({{"gained", array({number(5)})},
                                 {"type", text("2")},
                                 {"deep", dictionary({{"list", array({text("y")})}})},
                                 {"same", number(1)}})));
    EXPECT_EQ(tree(), dedented(R"(
        dictionary (changed)
          gained: array (new)
            0: 5 (4 bytes) (new)
          type: "2" (changed)
          deep: dictionary (changed)
            list: array (changed)
              0: "y" (changed)
          same: 1 (4 bytes)
          lost: collection (terminated)
            inner: "old" (terminated)
    )"));
    tree_->removeDeletedChildren();
    EXPECT_EQ(tree_->numberOfChildren(), 4);
}

TEST_F(RegistryPropertyChangesTest, EqualTreesChangeNothing)
{
    EXPECT_FALSE(
        note(dictionary({{"list", array({number(1)})}, {"set", set({text("a"), data("")})}}),
             dictionary({{"set", set({data(""), text("a")})}, {"list", array({number(1)})}})));
    EXPECT_FALSE(note(dictionary({{"n", number(7, 1)}, {"m", negative(-2, 2)}}),
                      dictionary({{"n", number(7, 4)}, {"m", negative(-2, 8)}})));
    EXPECT_EQ(tree().find("changed"), std::string::npos) << tree();
}

TEST_F(RegistryPropertyChangesTest, ArraysCompareByPosition)
{
    EXPECT_TRUE(note(array({number(1), number(2), text("gone")}), array({number(1), number(3)})));
    EXPECT_EQ(tree(), dedented(R"(
        array (changed)
          0: 1 (4 bytes)
          0: 3 (4 bytes) (changed)
          0: "gone" (terminated)
    )"));
    // Nodes terminated in the last reading are not part of the older tree; its other marks are
    // kept.
    EXPECT_TRUE(noteNext(array({number(1), number(3), text("came")})));
    EXPECT_EQ(tree(), dedented(R"(
        array (changed)
          0: 1 (4 bytes)
          0: 3 (4 bytes) (changed)
          0: "came" (new)
    )"));
}

TEST_F(RegistryPropertyChangesTest, SetsCompareByMembership)
{
    EXPECT_TRUE(note(set({text("stays"), text("goes")}), set({number(4), text("stays")})));
    EXPECT_EQ(tree(), dedented(R"(
        set (changed)
          : 4 (4 bytes) (new)
          : "stays"
          : "goes" (terminated)
    )"));
    // By numeric value, not by representation.
    EXPECT_FALSE(note(set({number(7, 1), negative(-1, 4)}), set({number(7, 8), negative(-1, 8)})));
    EXPECT_TRUE(note(set({number(0xff, 1)}), set({negative(-1, 1)})));
    // A collection in a set equals only itself.
    EXPECT_TRUE(note(set({array({})}), set({array({})})));
    EXPECT_EQ(tree(), dedented(R"(
        set (changed)
          : array (new)
          : collection (terminated)
    )"));
}

TEST_F(RegistryPropertyChangesTest, ManyCollectionsInASetTakeLinearTime)
{
    const auto seconds = [this](std::size_t size) {
        const RegistryValue members = set(RegistryValue::Elements(size, array({})));
        const std::clock_t start = std::clock();
        EXPECT_TRUE(note(members, members));
        return static_cast<double>(std::clock() - start);
    };
    seconds(1000);
    EXPECT_LT(seconds(40'000), 100 * seconds(4'000)); // ten times the size
}
