#include "ExplorerFixture.h"
#include "explorer/DateText.h"
#include "explorer/PlaneMenu.h"
#include "explorer/TavRegistryOutlineView.h"
#include "platform/desktop/FactField.h"
#include "store/DataStoreNotifications.h"
#include "tests/support/LogCapture.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeText.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QWindow>

namespace {
class WindowControllerTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  disk@0 : DxDisk : DxDevice : DxService : DxRegistryEntry
                  disk@1
                module : DxModule : DxRegistryEntry)");
        registry_.plane("DxPower", R"(
            Root
              Host
                supply
                  disk@0)");
        open();
    }
    QString field(const char *name) const { return outlet<FactField>(name)->text(); }
    QString label(const char *name) const { return outlet<QLabel>(name)->text(); }
    bool isShown(const char *name) const { return outlet<QWidget>(name)->isVisible(); }
    QString title() const { return controller_->window()->windowTitle(); }
    QString titleOf(const char *rest) const { return store_->hostName() + QString::fromUtf8(rest); }
    void select(std::initializer_list<const char *> labels)
    {
        controller_->goToEntryPath(path(labels), true, true);
    }
    std::string rows() const
    {
        return rowsOf(*outlet<TavRegistryOutlineView>("registryOutlineView"));
    }
};
} // namespace

TEST_F(WindowControllerTest, ListsThePlanes)
{
    registry_.plane("DxBus", R"(
        Root
          Host)");
    open();
    const auto *const popup = outlet<QComboBox>("planeListButton");
    ASSERT_EQ(popup->count(), 3);
    EXPECT_EQ(popup->itemText(0), QStringLiteral("DxService"));
    EXPECT_EQ(popup->itemText(1), QStringLiteral("DxBus"));
    EXPECT_EQ(popup->itemData(1, PlaneMenu::TagRole).toInt(), 1);
    EXPECT_EQ(popup->itemData(1, PlaneMenu::KeyEquivalentRole).toString(), QStringLiteral("2"));
    EXPECT_EQ(popup->itemData(2, PlaneMenu::TagRole).toInt(), 2);
    const auto actions = outlet<QMenu>("planeMenu")->actions();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_EQ(actions[2]->shortcut(), QKeySequence(QStringLiteral("Ctrl+3")));
    EXPECT_TRUE(actions[0]->isChecked());
    actions[2]->trigger();
    EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxPower"));
    EXPECT_EQ(popup->currentText(), QStringLiteral("DxPower"));
    EXPECT_TRUE(actions[2]->isChecked());
}

TEST_F(WindowControllerTest, MakesTheMenuOfManyPlanesOnce)
{
    constexpr int planeCount = 40;
    for (int i = 2; i < planeCount; ++i)
        registry_.plane("DxPlane" + QByteArray::number(i), "Root\n  Host");
    struct : QObject
    {
        bool eventFilter(QObject *object, QEvent *event) override
        {
            added += event->type() == QEvent::ActionAdded &&
                     object->objectName() == QLatin1String("planeMenu");
            return false;
        }
        int added = 0;
    } counter;
    qApp->installEventFilter(&counter);
    open();
    EXPECT_EQ(outlet<QMenu>("planeMenu")->actions().size(), planeCount);
    EXPECT_LE(counter.added, planeCount + 1); // one is there from the start
}

TEST_F(WindowControllerTest, KeepsThePlanesOfTheStoreAndAddsUnknownOnes)
{
    controller_->setRegistryPlane(QStringLiteral("DxElsewhere"), true);
    EXPECT_EQ(outlet<QComboBox>("planeListButton")->currentText(), QStringLiteral("DxElsewhere"));
    EXPECT_EQ(rows(), "Root\n");
    LogCapture log;
    controller_->setRegistryPlane({}, false); // logged, and no more
    EXPECT_EQ(log.take(),
              QStringList(QStringLiteral("No plane for setRegistryPlane:updatePopup:!\n")));
    EXPECT_EQ(rows(), "Root\n");
}

