// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "explorer/DateText.h"
#include "platform/widgets/FactField.h"
#include "store/DataStoreNotifications.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RegistryValues.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QWindow>

namespace {
class WindowControllerTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        open();
    }
    // Name, inheritance, retain count and, of services, busy count.
    std::string facts() const
    {
        const auto text = [this](const char *name) {
            return outlet<FactField>(name)->text().toStdString();
        };
        return text("objectNameField") + " | " + text("objectInheritanceField") + " | " +
               text("objectRetainCountField") +
               (outlet<QWidget>("dxserviceAttributesView")->isVisible()
                    ? " | " + text("objectBusyCountField")
                    : "");
    }
    QString label(const char *name) const { return outlet<QLabel>(name)->text(); }
    QString titleOf(const char *rest) const { return store_->hostName() + QString::fromUtf8(rest); }
    void choosePlane(const char *plane)
    {
        outlet<QComboBox>("planeListButton")->setCurrentText(QString::fromUtf8(plane));
        controller_->planePopupChanged();
    }
};
} // namespace

TEST_F(WindowControllerTest, ListsThePlanes)
{
    registry_.plane("DxBus", "Root\n  Host");
    open();
    const auto *const popup = outlet<QComboBox>("planeListButton");
    ASSERT_EQ(popup->count(), 3);
    EXPECT_EQ(popup->itemText(0), QStringLiteral("DxService"));
    EXPECT_EQ(popup->itemText(1), QStringLiteral("DxBus"));
    const auto actions = outlet<QMenu>("planeMenu")->actions();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_EQ(actions[2]->shortcut(), QKeySequence(QStringLiteral("Ctrl+3")));
    EXPECT_TRUE(actions[0]->isChecked());
    actions[2]->trigger();
    EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxPower"));
    EXPECT_EQ(popup->currentText(), QStringLiteral("DxPower"));
    EXPECT_TRUE(actions[2]->isChecked());

    showPlane("DxElsewhere");
    EXPECT_EQ(popup->currentText(), QStringLiteral("DxElsewhere"));
    EXPECT_EQ(rows(), "Root\n");
    LogCapture log;
    controller_->setRegistryPlane({}, false); // only logged
    EXPECT_EQ(log.take(),
              QStringList(QStringLiteral("No plane for setRegistryPlane:updatePopup:!\n")));
    EXPECT_EQ(rows(), "Root\n");
}

TEST_F(WindowControllerTest, FollowsTheSelectionIntoAnotherPlane)
{
    select({"Root", "Host", "bus", "disk@0"});
    choosePlane("DxPower");
    EXPECT_EQ(selected(), "DxPower:/supply/disk@0");
    tree().setAllRowsExpanded(false);
    choosePlane("DxService");
    select({"Root", "Host", "bus", "disk@1"});
    choosePlane("DxPower"); // the disk is not there
    EXPECT_EQ(rows(), "Root *\n  Host\n    supply\n      disk@0\n");
    EXPECT_EQ(beeps_, 0);

    // A hidden plane is reread, even where the number of children is the same.
    choosePlane("DxService");
    service_.unlink(registry_["supply"], registry_["disk@0"], "DxPower");
    service_.link(registry_["supply"], registry_["module"], "DxPower");
    update();
    choosePlane("DxPower");
    EXPECT_NE(rows().find("module"), std::string::npos) << rows();
    EXPECT_EQ(rows().find("disk@0"), std::string::npos) << rows();
}

TEST_F(WindowControllerTest, TitleAndStatusTellTheStateOfTheRegistry)
{
    const auto title = [this] { return window().windowTitle(); };
    select({"Root", "Host", "bus", "disk@1"});
    EXPECT_EQ(title(), titleOf(" — DxService — disk@1"));
    store_->setUpToDate(false);
    NotificationCenter::defaultCenter().post(DataStoreNotifications::outOfDate, store_.get());
    EXPECT_EQ(title(), titleOf(" — DxService — disk@1 (needs update)"));
    EXPECT_EQ(label("systemStatusField2"), QStringLiteral("registry has changed"));
    update();
    EXPECT_EQ(title(), titleOf(" — DxService — disk@1"));
    EXPECT_EQ(label("systemStatusField2"), QString());
    selectNothing();
    EXPECT_EQ(title(), titleOf(" — DxService — (no object selected)"));

    const QString text = DateText::mediumTime(QDateTime(QDate(2024, 2, 29), QTime(13, 5, 9)));
    EXPECT_TRUE(text.contains(QStringLiteral("05:09"))) << text.toStdString();
    EXPECT_FALSE(text.endsWith(u' '));
}

