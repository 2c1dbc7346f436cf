#include "ExplorerFixture.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavRegistryOutlineView.h"
#include "platform/DocumentError.h"
#include "platform/PreferencesStore.h"
#include "platform/desktop/FactField.h"
#include "platform/desktop/SegmentedControl.h"
#include "store/TavDataStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/SmallStore.h"
#include "tests/support/TreeText.h"

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTest>

namespace {
class WindowViewsTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  disk
                port)");
        open();
        view_ = outlet<TavRegistryOutlineView>("registryOutlineView");
    }
    QAction &action(const char *name) const { return *outlet<QAction>(name); }
    QMainWindow &window() const { return *controller_->window(); }
    QSplitter &splitView() const { return *outlet<QSplitter>("explorerSplitView"); }
    void dragDivider(const QPoint &by) const
    {
        QWidget *const handle = splitView().handle(1);
        QTest::mousePress(handle, Qt::LeftButton, {}, QPoint(2, 2));
        QTest::mouseMove(handle, QPoint(2, 2) + by);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, QPoint(2, 2) + by);
    }
    QDialog *sheet() const
    {
        return controller_->window()->findChild<QDialog *>(QStringLiteral("timedUpdateSheet"));
    }
    // Types into the sheet and presses one of its buttons.
    void answerSheet(const QString &text, const char *button) const
    {
        ASSERT_TRUE(sheet() && sheet()->isVisible());
        InterfaceLoader::outlet<QLineEdit>(*sheet(), "timedUpdateField")->setText(text);
        QTest::mouseClick(InterfaceLoader::outlet<QPushButton>(*sheet(), button), Qt::LeftButton);
        EXPECT_FALSE(sheet()->isVisible());
    }
    // Saved, and opened again as a record of how the registry was.
    void openArchived()
    {
        const QString file = preferencesFolder() + QStringLiteral("/then.vandrel");
        DocumentError error;
        ASSERT_TRUE(document_->save(file, error));
        close();
        openFile(file);
    }
    void openSketch(const ArchiveSketch &sketch)
    {
        close();
        QFile file(preferencesFolder() + QStringLiteral("/made.vandrel"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(sketch.bytes());
        file.close();
        openFile(file.fileName());
    }
    void openFile(const QString &file)
    {
        DocumentError error;
        document_ = static_cast<TavDocument *>(documents_.openDocument(file, error));
        ASSERT_NE(document_, nullptr);
        store_ = document_->dataStore();
        controller_ =
            static_cast<TavWindowController *>(document_->windowControllers().front().get());
        view_ = outlet<TavRegistryOutlineView>("registryOutlineView");
    }

    // The controls that the tab key comes by, from the find field to where it meets one again.
    std::string tabRound(Qt::KeyboardModifiers modifiers = {}) const
    {
        const auto *const browser = outlet<QWidget>("registryBrowser");
        QStringList met;
        outlet<QWidget>("findField")->setFocus();
        QString name = QStringLiteral("findField");
        while (!met.contains(name)) {
            met.append(name);
            QTest::keyClick(window().focusWidget(), Qt::Key_Tab, modifiers);
            const QWidget *const focused = window().focusWidget();
            name = (browser->isAncestorOf(focused) ? browser : focused)->objectName();
        }
        if (modifiers)
            std::reverse(met.begin() + 1, met.end());
        return met.join(u' ').toStdString() + " > " + name.toStdString();
    }

    TavRegistryOutlineView *view_ = nullptr;
};
} // namespace

TEST_F(WindowViewsTest, TheTabKeyComesByEveryControlOnce)
{
    PreferencesStore::standard().setValue(QStringLiteral("FindOptions"), 1);
    open();
    const auto roundOf = [this](const std::string &explorer) {
        const bool isService = controller_->selectedEntry()->conformsToDxService();
        return "findField " + explorer +
               " propertiesOutlineView objectNameField objectInheritanceField objectBundleField "
               "objectRetainCountField " +
               (isService ? "objectBusyCountField " : "") +
               "planeListButton outlineSegment entryPathsButton findOptionsDrawerButton > "
               "findField";
    };
    const auto expectRound = [&](const std::string &explorer) {
        EXPECT_EQ(tabRound(), roundOf(explorer));
        EXPECT_EQ(tabRound(Qt::ShiftModifier), roundOf(explorer)) << "backwards";
    };
    expectRound("registryOutlineView");
    controller_->browserView();
    expectRound("registryBrowser");
    for (const char *deeper : {"Host", "bus", "disk"}) { // another column comes into being
        controller_->makeExplorerFirstResponder();
        QTest::keyClick(window().focusWidget(), Qt::Key_Right);
        ASSERT_EQ(controller_->selectedEntry(), entry(deeper));
        expectRound("registryBrowser");
    }
    controller_->outlineView();
    expectRound("registryOutlineView");
    controller_->browserView();
    expectRound("registryBrowser");
}

