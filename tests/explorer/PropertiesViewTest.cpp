// SPDX-License-Identifier: Apache-2.0
#include "PropertiesFixture.h"
#include "display/views/TavFormatController.h"

#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <ctime>

using PropertiesViewTest = PropertiesFixture;

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

// Laying them out row by row would grow with the square of the rows.
TEST_F(PropertiesViewTest, LaysEqualTextsOutOnce)
{
    const QString words = QStringLiteral("many words ").repeated(3000);
    const auto millisecondsFor = [&](int rows) {
        RegistryValue::Members members;
        for (int i = 0; i < rows; ++i)
            members.push_back({CompactString(QString::number(i)), RegistryValue::string(words)});
        service_.setProperties(registry_["Host"], RegistryValue::dictionary(std::move(members)));
        update();
        view_->noteHeightOfAllRowsChanged();
        const std::clock_t start = std::clock();
        view_->doItemsLayout();
        view_->grab();
        EXPECT_GT(height(row({rows - 1})), 10 * view_->fontMetrics().height());
        return 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    const double once = millisecondsFor(1);
    EXPECT_LT(millisecondsFor(300), 30 * once);
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
    update(); // the same entry read again
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

    // Nothing is remembered of removed rows.
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
    store_->updateObject(*entry("Host")); // notifies nobody
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

TEST_F(PropertiesViewTest, KeepsItsPlaceHoweverTheEntryIsReread)
{
    using namespace values;
    const auto many = [](int count) {
        return array(RegistryValue::Elements(static_cast<std::size_t>(count), number(1)));
    };
    setTable({{"many", many(200)}, {"name", text("a word")}});
    update();
    clickArrow({0});
    selectRow({0, 150}, value); // known by its position alone
    view_->setFocus();
    const auto *const scroll = view_->verticalScrollBar();
    view_->verticalScrollBar()->setValue(scroll->value() + 77);
    const int top = view_->visualRect(view_->currentIndex()).top();

    controller_->newDocumentWindow(); // shows the same entry, with nothing selected
    controller(1).goToEntryPath(path({"Root", "Host"}), true, true);
    ASSERT_TRUE(activate(window()));
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"update", [this] { update(); }},
        {"the entry alone", [this] { store_->updateObject(*entry("Host")); }},
        {"another entry and back", [this] { goAwayAndBack(); }},
        {"rereads while another is shown",
         [this] {
             select({"Root"});
             update();
             select({"Root", "Host"});
         }},
        {"columns",
         [this] {
             controller_->browserView();
             update();
             controller_->outlineView();
         }},
    };
    QSignalSpy selectionChanges(view_->selectionModel(), &QItemSelectionModel::selectionChanged);
    int more = 0;
    for (const auto &[name, reread] : ways) {
        SCOPED_TRACE(name);
        // Each time with one key more or less before the array.
        if (++more % 2)
            setTable({{"first", text("")}, {"many", many(200 + more)}, {"name", text("a word")}});
        else
            setTable({{"many", many(200 + more)}, {"name", text("a word")}});
        reread();
        update();
        const QModelIndex selected = row({more % 2, 150}, value);
        EXPECT_EQ(view_->currentIndex(), selected);
        EXPECT_EQ(view_->selectedItem(), view_->dataSource()->item(selected));
        EXPECT_TRUE(view_->isExpanded(row({more % 2})));
        EXPECT_TRUE(TavFormatController::sharedInstance().selectedPropertyItem() ==
                    view_->selectedItem());
        EXPECT_TRUE(view_->viewport()->rect().contains(view_->visualRect(selected)));
        if (more == 1) {
            EXPECT_EQ(view_->visualRect(selected).top(), top);
            EXPECT_TRUE(view_->hasFocus());
            EXPECT_TRUE(selectionChanges.empty()); // nothing was selected in between
        }
    }
    EXPECT_EQ(controller(1).window()->findChild<TavPropertiesOutlineView *>()->selectedItem(),
              nullptr);
}

TEST_F(PropertiesViewTest, WhatIsLookedAtInPlaceStays)
{
    using namespace values;
    selectRow({1}, value);
    view_->edit(row({1}, value));
    QPointer<QPlainTextEdit> field = editor();
    ASSERT_TRUE(field);
    QTextCursor part = field->textCursor();
    part.setPosition(2);
    part.setPosition(6, QTextCursor::KeepAnchor);
    field->setTextCursor(part);
    setTable({{"before", number(1)}, {"name", text("a word")}, {"size", number(6)}});
    update();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(field);
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(field->textCursor().selectedText(), QStringLiteral("word"));
    EXPECT_EQ(field->y(), view_->visualRect(row({1})).y());

    setTable({{"name", text("another text")}});
    update();
    ASSERT_TRUE(field);
    EXPECT_EQ(field->toPlainText(), QStringLiteral("another text"));
    EXPECT_TRUE(field->hasFocus());

    setTable({{"name", array({text("a list")})}}); // which has no text to look at
    update();
    QTRY_COMPARE(editor(), nullptr);
    EXPECT_TRUE(view_->hasFocus());

    view_->edit(row({0})); // its key
    ASSERT_NE(editor(), nullptr);
    setTable({{"size", number(5)}});
    update();
    QTRY_COMPARE(editor(), nullptr);
    EXPECT_TRUE(view_->hasFocus());
    EXPECT_EQ(beeps_, 0);
}

TEST_F(PropertiesViewTest, WhatIsEmptyHasNoArrow)
{
    using namespace values;
    setTable({{"array", array({})}, {"dictionary", dictionary({})}, {"full", array({number(1)})}});
    update();
    EXPECT_EQ(rows(), dedented(R"(
        array | Array | 0 values
        dictionary | Dictionary | 0 values
        full | Array | 1 value +)"));
    setTable({{"array", array({number(1)})}, {"full", array({})}});
    clickArrow({2});
    update();
    EXPECT_EQ(rows(), dedented(R"(
        array | Array | 1 value +
        full | Array | 0 values)"));
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
