#include "ExplorerFixture.h"
#include "explorer/TavRegistryOutlineView.h"
#include "platform/DocumentError.h"
#include "platform/FileManager.h"
#include "platform/desktop/ColumnBrowser.h"
#include "tests/support/QtPrinters.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QGuiApplication>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QUrl>

namespace {
// A disk that has siblings and no child, stands in two planes and has a driver.
class MenuValidationTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        service_.addClass(QStringLiteral("DxDisk"), QStringLiteral("DxService"),
                          QStringLiteral("disk.driver"));
        service_.setBundlePath(QStringLiteral("disk.driver"), QStringLiteral("/lib/disk.ko"));
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  disk@0
                    part
                  disk@1 : DxDisk : DxService
                  disk@2)");
        registry_.plane("DxBlock", R"(
            Root
              disk@1)");
        open();
        FileManager::setRevealer([this](const QString &file) { revealed_.append(file); });
        QGuiApplication::clipboard()->setText(QStringLiteral("a text"));
        selectDisk();
    }
    void TearDown() override { FileManager::setRevealer({}); }
    void select(std::initializer_list<const char *> labels)
    {
        controller_->goToEntryPath(path(labels), true, true);
    }
    void selectDisk() { select({"Root", "Host", "bus", "disk@1"}); }
    void openArchived()
    {
        const QString file = preferencesFolder() + QStringLiteral("/now & then.vandrel");
        DocumentError error;
        ASSERT_TRUE(document_->save(file, error));
        close();
        document_ = static_cast<TavDocument *>(documents_.openDocument(file, error));
        ASSERT_NE(document_, nullptr);
        store_ = document_->dataStore();
        controller_ = window(0);
        selectDisk();
    }
    TavWindowController *window(std::size_t number) const
    {
        return static_cast<TavWindowController *>(document_->windowControllers().at(number).get());
    }
    QAction &item(const char *action) const { return *outlet<QAction>(action); }
    QString title(const char *action) const { return item(action).text().remove(u'&'); }
    QString menuTitle(const char *menu, const char *action) const
    {
        Q_EMIT outlet<QMenu>(menu)->aboutToShow();
        return title(action);
    }
    QMenu *entryMenu() const
    {
        return controller_->window()->findChild<QMenu *>(QStringLiteral("entryMenu"));
    }
    // As the pointer, or without a place the key, asks a view for its menu.
    static void askForMenu(QAbstractItemView &view, std::optional<QPoint> place = {})
    {
        if (place)
            QTest::mouseClick(view.viewport(), Qt::RightButton, {}, *place);
        QContextMenuEvent event(place ? QContextMenuEvent::Mouse : QContextMenuEvent::Keyboard,
                                place.value_or(QPoint()),
                                view.viewport()->mapToGlobal(place.value_or(QPoint())));
        QCoreApplication::sendEvent(place ? view.viewport() : &view, &event);
    }
    void choose(const char *action)
    {
        ASSERT_TRUE(entryMenu());
        ASSERT_TRUE(entryMenu()->actions().contains(&item(action))) << action;
        item(action).trigger();
        entryMenu()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    static QString copied() { return QGuiApplication::clipboard()->text(); }

    QStringList revealed_;
};
} // namespace