TEST_F(WindowViewsTest, TheFocusOfANewWindowIsInTheExplorer)
{
    EXPECT_EQ(window().focusWidget(), view_);
    PreferencesStore::standard().setValue(QStringLiteral("DefaultView"), QStringLiteral("browser"));
    open();
    EXPECT_TRUE(controller_->isExplorerFirstResponder());
    EXPECT_TRUE(outlet<QWidget>("registryBrowser")->isAncestorOf(window().focusWidget()));
}

TEST_F(WindowViewsTest, AnEmptyDefaultPlaneCountsAsNone)
{
    PreferencesStore::standard().setValue(QStringLiteral("DefaultPlane"), QStringLiteral(""));
    open();
    EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxService"));
    EXPECT_EQ(controller_->selectedEntry(), entry("Root"));
}

TEST_F(WindowViewsTest, SwitchesBetweenTreeAndColumns)
{
    controller_->goToEntryPath(path({"Root", "Host", "bus"}), true, true);
    auto *const browser = outlet<QWidget>("registryBrowser");
    EXPECT_FALSE(controller_->browserIsVisible());
    EXPECT_EQ(splitView().orientation(), Qt::Horizontal);
    EXPECT_TRUE(action("outlineViewAction").isChecked());

    view_->setFocus();
    outlet<QAction>("browserViewAction")->trigger();
    EXPECT_TRUE(controller_->browserIsVisible());
    EXPECT_TRUE(browser->isVisible());
    EXPECT_EQ(outlet<QStackedWidget>("explorerTabView")->currentWidget()->objectName(),
              QStringLiteral("Browser"));
    EXPECT_EQ(splitView().orientation(), Qt::Vertical);
    EXPECT_EQ(outlet<SegmentedControl>("viewStyleControl")->selectedTag(), 1);
    EXPECT_FALSE(action("outlineViewAction").isChecked());
    EXPECT_TRUE(action("browserViewAction").isChecked());
    EXPECT_TRUE(controller_->isExplorerFirstResponder()); // as before
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));

    auto *const properties = outlet<QWidget>("propertiesOutlineView");
    properties->setFocus();
    QTest::mouseClick(outlet<QWidget>("outlineSegment"), Qt::LeftButton);
    EXPECT_FALSE(controller_->browserIsVisible());
    EXPECT_FALSE(controller_->isExplorerFirstResponder()); // as before
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));
    EXPECT_EQ(beeps_, 0);
}

TEST_F(WindowViewsTest, SwitchingViewsBringsTheSelectionIntoSight)
{
    for (int i = 0; i < 200; ++i)
        service_.link(registry_["bus"],
                      service_.add(QStringLiteral("DxDevice"), "a" + QByteArray::number(i)),
                      "DxService");
    update();
    controller_->goToEntryPath(path({"Root", "Host", "bus", "disk"}), true, true);
    view_->scrollToTop();
    EXPECT_FALSE(view_->viewport()->rect().intersects(view_->visualRect(view_->currentIndex())));
    controller_->browserView();
    controller_->outlineView();
    EXPECT_TRUE(view_->viewport()->rect().contains(view_->visualRect(view_->currentIndex())));
}

TEST_F(WindowViewsTest, EachArrangementKeepsItsDivider)
{
    dragDivider({80, 0});
    const QList<int> sideBySide = splitView().sizes();
    controller_->browserView();
    const QList<int> before = splitView().sizes();
    dragDivider({0, 60});
    const QList<int> stacked = splitView().sizes();
    ASSERT_NE(stacked, before);
    controller_->outlineView();
    EXPECT_EQ(splitView().sizes(), sideBySide);
    controller_->browserView();
    EXPECT_EQ(splitView().sizes(), stacked);
    close();
    open(); // the next window finds them
    EXPECT_EQ(splitView().sizes(), sideBySide);

    PreferencesStore::standard().setValue(QStringLiteral("TavExplorerSplitView-Vertical"),
                                          QJsonArray{-5, QStringLiteral("x"), 1e300});
    open();
    EXPECT_GT(splitView().sizes().constFirst(), 100);
    EXPECT_GT(splitView().sizes().constLast(), 100);
}

