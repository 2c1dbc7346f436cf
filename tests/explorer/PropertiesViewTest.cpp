#include "ExplorerFixture.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/PropertiesContextMenu.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/TreeText.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>

namespace {
class PropertiesViewTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host)");
        setTable(usualTable());
        open();
        view_ = outlet<TavPropertiesOutlineView>("propertiesOutlineView");
        tester_ = std::make_unique<QAbstractItemModelTester>(
            view_->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        select("Host");
    }
    void TearDown() override { tester_.reset(); }

    static RegistryValue usualTable()
    {
        using namespace values;
        return dictionary(
            {{"list", array({text("one"), dictionary({{"deep", array({text("end")})}})})},
             {"name", text("a word")},
             {"size", number(5)}});
    }
    void setTable(const RegistryValue &table) { service_.setProperties(registry_["Host"], table); }
    void select(const char *label)
    {
        controller_->goToEntryPath(
            strcmp(label, "Root") == 0 ? path({"Root"}) : path({"Root", "Host"}), true, true);
    }
    QModelIndex row(std::initializer_list<int> numbers, int column = 0) const
    {
        QModelIndex index;
        for (const int number : numbers)
            index = view_->model()->index(number, 0, index);
        return index.siblingAtColumn(column);
    }
    void clickExpander(const QModelIndex &index, Qt::KeyboardModifiers modifiers = {})
    {
        const QRect rect = view_->visualRect(index);
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers,
                          {rect.left() - view_->indentation() / 2, rect.center().y()});
    }
    int height(const QModelIndex &index) const { return view_->visualRect(index).height(); }
    void clickHeader(int column)
    {
        const QHeaderView *const header = view_->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    // The keys of the rows at the top, in their order.
    std::string keys() const
    {
        QStringList keys;
        for (int i = 0; i < view_->model()->rowCount(); ++i)
            keys << row({i}).data().toString();
        return keys.join(u' ').toStdString();
    }
    // The commands of the context menu for the row, or for none.
    PropertiesContextMenu *menu(const QModelIndex &index)
    {
        const QPoint place = index.isValid() ? view_->visualRect(index).center()
                                             : view_->viewport()->rect().bottomRight();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                view_->viewport()->mapToGlobal(place));
        QApplication::sendEvent(view_->viewport(), &event);
        return view_->findChildren<PropertiesContextMenu *>().last();
    }
    void choose(const QModelIndex &index, const char *command)
    {
        PropertiesContextMenu *const commands = menu(index);
        for (QAction *action : commands->actions()) {
            if (action->text().remove(u'&') == QLatin1String(command))
                action->trigger();
        }
        commands->close();
    }
    static std::string copied() { return QGuiApplication::clipboard()->text().toStdString(); }
    QPlainTextEdit *editor() const { return view_->viewport()->findChild<QPlainTextEdit *>(); }

    TavPropertiesOutlineView *view_ = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester_;
    static constexpr int value = TavPropertiesOutlineViewDataSource::ValueColumn;
    static constexpr int type = TavPropertiesOutlineViewDataSource::TypeColumn;
};
} // namespace

