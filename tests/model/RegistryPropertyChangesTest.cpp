#include "model/TavRegistryProperty.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace values;

namespace {
PropertyRef build(const RegistryValue &value)
{
    PropertyRef root = TavRegistryProperty::create(TavRegistryProperty::staticPropertyClass(),
                                                   nullptr, {}, nullptr, {}, 0, value);
    root->clearIsNew();
    return root;
}
} // namespace

// Every test lets the older tree go before it looks, as a re-read entry does.
class RegistryPropertyChangesTest : public testing::Test
{
protected:
    bool note(const RegistryValue &older, const RegistryValue &newer)
    {
        tree_ = build(newer);
        return tree_->noteChangesFromProperty(*build(older));
    }
    bool noteNext(const RegistryValue &newer)
    {
        const PropertyRef older = std::exchange(tree_, build(newer));
        return tree_->noteChangesFromProperty(*older);
    }
    std::string tree() const { return TreePrinter::properties(*tree_); }

    PropertyRef tree_;
};

TEST_F(RegistryPropertyChangesTest, MarksKeysThatCameWentAndChanged)
{
    EXPECT_TRUE(note(
        dictionary({{"same", number(1)},
                    {"value", number(2)},
                    {"lost", dictionary({{"inner", text("old")}})}}),
        dictionary({{"gained", array({number(5)})}, {"value", number(3)}, {"same", number(1)}})));
    EXPECT_EQ(tree(), dedented(R"(
        dictionary (changed)
          gained: array (new)
            0: 5 (4 bytes) (new)
          value: 3 (4 bytes) (changed)
          same: 1 (4 bytes)
          lost: collection (terminated)
            inner: "old" (terminated)
    )"));
    tree_->removeDeletedChildren();
    EXPECT_EQ(tree_->numberOfChildren(), 3);
}

TEST_F(RegistryPropertyChangesTest, EqualTreesChangeNothing)
{
    EXPECT_FALSE(
        note(dictionary({{"list", array({number(1)})}, {"set", set({text("a"), data("")})}}),
             dictionary({{"set", set({data(""), text("a")})}, {"list", array({number(1)})}})));
    EXPECT_EQ(tree(), dedented(R"(
        dictionary
          set: set
            : <>
            : "a"
          list: array
            0: 1 (4 bytes)
    )"));
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
    // What went in the last reading is no part of the older tree, and its other marks are kept.
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
    // A collection in a set equals nothing but itself.
    EXPECT_TRUE(note(set({array({})}), set({array({})})));
    EXPECT_EQ(tree(), dedented(R"(
        set (changed)
          : array (new)
          : collection (terminated)
    )"));
}

TEST_F(RegistryPropertyChangesTest, AChangeMarksTheAncestorsAndAnotherTypeIsAChange)
{
    EXPECT_TRUE(
        note(dictionary({{"a", dictionary({{"b", array({text("x")})}})}, {"c", number(1)}}),
             dictionary({{"a", dictionary({{"b", array({text("y")})}})}, {"c", text("1")}})));
    EXPECT_EQ(tree(), dedented(R"(
        dictionary (changed)
          a: dictionary (changed)
            b: array (changed)
              0: "y" (changed)
          c: "1" (changed)
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