TEST_F(WindowViewsTest, AnyOtherDefaultViewIsColumns)
{
    for (const char *view : {"browser", "Outline", ""}) {
        PreferencesStore::standard().setValue(QStringLiteral("DefaultView"),
                                              QString::fromLatin1(view));
        open();
        EXPECT_TRUE(controller_->browserIsVisible()) << view;
        EXPECT_EQ(controller_->selectedEntry(), entry("Root"));
    }
}

TEST_F(WindowViewsTest, NewWindowsStartFromThePreferences)
{
    controller_->browserView();
    controller_->goToEntryPath(path({"Root", "Host", "bus"}), true, true);
    outlet<QAction>("newDocumentWindowAction")->trigger();
    ASSERT_EQ(document_->windowControllers().size(), 2U);
    const auto &added = static_cast<TavWindowController &>(*document_->windowControllers().back());
    EXPECT_TRUE(added.window()->isVisible());
    EXPECT_FALSE(added.browserIsVisible());
    EXPECT_EQ(added.selectedEntry(), entry("Root"));
    update(); // both follow
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));
}

TEST_F(WindowViewsTest, SetsTheIntervalOfTimedUpdate)
{
    action("toggleTimedUpdateAction").trigger();
    EXPECT_TRUE(store_->isPolledUpdate());
    ASSERT_TRUE(sheet());
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(InterfaceLoader::outlet<QLineEdit>(*sheet(), "timedUpdateField")->text(),
              QStringLiteral("30"));
    answerSheet(QStringLiteral("2.5"), "timedUpdateSetButton");
    EXPECT_EQ(store_->pollInterval(), 2.5);
    EXPECT_EQ(action("toggleTimedUpdateAction").text(), QStringLiteral("&Timed Update (2.5s)"));
    EXPECT_TRUE(action("toggleTimedUpdateAction").isChecked());

    for (const char *refused : {"0", "-1", "3600.5", "", "soon", "nan", "1e99"}) {
        controller_->changeTimedUpdate();
        EXPECT_EQ(InterfaceLoader::outlet<QLineEdit>(*sheet(), "timedUpdateField")->text(),
                  QStringLiteral("2")); // cut off
        answerSheet(QString::fromLatin1(refused), "timedUpdateSetButton");
        EXPECT_EQ(store_->pollInterval(), 2.5) << refused;
    }
    controller_->changeTimedUpdate();
    answerSheet(QStringLiteral("7"), "timedUpdateCancelButton");
    EXPECT_EQ(store_->pollInterval(), 2.5);
    controller_->changeTimedUpdate();
    answerSheet(QStringLiteral("3600"), "timedUpdateSetButton");
    EXPECT_EQ(store_->pollInterval(), 3600.0);
    action("toggleTimedUpdateAction").trigger();
    EXPECT_FALSE(store_->isPolledUpdate());
    EXPECT_FALSE(sheet()->isVisible());
    EXPECT_EQ(action("toggleTimedUpdateAction").text(), QStringLiteral("&Timed Update…"));
}

// Once the sheet for paths has been loaded, this one never is; one that was loaded before stays.
TEST_F(WindowViewsTest, ThePathSheetKeepsTheIntervalSheetFromLoading)
{
    controller_->changeTimedUpdate();
    answerSheet(QStringLiteral("8"), "timedUpdateCancelButton");
    controller_->promptForPath();
    controller_->cancelGoToPath();
    const QDialog *const loaded = sheet();
    controller_->changeTimedUpdate();
    EXPECT_EQ(sheet(), loaded);
    answerSheet(QStringLiteral("9"), "timedUpdateSetButton");
    EXPECT_EQ(store_->pollInterval(), 9.0);

    close();
    open();
    controller_->promptForPath();
    controller_->cancelGoToPath();
    controller_->changeTimedUpdate();
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(beeps_, 1);
}

TEST_F(WindowViewsTest, TheSelectionMayGoWhileASheetIsOpen)
{
    controller_->goToEntryPath(path({"Root", "Host", "bus", "disk"}), true, true);
    controller_->changeTimedUpdate();
    terminate("disk");
    update();
    controller_->clearTerminatedObjects();
    EXPECT_EQ(controller_->selectedEntry(), entry("bus"));
    answerSheet(QStringLiteral("5"), "timedUpdateSetButton");
    EXPECT_EQ(store_->pollInterval(), 5.0);
    controller_->changeTimedUpdate();
    close(); // with the sheet open
}