TEST_F(PropertiesViewTest, ShowsKeysTypesAndValues)
{
    EXPECT_EQ(rowsOf(*view_), dedented(R"(
        list | Array | 2 values +
        name | String | a word
        size | Number | 0x5)"));
    clickExpander(row({0}));
    EXPECT_EQ(rowsOf(*view_), dedented(R"(
        list | Array | 2 values
          0 | String | one
          0 | Dictionary | 1 value +
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
    using namespace values;
    const QByteArray words = QByteArray("many words ").repeated(60);
    setTable(dictionary({{"lines", text("one\ntwo\nthree")},
                         {"long", text(words.constData())},
                         {"short", text("word")}}));
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
    clickExpander(row({0}));
    clickExpander(row({0, 1}));
    select("Root");
    select("Host");
    const std::string opened = dedented(R"(
        list | Array | 2 values
          0 | String | one
          0 | Dictionary | 1 value
            deep | Array | 1 value +
        name | String | a word
        size | Number | 0x5)");
    EXPECT_EQ(rowsOf(*view_), opened);
    update(); // the same entry read anew
    EXPECT_EQ(rowsOf(*view_), opened);
    clickExpander(row({0}));
    clickExpander(row({0})); // what was open below opens too
    EXPECT_TRUE(view_->isExpanded(row({0, 1})));
    clickExpander(row({0, 1}));
    update();
    EXPECT_FALSE(view_->isExpanded(row({0, 1})));
    EXPECT_TRUE(view_->isExpanded(row({0})));
}

TEST_F(PropertiesViewTest, AltClickOpensAWholeSubtree)
{
    clickExpander(row({0}), Qt::AltModifier);
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    select("Root");
    select("Host");
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    clickExpander(row({0}), Qt::AltModifier);
    clickExpander(row({0}));
    EXPECT_FALSE(view_->isExpanded(row({0, 1})));
}

TEST_F(PropertiesViewTest, FollowsATableThatChangesItsShape)
{
    using namespace values;
    clickExpander(row({0}));
    clickExpander(row({0, 1}));
    setTable(dictionary(
        {{"first", text("")}, {"list", array({text("one")})}, {"size", array({number(1)})}}));
    update();
    EXPECT_EQ(rowsOf(*view_), dedented(R"(
        first | String | 
        list | Array | 1 value
          0 | String | one
        size | Array | 1 value +)"));
    setTable(dictionary({}));
    update();
    EXPECT_EQ(rowsOf(*view_), "");
}

TEST_F(PropertiesViewTest, StaysWhereItIsWhenTheEntryIsReadAnew)
{
    RegistryValue::Members members;
    for (int i = 1000; i < 1200; ++i)
        members.push_back({CompactString(QString::number(i)), values::number(1)});
    setTable(RegistryValue::dictionary(members));
    update();
    view_->verticalScrollBar()->setValue(777);
    update();
    EXPECT_EQ(view_->verticalScrollBar()->value(), 777);
    select("Root");
    select("Host");
    EXPECT_EQ(view_->verticalScrollBar()->value(), 0);
}

TEST_F(PropertiesViewTest, KeepsTheTreeItShows)
{
    clickExpander(row({0}), Qt::AltModifier);
    view_->setCurrentIndex(row({0, 1, 0}));
    store_->updateObject(*entry("Host"));
    EXPECT_EQ(view_->selectedItem()->name(), QStringLiteral("deep"));
    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(view_->selectedItem(), nullptr);
    EXPECT_EQ(rowsOf(*view_), "");
}

TEST_F(PropertiesViewTest, TellsOfItemsThatCannotBeShown)
{
    TavRegistryEntry::setPropertyClass(TavRegistryProperty::staticPropertyClass());
    update();
    EXPECT_EQ(row({1}, value).data().toString(), QStringLiteral("ERROR!"));
}

TEST_F(PropertiesViewTest, ForgetsTerminatedItems)
{
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

TEST_F(PropertiesViewTest, AHeaderSortsAndItsThirdClickBringsTheNaturalOrderBack)
{
    using namespace values;
    setTable(dictionary({{"beta", data("0102")},
                         {"Alpha", text("Zoe")},
                         {"gamma", number(9)},
                         {"delta", array({number(2), number(1), text("adam")})},
                         {"epsilon", data("0201")},
                         {"zeta", RegistryValue::boolean(true)},
                         {"eta", number(7)},
                         {"kappa", dictionary({{"b", number(1)}, {"a", number(2)}})},
                         {"iota", dictionary({})}}));
    update();
    const std::string natural = keys();
    clickHeader(0);
    EXPECT_EQ(keys(), "Alpha beta delta epsilon eta gamma iota kappa zeta");
    clickHeader(0);
    EXPECT_EQ(keys(), "zeta kappa iota gamma eta epsilon delta beta Alpha");
    clickHeader(0);
    EXPECT_EQ(keys(), natural);
    clickHeader(type);
    EXPECT_EQ(keys(), "zeta gamma eta beta epsilon Alpha delta kappa iota");
    clickHeader(value); // the last byte that differs decides, the wrong way round
    EXPECT_EQ(keys(), "zeta eta gamma beta epsilon Alpha delta kappa iota");

    // What is opened, selected or read anew keeps its place in the order.
    choose({}, "Expand All");
    view_->setCurrentIndex(row({6, 0}));
    EXPECT_EQ(row({6, 0}, value).data().toString(), QStringLiteral("0x1"));
    clickHeader(value);
    EXPECT_EQ(view_->selectedItem()->value(), number(1));
    EXPECT_TRUE(view_->isExpanded(row({2})));
    EXPECT_EQ(row({2, 0}, value).data().toString(), QStringLiteral("adam"));
    EXPECT_EQ(view_->currentIndex(), row({2, 2}));
    update();
    EXPECT_EQ(keys(), "kappa iota delta Alpha epsilon beta gamma eta zeta");
    EXPECT_TRUE(view_->isExpanded(row({2})));
}

TEST_F(PropertiesViewTest, TheContextMenuCopiesExpandsAndShowsTheFormat)
{
    choose(row({0}), "Expand All");
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    select("Root");
    select("Host"); // it is remembered
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    choose(row({0, 1, 0, 0}), "Copy Path");
    EXPECT_EQ(copied(), "//list[0]/deep[0]");
    choose(row({0, 1, 0, 0}), "Copy Key");
    EXPECT_EQ(copied(), "0");
    choose(row({1}), "Copy Value");
    EXPECT_EQ(copied(), "a word");
    choose(row({2}), "Copy Row");
    EXPECT_EQ(copied(), "size\tNumber\t0x5");
    choose(row({0}), "Collapse All");
    EXPECT_EQ(view_->indexBelow(row({0})), row({1}));
    update();
    EXPECT_FALSE(view_->isExpanded(row({0})));

    TavFormatController &formats = TavFormatController::sharedInstance();
    choose(row({2}), "Show in Format Panel");
    EXPECT_TRUE(formats.isPropertyFormatPanelVisible());
    EXPECT_EQ(formats.selectedPropertyItem()->name(), QStringLiteral("size"));
    formats.propertyFormatPanel().hide();

    PropertiesContextMenu *const open = menu(row({1}));
    update(); // its row goes meanwhile
    open->actions().at(1)->trigger();
    EXPECT_EQ(copied(), "size\tNumber\t0x5");
    open->close();
    EXPECT_EQ(menu({})->actions().size(), 2); // not on a row
}

TEST_F(PropertiesViewTest, BearsLongDeepAndManyValues)
{
    using namespace values;
    QByteArray bytes(64 * 1024, 'x');
    for (qsizetype i = 0; i < bytes.size(); i += 3)
        bytes[i] = static_cast<char>(i);
    RegistryValue deep = number(1);
    for (int level = 0; level < 100; ++level)
        deep = level % 2 ? array({deep}) : dictionary({{"deeper", deep}});
    setTable(dictionary({{"bytes", RegistryValue::data(bytes)},
                         {"deep", deep},
                         {"many", array(RegistryValue::Elements(10'000, number(7)))}}));
    update();
    const int line = height(row({1}));
    EXPECT_GT(height(row({0})), 500 * line);
    view_->grab();
    view_->edit(row({0}, value));
    EXPECT_EQ(editor()->toPlainText().size(), 3 * bytes.size() + 1);
    choose({}, "Expand All");
    EXPECT_EQ(view_->isExpanded(row({1})), true);
    const QModelIndex last = row({2, 9999});
    view_->scrollTo(last);
    view_->grab();
    EXPECT_TRUE(view_->viewport()->rect().contains(view_->visualRect(last).center()));
    int levels = 0;
    for (QModelIndex at = row({1}); view_->model()->hasChildren(at);
         at = view_->model()->index(0, 0, at))
        levels += view_->isExpanded(at);
    EXPECT_EQ(levels, 100);
    clickHeader(value);
    update();
    view_->grab();
}