TEST_F(WindowControllerTest, ShowsTheFactsOfTheSelectedEntry)
{
    const auto nameColor = [this] {
        return outlet<FactField>("objectNameField")->palette().color(QPalette::Text);
    };
    const QColor plain = QGuiApplication::palette().color(QPalette::WindowText);
    service_.setState(registry_["disk@0"], ServiceRegistered | ServiceMatched);
    service_.setBusyCount(registry_["disk@0"], 4'000'000'000U);
    service_.setRetainCount(registry_["disk@0"], 7);
    update();
    select({"Root", "Host", "bus", "disk@0"});
    EXPECT_EQ(facts(), "disk@0 | DxDisk : DxDevice : DxService : DxRegistryEntry | 7 | 4000000000");
    EXPECT_EQ(nameColor(), plain);
    controller_->copy(); // the path, or what is selected in a field
    EXPECT_EQ(copied(), "DxService:/bus/disk@0");
    outlet<FactField>("objectNameField")->setFocus();
    outlet<FactField>("objectNameField")->setSelection(0, 4);
    controller_->copy();
    EXPECT_EQ(copied(), "disk");
    for (const char *state : {"objectRegisteredCell", "objectMatchedCell", "objectActiveCell"})
        EXPECT_TRUE(outlet<QCheckBox>(state)->isChecked()) << state;
    auto *const active = outlet<QCheckBox>("objectActiveCell");
    const QImage before = active->grab().toImage();
    QTest::mouseMove(active);
    QTest::mousePress(active, Qt::LeftButton, {}, {8, active->height() / 2});
    EXPECT_EQ(active->grab().toImage(), before); // neither lights up nor sinks
    QTest::mouseRelease(active, Qt::LeftButton, {}, {8, active->height() / 2});
    active->click(); // as assistive programs do
    EXPECT_TRUE(active->isChecked());
    EXPECT_TRUE(active->isEnabled());

    select({"Root", "Host", "module"}); // no service
    EXPECT_EQ(facts(), "module | DxModule : DxRegistryEntry | 1");
    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(facts(), "(No object selected) |  | ");
    EXPECT_EQ(nameColor(), QGuiApplication::palette().color(QPalette::PlaceholderText));
    EXPECT_NE(nameColor(), plain);

    service_.setHasSuperclassLookup(false);
    open();
    select({"Root", "Host", "bus", "disk@1"});
    EXPECT_EQ(facts(), "disk@1 | DxDevice (full inheritance not available) | 1 | 0");
}

TEST_F(WindowControllerTest, ReadsTheSelectedEntryAloneOnRequest)
{
    select({"Root", "Host", "bus", "disk@1"});
    const PropertyRef shown = controller_->rootPropertyItem();
    service_.setProperties(registry_["disk@1"], values::dictionary({{"size", values::number(2)}}));
    action("updateSelectedObjectAction").trigger();
    EXPECT_EQ(service_.preparedObjects().back(), registry_["disk@1"]);
    EXPECT_NE(entry("disk@1")->propertiesRef(), shown);
    // The store reports nothing for the entry, so the window shows it at its next refresh.
    EXPECT_EQ(controller_->rootPropertyItem(), shown);
    window().grab();
    controller_->noteDataStoreObjectChanged();
    EXPECT_EQ(controller_->rootPropertyItem(), entry("disk@1")->propertiesRef());
}

TEST_F(WindowControllerTest, MayBeClosedInAnUpdateAndOutlivesWhatItShows)
{
    open(); // a second document
    const auto observation = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::changed, store_.get(), [this](const auto &) {
            if (document_)
                close();
        });
    std::weak_ptr<TavDataStore> store = store_;
    update();
    EXPECT_EQ(controller_, nullptr);
    update(); // has no observer any more
    store_.reset();
    EXPECT_TRUE(store.expired());

    document_ = static_cast<TavDocument *>(documents_.documents().front().get());
    controller_ = &controller(0);
    window().grab();
    close();
    EXPECT_EQ(service_.openHandles(), 0U);
}

TEST_F(WindowControllerTest, ComesUpWithoutPlanesAndWithoutARegistry)
{
    FakeRegistryService none;
    FakeRegistryService bare;
    bare.addClass(QStringLiteral("DxRoot"), {});
    bare.setRoot(bare.add(QStringLiteral("DxRoot"), "Root"));
    TavDocumentController bareDocuments(bare);
    auto document = TavDocument::createUntitled(bareDocuments);
    auto window = std::make_unique<TavWindowController>(*document);
    window->showWindow();
    EXPECT_NE(window->selectedEntry(), nullptr);
    window->update();
    window->browserView();
    bare.setRoot(0); // gone
    window->update();
    window->refreshDisplay();
    window->goToEntryPath(std::nullopt, true, true);

    window.reset(); // before its document
    TavDocumentController noDocuments(none);
    document = TavDocument::createUntitled(noDocuments);
    window = std::make_unique<TavWindowController>(*document);
    window->showWindow();
    window->window()->grab();
    EXPECT_EQ(window->selectedEntry(), nullptr);
    window->update();
    window->expandAll();
    window->collapseAll();
    window->goToRegistryPath(QStringLiteral("DxService:/"));
    EXPECT_EQ(window->rootOutlineItem(), nullptr);
    window.reset(); // before its document, and that before its registry
    document.reset();
}