TEST_F(MenuValidationTest, EveryCommandCanRunWhenItSays)
{
    struct Row
    {
        const char *action;
        bool isLiveTree, isArchived, isColumnsWithoutSelection;
    };
    static constexpr Row rows[] = {
        {"copyAction", true, true, true},
        {"copyNameAction", true, true, false},
        {"copyPathAction", true, true, false},
        {"copyClassAction", true, true, false},
        {"copyBundleAction", true, true, false},
        {"pasteAction", true, true, true},
        {"outlineViewAction", true, true, true},
        {"browserViewAction", true, true, true},
        {"expandAllAction", true, true, false},
        {"collapseAllAction", true, true, false},
        {"collapseAroundSelectionAction", true, true, false},
        {"goToNextPathInPlaneAction", false, false, false},
        {"goToPrevPathInPlaneAction", true, true, false}, // the path that is selected
        {"goToNextPathCrossPlaneAction", true, true, false},
        {"goToPrevPathCrossPlaneAction", true, true, false},
        {"promptForPathAction", true, true, true},
        {"revealSelectionBundleInNavroAction", true, false, false},
        {"jumpToSelectionAction", true, true, true},
        {"selectParentAction", true, true, false},
        {"selectChildAction", false, false, false},
        {"selectNextSiblingAction", true, true, false},
        {"selectPreviousSiblingAction", true, true, true}, // kept as it has always been
        {"goToNextSnapshotAction", true, true, true},
        {"goToPrevSnapshotAction", true, true, true},
        {"updateAction", true, false, true},
        {"updateSelectedObjectAction", true, false, false},
        {"clearTerminatedObjectsAction", true, false, true},
        {"toggleAutoupdateAction", true, false, true},
        {"toggleTimedUpdateAction", true, false, true},
        {"changeTimedUpdateAction", true, false, true},
        {"toggleShowTerminatedObjectsAction", true, true, true},
        {"newDocumentWindowAction", true, true, true},
        {"openInNewWindowAction", true, true, false},
        {"promptForBookmarkAction", true, true, false},
    };
    const auto check = [&](bool Row::*expected, const char *state) {
        for (const Row &row : rows) {
            QAction &shown = item(row.action);
            EXPECT_EQ(shown.isEnabled(), row.*expected) << state << ": " << row.action;
            EXPECT_EQ(controller_->validateMenuItem(shown), row.*expected) << row.action;
        }
    };
    check(&Row::isLiveTree, "live tree");
    EXPECT_TRUE(item("outlineViewAction").isChecked());

    controller_->browserView();
    controller_->goToEntryPath(std::nullopt, false, false);
    check(&Row::isColumnsWithoutSelection, "columns without a selection");
    EXPECT_TRUE(item("browserViewAction").isChecked());
    EXPECT_FALSE(item("outlineViewAction").isChecked());
    item("browserViewAction").trigger(); // which is shown already
    EXPECT_TRUE(item("browserViewAction").isChecked());

    openArchived();
    check(&Row::isArchived, "archived");
}

TEST_F(MenuValidationTest, PathsInThePlaneAreSteppedThrough)
{
    service_.link(registry_["Host"], registry_["disk@1"], "DxService");
    update();
    EXPECT_TRUE(item("goToNextPathInPlaneAction").isEnabled());
    item("goToNextPathInPlaneAction").trigger();
    EXPECT_EQ(controller_->registryPathForSelectedEntry(), QStringLiteral("DxService:/disk@1"));
}

TEST_F(MenuValidationTest, FindCommandsFollowTheMatches)
{
    const auto enabled = [this](const char *text) {
        outlet<QCheckBox>("findNameCheckbox")->setChecked(true);
        controller_->findOptionsChanged();
        controller_->findWithString(QString::fromUtf8(text));
        std::string commands;
        for (const char *command : {"findNext", "findPrev", "findNextInAnyPlane",
                                    "findPrevInAnyPlane", "beginFind", "toggleFindOptionsDrawer"}) {
            if (item((std::string(command) + "Action").c_str()).isEnabled())
                commands += commands.empty() ? command : std::string(" ") + command;
        }
        return commands;
    };
    const std::string always = "beginFind toggleFindOptionsDrawer";
    const std::string all = "findNext findPrev findNextInAnyPlane findPrevInAnyPlane " + always;
    const auto check = [&](const char *state) {
        EXPECT_EQ(enabled(""), always) << state;
        EXPECT_EQ(enabled("nowhere"), always) << state;
        EXPECT_EQ(enabled("disk@1"), all) << state;
        // No other plane follows whose matches would show that these are the last.
        EXPECT_EQ(enabled("disk@2"), "findNext findNextInAnyPlane findPrevInAnyPlane " + always)
            << state;
    };
    check("live tree");
    EXPECT_EQ(title("toggleFindOptionsDrawerAction"), QStringLiteral("Show Find Options"));
    item("toggleFindOptionsDrawerAction").trigger();
    EXPECT_EQ(title("toggleFindOptionsDrawerAction"), QStringLiteral("Hide Find Options"));
    controller_->browserView();
    controller_->goToEntryPath(std::nullopt, false, false);
    check("columns without a selection");
    openArchived();
    check("archived");
}

