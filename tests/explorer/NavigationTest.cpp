// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "explorer/selection/SelectionHistory.h"
#include "explorer/sheets/EntryPathCompleter.h"

#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <functional>

namespace {
// An array with three paths in two planes. Every test runs in the tree and in columns.
class NavigationTest : public ExplorerFixture, public testing::WithParamInterface<bool>
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  array
                  disk@0
                  disk@1
                  usb:1@2
                twins
                  twin #a
                  twin #b)");
        registry_.plane("DxBlock", R"(
            Root
              Host
                disk@0
                  array
                disk@1
                  array)");
        open();
        if (GetParam())
            controller_->browserView();
    }
    void selectArray() { select({"Root", "Host", "bus", "array"}); }
    static std::string text(const std::optional<TavRegistryEntryPath> &path)
    {
        return path ? path->registryPath().toStdString() : "none";
    }
    // Whether the path is refused with one beep and the selection stays.
    bool isRefused(const QString &path)
    {
        const std::string before = selected();
        const int beepsBefore = beeps_;
        controller_->goToRegistryPath(path);
        return selected() == before && beeps_ == beepsBefore + 1;
    }
};
} // namespace

TEST_P(NavigationTest, PopUpListsThePathsOfTheSelection)
{
    const auto &popup = *outlet<QComboBox>("entryPathsButton");
    selectArray();
    std::string items;
    for (int i = 0; i < popup.count(); ++i)
        items += popup.itemText(i).toStdString() + '\n';
    EXPECT_EQ(items, "DxService:/bus/array\n\nDxBlock:/disk@0/array\nDxBlock:/disk@1/array\n");
    EXPECT_TRUE(popup.isEnabled());
    controller_->pathPopupChanged(3);
    EXPECT_EQ(selected(), "DxBlock:/disk@1/array");
    EXPECT_EQ(popup.currentIndex(), 3);
    EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxBlock"));
    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(popup.count(), 0);
    EXPECT_FALSE(popup.isEnabled());
    EXPECT_EQ(text(controller_->nextEntryPathInPlane(false)), "none");
}

TEST_P(NavigationTest, StepsThroughThePathsInTheirOddWay)
{
    const std::string inService = "DxService:/bus/array";
    const std::string first = "DxBlock:/disk@0/array";
    const std::string second = "DxBlock:/disk@1/array";
    // Where the next and the previous path lead, in the plane and across planes.
    const auto expectPaths = [&](const std::string &at, const std::array<std::string, 4> &paths) {
        EXPECT_EQ(selected(), at);
        EXPECT_EQ(text(controller_->nextEntryPathInPlane(true)), paths[0]) << at;
        EXPECT_EQ(text(controller_->prevEntryPathInPlane(true)), paths[1]) << at;
        EXPECT_EQ(text(controller_->nextEntryPathInPlane(false)), paths[2]) << at;
        EXPECT_EQ(text(controller_->prevEntryPathInPlane(false)), paths[3]) << at;
    };
    selectArray();
    expectPaths(inService, {"none", "none", first, first}); // the one before the last
    controller_->goToNextPathInPlane();
    EXPECT_EQ(selected(), inService);
    controller_->goToNextPathCrossPlane();
    expectPaths(first, {second, "none", second, inService});
    controller_->goToNextPathInPlane();
    expectPaths(second, {"none", first, inService, first}); // though there is another in the plane
    controller_->goToPrevPathInPlane();
    EXPECT_EQ(selected(), first);
    controller_->goToPrevPathCrossPlane();
    EXPECT_EQ(selected(), inService);
    EXPECT_EQ(beeps_, 0);
}

