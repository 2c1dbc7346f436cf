#include "ExplorerFixture.h"
#include "display/EntryColors.h"
#include "explorer/TavRegistryOutlineView.h"
#include "platform/PreferencesStore.h"
#include "platform/desktop/SearchField.h"
#include "platform/desktop/ViewNote.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/TreeText.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

namespace {
constexpr int every = 255;

class FindTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  disk@0 : DxDisk : DxDevice : DxService : DxRegistryEntry
                    part@1 : DxPart : DxRegistryEntry
                  disk@1
                module : DxModule : DxRegistryEntry)");
        registry_.plane("DxPower", R"(
            Root
              Host
                supply
                  disk@0)");
        using namespace values;
        service_.setProperties(registry_["disk@0"],
                               dictionary({{"Serial", text("Q-77\nB")}, {"Size", number(512)}}));
        service_.setProperties(
            registry_["module"],
            dictionary({{"list", array({dictionary({{"InnerKey", text("deep down")}})})}}));
        service_.setBusyCount(registry_["bus"], 2);
        PreferencesStore::standard().setValue(QStringLiteral("FindOptions"), 5);
        PreferencesStore::standard().setFlag(QStringLiteral("FilteredFind"), true);
        open();
        view_ = outlet<TavRegistryOutlineView>("registryOutlineView");
        table_ = outlet<QTableView>("findTableView");
    }
    void find(const char *text) { controller_->findWithString(QString::fromUtf8(text)); }
    std::string found(int options, const char *text)
    {
        PreferencesStore::standard().setValue(QStringLiteral("FindOptions"), options);
        controller_->loadDefaultFindOptions();
        find(text);
        std::string names;
        for (int row = 0; row < table_->model()->rowCount(); ++row)
            names += cell(row, 0) + ' ';
        return names;
    }
    std::string cell(int row, int column) const
    {
        return table_->model()->index(row, column).data().toString().toStdString();
    }
    std::string count() const
    {
        return outlet<QLabel>("findNumMatchedField")->text().toStdString();
    }
    std::string rows() const { return rowsOf(*view_); }
    std::string selected() const
    {
        return controller_->registryPathForSelectedEntry().toStdString();
    }
    void type(const char *text)
    {
        auto *const field = outlet<SearchField>("findField");
        field->setFocus();
        field->clear();
        QTest::keyClicks(field, QString::fromUtf8(text));
    }
    void click(const char *name) { outlet<QAbstractButton>(name)->click(); }
    void trigger(const char *action) { outlet<QAction>(action)->trigger(); }
    bool canRun(const char *action) const { return outlet<QAction>(action)->isEnabled(); }

    TavRegistryOutlineView *view_ = nullptr;
    QTableView *table_ = nullptr;
};
} // namespace