TEST_F(MenuValidationTest, TitlesAndCheckMarksTellTheState)
{
    store_->setPollInterval(2);
    EXPECT_EQ(menuTitle("registryMenu", "toggleTimedUpdateAction"),
              QStringLiteral("Timed Update…"));
    EXPECT_FALSE(item("toggleTimedUpdateAction").isChecked());
    store_->setPolledUpdate(true);
    store_->setAutoupdate(true);
    EXPECT_EQ(menuTitle("registryMenu", "toggleTimedUpdateAction"),
              QStringLiteral("Timed Update (2s)"));
    EXPECT_TRUE(item("toggleTimedUpdateAction").isChecked());
    EXPECT_TRUE(item("toggleAutoupdateAction").isChecked());
    EXPECT_EQ(title("changeTimedUpdateAction"), QStringLiteral("Set Timed Update Interval… (2s)"));
    store_->setPollInterval(0.25);
    EXPECT_EQ(menuTitle("registryMenu", "changeTimedUpdateAction"),
              QStringLiteral("Set Timed Update Interval… (0.25s)"));

    EXPECT_EQ(title("toggleShowTerminatedObjectsAction"),
              QStringLiteral("Hide Terminated Objects"));
    item("toggleShowTerminatedObjectsAction").trigger();
    EXPECT_EQ(title("toggleShowTerminatedObjectsAction"),
              QStringLiteral("Show Terminated Objects"));

    openArchived();
    EXPECT_FALSE(item("toggleTimedUpdateAction").isChecked());
    EXPECT_FALSE(item("toggleAutoupdateAction").isChecked());
    item("toggleTimedUpdateAction").setText(QStringLiteral("as it was"));
    EXPECT_EQ(menuTitle("registryMenu", "toggleTimedUpdateAction"), QStringLiteral("as it was"));
    EXPECT_EQ(menuTitle("windowMenu", "newDocumentWindowAction"),
              QStringLiteral("New Viewer Window for 'now  then.vandrel'"));
    EXPECT_TRUE(item("newDocumentWindowAction").text().contains(QLatin1String("now && then")));
}

TEST_F(MenuValidationTest, SiblingsAreThoseInSight)
{
    terminate("disk@2");
    update();
    EXPECT_TRUE(item("selectNextSiblingAction").isEnabled());
    controller_->toggleShowTerminatedObjects();
    EXPECT_FALSE(item("selectNextSiblingAction").isEnabled());
    controller_->browserView();
    EXPECT_FALSE(item("selectNextSiblingAction").isEnabled());
    controller_->toggleShowTerminatedObjects();
    EXPECT_TRUE(item("selectNextSiblingAction").isEnabled());
    select({"Root", "Host", "bus", "disk@0"});
    EXPECT_TRUE(item("selectNextSiblingAction").isEnabled());
    EXPECT_FALSE(item("selectPreviousSiblingAction").isEnabled());
    EXPECT_TRUE(item("selectChildAction").isEnabled());
    service_.remove(registry_["part"]);
    update();
    store_->clearTerminatedObjects();
    EXPECT_FALSE(item("selectChildAction").isEnabled());
}

TEST_F(MenuValidationTest, SiblingsComeBackWithTheEndOfASearch)
{
    const auto haveSiblings = [&](bool isExpected) {
        return item("selectNextSiblingAction").isEnabled() == isExpected &&
               item("selectPreviousSiblingAction").isEnabled() == isExpected;
    };
    for (const char *checkbox : {"findNameCheckbox", "filteredFindCheckbox"})
        outlet<QCheckBox>(checkbox)->click();
    for (const bool isBrowser : {false, true}) {
        isBrowser ? controller_->browserView() : controller_->outlineView();
        selectDisk();
        EXPECT_TRUE(haveSiblings(true)) << isBrowser;
        controller_->findWithString(QStringLiteral("disk@1"));
        EXPECT_TRUE(haveSiblings(false)) << isBrowser;
        outlet<QCheckBox>("filteredFindCheckbox")->click();
        EXPECT_TRUE(haveSiblings(true)) << isBrowser;
        outlet<QCheckBox>("filteredFindCheckbox")->click();
        EXPECT_TRUE(haveSiblings(false)) << isBrowser;
        controller_->findWithString({});
        EXPECT_TRUE(haveSiblings(true)) << isBrowser;
    }
}

