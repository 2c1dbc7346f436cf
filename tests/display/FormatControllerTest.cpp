// SPDX-License-Identifier: Apache-2.0
#include "FormatPanelFixture.h"
#include "platform/preferences/PreferencesStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PopUpChoice.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/TreeText.h"

#include <QAction>
#include <QComboBox>
#include <QTest>
#include <QUndoStack>
#include <QWheelEvent>

namespace {
class FormatControllerTest : public FormatPanelFixture
{
protected:
    static RegistryValue bytes() { return RegistryValue::data("some bytes"); }
    static RegistryValue container()
    {
        return values::dictionary({{"one", RegistryValue::number(42, 4)}, {"two", bytes()}});
    }
    QAction *action(const char *name) const
    {
        return control<QAction>((std::string("propertyFormatActionItem") + name).c_str());
    }
    QString className() const
    {
        return control<QComboBox>("propertyFormatClassPopUpButton")->currentText();
    }
};

TEST_F(FormatControllerTest, ShowsEachKindOfFormatForEachKindOfProperty)
{
    select(bytes());
    EXPECT_EQ(panelText(), dedented(R"(
        View the selected data property as:
        automatic (1)* (2) (4) (8) (0)
        base (2) (8) (10) (16)*
        order (0)* (1) (2)
        sign (1) (0)*
        encoding 1 disabled)"));
    controller_.setPropertyFormats(formatOf("4dls"));
    EXPECT_EQ(panelText(), dedented(R"(
        View the selected data property as:
        unit 1 2 4* 8 0
        base 2 8 10* 16
        order 0 1 2*
        sign 1* 0
        encoding 1 disabled)"));
    controller_.setPropertyFormatsFromDescriptor(
        QStringLiteral("s12b")); // the encoding is not enabled
    EXPECT_EQ(panelText(), dedented(R"(
        View the selected data property as:
        unit 1 2 4 8 0*
        base (2) (8) (10)* (16)
        order (0) (1)* (2)
        sign (1)* (0)
        encoding 12)"));

    select(RegistryValue::number(42, 2));
    controller_.setPropertyFormats(formatOf("8xbu")); // the width is the number's own
    EXPECT_EQ(panelText(), dedented(R"(
        View the selected number property as:
        unit (1) 2* (4) (8) 0
        base 2 8 10 16*
        order 0 1* 2
        sign (1) (0)*)"));
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("2xbu"));
    controller_.setPropertyFormats(formatOf("s30l"));
    EXPECT_EQ(panelText(), dedented(R"(
        View the selected number property as:
        unit (1) 2 (4) (8) 0*
        base (2) (8) (10) (16)*
        order 0 1 2*
        sign (1) (0)*)"));
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("s1l"));
    controller_.setPropertyFormats(formatOf("a"));
    EXPECT_EQ(matrixText("propertyFormatTypeMatrix"), "(1) (2)* (4) (8) (0)");

    select(container());
    EXPECT_EQ(panelText().substr(0, panelText().find('\n')),
              "View data/numbers within the selected dictionary property as:");
    select(RegistryValue::array({RegistryValue()}), "Value/0");
    EXPECT_EQ(panelText().substr(0, panelText().find('\n')),
              "View data/numbers within the selected registry entry as:");
}

TEST_F(FormatControllerTest, WhatCannotBeReadLeavesTheCellsAsTheyAre)
{
    select(bytes());
    controller_.setPropertyFormats(formatOf("4dhu"));
    controller_.setPropertyFormats(formatOf("nonsense"));
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("4dhu"));
    controller_.setPropertyFormatsFromDescriptor(QString());
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("4dhu"));
    controller_.setPropertyFormats(formatOf("d")); // the default one
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("a"));

    const std::string before = panelText();
    PreferencesStore::standard().setValue(PreferenceKeys::defaultFormat.toString(),
                                          QStringLiteral("d"));
    LogCapture log;
    controller_.setPropertyFormats(formatOf("d"));
    EXPECT_EQ(log.take(), QStringList(QStringLiteral("Invalid default data view options!")));
    EXPECT_EQ(panelText(), before);
}

TEST_F(FormatControllerTest, EveryControlStoresForThePropertyAndTheClass)
{
    TavPropertyOutlineItem &item = select(bytes());
    EXPECT_EQ(statusText(), QStringLiteral("Using Default Settings"));
    EXPECT_EQ(className(), QStringLiteral("Root"));
    click("propertyFormatAutomaticCheckbox");
    EXPECT_EQ(storedFormats(), "Root: //Value 1xhu\n");
    EXPECT_EQ(statusText(), QStringLiteral("Using Custom Settings"));
    click("propertyFormatType4");
    click("propertyFormatBase10");
    click("propertyFormatByteOrder1");
    click("propertyFormatSign1");
    EXPECT_EQ(storedFormats(), "Root: //Value 4dbs\n");
    EXPECT_EQ(reported_, (std::vector<TavRegistryProperty *>(5, &item)));
    click("propertyFormatType0");
    chooseInList(*control<QComboBox>("propertyFormatStringEncodingPopUp"), 1);
    EXPECT_EQ(storedFormats(), "Root: //Value s10b\n");
    click("propertyFormatAutomaticCheckbox");
    EXPECT_EQ(storedFormats(), "Root: //Value a\n");
    EXPECT_EQ(statusText(), QStringLiteral("Using Custom Settings"));
    preferences_.restart();
    EXPECT_EQ(storedFormats(), "Root: //Value a\n");
}

TEST_F(FormatControllerTest, AnotherClassTakesTheSettingFromTheNearestSubclassOnly)
{
    TavPropertyOutlineItem &item = select(bytes());
    item.setPropertyFormats(formatOf("2xhu"), QStringLiteral("Mid"));
    controller_.setSelectedPropertyItem(&item);
    EXPECT_EQ(className(), QStringLiteral("Mid"));
    chooseClass("Root");
    EXPECT_EQ(storedFormats(), "Root: //Value 2xhu\n");
    EXPECT_EQ(className(), QStringLiteral("Root"));
    chooseClass("Mid"); // what is less specific stays
    EXPECT_EQ(storedFormats(), "Root: //Value 2xhu\nRoot:Mid: //Value 2xhu\n");
    EXPECT_EQ(className(), QStringLiteral("Mid"));
}

// Stepping with arrow keys must not change the settings of the classes on the way.
TEST_F(FormatControllerTest, KeysChooseAClassOnlyOnceTheUserIsThere)
{
    TavPropertyOutlineItem &item = select(bytes());
    item.setPropertyFormats(formatOf("2xhu"), QStringLiteral("Mid"));
    item.setPropertyFormats(formatOf("4xhu"), QStringLiteral("Own"));
    controller_.setSelectedPropertyItem(&item);
    const std::string before = storedFormats();
    auto &popUp = *control<QComboBox>("propertyFormatClassPopUpButton");
    popUp.setFocus();
    popUp.activateWindow();
    QTRY_VERIFY(popUp.hasFocus());
    QTest::keyClick(&popUp, Qt::Key_Home);
    QTest::keyClick(&popUp, Qt::Key_Down);
    QTest::keyClick(&popUp, Qt::Key_Up);
    EXPECT_EQ(className(), QStringLiteral("Root"));
    QWheelEvent wheel({5, 5}, popUp.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&popUp, &wheel);
    EXPECT_EQ(className(), QStringLiteral("Root"));
    QTest::keyClick(&popUp, Qt::Key_Escape);
    EXPECT_EQ(className(), QStringLiteral("Own"));
    EXPECT_TRUE(controller_.isPropertyFormatPanelVisible());
    EXPECT_EQ(storedFormats(), before);

    QTest::keyClick(&popUp, Qt::Key_Home);
    QTest::keyClick(&popUp, Qt::Key_Return);
    EXPECT_EQ(storedFormats(), "Root: //Value 4xhu\nRoot:Mid:Own: //Value 4xhu\n");
    QTest::keyClick(&popUp, Qt::Key_Home);
    QTest::keyClick(&popUp, Qt::Key_Down);
    control<QWidget>("propertyFormatActionMenu")->setFocus();
    EXPECT_EQ(storedFormats(), "Root: //Value 4xhu\nRoot:Mid: //Value 4xhu\n");
    QTest::keyClick(&popUp, Qt::Key_Home);
    selectNone(); // like a click into another window, before the focus changes
    EXPECT_EQ(storedFormats(), "Root: //Value 4xhu\n");
}

TEST_F(FormatControllerTest, WithoutAPropertyTheDefaultIsEdited)
{
    selectNone();
    EXPECT_FALSE(control<QComboBox>("propertyFormatClassPopUpButton")->isEnabled());
    click("propertyFormatAutomaticCheckbox");
    click("propertyFormatType8");
    EXPECT_EQ(defaultFormat(), QStringLiteral("8xhu"));
    EXPECT_EQ(statusText(), QStringLiteral("Using Default Settings"));
    EXPECT_EQ(storedFormats(), "");
    EXPECT_EQ(reported_, (std::vector<TavRegistryProperty *>(2, nullptr)));
    preferences_.restart();
    EXPECT_EQ(defaultFormat(), QStringLiteral("8xhu"));
    select(bytes());
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("8xhu"));
}