TEST_F(WindowControllerTest, FollowsTheSelectionIntoAnotherPlane)
{
    auto *const popup = outlet<QComboBox>("planeListButton");
    select({"Root", "Host", "bus", "disk@0"});
    popup->setCurrentText(QStringLiteral("DxPower"));
    controller_->planePopupChanged();
    EXPECT_EQ(controller_->registryPathForSelectedEntry(),
              QStringLiteral("DxPower:/supply/disk@0"));
    outlet<TavRegistryOutlineView>("registryOutlineView")->setAllRowsExpanded(false);

    popup->setCurrentText(QStringLiteral("DxService"));
    controller_->planePopupChanged();
    select({"Root", "Host", "bus", "disk@1"});
    popup->setCurrentText(QStringLiteral("DxPower"));
    controller_->planePopupChanged(); // the disk is not there
    EXPECT_EQ(rows(), dedented(R"(
        Root *
          Host
            supply
              disk@0)"));
    EXPECT_EQ(beeps_, 0);
}

TEST_F(WindowControllerTest, TitleTellsTheSelectionAndWhetherItIsUpToDate)
{
    select({"Root", "Host", "bus", "disk@1"});
    EXPECT_EQ(title(), titleOf(" — DxService — disk@1"));
    store_->setUpToDate(false);
    NotificationCenter::defaultCenter().post(DataStoreNotifications::outOfDate, store_.get());
    EXPECT_EQ(title(), titleOf(" — DxService — disk@1 (needs update)"));
    EXPECT_EQ(label("systemStatusField2"), QStringLiteral("registry has changed"));
    update();
    EXPECT_EQ(title(), titleOf(" — DxService — disk@1"));
    EXPECT_EQ(label("systemStatusField2"), QString());
    controller_->goToEntryPath(std::nullopt, false, false);
    EXPECT_EQ(title(), titleOf(" — DxService — (no object selected)"));
}

TEST_F(WindowControllerTest, ShowsTheFactsOfTheSelectedEntry)
{
    service_.setState(registry_["disk@0"], ServiceRegistered | ServiceMatched);
    service_.setBusyCount(registry_["disk@0"], 4'000'000'000U);
    service_.setRetainCount(registry_["disk@0"], 7);
    update();
    select({"Root", "Host", "bus", "disk@0"});
    EXPECT_EQ(field("objectNameField"), QStringLiteral("disk@0"));
    const auto nameColor = [this] {
        return outlet<FactField>("objectNameField")->palette().color(QPalette::Text);
    };
    EXPECT_EQ(nameColor(), QGuiApplication::palette().color(QPalette::WindowText));
    EXPECT_EQ(field("objectInheritanceField"),
              QStringLiteral("DxDisk : DxDevice : DxService : DxRegistryEntry"));
    EXPECT_EQ(field("objectRetainCountField"), QStringLiteral("7"));
    EXPECT_EQ(field("objectBusyCountField"), QStringLiteral("4000000000"));
    EXPECT_TRUE(isShown("dxserviceAttributesView"));
    EXPECT_TRUE(outlet<QCheckBox>("objectRegisteredCell")->isChecked());
    EXPECT_TRUE(outlet<QCheckBox>("objectMatchedCell")->isChecked());
    EXPECT_TRUE(outlet<QCheckBox>("objectActiveCell")->isChecked());
    const auto *const active = outlet<QCheckBox>("objectActiveCell");
    QTest::mouseClick(controller_->window()->windowHandle(), Qt::LeftButton, {},
                      active->mapTo(controller_->window(), active->rect().center()));
    EXPECT_TRUE(outlet<QCheckBox>("objectActiveCell")->isChecked());

    select({"Root", "Host", "module"}); // no service
    EXPECT_FALSE(isShown("dxserviceAttributesView"));

    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(field("objectNameField"), QStringLiteral("(No object selected)"));
    EXPECT_EQ(nameColor(), QGuiApplication::palette().color(QPalette::PlaceholderText));
    EXPECT_NE(nameColor(), QGuiApplication::palette().color(QPalette::WindowText));
    EXPECT_EQ(field("objectInheritanceField"), QString());
    EXPECT_EQ(field("objectRetainCountField"), QString());
    EXPECT_FALSE(isShown("dxserviceAttributesView"));
}

TEST_F(WindowControllerTest, TellsWhenTheInheritanceIsNotWhole)
{
    service_.setHasSuperclassLookup(false);
    open();
    select({"Root", "Host", "bus", "disk@0"});
    EXPECT_EQ(field("objectInheritanceField"),
              QStringLiteral("DxDisk (full inheritance not available)"));
}

TEST_F(WindowControllerTest, ToolTipTellsTheDates)
{
    const auto line = [](const char *what, const QDateTime &date) {
        return QString::fromLatin1("\n%1: %2 %3")
            .arg(QLatin1String(what), DateText::shortDate(date), DateText::mediumTime(date));
    };
    TavRegistryEntry &disk = *entry("disk@0");
    const QString discovered = QStringLiteral("disk@0") + line("Discovered", disk.dateDiscovered());
    EXPECT_EQ(controller_->toolTipForRegistryEntry(disk), discovered);
    store_->updateObject(disk);
    const QString updated = discovered + line("Updated", disk.dateLastUpdated());
    EXPECT_EQ(controller_->toolTipForRegistryEntry(disk), updated);
    terminate("disk@0");
    EXPECT_EQ(controller_->toolTipForRegistryEntry(disk),
              updated + line("Terminated", disk.dateTerminated()));
    EXPECT_EQ(controller_->toolTipForRegistryEntry(*TavRegistryEntry::createEmpty()), QString());
}

TEST_F(WindowControllerTest, StatusBarTellsTheMachineAndTheTime)
{
    EXPECT_EQ(label("systemStatusField1"),
              QStringLiteral("%1 (%2)").arg(store_->hostName(), store_->archName()));
    const QDateTime date = store_->lastUpdateDate();
    EXPECT_EQ(label("systemStatusField3"),
              DateText::shortDate(date) + u' ' + DateText::mediumTime(date));
    const QTime time(13, 5, 9);
    const QString text = DateText::mediumTime(QDateTime(QDate(2024, 2, 29), time));
    EXPECT_TRUE(text.contains(QStringLiteral("05:09"))) << text.toStdString();
    EXPECT_FALSE(text.endsWith(u' '));
}

TEST_F(WindowControllerTest, KeepsTheSelectionThroughUpdates)
{
    select({"Root", "Host", "bus", "disk@1"});
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              another)");
    service_.unlink(registry_["bus"], registry_["disk@0"], "DxService");
    update();
    EXPECT_EQ(rows(), dedented(R"(
        Root
          Host
            bus
              another
              disk@1 *
            module)"));
    EXPECT_EQ(field("objectNameField"), QStringLiteral("disk@1"));
    EXPECT_EQ(beeps_, 0);
}

// Also where the new children are as many as the old ones.
TEST_F(WindowControllerTest, RereadsThePlanesThatAreNotShown)
{
    controller_->setRegistryPlane(QStringLiteral("DxPower"), true);
    controller_->setRegistryPlane(QStringLiteral("DxService"), true);
    service_.unlink(registry_["supply"], registry_["disk@0"], "DxPower");
    service_.link(registry_["supply"], registry_["module"], "DxPower");
    update();
    controller_->setRegistryPlane(QStringLiteral("DxPower"), true);
    EXPECT_NE(rows().find("module"), std::string::npos) << rows();
    EXPECT_EQ(rows().find("disk@0"), std::string::npos) << rows();
}

TEST_F(WindowControllerTest, FallsBackToTheParentWhenTheSelectionGoes)
{
    select({"Root", "Host", "bus", "disk@1"});
    const std::weak_ptr<TavRegistryEntry> disk = entry("disk@1")->weak_from_this();
    terminate("disk@1");
    update();
    EXPECT_EQ(controller_->selectedEntry(), disk.lock().get()); // still shown, struck out
    controller_->clearTerminatedObjects();
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));
    EXPECT_EQ(title(), titleOf(" — DxService — bus"));
    EXPECT_TRUE(disk.expired());
    EXPECT_EQ(beeps_, 0);
}

