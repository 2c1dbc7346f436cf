// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "tests/support/PopUpChoice.h"
#include "tests/support/RegistryValues.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QLabel>

namespace {
class FormatJourneyTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              usb@14 : DxPciSerialBus : DxPciDevice : DxService : DxRegistryEntry
              sata@1f : DxPciStorage : DxPciDevice : DxService
              net@2 : DxNetwork : DxService)");
        const auto withConfig = [](const char *bytes) {
            return values::dictionary({{"config", values::data(bytes)}});
        };
        service_.setProperties(registry_["usb@14"], withConfig("86806fa3"));
        service_.setProperties(registry_["sata@1f"], withConfig("868002a1"));
        service_.setProperties(registry_["net@2"], withConfig("f41a0100"));
        open();
    }
    void TearDown() override { formats_.propertyFormatPanel().hide(); }

    TavPropertiesOutlineView *view() const
    {
        return outlet<TavPropertiesOutlineView>("propertiesOutlineView");
    }
    // Clicks on the entry's property.
    void selectConfig(const char *label)
    {
        select({"Root", label});
        const QModelIndex row = view()->model()->index(0, 0);
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, view()->visualRect(row).center());
    }
    std::string shown() const
    {
        constexpr int value = TavPropertiesOutlineViewDataSource::ValueColumn;
        return view()->model()->index(0, value).data().toString().toStdString();
    }
    TavPropertyOutlineItem *selectedItem() const { return formats_.selectedPropertyItem(); }
    template<class Control>
    Control *panelControl(const char *name)
    {
        return formats_.propertyFormatPanel().findChild<Control *>(QString::fromLatin1(name));
    }
    void click(const char *name)
    {
        auto *const button = panelControl<QAbstractButton>(name);
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }

    TavFormatController &formats_ = TavFormatController::sharedInstance();
};
} // namespace