TEST_F(FormatControllerTest, ActionsSetAndClear)
{
    TavPropertyOutlineItem &item = select(container());
    auto &one = static_cast<TavPropertyOutlineItem &>(*item.childAtIndex(0));
    item.setPropertyFormats(formatOf("4xhu"), QStringLiteral("Root"));
    one.setPropertyFormats(formatOf("4dhu"), QStringLiteral("Own"));
    controller_.setSelectedPropertyItem(&one);
    EXPECT_EQ(statusText(), QStringLiteral("Using Custom Settings"));
    EXPECT_TRUE(action("UseShared")->isEnabled());
    action("UseShared")->trigger();
    EXPECT_EQ(statusText(), QStringLiteral("Using Shared Settings"));
    EXPECT_EQ(className(), QStringLiteral("Root"));
    EXPECT_FALSE(action("UseShared")->isEnabled());
    EXPECT_EQ(storedFormats(), "Root: //Value 4xhu\n");

    one.setPropertyFormats(formatOf("4dhu"), QStringLiteral("Own"));
    item.setPropertyFormats(formatOf("1dhu"), QStringLiteral("Mid"));
    controller_.setSelectedPropertyItem(&item);
    action("ClearSubclasses")->trigger();
    EXPECT_EQ(storedFormats(), "Root: //Value 4xhu\nRoot:Mid: //Value 1dhu\n");
    EXPECT_EQ(reported_.size(), 2U);

    action("UseShared")->trigger();
    action("UseShared")->trigger();
    EXPECT_EQ(statusText(), QStringLiteral("Using Default Settings"));
    EXPECT_FALSE(action("SetDefaults")->isEnabled());
}