// What cannot be done is not done by the view with the keyboard instead, in its own way.
TEST_F(MenuValidationTest, KeysOfCommandsThatCannotRunOnlyBeep)
{
    outlet<QCheckBox>("findNameCheckbox")->click();
    item("toggleFindOptionsDrawerAction").trigger();
    controller_->findWithString(QStringLiteral("disk@"));
    auto &results = *outlet<QAbstractItemView>("findTableView");
    results.setCurrentIndex(results.model()->index(1, 0));
    const auto beepsFor = [&](QWidget &focused, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        const int before = beeps_;
        focused.setFocus();
        QTest::keyClick(controller_->window()->focusWidget(), key, modifiers);
        EXPECT_EQ(controller_->selectedEntry(), entry("disk@1"));
        return beeps_ - before;
    };
    const auto check = [&](const char *view) {
        auto &focused = *outlet<QWidget>(view);
        EXPECT_EQ(beepsFor(focused, Qt::Key_Down, Qt::AltModifier), 1) << view; // it has no child
        EXPECT_EQ(beepsFor(focused, Qt::Key_Right, Qt::AltModifier | Qt::KeypadModifier), 1);
        EXPECT_EQ(beepsFor(focused, Qt::Key_PageDown, Qt::ControlModifier), 1) << view;
        EXPECT_EQ(beepsFor(focused, Qt::Key_F9, {}), 0) << view; // no command's
    };
    ASSERT_EQ(controller_->selectedEntry(), entry("disk@1"));
    for (const char *view : {"registryOutlineView", "propertiesOutlineView", "findTableView"})
        check(view);
    controller_->browserView();
    check("registryBrowser");
    controller_->findWithString({});
    EXPECT_EQ(beepsFor(*outlet<QWidget>("registryBrowser"), Qt::Key_F3, {}), 1);
}

TEST_F(MenuValidationTest, KeysDoNotGetPastTheTruth)
{
    const QKeySequence key = item("revealSelectionBundleInNavroAction").shortcut();
    const auto press = [&] { QTest::keySequence(controller_->window(), key); };
    press();
    EXPECT_EQ(revealed_, QStringList{QStringLiteral("/lib/disk.ko")});
    service_.setBundlePath(QStringLiteral("disk.driver"), {}); // unseen
    ASSERT_TRUE(item("revealSelectionBundleInNavroAction").isEnabled());
    press();
    EXPECT_EQ(revealed_.size(), 1);
    EXPECT_EQ(beeps_, 1);
    EXPECT_FALSE(item("revealSelectionBundleInNavroAction").isEnabled());

    auto *const files = new QMimeData;
    files->setUrls({QUrl(QStringLiteral("file:///a"))});
    QGuiApplication::clipboard()->setMimeData(files);
    EXPECT_FALSE(item("pasteAction").isEnabled());
}

// Nobody finds a command that is in no menu, nor tells two apart that share a key or a mnemonic.
TEST_F(MenuValidationTest, EveryCommandHasItsPlaceItsKeyAndItsLetter)
{
    const auto mnemonic = [](const QString &text) {
        return QKeySequence::mnemonic(text).toString().toStdString();
    };
    for (int state = 0; state < 2; ++state) {
        std::map<std::string, QString> keys;
        const auto menus = outlet<QMenuBar>("menuBar")->findChildren<QMenu *>();
        QSet<const QAction *> placed;
        for (const QMenu *menu : menus) {
            std::map<std::string, QString> letters;
            for (const QAction *action : menu->actions()) {
                placed.insert(action);
                for (const QKeySequence &key : action->shortcuts())
                    EXPECT_TRUE(keys.emplace(key.toString().toStdString(), action->text()).second)
                        << key.toString().toStdString();
                const std::string letter = mnemonic(action->text());
                if (!letter.empty())
                    EXPECT_TRUE(letters.emplace(letter, action->text()).second)
                        << menu->objectName().toStdString() << ' ' << letter;
                else if (!action->objectName().isEmpty() && !action->text().isEmpty())
                    ADD_FAILURE() << "no mnemonic: " << action->text().toStdString();
            }
        }
        for (const QAction *action : controller_->window()->findChildren<QAction *>()) {
            const QString name = action->objectName();
            EXPECT_TRUE(!name.endsWith(QLatin1String("Action")) || placed.contains(action))
                << name.toStdString();
        }
        store_->setPolledUpdate(true);
        controller_->toggleShowTerminatedObjects();
    }
}