TEST_F(FormatJourneyTest, TheTabKeyGoesToWhatIsChosen)
{
    selectConfig("usb@14");
    outlet<QAction>("togglePropertyFormatPanelAction")->trigger();
    click("propertyFormatAutomaticCheckbox");
    click("propertyFormatType2");
    panelControl<QWidget>("propertyFormatAutomaticCheckbox")->setFocus();
    for (const char *next : {"propertyFormatType2", "propertyFormatBase16"}) {
        QTest::keyClick(formats_.propertyFormatPanel().focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(formats_.propertyFormatPanel().focusWidget()->objectName(), QLatin1String(next));
    }
}

TEST_F(FormatJourneyTest, ThePanelFollowsTheSelection)
{
    selectConfig("usb@14");
    view()->clearSelection();
    EXPECT_EQ(selectedItem(), controller_->rootPropertyItem().get());

    // Rereading makes another tree, here even of another type.
    selectConfig("usb@14");
    service_.setProperties(registry_["usb@14"],
                           values::dictionary({{"config", values::number(5)}}));
    update();
    EXPECT_EQ(selectedItem(), controller_->rootPropertyItem()->childAtIndex(0));
    EXPECT_EQ(shown(), "0x5");

    selectConfig("usb@14");
    action("togglePropertyFormatPanelAction").trigger();
    terminate("usb@14");
    store_->clearTerminatedObjects();
    click("propertyFormatAutomaticCheckbox"); // for the selected property
    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(selectedItem(), nullptr);
    click("propertyFormatAutomaticCheckbox");
    close();
    click("propertyFormatAutomaticCheckbox"); // no window is left to notify
}

// A refresh of one window leaves the formats with what another has selected.
TEST_F(FormatJourneyTest, TheFormatsAreThoseOfTheActiveWindow)
{
    controller_->newDocumentWindow();
    TavWindowController &second = controller(1);
    second.goToEntryPath(path({"Root", "net@2"}), true, true);
    second.selectPropertyKeyIndexPath({QStringLiteral("config")});
    ASSERT_TRUE(activate(window()));
    selectConfig("usb@14");
    EXPECT_EQ(selectedItem()->registryEntry().get(), entry("usb@14"));
    const auto configOf = [](const TavWindowController &window) {
        return window.rootPropertyItem()->childWithName(QStringLiteral("config"));
    };
    for (int i = 0; i < 2; ++i) {
        update(); // both windows show other trees now
        EXPECT_EQ(selectedItem(), configOf(*controller_));
    }
    ASSERT_TRUE(activate(*second.window()));
    EXPECT_EQ(selectedItem(), configOf(second));
    update();
    EXPECT_EQ(selectedItem(), configOf(second));
    // The other window shows the same entry and is refreshed first, with nothing selected in it.
    select({"Root", "net@2"});
    view()->clearSelection();
    ASSERT_TRUE(activate(*second.window()));
    update();
    EXPECT_EQ(selectedItem(), configOf(second));
    select({"Root", "usb@14"});
    EXPECT_EQ(selectedItem(), configOf(second));
}

TEST_F(FormatJourneyTest, ThePanelSaysWhenItsPropertyIsGone)
{
    const auto note = [this] {
        const auto *const field = panelControl<QLabel>("propertyFormatTargetNoteField");
        return field->isVisible() ? field->text().toStdString() : std::string();
    };
    selectConfig("usb@14");
    action("togglePropertyFormatPanelAction").trigger();
    update();
    EXPECT_EQ(note(), "");
    service_.setProperties(registry_["usb@14"], values::dictionary({{"other", values::data("1")}}));
    for (int i = 0; i < 2; ++i) { // until something is selected
        update();
        EXPECT_EQ(selectedItem(), controller_->rootPropertyItem().get());
        EXPECT_EQ(note(), "“config” is gone. The panel now applies to the whole entry.");
    }
    select({"Root", "sata@1f"});
    EXPECT_EQ(note(), "");
}

TEST_F(FormatJourneyTest, ChangesAreUndoneInTheWindowThatTheyWereMadeFrom)
{
    QAction &undo = action("undoAction");
    QAction &redo = action("redoAction");
    const auto title = [](const QAction &item) { return item.text().remove(u'&').toStdString(); };
    selectConfig("sata@1f");
    controller_->newDocumentWindow();
    ASSERT_TRUE(activate(window()));
    selectConfig("usb@14");
    EXPECT_FALSE(undo.isEnabled());
    action("togglePropertyFormatPanelAction").trigger();
    auto *const classes = panelControl<QComboBox>("propertyFormatClassPopUpButton");
    chooseInList(*classes, classes->findText(QStringLiteral("DxPciDevice")));
    click("propertyFormatAutomaticCheckbox");
    click("propertyFormatType2");
    EXPECT_EQ(shown(), "<0x8086 0xa36f>");
    EXPECT_EQ(title(undo), "Undo Format of “config”");
    EXPECT_FALSE(
        controller(1).window()->findChild<QAction *>(QStringLiteral("undoAction"))->isEnabled());
    update(); // makes another tree
    ASSERT_TRUE(activate(window()));
    undo.trigger();
    EXPECT_EQ(shown(), "<0x86 0x80 0x6f 0xa3>");
    QTest::keyClick(&formats_.propertyFormatPanel(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shown(), "<86 80 6f a3>");
    EXPECT_EQ(formats_.dataSettingsStatus(), TavFormatController::DataSettingsStatus::Custom);
    undo.trigger();
    EXPECT_FALSE(undo.isEnabled());
    EXPECT_EQ(formats_.dataSettingsStatus(), TavFormatController::DataSettingsStatus::Default);
    EXPECT_EQ(title(redo), "Redo Format of “config”");
    redo.trigger();
    redo.trigger();
    redo.trigger();
    EXPECT_FALSE(redo.isEnabled());
    EXPECT_EQ(shown(), "<0x8086 0xa36f>");
    selectConfig("sata@1f"); // of the same class
    EXPECT_EQ(shown(), "<0x8086 0xa102>");
    close(); // with what could be undone
    click("propertyFormatAutomaticCheckbox");
}