TEST_F(WindowViewsTest, AnArchivedRegistryIsNotUpdated)
{
    store_->setUpToDate(false);
    openArchived();
    EXPECT_EQ(outlet<QWidget>("systemStatusField2")->property("text").toString(),
              QStringLiteral("was out of date"));
    EXPECT_EQ(controller_->window()->windowTitle(),
              QStringLiteral("then.vandrel — DxService — Root"));
    for (const char *name :
         {"updateAction", "updateSelectedObjectAction", "clearTerminatedObjectsAction",
          "toggleAutoupdateAction", "toggleTimedUpdateAction", "changeTimedUpdateAction"})
        EXPECT_FALSE(action(name).isEnabled()) << name;
    const std::string before = rowsOf(*view_);
    controller_->update();
    EXPECT_EQ(beeps_, 1);
    controller_->clearTerminatedObjects();
    EXPECT_EQ(beeps_, 2);
    controller_->updateSelectedObject();
    EXPECT_EQ(beeps_, 3);
    controller_->toggleTimedUpdate();
    EXPECT_EQ(beeps_, 4);
    EXPECT_FALSE(store_->isPolledUpdate());
    controller_->toggleAutoupdate(); // says nothing
    EXPECT_EQ(beeps_, 4);
    EXPECT_FALSE(store_->isAutoupdate());
    EXPECT_EQ(rowsOf(*view_), before);
    EXPECT_FALSE(document_->isDocumentEdited());
}

TEST_F(WindowViewsTest, WhatHasTerminatedIsClearedFromAnArchive)
{
    terminate("disk");
    openArchived();
    ASSERT_NE(rowsOf(*view_).find("disk"), std::string::npos);
    const std::size_t count = store_->registryEntries().size();
    LogCapture log;
    controller_->update(); // which the store itself refuses
    EXPECT_EQ(log.take().size(), 1);
    controller_->clearTerminatedObjects();
    EXPECT_EQ(store_->registryEntries().size(), count - 1);
    EXPECT_NE(rowsOf(*view_).find("disk"), std::string::npos); // a record's window is not told
    EXPECT_FALSE(document_->isDocumentEdited());
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(rowsOf(*view_).find("disk"), std::string::npos);
    EXPECT_EQ(beeps_, 2);
}

TEST_F(WindowViewsTest, AnArchiveWithoutPlanesComesUp)
{
    ArchiveSketch sketch = SmallStore::current();
    sketch.objects[SmallStore::Store].set(QLatin1String("registryPlanes"),
                                          ArchiveValue(ArchiveList()));
    openSketch(sketch);
    EXPECT_EQ(outlet<QComboBox>("planeListButton")->count(), 1);
    EXPECT_EQ(rowsOf(*view_), "Root *\n  Child\n"); // what the entries themselves know
    controller_->browserView();
    window().grab();
    EXPECT_FALSE(outlet<QComboBox>("entryPathsButton")->isEnabled());
}

TEST_F(WindowViewsTest, AbsurdNamesStayInTheirPlaces)
{
    const QString turning(QChar(0x202E));
    const QString end(10'000, u'x');
    const QString name = turning + QStringLiteral("turned\n") + end;
    const QString shown = QStringLiteral("\uFFFDturned␊");
    ArchiveSketch sketch = SmallStore::current();
    const ArchiveDictionary names{{QStringLiteral("DxService"), name}};
    for (const auto position : {SmallStore::Root, SmallStore::Child})
        sketch.objects[position].set(QLatin1String("namesInPlanes"), ArchiveValue(names));
    sketch.objects[SmallStore::Store].set(QLatin1String("hostName"), ArchiveValue(name));
    openSketch(sketch);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
    EXPECT_EQ(view_->horizontalScrollBar()->value(), 0);
    controller_->selectChild();
    EXPECT_EQ(controller_->selectedEntry()->nameInPlane(QStringLiteral("DxService")), name);
    const QString title = window().windowTitle();
    EXPECT_TRUE(title.startsWith(QStringLiteral("made.vandrel — DxService — ") + shown));
    EXPECT_LT(title.size(), 600);
    EXPECT_TRUE(outlet<QLabel>("systemStatusField1")->text().startsWith(shown));

    auto *const field = outlet<FactField>("objectNameField");
    EXPECT_EQ(field->text(), shown + end);
    const auto copied = [] { return QGuiApplication::clipboard()->text(); };
    field->setFocus();
    field->setSelection(0, 4);
    QTest::keyClick(field, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), turning + QStringLiteral("tur"));
    field->selectAll();
    controller_->copy();
    EXPECT_EQ(copied(), name);
    window().grab();

    const QString toolTip = view_->currentIndex().data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(toolTip.contains(QStringLiteral("Discovered: ")));
    EXPECT_FALSE(toolTip.contains(turning));
    QLabel wrapped(toolTip);
    wrapped.setWordWrap(true);
    EXPECT_LT(wrapped.sizeHint().width(), 1000);
}