TEST_P(NavigationTest, MovesToParentsChildrenAndSiblings)
{
    using Controller = TavWindowController;
    const int inColumns = GetParam(); // where a missing sibling beeps
    struct Step
    {
        void (Controller::*move)();
        const char *expected;
        int beeps = 0;
    };
    const Step steps[] = {
        {&Controller::selectNextSibling, "DxService:/bus/usb:1@2"},
        {&Controller::selectNextSibling, "DxService:/bus/usb:1@2", inColumns},
        {&Controller::selectPreviousSibling, "DxService:/bus/disk@1"},
        {&Controller::selectPreviousSibling, "DxService:/bus/disk@0"},
        {&Controller::selectPreviousSibling, "DxService:/bus/array"},
        {&Controller::selectPreviousSibling, "DxService:/bus/array", inColumns},
        {&Controller::selectChild, "DxService:/bus/array", 1},
        {&Controller::selectParent, "DxService:/bus"},
        {&Controller::selectParent, "DxService:/"},
        {&Controller::selectParent, "(DxService)"},
        {&Controller::selectParent, "(DxService)"},
        {&Controller::selectChild, "DxService:/"},
        {&Controller::selectChild, "DxService:/bus"},
    };
    select({"Root", "Host", "bus", "disk@1"});
    for (const Step &step : steps) {
        SCOPED_TRACE(&step - steps);
        beeps_ = 0;
        std::invoke(step.move, *controller_);
        EXPECT_EQ(selected(), step.expected);
        EXPECT_EQ(beeps_, step.beeps);
    }
    selectNothing();
    controller_->selectParent();
    EXPECT_EQ(beeps_, 0);
    controller_->selectChild();
    EXPECT_EQ(beeps_, 1);
}

