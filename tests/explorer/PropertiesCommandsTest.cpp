// SPDX-License-Identifier: Apache-2.0
#include "PropertiesFixture.h"
#include "display/views/TavFormatController.h"

#include <QDialog>

using PropertiesCommandsTest = PropertiesFixture;

TEST_F(PropertiesCommandsTest, AHeaderSortsAndItsThirdClickBringsTheNaturalOrderBack)
{
    using namespace values;
    setTable({{"beta", data("0102")},
              {"Alpha", text("Zoe")},
              {"gamma", number(9)},
              {"delta", array({number(2), number(1), text("adam")})},
              {"epsilon", data("0201")},
              {"zeta", RegistryValue::boolean(true)},
              {"eta", number(7)},
              {"kappa", dictionary({{"b", number(1)}, {"a", number(2)}})},
              {"iota", dictionary({})}});
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
    clickHeader(value); // Deliberate: the last byte that differs decides, in reverse
    EXPECT_EQ(keys(), "zeta eta gamma beta epsilon Alpha delta kappa iota");

    // What is opened, selected or read again keeps its place in the order.
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

TEST_F(PropertiesCommandsTest, TheContextMenuCopiesExpandsAndShowsTheFormat)
{
    choose(row({0}), "Expand All");
    EXPECT_TRUE(view_->isExpanded(row({0, 1, 0})));
    goAwayAndBack(); // it is remembered
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
    setTable({{"size", values::number(5)}});
    update(); // removes its row
    open->actions().at(1)->trigger();
    EXPECT_EQ(copied(), "size\tNumber\t0x5");
    open->close();
    EXPECT_EQ(menu({})->actions().size(), 2); // not on a row
}

TEST_F(PropertiesCommandsTest, ShowsANumberInTheFormatThatIsChosenForItsClass)
{
    choose(row({2}, value), "Decimal");
    EXPECT_EQ(row({2}, value).data().toString(), QStringLiteral("5"));
    EXPECT_EQ(action("undoAction").text(), QStringLiteral("&Undo Format of “size”"));
    choose(row({2}, value), "Binary");
    EXPECT_EQ(row({2}, value).data().toString(), QStringLiteral("0b101"));
    choose(row({2}, value), "Reset");
    EXPECT_EQ(row({2}, value).data().toString(), QStringLiteral("0x5"));
    action("undoAction").trigger();
    EXPECT_EQ(row({2}, value).data().toString(), QStringLiteral("0b101"));
}

TEST_F(PropertiesCommandsTest, FollowsLinksToOtherEntriesAndComesBack)
{
    using namespace values;
    const auto driver = add("Host", "driver");
    service_.setKernelPath(driver, QStringLiteral("/sys/bus/pci/drivers/d"));
    service_.setKernelPath(registry_["Host"], QStringLiteral("/sys/devices/host"));
    setTable({{"driver", text("bus/pci/drivers/d")},
              {"itself", text("devices/host")},
              {"nowhere", text("bus/pci/drivers/e")}});
    update();
    TavRegistryEntry *const target =
        store_->locator().atKernelPath(QStringLiteral("/sys/bus/pci/drivers/d"));
    ASSERT_TRUE(target);
    const auto isLink = [this](int number) {
        return view_->dataSource()->styledText(row({number}, value)).attributes().link;
    };
    EXPECT_TRUE(isLink(0));
    EXPECT_FALSE(isLink(1));
    EXPECT_FALSE(isLink(2));
    selectRow({0});
    view_->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(controller_->selectedEntry(), target);
    controller_->goBack();
    EXPECT_EQ(controller_->selectedEntry(), entry("Host"));
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      view_->visualRect(row({0}, value)).center());
    EXPECT_EQ(controller_->selectedEntry(), target);
    controller_->goToRegistryPath(QStringLiteral("/sys/devices/host"));
    EXPECT_EQ(controller_->selectedEntry(), entry("Host"));
    action("copyKernelPathAction").trigger();
    EXPECT_EQ(copied(), "/sys/devices/host");
}

TEST_F(PropertiesCommandsTest, ShowsLongDeepAndManyValues)
{
    using namespace values;
    QByteArray bytes(64 * 1024, 'x');
    for (qsizetype i = 0; i < bytes.size(); i += 3)
        bytes[i] = static_cast<char>(i);
    RegistryValue deep = number(1);
    for (int level = 0; level < 100; ++level)
        deep = level % 2 ? array({deep}) : dictionary({{"deeper", deep}});
    setTable({{"bytes", RegistryValue::data(bytes)},
              {"deep", deep},
              {"many", array(RegistryValue::Elements(10'000, number(7)))}});
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