TEST_F(WindowViewsTest, ThePathsPopUpBearsAbsurdNames)
{
    const QString name = QChar(0x202E) + QStringLiteral("turned") + QString(10'000, u'x');
    service_.setName(registry_["disk"], name.toUtf8().left(100));
    open();
    controller_->goToEntryPath(path({"Root", "Host", "bus", "disk"}), true, true);
    auto *const paths = outlet<QComboBox>("entryPathsButton");
    EXPECT_TRUE(paths->currentText().startsWith(QStringLiteral("DxService:/bus/\uFFFDturnedxx")));
    paths->addItem(name);
    paths->showPopup();
    EXPECT_LE(paths->view()->window()->width(), window().width());
    paths->hidePopup();
}

TEST_F(WindowViewsTest, ALiveDocumentWithAFileNamesItsHost)
{
    const QString file = preferencesFolder() + QStringLiteral("/now.vandrel");
    DocumentError error;
    ASSERT_TRUE(document_->save(file, error));
    controller_->synchronizeWindowTitleWithDocumentName();
    const auto title = [this] {
        return controller_->windowTitleForDocumentDisplayName(document_->displayName());
    };
    const QString plain =
        QStringLiteral("now.vandrel (%1) — DxService — Root").arg(store_->hostName());
    EXPECT_EQ(title(), plain);
    EXPECT_FALSE(document_->isDocumentEdited());
    terminate("disk");
    update();
    document_->setDocumentEdited(false);
    controller_->clearTerminatedObjects();
    EXPECT_TRUE(document_->isDocumentEdited());
    store_->setUpToDate(false);
    EXPECT_EQ(title(), plain + QStringLiteral(" (needs update)"));
}

TEST_F(WindowViewsTest, TheKeyboardFindsItsWayThroughTheTree)
{
    const auto selected = [this] { return controller_->selectedEntry(); };
    view_->setFocus();
    QTest::keyClick(view_, Qt::Key_End);
    EXPECT_EQ(selected(), entry("port"));
    QTest::keyClick(view_, Qt::Key_Home);
    EXPECT_EQ(selected(), entry("Root"));
    QTest::keyClicks(view_, QStringLiteral("di"));
    EXPECT_EQ(selected(), entry("disk"));
    QTest::keyClick(view_, Qt::Key_Up);
    QTest::keyClick(view_, Qt::Key_Left);
    EXPECT_EQ(rowsOf(*view_), dedented(R"(
        Root
          Host
            bus + *
            port)"));
    QTest::keyClick(view_, Qt::Key_Right);
    QTest::keyClick(view_, Qt::Key_Down);
    EXPECT_EQ(selected(), entry("disk"));
}

TEST_F(WindowViewsTest, ShowsOddNamesAsOneLine)
{
    const auto add = [this](const QByteArray &name) {
        const auto node = service_.add(QStringLiteral("DxDevice"), name);
        service_.link(registry_["port"], node, "DxService");
        return node;
    };
    add("");
    add("two\nlines\x01");
    add("\xe2\x80\xae"
        "backwards");
    add("\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d");
    update();
    const auto node = add("long");
    service_.setName(node, QByteArray(100, 'x'));
    update();
    const auto &entries = store_->registryEntries();
    ASSERT_EQ(entries.size(), 10U);
    QStringList shown;
    for (TavRegistryEntry *child : entry("port")->childrenInPlane(QStringLiteral("DxService"))) {
        TavRegistryEntryPath to = path({"Root", "Host", "port"});
        to.appendRegistryEntry(child->shared_from_this());
        controller_->goToEntryPath(to, true, true);
        EXPECT_EQ(controller_->selectedEntry(), child);
        controller_->window()->grab();
        const auto *const delegate = qobject_cast<QStyledItemDelegate *>(view_->itemDelegate());
        shown.append(delegate->displayText(view_->currentIndex().data(), QLocale()));
    }
    EXPECT_TRUE(shown.contains(QString()));
    EXPECT_TRUE(shown.contains(QStringLiteral("two␊lines␁")));
    EXPECT_TRUE(shown.contains(QStringLiteral("\uFFFDbackwards")));
    const QString long_(10'000, u'y');
    const QString cut =
        qobject_cast<QStyledItemDelegate *>(view_->itemDelegate())->displayText(long_, QLocale());
    EXPECT_LE(cut.size(), 501);
    EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
    EXPECT_EQ(beeps_, 0);
}
