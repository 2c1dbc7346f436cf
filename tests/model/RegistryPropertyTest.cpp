// SPDX-License-Identifier: Apache-2.0
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <gtest/gtest.h>

using namespace values;

namespace {
class SpecialProperty : public TavRegistryProperty
{
public:
    using TavRegistryProperty::TavRegistryProperty;

    static const PropertyClass &staticPropertyClass()
    {
        static const PropertyClass propertyClass{
            &TavRegistryProperty::staticPropertyClass(), sizeof(SpecialProperty),
            [](void *storage, PropertyTree &tree) -> TavRegistryProperty * {
                return new (storage) SpecialProperty(tree);
            }};
        return propertyClass;
    }
    const PropertyClass &propertyClass() const override { return staticPropertyClass(); }
};
} // namespace

TEST(RegistryProperty, ExpandsEveryValue)
{
    const auto root = build(
        dictionary({{"name", text("disk")},
                    {"size", number(512, 8)},
                    {"offset", negative(-3, 2)},
                    {"removable", RegistryValue::boolean(false)},
                    {"serial", data("00ff10")},
                    {"read", RegistryValue::date(QDateTime::fromMSecsSinceEpoch(1234, Qt::UTC))},
                    {"nothing", RegistryValue::null()},
                    {"queue", dictionary({{"depth", number(32, 1)}, {"empty", dictionary({})}})},
                    {"ranges", array({array({number(1), number(2)}), text("rest")})},
                    {"tags", set({text("block"), text("fast")})}}));
    root->clearIsNew();
    EXPECT_EQ(TreePrinter::properties(*root), dedented(R"(
        dictionary
          name: "disk"
          size: 512 (8 bytes)
          offset: -3 (2 bytes)
          removable: false
          serial: <00ff10>
          read: 1970-01-01T00:00:01.234Z
          nothing: null
          queue: dictionary
            depth: 32 (1 byte)
            empty: dictionary
          ranges: array
            0: array
              0: 1 (4 bytes)
              0: 2 (4 bytes)
            0: "rest"
          tags: set
            : "block"
            : "fast"
    )"));
}

TEST(RegistryProperty, NamesAndPathsFollowTheParentsType)
{
    const auto root =
        build(dictionary({{"Key", array({number(1), dictionary({{"Inner", number(2)}})})},
                          {"Set", set({text("m")})}}));
    EXPECT_TRUE(root->name().isNull());
    EXPECT_EQ(root->propertyPath(), QStringLiteral("/"));
    EXPECT_TRUE(root->keyIndexPath().isEmpty());

    const auto *list = root->childWithName(QStringLiteral("Key"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->propertyPath(), QStringLiteral("//Key"));
    const auto *second = list->childAtIndex(1);
    EXPECT_EQ(second->name(), QStringLiteral("0"));
    EXPECT_EQ(second->index(), 0U);
    EXPECT_EQ(second->propertyPath(), QStringLiteral("//Key[0]"));
    const auto *inner = second->childWithName(QStringLiteral("Inner"));
    EXPECT_EQ(inner->propertyPath(), QStringLiteral("//Key[0]/Inner"));
    EXPECT_EQ(inner->keyIndexPath(),
              (QVariantList{QStringLiteral("Key"), qint32(0), QStringLiteral("Inner")}));
    EXPECT_EQ(inner->keyIndexPath()[1].typeId(), QMetaType::Int);

    auto *const members = root->childWithName(QStringLiteral("Set"));
    const auto *member = members->childAtIndex(0);
    EXPECT_TRUE(member->hasName());
    EXPECT_EQ(member->name(), QStringLiteral(""));
    EXPECT_EQ(member->propertyPath(), QStringLiteral("//Set/"));
    EXPECT_EQ(member->keyIndexPath().constLast(), QVariant(QStringLiteral("")));
    const auto unnamed = TavRegistryProperty::create(TavRegistryProperty::staticPropertyClass(),
                                                     nullptr, {}, members, {}, 5, text("n"));
    EXPECT_EQ(unnamed->name(), QStringLiteral("(set item)"));
    EXPECT_EQ(unnamed->index(), 0U);
}

TEST(RegistryProperty, AnswersNoneWhereThereIsNothing)
{
    EXPECT_FALSE(build(RegistryValue()));
    const auto root = build(dictionary({{"k", number(1)}, {"list", array({text("k")})}}));
    EXPECT_TRUE(root->value().isNone());
    EXPECT_FALSE(root->childAtIndex(2));
    EXPECT_FALSE(root->childAtIndex(-1));
    EXPECT_FALSE(root->childWithName(QStringLiteral("k"))->childAtIndex(0));
    // Only dictionaries are searched by name.
    EXPECT_FALSE(root->childWithName(QStringLiteral("list"))->childWithName(QStringLiteral("0")));
}

TEST(RegistryProperty, StatesStartNewAndAreSetForWholeTrees)
{
    const auto root = build(dictionary({{"list", array({number(1), number(2)})}}));
    auto *list = root->childAtIndex(0);
    EXPECT_EQ(list->childAtIndex(1)->registryState(), RegistryStateNew);
    list->childAtIndex(0)->setRegistryState(RegistryStateTerminated);
    list->setRegistryState(RegistryStateChanged);
    root->clearIsNew();
    EXPECT_EQ(TreePrinter::properties(*root), dedented(R"(
        dictionary
          list: array (changed)
            0: 1 (4 bytes) (terminated)
            0: 2 (4 bytes)
    )"));
    root->resetRegistryState();
    EXPECT_EQ(list->registryState(), RegistryStateUnchanged);
    EXPECT_EQ(list->childAtIndex(0)->registryState(), RegistryStateTerminated);
    root->removeDeletedChildren(); // of the root itself only
    EXPECT_EQ(list->numberOfChildren(), 2);
    list->removeDeletedChildren();
    ASSERT_EQ(list->numberOfChildren(), 1);
    EXPECT_EQ(list->childAtIndex(0)->value(), number(2));
    list->setRegistryStateRecursive(RegistryStateTerminated);
    EXPECT_EQ(list->childAtIndex(0)->registryState(), RegistryStateTerminated);
}

TEST(RegistryProperty, IsEqualOnlyToNodesOfItsOwnClassOrOneDerivedFromIt)
{
    const auto special = TavRegistryProperty::create(SpecialProperty::staticPropertyClass(),
                                                     nullptr, {}, nullptr, {}, 0, text("t"));
    const auto plain = build(text("t"));
    EXPECT_TRUE(plain->isEqual(*special));
    EXPECT_FALSE(special->isEqual(*plain));
    EXPECT_TRUE(special->isEqual(*special->copy())) << "a copy is of the same class";
}

TEST(RegistryProperty, ACopyHoldsTheSameChildrenAndHasNoType)
{
    const auto root = build(dictionary({{"list", array({number(1)})}, {"k", text("v")}}));
    auto *list = root->childAtIndex(0);
    list->setRegistryState(RegistryStateChanged);
    const auto copied = list->copy();
    EXPECT_EQ(copied->name(), QStringLiteral("list"));
    EXPECT_EQ(copied->parent(), root.get());
    EXPECT_EQ(copied->registryState(), RegistryStateChanged);
    EXPECT_EQ(copied->valueType(), RegistryValue::Type::None);
    EXPECT_EQ(copied->childAtIndex(0), list->childAtIndex(0));
    EXPECT_EQ(copied->childAtIndex(0)->parent(), list);
    EXPECT_FALSE(root->copy()->childWithName(QStringLiteral("k")));
    EXPECT_FALSE(copied->isEqual(*list));
    EXPECT_TRUE(copied->isEqual(*copied));
    EXPECT_EQ(root->childAtIndex(1)->copy()->value(), text("v"));
}