TEST_F(MenuValidationTest, TheEntryMenuActsOnTheRowUnderThePointer)
{
    auto &tree = *outlet<TavRegistryOutlineView>("registryOutlineView");
    select({"Root", "Host"});
    const auto items = tree.itemsForEntryPath(path({"Root", "Host", "bus", "disk@1"}));
    const QModelIndex row =
        static_cast<TavRegistryOutlineViewDataSource *>(tree.model())->indexOf(*items.back());
    const QPoint place = tree.visualRect(row).center();

    askForMenu(tree, place);
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@1"));
    choose("copyNameAction");
    EXPECT_EQ(copied(), QStringLiteral("disk@1"));
    askForMenu(tree); // by key, where the selection is
    choose("copyPathAction");
    EXPECT_EQ(copied(), QStringLiteral("DxService:/bus/disk@1"));
    askForMenu(tree, place);
    choose("copyClassAction");
    EXPECT_EQ(copied(), QStringLiteral("DxDisk"));
    askForMenu(tree, place);
    choose("copyBundleAction");
    EXPECT_EQ(copied(), QStringLiteral("disk.driver"));
    askForMenu(tree, place);
    choose("revealSelectionBundleInNavroAction");
    EXPECT_EQ(revealed_, QStringList{QStringLiteral("/lib/disk.ko")});
    askForMenu(tree, place);
    choose("updateSelectedObjectAction");
    EXPECT_EQ(service_.preparedObjects(), std::vector{registry_["disk@1"]});
    askForMenu(tree, place);
    choose("promptForBookmarkAction");
    auto *const sheet = outlet<QDialog>("addBookmarkSheet");
    EXPECT_TRUE(sheet->isVisible());
    sheet->reject();

    askForMenu(tree, tree.viewport()->rect().bottomLeft()); // below the rows
    EXPECT_FALSE(entryMenu());
    tree.deselectAll();
    askForMenu(tree);
    EXPECT_FALSE(entryMenu());
}

TEST_F(MenuValidationTest, TheEntryMenuOpensInColumnsToo)
{
    controller_->browserView();
    const auto &browser = *outlet<ColumnBrowser>("registryBrowser");
    QTest::qWait(1); // until the columns are laid out
    const auto place = [&](int column, int row) {
        QListView &list = *browser.list(column);
        return list.visualRect(list.model()->index(row, 0)).center();
    };
    askForMenu(*browser.list(3), place(3, 2));
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@2"));
    EXPECT_FALSE(item("copyBundleAction").isEnabled());
    choose("copyNameAction");
    EXPECT_EQ(copied(), QStringLiteral("disk@2"));

    QTest::keySequence(controller_->window(), QKeySequence(Qt::SHIFT | Qt::Key_F10));
    EXPECT_EQ(controller_->selectedEntry(), entry("disk@2"));
    choose("openInNewWindowAction");
    ASSERT_EQ(document_->windowControllers().size(), 2U);
    QTest::qWait(1);
    EXPECT_EQ(window(1)->selectedEntry(), entry("disk@2"));

    // In a column before, where the row is selected already.
    askForMenu(*browser.list(1), place(1, 0));
    EXPECT_EQ(controller_->selectedEntry(), entry("Host"));
    EXPECT_EQ(browser.selectedColumn(), 1);
    choose("copyPathAction");
    EXPECT_EQ(copied(), QStringLiteral("DxService:/"));
}