TEST_F(FormatControllerTest, UndoRestoresWhatTheActionChangedAndNoMore)
{
    QUndoStack stack;
    controller_.setUndoStack(stack);
    TavPropertyOutlineItem &item = select(container());
    auto &one = static_cast<TavPropertyOutlineItem &>(*item.childAtIndex(0));
    auto &two = static_cast<TavPropertyOutlineItem &>(*item.childAtIndex(1));
    one.setPropertyFormats(formatOf("4dhu"), QStringLiteral("Own"));
    two.setPropertyFormats(formatOf("1dhu"), QStringLiteral("Mid"));
    const std::string before = storedFormats();
    action("ClearContents")->trigger();
    EXPECT_EQ(storedFormats(), "");
    item.setPropertyFormats(formatOf("8xhu"), QStringLiteral("Root")); // not by the panel
    stack.undo();
    EXPECT_EQ(storedFormats(), "Root: //Value 8xhu\n" + before);
    EXPECT_EQ(reported_.back(), &item);
    EXPECT_EQ(controller_.propertyFormatDescriptor(), QStringLiteral("8xhu"));
    stack.redo();
    EXPECT_EQ(storedFormats(), "Root: //Value 8xhu\n");

    action("SetDefaults")->trigger();
    EXPECT_EQ(defaultFormat(), QStringLiteral("8xhu"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Default Format"));
    action("SetDefaults")->trigger(); // changes nothing
    EXPECT_EQ(stack.count(), 2);
    stack.undo();
    EXPECT_EQ(defaultFormat(), QStringLiteral("a"));
    preferences_.restart();
    EXPECT_EQ(defaultFormat(), QStringLiteral("a"));
    EXPECT_FALSE(PreferencesStore::standard().isStored(PreferenceKeys::defaultFormat.toString()));
}

TEST_F(FormatControllerTest, TheMenuItemFollowsThePanel)
{
    QAction item;
    controller_.addTogglePropertyFormatPanelMenuItem(item);
    QTest::keyClick(&controller_.propertyFormatPanel(), Qt::Key_Escape);
    EXPECT_EQ(item.text(), QStringLiteral("Show Property &Format Panel"));
    item.trigger();
    EXPECT_TRUE(controller_.isPropertyFormatPanelVisible());
}

TEST_F(FormatControllerTest, KeepsAPropertyWhoseEntryHasGone)
{
    select(container(), "Value/one");
    entry_.reset();
    click("propertyFormatAutomaticCheckbox");
    EXPECT_EQ(storedFormats(), "Root: //Value/one 4xhu\n");
}

TEST(EntryTextAttributesTest, SomeStatesShareASlot)
{
    const auto attributes = &TavFormatController::textAttributesForRegistryState;
    EXPECT_EQ(&attributes(RegistryStateChanged, FindStateNone, true),
              &attributes(RegistryStateUnchanged, FindStateNotMatching, false));
    EXPECT_EQ(&attributes(RegistryStateTerminated, FindStateNone, true),
              &attributes(RegistryStateNew, FindStateNotMatching, false));
    EXPECT_NE(&attributes(RegistryStateNew, FindStateNone, true),
              &attributes(RegistryStateNew, FindStateNone, false));
}
} // namespace