TEST_P(NavigationTest, TypedPathsAreBelievedToTheLetter)
{
    for (const char *path : {"DxService:/bus/usb:1@2", "DxBlock:/disk@1/array"}) {
        controller_->goToRegistryPath(QString::fromUtf8(path));
        EXPECT_EQ(selected(), path);
    }
    EXPECT_EQ(beeps_, 0);
    // A plane's name alone means its root.
    for (const char *path :
         {"", "DxBlock", "DxBlock:", "(DxBlock)", "bus", "/bus", "DxElsewhere:/",
          "DxBlock://disk@1", "DxBlock:/disk@1/", "DxBlock:/disk@1/array/gone", "DxBlock:disk@1",
          "DxBlock:/disk", ":", "DxBlock:/DISK@1", "DxBlock:/Host/disk@1"})
        EXPECT_TRUE(isRefused(QString::fromUtf8(path))) << path;
    EXPECT_TRUE(isRefused(QStringLiteral("DxBlock:") + QString(100'000, u'/')));
    EXPECT_TRUE(isRefused(QStringLiteral("DxBlock:") + QStringLiteral("/x").repeated(100'000)));

    controller_->goToRegistryPath(QStringLiteral("DxService:/twins/twin"));
    EXPECT_EQ(controller_->selectedEntry(), entry("a"));
    const auto *const alert = window().findChild<QMessageBox *>();
    ASSERT_TRUE(alert && alert->isVisible());
    EXPECT_EQ(alert->text(), QStringLiteral("Multiple Matches for Path"));
}

TEST_P(NavigationTest, PathWhoseEndHasGoneLeadsToItsParent)
{
    select({"Root", "Host", "bus", "disk@1"});
    std::optional gone = controller_->selectedEntryPath();
    const std::weak_ptr<TavRegistryEntry> disk = entry("disk@1")->weak_from_this();
    terminate("disk@1");
    update();
    EXPECT_EQ(controller_->selectedEntry(), disk.lock().get()); // still shown, struck out
    controller_->clearTerminatedObjects();
    EXPECT_EQ(selected(), "DxService:/bus");
    EXPECT_EQ(beeps_, 0);
    selectArray();
    controller_->goToEntryPath(*gone, true, true);
    EXPECT_EQ(selected(), "DxService:/bus");
    EXPECT_EQ(beeps_, 1);
    gone.reset();
    EXPECT_TRUE(disk.expired());
}

TEST_P(NavigationTest, PastesNothingButPaths)
{
    QClipboard &clipboard = *QGuiApplication::clipboard();
    clipboard.setText(QStringLiteral("DxBlock:/disk@1/array"));
    action("pasteAction").trigger();
    EXPECT_EQ(selected(), "DxBlock:/disk@1/array");
    auto *const binary = new QMimeData;
    binary->setData(QStringLiteral("application/octet-stream"), QByteArray(1000, '\0'));
    clipboard.setMimeData(binary);
    controller_->paste();
    EXPECT_EQ(beeps_, 0);
    clipboard.setText(QString(QChar(0)) + QStringLiteral("\n\t/"));
    controller_->paste();
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(selected(), "DxBlock:/disk@1/array");
}

TEST_P(NavigationTest, PathSheetKeepsItsTextAndOffersNames)
{
    controller_->promptForPath();
    auto &field = *outlet<QLineEdit>("goToPathField");
    QTest::keyClicks(&field, QStringLiteral("DxBlock:/disk@0/array"));
    click("goToPathCancelButton");
    EXPECT_EQ(selected(), "(DxService)");
    controller_->promptForPath();
    click("goToPathGoButton");
    EXPECT_EQ(selected(), "DxBlock:/disk@0/array");
    auto *const sheet = outlet<QDialog>("goToPathSheet");
    EXPECT_FALSE(sheet->isVisible());

    // The list of completions does not replace what was typed.
    controller_->promptForPath();
    field.clear();
    QTest::keyClicks(&field, QStringLiteral("DxBlock:/disk@1"));
    QWidget &offers = *field.completer()->popup();
    ASSERT_TRUE(offers.isVisible());
    QTest::keyClick(&offers, Qt::Key_Return);
    EXPECT_EQ(selected(), "DxBlock:/disk@1");
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_FALSE(offers.isVisible());

    const auto offered = [&](const char *text) {
        auto &completer = *static_cast<EntryPathCompleter *>(field.completer());
        return completer.candidates(QString::fromUtf8(text)).join(u' ').toStdString();
    };
    EXPECT_EQ(offered("Dx"), "DxBlock:/ DxService:/");
    EXPECT_EQ(offered("DxBlock:/d"), "DxBlock:/disk@0 DxBlock:/disk@1");
    EXPECT_EQ(offered("DxBlock:/disk@1/"), "DxBlock:/disk@1/array");
    EXPECT_EQ(offered("DxService:/twins/"), "DxService:/twins/twin");
    EXPECT_EQ(offered("DxBlock:/gone/x"), "");
}

TEST_P(NavigationTest, GoesBackAndForth)
{
    EXPECT_FALSE(action("goBackAction").isEnabled());
    selectArray();
    select({"Root", "Host", "disk@1"}, "DxBlock");
    select({"Root", "Host", "bus", "disk@0"});
    QWidget *const explorer = window().focusWidget();
    action("goBackAction").trigger();
    EXPECT_EQ(selected(), "DxBlock:/disk@1");
    QTest::mouseClick(explorer, Qt::BackButton);
    EXPECT_EQ(selected(), "DxService:/bus/array");
    QTest::mouseClick(explorer, Qt::ForwardButton);
    EXPECT_EQ(selected(), "DxBlock:/disk@1");
    controller_->selectParent(); // what was ahead is forgotten
    EXPECT_FALSE(action("goForwardAction").isEnabled());
    controller_->goForward();
    controller_->goToNextSnapshot();
    controller_->goToPrevSnapshot();
    EXPECT_EQ(beeps_, 3);
    action("goBackAction").trigger();
    EXPECT_EQ(selected(), "DxBlock:/disk@1");
    for (int i = 0; i < 1000; ++i)
        i % 2 ? selectArray() : select({"Root", "Host", "bus"});
    int steps = 0;
    for (; action("goBackAction").isEnabled(); ++steps)
        controller_->goBack();
    EXPECT_EQ(steps, static_cast<int>(SelectionHistory::maxVisits) - 1);
}

TEST_P(NavigationTest, GoesBackByOnePlaceForEachPlaceThatIsLeft)
{
    selectArray();
    for (const char *disk : {"disk@0", "disk@1"}) {
        select({"Root", "Host", "bus", disk});
        selectArray();
        terminate(disk);
    }
    update();
    controller_->clearTerminatedObjects();
    EXPECT_EQ(selected(), "DxService:/bus/array");
    EXPECT_FALSE(action("goForwardAction").isEnabled());
    action("goBackAction").trigger();
    EXPECT_EQ(selected(), "(DxService)");
    EXPECT_FALSE(action("goBackAction").isEnabled());
    action("goForwardAction").trigger();
    EXPECT_EQ(selected(), "DxService:/bus/array");
}

INSTANTIATE_TEST_SUITE_P(Views, NavigationTest, testing::Bool(), [](const auto &its) {
    return std::string(its.param ? "Columns" : "Tree");
});
