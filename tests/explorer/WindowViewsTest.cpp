// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "platform/widgets/SegmentedControl.h"
#include "tests/support/LogCapture.h"

#include <QDialog>
#include <QJsonArray>
#include <QLineEdit>
#include <QSplitter>

namespace {
class WindowViewsTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        open();
    }
    QList<int> dividedInto() const { return splitView().sizes(); }
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
        return window().findChild<QDialog *>(QStringLiteral("timedUpdateSheet"));
    }
    std::string interval() const
    {
        return outlet<QLineEdit>("timedUpdateField")->text().toStdString();
    }
    // Types into the sheet and presses one of its buttons.
    void answerSheet(const char *text, const char *button = "timedUpdateSetButton") const
    {
        ASSERT_TRUE(sheet() && sheet()->isVisible()) << text;
        outlet<QLineEdit>("timedUpdateField")->setText(QString::fromLatin1(text));
        click(button);
        EXPECT_FALSE(sheet()->isVisible()) << text;
    }
};
} // namespace

TEST_F(WindowViewsTest, NewWindowsStartFromThePreferences)
{
    EXPECT_EQ(window().focusWidget(), &tree());
    controller_->browserView();
    select({"Root", "Host", "bus"});
    action("newDocumentWindowAction").trigger();
    ASSERT_EQ(document_->windowControllers().size(), 2U);
    EXPECT_TRUE(controller(1).window()->isVisible());
    EXPECT_FALSE(controller(1).browserIsVisible());
    EXPECT_EQ(controller(1).selectedEntry(), entry("Root"));
    update(); // both follow
    EXPECT_EQ(selected(), "DxService:/bus");

    prefer("DefaultPlane", QStringLiteral(""));           // counts as none
    for (const char *view : {"Outline", "", "browser"}) { // all but one are columns
        prefer("DefaultView", QString::fromLatin1(view));
        open();
        EXPECT_TRUE(controller_->browserIsVisible()) << view;
        EXPECT_TRUE(controller_->isExplorerFirstResponder()) << view;
        EXPECT_TRUE(outlet<QWidget>("registryBrowser")->isAncestorOf(window().focusWidget()));
        EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxService"));
        EXPECT_EQ(controller_->selectedEntry(), entry("Root")) << view;
    }
}

TEST_F(WindowViewsTest, SwitchesBetweenTreeAndColumns)
{
    add("bus", "a", 100, 200);
    update();
    select({"Root", "Host", "bus", "disk@1"});
    EXPECT_FALSE(controller_->browserIsVisible());
    tree().scrollToTop();
    const auto isInSight = [this] {
        return tree().viewport()->rect().contains(tree().visualRect(tree().currentIndex()));
    };
    EXPECT_FALSE(isInSight());

    tree().setFocus();
    action("browserViewAction").trigger();
    EXPECT_TRUE(controller_->browserIsVisible());
    EXPECT_EQ(outlet<SegmentedControl>("viewStyleControl")->selectedTag(), 1);
    EXPECT_TRUE(controller_->isExplorerFirstResponder()); // as before
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");

    outlet<QWidget>("propertiesOutlineView")->setFocus();
    QTest::mouseClick(outlet<QWidget>("outlineSegment"), Qt::LeftButton);
    EXPECT_FALSE(controller_->browserIsVisible());
    EXPECT_FALSE(controller_->isExplorerFirstResponder()); // as before
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    EXPECT_TRUE(isInSight());
    EXPECT_EQ(beeps_, 0);
}

TEST_F(WindowViewsTest, EachArrangementKeepsItsDivider)
{
    dragDivider({80, 0});
    const QList<int> sideBySide = dividedInto();
    controller_->browserView();
    const QList<int> before = dividedInto();
    dragDivider({0, 60});
    const QList<int> stacked = dividedInto();
    ASSERT_NE(stacked, before);
    controller_->outlineView();
    EXPECT_EQ(dividedInto(), sideBySide);
    controller_->browserView();
    EXPECT_EQ(dividedInto(), stacked);
    dragDivider({0, -30});
    const QList<int> last = dividedInto();
    close(); // before the last drag is saved
    open();  // the next window finds them
    EXPECT_EQ(dividedInto(), sideBySide);
    controller_->browserView();
    EXPECT_EQ(dividedInto(), last);

    prefer("TavExplorerSplitView-Vertical", QJsonArray{-5, QStringLiteral("x"), 1e300});
    open();
    EXPECT_GT(dividedInto().constFirst(), 100);
    EXPECT_GT(dividedInto().constLast(), 100);
}

