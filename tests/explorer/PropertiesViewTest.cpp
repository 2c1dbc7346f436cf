#include "PropertiesFixture.h"
#include "display/views/TavFormatController.h"

#include <QScrollBar>

using PropertiesViewTest = PropertiesFixture;

TEST_F(PropertiesViewTest, ShowsKeysTypesAndValues)
{
    EXPECT_EQ(rows(), dedented(R"(
        list | Array | 2 values +
        name | String | a word
        size | Number | 0x5)"));
    EXPECT_FALSE(row({2}, value).data(Qt::ToolTipRole).toString().isEmpty());
    EXPECT_FALSE(row({2}, type).data(Qt::ToolTipRole).isValid());
    EXPECT_TRUE(row({0}, value).data(Qt::ForegroundRole).isValid());
    EXPECT_FALSE(row({1}, value).data(Qt::ForegroundRole).isValid());
}

TEST_F(PropertiesViewTest, NeverChangesAValue)
{
    const auto mayEdit = [this](std::initializer_list<int> numbers, int column) {
        return row(numbers, column).flags().testFlag(Qt::ItemIsEditable);
    };
    EXPECT_TRUE(mayEdit({1}, 0));
    EXPECT_FALSE(mayEdit({1}, type));
    EXPECT_TRUE(mayEdit({1}, value));
    EXPECT_FALSE(mayEdit({0}, value));
    EXPECT_FALSE(mayEdit({0, 0}, 0)); // an index
    EXPECT_TRUE(mayEdit({0, 0}, value));
    EXPECT_TRUE(mayEdit({0, 1, 0}, 0));

    view_->edit(row({1}, value));
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->toPlainText(), QStringLiteral("a word"));
    QTest::keyClicks(editor(), QStringLiteral("another"));
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(row({1}, value).data().toString(), QStringLiteral("a word"));
    QTRY_COMPARE(editor(), nullptr);

    view_->edit(row({2}, value));
    ASSERT_NE(editor(), nullptr);
    view_->setFocus(); // going elsewhere commits nothing
    QTRY_COMPARE(editor(), nullptr);
    EXPECT_EQ(beeps_, 1);
}

TEST_F(PropertiesViewTest, RowsGrowWithWrappedValues)
{
    const QByteArray words = QByteArray("many words ").repeated(60);
    setTable({{"lines", values::text("one\ntwo\nthree")},
              {"long", values::text(words.constData())},
              {"short", values::text("word")}});
    update();
    const int line = height(row({2}));
    EXPECT_GT(height(row({0})), 2 * line);
    const int wide = height(row({1}));
    EXPECT_GT(wide, 2 * line);
    view_->header()->setStretchLastSection(false);
    view_->header()->resizeSection(value, 120);
    EXPECT_GT(height(row({1})), 2 * wide);
    EXPECT_EQ(height(row({2})), line);
    view_->grab();
}

TEST_F(PropertiesViewTest, RemembersWhatTheUserOpened)
{
    clickArrow({0});
    clickArrow({0, 1});
    goAwayAndBack();
    const std::string opened = dedented(R"(
        list | Array | 2 values
          0 | String | one
          0 | Dictionary | 1 value
            deep | Array | 1 value +
        name | String | a word
        size | Number | 0x5)");
    EXPECT_EQ(rows(), opened);
    update(); // the same entry read anew
    EXPECT_EQ(rows(), opened);
    clickArrow({0});
    clickArrow({0}); // what was open below opens too
    EXPECT_EQ(rows(), opened);
    clickArrow({0, 1});
    update();
    EXPECT_FALSE(view_->isExpanded(row({0, 1})));
    EXPECT_TRUE(view_->isExpanded(row({0})));

    clickArrow({0});
    clickArrow({0}, Qt::AltModifier); // a whole subtree
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    goAwayAndBack();
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    clickArrow({0}, Qt::AltModifier);
    clickArrow({0});
    EXPECT_FALSE(view_->isExpanded(row({0, 1})));

    // Of what is gone nothing is kept.
    ExpandedItems items;
    const PropertyRef root = entry("Host")->propertiesRef();
    TavRegistryProperty &list = *root->childAtIndex(0);
    items.insert(*root);
    items.insert(list);
    list.setRegistryState(RegistryStateTerminated);
    items.removeTerminatedItems();
    EXPECT_TRUE(items.contains(*root));
    EXPECT_FALSE(items.contains(list));
}

TEST_F(PropertiesViewTest, FollowsATableThatChangesItsShape)
{
    using namespace values;
    clickArrow({0}, Qt::AltModifier);
    view_->setCurrentIndex(row({0, 1, 0}));
    setTable({{"first", text("")}, {"list", array({text("one")})}, {"size", array({number(1)})}});
    store_->updateObject(*entry("Host")); // which nobody is told of
    EXPECT_EQ(view_->selectedItem()->name(), QStringLiteral("deep"));
    update();
    EXPECT_EQ(rows(), dedented(R"(
        first | String | 
        list | Array | 1 value
          0 | String | one
        size | Array | 1 value +)"));
    TavRegistryEntry::setPropertyClass(TavRegistryProperty::staticPropertyClass());
    update();
    EXPECT_EQ(row({0}, value).data().toString(), QStringLiteral("ERROR!")); // cannot be shown
    setTable({});
    update();
    EXPECT_EQ(rows(), "");
    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(view_->selectedItem(), nullptr);
    EXPECT_EQ(rows(), "");
}

TEST_F(PropertiesViewTest, StaysWhereItIsWhenTheEntryIsReadAnew)
{
    setTable({{"many", values::array(RegistryValue::Elements(200, values::number(1)))}});
    update();
    clickArrow({0});
    view_->verticalScrollBar()->setValue(777);
    update();
    EXPECT_EQ(view_->verticalScrollBar()->value(), 777);
    goAwayAndBack();
    EXPECT_EQ(view_->verticalScrollBar()->value(), 0);
}

TEST_F(PropertiesViewTest, SelectsByKeysAndIndexes)
{
    const auto formatted = [] {
        return TavFormatController::sharedInstance().selectedPropertyItem();
    };
    const QString list = QStringLiteral("list");
    controller_->selectPropertyKeyIndexPath({list, qsizetype(1)});
    const TavRegistryProperty *const second =
        entry("Host")->properties()->childWithName(list)->childAtIndex(1);
    EXPECT_EQ(view_->selectedItem(), second);
    EXPECT_TRUE(formatted() == second);
    EXPECT_TRUE(view_->isExpanded(row({0})));
    using Path = std::vector<PropertyPathMember>;
    for (const Path &path : {Path{list, qsizetype(2)},
                             {list, qsizetype(-1)},
                             {QStringLiteral("none")},
                             {QStringLiteral("size"), qsizetype(0)}}) {
        controller_->selectPropertyKeyIndexPath({list, qsizetype(0)});
        controller_->selectPropertyKeyIndexPath(path);
        EXPECT_FALSE(view_->selectedItem());
        EXPECT_FALSE(formatted());
    }
}