TEST_F(WindowControllerTest, GoesToRegistryPaths)
{
    controller_->goToRegistryPath(QStringLiteral("DxPower:/supply/disk@0"));
    EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxPower"));
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@0"));
    controller_->goToRegistryPath(QStringLiteral("DxPower:/supply/disk@9"));
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@0"));
    controller_->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("DxPower:/supply/disk@0"));
    outlet<FactField>("objectNameField")->setFocus();
    outlet<FactField>("objectNameField")->setSelection(0, 4);
    controller_->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("disk"));
}

TEST_F(WindowControllerTest, GoesAsFarAsThePathReaches)
{
    TavRegistryEntryPath tooFar = path({"Root", "Host", "bus"});
    tooFar.appendRegistryEntry(entry("module")->shared_from_this());
    controller_->goToEntryPath(tooFar, true, true);
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));
    EXPECT_EQ(beeps_, 1);
}

TEST_F(WindowControllerTest, ReadsTheSelectedEntryAloneOnRequest)
{
    select({"Root", "Host", "bus", "disk@1"});
    const PropertyRef shown = controller_->rootPropertyItem();
    outlet<QAction>("updateSelectedObjectAction")->trigger();
    EXPECT_EQ(service_.preparedObjects().back(), registry_["disk@1"]);
    EXPECT_NE(entry("disk@1")->propertiesRef(), shown);
    // The store does not speak for the entry, so the window learns of it when it next refreshes.
    EXPECT_EQ(controller_->rootPropertyItem(), shown);
    controller_->window()->grab();
    controller_->noteDataStoreObjectChanged();
    EXPECT_EQ(controller_->rootPropertyItem(), entry("disk@1")->propertiesRef());
    controller_->selectEntryPath(std::nullopt);
    EXPECT_FALSE(outlet<QAction>("updateSelectedObjectAction")->isEnabled());
}

TEST_F(WindowControllerTest, MayBeClosedInAnUpdate)
{
    const auto observation = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::changed, store_.get(), [this](const auto &) {
            if (document_)
                close();
        });
    std::weak_ptr<TavDataStore> store = store_;
    update();
    EXPECT_EQ(controller_, nullptr);
    update(); // nobody listens any more
    store_.reset();
    EXPECT_TRUE(store.expired());
}

TEST_F(WindowControllerTest, OutlivesWhatItShows)
{
    select({"Root", "Host", "bus", "disk@0"});
    store_.reset();
    controller_->window()->grab();
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

TEST_F(WindowControllerTest, EveryControlHasAName)
{
    for (const QWidget *widget : controller_->window()->findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith(u"qt_") ||
            widget->objectName().isEmpty())
            continue;
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
}