TEST_F(WindowViewsTest, SetsTheIntervalOfTimedUpdate)
{
    action("toggleTimedUpdateAction").trigger();
    EXPECT_TRUE(store_->isPolledUpdate());
    ASSERT_TRUE(sheet());
    EXPECT_EQ(interval(), "30");
    const auto german = QLocale(QLocale::German, QLocale::Germany);
    const std::tuple<QLocale, const char *, double> accepted[] = {
        {QLocale::c(), "5s", 5.0}, {QLocale::c(), " 12 S ", 12.0}, {german, "0,5 s", 0.5},
        {german, "1.800", 1800.0}, {german, "3600", 3600.0},       {german, "2.5", 2.5},
    };
    for (const auto &[locale, text, expected] : accepted) {
        QLocale::setDefault(locale);
        controller_->changeTimedUpdate();
        answerSheet(text);
        EXPECT_EQ(store_->pollInterval(), expected) << text;
    }
    QLocale::setDefault(QLocale::c());

    for (const char *refused : {"0", "-1", "3600.5", "", "s", "5 soon", "nan", "1e99"}) {
        controller_->changeTimedUpdate();
        EXPECT_EQ(interval(), "2"); // cut off
        answerSheet(refused);
        EXPECT_EQ(store_->pollInterval(), 2.5) << refused;
    }
    controller_->changeTimedUpdate();
    answerSheet("7", "timedUpdateCancelButton");
    EXPECT_EQ(store_->pollInterval(), 2.5);
    action("toggleTimedUpdateAction").trigger();
    EXPECT_FALSE(store_->isPolledUpdate());
    EXPECT_FALSE(sheet()->isVisible());

    // The selection may go while the sheet is open.
    select({"Root", "Host", "bus", "disk@1"});
    controller_->changeTimedUpdate();
    terminate("disk@1");
    update();
    controller_->clearTerminatedObjects();
    EXPECT_EQ(selected(), "DxService:/bus");
    answerSheet("5");
    EXPECT_EQ(store_->pollInterval(), 5.0);
    controller_->changeTimedUpdate();
    close(); // with the sheet open
}

// Deliberate: once the sheet for paths is loaded, this one is not loaded any more.
TEST_F(WindowViewsTest, ThePathSheetKeepsTheIntervalSheetFromLoading)
{
    controller_->changeTimedUpdate();
    answerSheet("8", "timedUpdateCancelButton");
    controller_->promptForPath();
    controller_->cancelGoToPath();
    const QDialog *const loaded = sheet();
    controller_->changeTimedUpdate();
    EXPECT_EQ(sheet(), loaded);
    answerSheet("9");
    EXPECT_EQ(store_->pollInterval(), 9.0);

    close();
    open();
    controller_->promptForPath();
    controller_->cancelGoToPath();
    controller_->changeTimedUpdate();
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(beeps_, 1);
}

TEST_F(WindowViewsTest, AnArchivedRegistryIsNotUpdated)
{
    store_->setUpToDate(false);
    terminate("disk@1");
    openArchived();
    EXPECT_EQ(outlet<QWidget>("systemStatusField2")->property("text").toString(),
              QStringLiteral("was out of date"));
    EXPECT_EQ(window().windowTitle(), QStringLiteral("then.vandrel — DxService — Root"));
    const std::string before = rows();
    const std::size_t count = store_->registryEntries().size();
    LogCapture log;
    controller_->update(); // which the store itself refuses
    EXPECT_EQ(log.take().size(), 1);
    EXPECT_EQ(beeps_, 1);
    controller_->updateSelectedObject();
    EXPECT_EQ(beeps_, 2);
    controller_->toggleTimedUpdate();
    EXPECT_EQ(beeps_, 3);
    EXPECT_FALSE(store_->isPolledUpdate());
    controller_->toggleAutoupdate(); // says nothing
    EXPECT_EQ(beeps_, 3);
    EXPECT_FALSE(store_->isAutoupdate());

    controller_->clearTerminatedObjects(); // clears them all the same
    EXPECT_EQ(beeps_, 4);
    EXPECT_EQ(store_->registryEntries().size(), count - 1);
    EXPECT_EQ(rows(), before); // a snapshot's window is not notified
    EXPECT_FALSE(document_->isDocumentEdited());
    controller_->toggleShowTerminatedObjects();
    EXPECT_EQ(rows().find("disk@1"), std::string::npos);
}