TEST_F(FindTest, ShowsMatchesAndTheWaysToThem)
{
    EXPECT_EQ(count(), "No search");
    find("PART");
    EXPECT_EQ(rows(), dedented(R"(
        Root
          Host
            bus
              disk@0
                part@1 *)"));
    EXPECT_EQ(count(), "1 object matches");
    find("k@");
    EXPECT_EQ(count(), "2 objects match");
    EXPECT_EQ(selected(), "DxService:/bus/disk@1"); // the nearest after the one before
    EXPECT_EQ(controller_->findStateForRegistryEntry(*entry("bus")), FindStateParentOfMatch);
    EXPECT_EQ(controller_->findStateForRegistryEntry(*entry("disk@1")), FindStateMatching);
    EXPECT_EQ(controller_->findStateForRegistryEntry(*entry("module")), FindStateNotMatching);
    find("@");
    EXPECT_EQ(count(), "3 objects match");
    EXPECT_EQ(controller_->findStateForRegistryEntry(*entry("part@1")), FindStateMatching);
    // It leads to a match as well.
    EXPECT_EQ(controller_->findStateForRegistryEntry(*entry("disk@0")), FindStateMatching);
    EXPECT_EQ(beeps_, 0);

    find("nowhere");
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(count(), "0 objects match");
    EXPECT_EQ(beeps_, 1);
    find("");
    EXPECT_EQ(count(), "No search");
    EXPECT_FALSE(controller_->foundObjects().has_value());
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    EXPECT_NE(rows().find("module"), std::string::npos);
}

TEST_F(FindTest, LooksAtWhatTheOptionsSay)
{
    EXPECT_EQ(found(1, "dxdisk"), "");
    EXPECT_EQ(found(2, "dxdisk"), "disk ");
    EXPECT_EQ(found(2, "dxdevice"), "bus disk Host supply ");
    EXPECT_EQ(found(4, "dxpart"), "part ");
    EXPECT_EQ(found(16, "innerk"), "module ");
    EXPECT_EQ(found(32, "q-77"), "disk ");
    EXPECT_EQ(found(32, "512"), "");
    EXPECT_EQ(found(128, "busy"), "bus ");
    EXPECT_EQ(found(128, "Busy"), "");
    EXPECT_EQ(found(64, "disk"), "");
    EXPECT_EQ(found(0, "disk"), "");
    EXPECT_EQ(count(), "No search");
}

TEST_F(FindTest, FindsWhileTheUserTypes)
{
    type("part");
    EXPECT_EQ(controller_->findQuery(), QString()); // not yet
    EXPECT_TRUE(waitFor([&] { return controller_->findQuery() == QLatin1String("part"); }));
    EXPECT_TRUE(outlet<SearchField>("findField")->hasFocus());
    type("disk");
    QTest::keyClick(outlet<SearchField>("findField"), Qt::Key_Return);
    EXPECT_EQ(controller_->findQuery(), QStringLiteral("disk"));
    QTest::keyClick(outlet<SearchField>("findField"), Qt::Key_Escape);
    EXPECT_TRUE(controller_->findQuery().isNull());
    EXPECT_EQ(outlet<SearchField>("findField")->text(), QString());
    EXPECT_TRUE(view_->hasFocus());
    trigger("beginFindAction");
    EXPECT_TRUE(outlet<SearchField>("findField")->hasFocus());
}

TEST_F(FindTest, EscapeEndsASearchAmongWhatItShows)
{
    click("findOptionsDrawerButton");
    const auto escape = [&] {
        QTest::keyClick(controller_->window()->focusWidget(), Qt::Key_Escape);
        return std::pair(controller_->foundObjects().has_value(),
                         controller_->isExplorerFirstResponder());
    };
    const std::pair ended(false, true);
    const auto checkIn = [&](QWidget &focused) {
        type("disk");
        controller_->find();
        focused.setFocus();
        EXPECT_EQ(escape(), ended) << focused.objectName().toStdString();
        EXPECT_EQ(outlet<SearchField>("findField")->text(), QString());
        EXPECT_EQ(escape(), ended);
    };
    checkIn(*view_);
    checkIn(*table_);
    controller_->browserView();
    checkIn(*outlet<QWidget>("registryBrowser"));
    EXPECT_EQ(beeps_, 0);
}

TEST_F(FindTest, TakesAnyQuery)
{
    found(every, "");
    const QString odd[] = {QString(10'000, u'd'), QString::fromUtf8("a\u202Eb\u05D0\u0001\n"),
                           QString(QChar(0xD800)), QStringLiteral("!BUSY"), QString(QChar(u'\0'))};
    for (const QString &query : odd) {
        outlet<SearchField>("findField")->setText(query);
        controller_->find();
        outlet<QLineEdit>("findPreviewField")->setText(query);
        controller_->window()->grab();
        EXPECT_EQ(count(), "0 objects match");
    }
}

TEST_F(FindTest, StepsThroughTheMatches)
{
    find("disk");
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    find("disk"); // a match that is selected stays so
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    click("findNextButton");
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    trigger("findNextAction");
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    trigger("findNextInAnyPlaneAction");
    trigger("findNextInAnyPlaneAction");
    EXPECT_EQ(selected(), "DxPower:/supply/disk@0");
    trigger("findNextInAnyPlaneAction");
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    trigger("findPrevInAnyPlaneAction");
    EXPECT_EQ(selected(), "DxPower:/supply/disk@0");
    EXPECT_FALSE(canRun("findPrevAction")); // the one before is in another plane
    EXPECT_TRUE(canRun("findNextAction"));
    controller_->findPrev();
    EXPECT_EQ(beeps_, 1);
    controller_->goToEntryPath(path({"Root", "Host", "bus", "disk@0"}), true, true);
    click("findPrevButton"); // wraps, for the other plane's matches follow
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");

    find("supply");
    EXPECT_FALSE(outlet<QWidget>("findStepper")->isEnabled());
    EXPECT_FALSE(canRun("findNextAction"));
    EXPECT_TRUE(canRun("findNextInAnyPlaneAction"));
    controller_->setRegistryPlane(QStringLiteral("DxPower"), true);
    EXPECT_TRUE(outlet<QWidget>("findStepper")->isEnabled());
}

TEST_F(FindTest, FiltersByChoice)
{
    find("disk");
    click("filteredFindCheckbox");
    EXPECT_NE(rows().find("module"), std::string::npos);
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    terminate("disk@1");
    controller_->toggleShowTerminatedObjects();
    const std::string matchesAlone = dedented(R"(
        Root
          Host
            bus
              disk@0 *)");
    EXPECT_EQ(rows(), matchesAlone); // as if filtered
    click("filteredFindCheckbox");
    EXPECT_EQ(rows(), matchesAlone);
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(rows(), matchesAlone + "      disk@1\n");
}

TEST_F(FindTest, SaysWhyItShowsNothing)
{
    const auto *const note = controller_->window()->findChild<ViewNote *>();
    ASSERT_TRUE(note);
    const auto says = [&] { return note->isVisibleTo(controller_->window()); };
    find("disk");
    EXPECT_FALSE(says());
    find("disks");
    EXPECT_EQ(rows(), "");
    EXPECT_TRUE(says());
    click("filteredFindCheckbox"); // now they are paler
    EXPECT_FALSE(says());
    click("filteredFindCheckbox");
    controller_->browserView();
    EXPECT_TRUE(says());
    find("");
    EXPECT_FALSE(says());
}

TEST_F(FindTest, PreviewsAPropertyAndGoesToAResult)
{
    trigger("toggleFindOptionsDrawerAction");
    EXPECT_FALSE(outlet<QDockWidget>("findOptionsDrawer")->isHidden());
    const auto header = [&] {
        return table_->model()->headerData(1, Qt::Horizontal).toString().toStdString();
    };
    EXPECT_EQ(header(), "Property");
    auto *const preview = outlet<QLineEdit>("findPreviewField");
    const auto shown = [&](const char *key) {
        preview->setText(QString::fromUtf8(key));
        std::string cells;
        for (int row = 0; row < table_->model()->rowCount(); ++row)
            cells += cell(row, 1).empty() ? "" : cell(row, 0) + "=" + cell(row, 1) + ' ';
        return cells;
    };
    find("disk");
    EXPECT_EQ(shown(""), "");
    EXPECT_EQ(shown("Serial"), "disk=Q-77␊B ");
    EXPECT_EQ(header(), "Serial");
    EXPECT_NE(shown("Size").find("disk="), std::string::npos);
    EXPECT_EQ(shown("BUSY"), "disk=0 disk=0 ");
    EXPECT_EQ(shown("Registered"), "disk=True disk=True ");

    const auto press = [&](int row) {
        QTest::mouseClick(table_->viewport(), Qt::LeftButton, {},
                          table_->visualRect(table_->model()->index(row, 0)).center());
    };
    press(1);
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    controller_->findPrev();
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    press(1); // selected as it is
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    find("supply");
    table_->selectRow(0); // which the plane that is shown does not have
    EXPECT_EQ(selected(), "DxPower:/supply");
    trigger("toggleFindOptionsDrawerAction");
    EXPECT_TRUE(outlet<QDockWidget>("findOptionsDrawer")->isHidden());
    EXPECT_EQ(beeps_, 1); // of the last search, for the plane that was shown
}

TEST_F(FindTest, FollowsItsOptions)
{
    type("dxdisk");
    controller_->find();
    EXPECT_EQ(count(), "1 object matches");
    click("findInheritanceCheckbox");
    EXPECT_EQ(count(), "0 objects match");
    click("findClassCheckbox");
    EXPECT_EQ(count(), "1 object matches");
    click("findClassCheckbox");
    click("findNameCheckbox"); // the last one
    EXPECT_EQ(count(), "No search");
    EXPECT_FALSE(outlet<SearchField>("findField")->isEnabled());
    controller_->beginFind();
    EXPECT_EQ(beeps_, 3); // after two searches in vain
    click("resetFindOptionsButton");
    EXPECT_EQ(controller_->findOptions().toInt(), 5);
    EXPECT_TRUE(outlet<QCheckBox>("findInheritanceCheckbox")->isChecked());
    EXPECT_EQ(count(), "1 object matches");
    EXPECT_EQ(found(every, "dxdisk"), "disk ");
}

TEST_F(FindTest, OptionsChangeWhileASearchIsPending)
{
    type("dxdisk");
    click("findInheritanceCheckbox");
    EXPECT_EQ(count(), "0 objects match"); // at once
    type("part");
    click("findNameCheckbox"); // the last one
    EXPECT_FALSE(outlet<SearchField>("findField")->isEnabled());
    QTest::qWait(300); // the search that was typed comes to nothing
    EXPECT_EQ(count(), "No search");
    EXPECT_EQ(beeps_, 1);
}

TEST_F(FindTest, OpensWithoutOptions)
{
    PreferencesStore::standard().setValue(QStringLiteral("FindOptions"), 0);
    open();
    EXPECT_FALSE(outlet<SearchField>("findField")->isEnabled());
    EXPECT_EQ(count(), "No search");
}

TEST_F(FindTest, StylesResultsByTheirStateAlone)
{
    find("o"); // among them the root
    const auto style = [&](const char *name, int role) {
        QVariant found;
        for (int row = 0; row < table_->model()->rowCount(); ++row) {
            if (cell(row, 0) == name)
                found = table_->model()->index(row, 0).data(role);
        }
        return found;
    };
    EXPECT_TRUE(style("Root", Qt::FontRole).value<QFont>().italic());
    EXPECT_FALSE(style("Host", Qt::FontRole).isValid()); // not bold, as a match in the tree is
    EXPECT_FALSE(style("Host", Qt::ForegroundRole).isValid());
    terminate("module");
    EXPECT_TRUE(style("module", Qt::FontRole).value<QFont>().strikeOut());
    EXPECT_EQ(style("module", Qt::ForegroundRole).value<QColor>(),
              EntryColors::colorForTerminatedItem());
}

TEST_F(FindTest, FollowsTheRegistry)
{
    find("disk");
    outlet<QDockWidget>("findOptionsDrawer")->show();
    table_->selectRow(1);
    service_.link(registry_["bus"], service_.add(QStringLiteral("DxDevice"), "a disk"),
                  "DxService");
    update();
    EXPECT_EQ(count(), "3 objects match");
    EXPECT_EQ(cell(0, 0), "a disk");
    EXPECT_TRUE(table_->selectionModel()->isRowSelected(2)); // the same entry as before
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");

    terminate("disk@1");
    controller_->noteDataStoreObjectsTerminated();
    table_->grab();
    store_->clearTerminatedObjects();
    EXPECT_EQ(count(), "2 objects match");
    EXPECT_EQ(rows().find("disk@1"), std::string::npos);
    EXPECT_TRUE(canRun("findNextAction"));
    trigger("findNextAction");
}

TEST_F(FindTest, APlaneIsChosenThoughTheFilterHidesAllOfIt)
{
    find("nowhere");
    auto *const planes = outlet<QComboBox>("planeListButton");
    planes->setCurrentText(QStringLiteral("DxPower"));
    controller_->planePopupChanged();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxPower"));
        EXPECT_EQ(planes->currentText(), QStringLiteral("DxPower"));
        EXPECT_TRUE(controller_->window()->windowTitle().contains(QStringLiteral("DxPower")));
        update();
    }
    const int beeps = beeps_;
    controller_->outlineView(); // shows no selection
    EXPECT_EQ(beeps_, beeps + 1);
}

TEST_F(FindTest, ResultsStayWhereTheyAreScrolledTo)
{
    for (int i = 100; i < 300; ++i)
        service_.link(registry_["bus"],
                      service_.add(QStringLiteral("DxDevice"), "disk" + QByteArray::number(i)),
                      "DxService");
    update();
    find("disk");
    outlet<QDockWidget>("findOptionsDrawer")->show();
    QScrollBar &bar = *table_->verticalScrollBar();
    table_->selectRow(50);
    table_->scrollTo(table_->model()->index(50, 0), QAbstractItemView::PositionAtCenter);
    const int place = table_->rowViewportPosition(50);
    const auto addFirst = [&](const char *name) {
        service_.link(registry_["bus"], service_.add(QStringLiteral("DxDevice"), name),
                      "DxService");
        update();
    };
    addFirst("a disk");
    EXPECT_TRUE(table_->selectionModel()->isRowSelected(51));
    EXPECT_EQ(table_->rowViewportPosition(51), place);
    bar.setValue(bar.maximum()); // away from the selected row
    const int scrolled = bar.value();
    update();
    EXPECT_EQ(bar.value(), scrolled);
    EXPECT_TRUE(table_->selectionModel()->isRowSelected(51));
}

TEST_F(FindTest, ResultsHaveTheMenuOfTheirEntry)
{
    find("disk");
    outlet<QDockWidget>("findOptionsDrawer")->show();
    const QPoint place = table_->visualRect(table_->model()->index(1, 0)).center();
    QTest::mouseClick(table_->viewport(), Qt::RightButton, {}, place);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                            table_->viewport()->mapToGlobal(place));
    QApplication::sendEvent(table_->viewport(), &event);
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    auto *const menu = controller_->window()->findChild<QMenu *>(QStringLiteral("entryMenu"));
    ASSERT_TRUE(menu);
    EXPECT_TRUE(menu->isVisible());
    menu->close();
}

// A window that has not been told yet still lists what has left the store.
TEST_F(FindTest, ListsEntriesThatHaveGone)
{
    TavWindowController untold(*document_);
    untold.findWithString(QStringLiteral("disk@1"));
    auto &table = *InterfaceLoader::outlet<QTableView>(*untold.window(), "findTableView");
    terminate("disk@1");
    store_->clearTerminatedObjects();
    EXPECT_EQ(table.model()->index(0, 0).data().toString(), QStringLiteral("disk"));
    untold.window()->grab();
    for (int press = 1; press <= 2; ++press) {
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                          table.visualRect(table.model()->index(0, 0)).center());
        EXPECT_EQ(beeps_, press);
    }
    untold.findNext();
    untold.window()->grab();
    untold.refreshDisplay();
    EXPECT_EQ(table.model()->rowCount(), 0);
}
