#include "BookmarksSpy.h"
#include "ExplorerFixture.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "explorer/EntryPathCompleter.h"
#include "explorer/SelectionHistory.h"
#include "explorer/TavRegistryOutlineView.h"
#include "platform/desktop/ColumnBrowser.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/TreeText.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

namespace {
// An array that stands at three paths in two planes. Every test runs in the tree and in columns.
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
        popup_ = outlet<QComboBox>("entryPathsButton");
    }
    void select(std::initializer_list<const char *> labels, const char *plane = "DxService")
    {
        controller_->goToEntryPath(path(labels, plane), true, true);
    }
    void selectArray() { select({"Root", "Host", "bus", "array"}); }
    QString selected() const { return controller_->registryPathForSelectedEntry(); }
    bool isSelected(const char *path) const { return selected() == QString::fromUtf8(path); }
    static QString text(const std::optional<TavRegistryEntryPath> &path)
    {
        return path ? path->registryPath() : QStringLiteral("none");
    }
    QStringList popupItems() const
    {
        QStringList items;
        for (int i = 0; i < popup_->count(); ++i)
            items.append(popup_->itemText(i));
        return items;
    }
    // Whether the path is refused with one beep and the selection stays.
    bool isRefused(const QString &path)
    {
        const QString before = selected();
        const int beepsBefore = beeps_;
        controller_->goToRegistryPath(path);
        return selected() == before && beeps_ == beepsBefore + 1;
    }
    QAction *action(const char *name) const { return outlet<QAction>(name); }
    QDialog *sheet(const char *name) const
    {
        return controller_->window()->findChild<QDialog *>(QString::fromLatin1(name));
    }

    QComboBox *popup_ = nullptr;
};
} // namespace

TEST_P(NavigationTest, PopUpListsThePathsOfTheSelection)
{
    selectArray();
    EXPECT_EQ(popupItems(), QStringList({QStringLiteral("DxService:/bus/array"), QString(),
                                         QStringLiteral("DxBlock:/disk@0/array"),
                                         QStringLiteral("DxBlock:/disk@1/array")}));
    EXPECT_TRUE(popup_->isEnabled());
    EXPECT_EQ(popup_->currentIndex(), 0);
    controller_->pathPopupChanged(3);
    EXPECT_TRUE(isSelected("DxBlock:/disk@1/array"));
    EXPECT_EQ(popup_->currentIndex(), 3);
    EXPECT_EQ(controller_->registryPlane(), QStringLiteral("DxBlock"));
    controller_->selectEntryPath(std::nullopt);
    EXPECT_EQ(popup_->count(), 0);
    EXPECT_FALSE(popup_->isEnabled());
    EXPECT_EQ(text(controller_->nextEntryPathInPlane(false)), QStringLiteral("none"));
    EXPECT_EQ(beeps_, 0);
}

TEST_P(NavigationTest, StepsThroughThePathsInTheirOddWay)
{
    const auto next = [&](bool inPlane) {
        return text(controller_->nextEntryPathInPlane(inPlane));
    };
    const auto previous = [&](bool inPlane) {
        return text(controller_->prevEntryPathInPlane(inPlane));
    };
    const QString none = QStringLiteral("none");
    const QString inService = QStringLiteral("DxService:/bus/array");
    const QString first = QStringLiteral("DxBlock:/disk@0/array");
    const QString second = QStringLiteral("DxBlock:/disk@1/array");
    selectArray();
    EXPECT_EQ(next(true), none);
    EXPECT_EQ(next(false), first);
    EXPECT_EQ(previous(true), none);
    EXPECT_EQ(previous(false), first); // the one before the last
    controller_->goToNextPathInPlane();
    EXPECT_EQ(selected(), inService);
    controller_->goToNextPathCrossPlane();
    EXPECT_EQ(selected(), first);
    EXPECT_EQ(next(true), second);
    EXPECT_EQ(previous(true), none);
    EXPECT_EQ(previous(false), inService);
    controller_->goToNextPathInPlane();
    EXPECT_EQ(selected(), second);
    EXPECT_EQ(next(true), none); // though there is another one in the plane
    EXPECT_EQ(next(false), inService);
    controller_->goToPrevPathInPlane();
    EXPECT_EQ(selected(), first);
    controller_->goToPrevPathCrossPlane();
    EXPECT_EQ(selected(), inService);
    EXPECT_EQ(beeps_, 0);
}

TEST_P(NavigationTest, MovesToParentsChildrenAndSiblings)
{
    const bool inColumns = GetParam();
    select({"Root", "Host", "bus", "disk@0"});
    controller_->selectNextSibling();
    EXPECT_TRUE(isSelected("DxService:/bus/disk@1"));
    controller_->selectNextSibling();
    EXPECT_TRUE(isSelected("DxService:/bus/usb:1@2"));
    EXPECT_FALSE(action("selectNextSiblingAction")->isEnabled());
    controller_->selectNextSibling();
    EXPECT_EQ(beeps_, inColumns ? 1 : 0);
    for (int i = 0; i < 3; ++i)
        controller_->selectPreviousSibling();
    EXPECT_TRUE(isSelected("DxService:/bus/array"));
    EXPECT_FALSE(action("selectPreviousSiblingAction")->isEnabled());
    controller_->selectPreviousSibling();
    EXPECT_EQ(beeps_, inColumns ? 2 : 0);
    beeps_ = 0;

    controller_->selectChild();
    EXPECT_EQ(beeps_, 1);
    for (const char *parent : {"DxService:/bus", "DxService:/", "(DxService)", "(DxService)"}) {
        controller_->selectParent();
        EXPECT_TRUE(isSelected(parent)) << parent;
    }
    EXPECT_EQ(beeps_, 1);
    controller_->selectChild();
    controller_->selectChild();
    EXPECT_TRUE(isSelected("DxService:/bus"));
    controller_->goToEntryPath(std::nullopt, false, false);
    EXPECT_EQ(action("selectPreviousSiblingAction")->isEnabled(), inColumns);
    controller_->selectParent();
    EXPECT_EQ(beeps_, 1);
    controller_->selectChild();
    EXPECT_EQ(beeps_, 2);
}

TEST_P(NavigationTest, TypedPathsAreBelievedToTheLetter)
{
    controller_->goToRegistryPath(QStringLiteral("DxService:/bus/usb:1@2"));
    EXPECT_TRUE(isSelected("DxService:/bus/usb:1@2"));
    controller_->goToRegistryPath(QStringLiteral("DxBlock:/disk@1/array"));
    EXPECT_TRUE(isSelected("DxBlock:/disk@1/array"));
    EXPECT_EQ(beeps_, 0);
    // A plane stands for its root, of which no path is written so.
    for (const char *path :
         {"", "DxBlock", "DxBlock:", "(DxBlock)", "bus", "/bus", "DxElsewhere:/",
          "DxBlock://disk@1", "DxBlock:/disk@1/", "DxBlock:/disk@1/array/gone", "DxBlock:disk@1",
          "DxBlock:/disk", ":", "DxBlock:/DISK@1", "DxBlock:/Host/disk@1"})
        EXPECT_TRUE(isRefused(QString::fromUtf8(path))) << path;
    EXPECT_TRUE(isRefused(QStringLiteral("DxBlock:") + QString(100'000, u'/')));
    EXPECT_TRUE(isRefused(QStringLiteral("DxBlock:") + QStringLiteral("/x").repeated(100'000)));

    controller_->goToRegistryPath(QStringLiteral("DxService:/twins/twin"));
    EXPECT_EQ(controller_->selectedEntry(), entry("a"));
    const auto *const alert = controller_->window()->findChild<QMessageBox *>();
    ASSERT_TRUE(alert && alert->isVisible());
    EXPECT_EQ(alert->text(), QStringLiteral("Multiple Matches for Path"));
}

TEST_P(NavigationTest, PathWhoseEndHasGoneLeadsToItsParent)
{
    select({"Root", "Host", "bus", "disk@1"});
    const auto gone = *controller_->selectedEntryPath();
    terminate("disk@1");
    store_->clearTerminatedObjects();
    EXPECT_TRUE(isSelected("DxService:/bus"));
    EXPECT_EQ(beeps_, 0);
    selectArray();
    controller_->goToEntryPath(gone, true, true);
    EXPECT_TRUE(isSelected("DxService:/bus"));
    EXPECT_EQ(beeps_, 1);
}

TEST_P(NavigationTest, CopiesAndPastesPaths)
{
    QClipboard &clipboard = *QGuiApplication::clipboard();
    select({"Root", "Host", "disk@1", "array"}, "DxBlock");
    controller_->makeExplorerFirstResponder();
    controller_->copy();
    EXPECT_EQ(clipboard.text(), QStringLiteral("DxBlock:/disk@1/array"));
    selectArray();
    action("pasteAction")->trigger();
    EXPECT_TRUE(isSelected("DxBlock:/disk@1/array"));

    auto *const binary = new QMimeData;
    binary->setData(QStringLiteral("application/octet-stream"), QByteArray(1000, '\0'));
    clipboard.setMimeData(binary);
    EXPECT_FALSE(action("pasteAction")->isEnabled());
    controller_->paste();
    EXPECT_TRUE(isSelected("DxBlock:/disk@1/array"));
    EXPECT_EQ(beeps_, 0);
    clipboard.setText(QString(QChar(0)) + QStringLiteral("\n\t/"));
    controller_->paste();
    EXPECT_EQ(beeps_, 1);
    clipboard.clear();
}

TEST_P(NavigationTest, PathSheetKeepsItsTextAndOffersNames)
{
    controller_->promptForPath();
    auto *const field = outlet<QLineEdit>("goToPathField");
    QTest::keyClicks(field, QStringLiteral("DxBlock:/disk@0/array"));
    QTest::mouseClick(outlet<QPushButton>("goToPathCancelButton"), Qt::LeftButton);
    EXPECT_FALSE(isSelected("DxBlock:/disk@0/array"));
    controller_->promptForPath();
    EXPECT_EQ(field->text(), QStringLiteral("DxBlock:/disk@0/array"));
    QTest::mouseClick(outlet<QPushButton>("goToPathGoButton"), Qt::LeftButton);
    EXPECT_TRUE(isSelected("DxBlock:/disk@0/array"));
    EXPECT_FALSE(sheet("goToPathSheet")->isVisible());

    // The offers are no obstacle to what has been typed.
    controller_->promptForPath();
    field->clear();
    QTest::keyClicks(field, QStringLiteral("DxBlock:/disk@1"));
    QWidget &offers = *field->completer()->popup();
    ASSERT_TRUE(offers.isVisible());
    QTest::keyClick(&offers, Qt::Key_Return);
    EXPECT_TRUE(isSelected("DxBlock:/disk@1"));
    EXPECT_FALSE(sheet("goToPathSheet")->isVisible());
    EXPECT_FALSE(offers.isVisible());

    const auto &completer = *static_cast<const EntryPathCompleter *>(field->completer());
    const auto offered = [&](const char *text) {
        return completer.candidates(QString::fromUtf8(text)).join(u' ');
    };
    EXPECT_EQ(offered("Dx"), QStringLiteral("DxBlock:/ DxService:/"));
    EXPECT_EQ(offered("DxBlock:/d"), QStringLiteral("DxBlock:/disk@0 DxBlock:/disk@1"));
    EXPECT_EQ(offered("DxBlock:/disk@1/"), QStringLiteral("DxBlock:/disk@1/array"));
    EXPECT_EQ(offered("DxService:/twins/"), QStringLiteral("DxService:/twins/twin"));
    EXPECT_EQ(offered("DxBlock:/gone/x"), QString());
}

TEST_P(NavigationTest, BookmarkSheetAsksForTheName)
{
    BookmarksSpy bookmarks;
    controller_->selectEntryPath(std::nullopt);
    controller_->promptForBookmark();
    EXPECT_EQ(beeps_, 1);
    EXPECT_FALSE(sheet("addBookmarkSheet"));

    selectArray();
    controller_->promptForBookmark();
    EXPECT_EQ(outlet<QLineEdit>("addBookmarkNameField")->text(),
              QStringLiteral("array (DxService)"));
    outlet<QCheckBox>("addBookmarkDefaultCheckbox")->setChecked(true);
    QTest::mouseClick(outlet<QPushButton>("addBookmarkOKButton"), Qt::LeftButton);
    EXPECT_EQ(bookmarks.added, QStringLiteral("array (DxService) = DxService:/bus/array!"));

    select({"Root", "Host", "disk@1"}, "DxBlock");
    controller_->promptForBookmark();
    EXPECT_EQ(outlet<QLineEdit>("addBookmarkNameField")->text(),
              QStringLiteral("disk@1 (DxBlock)"));
    EXPECT_FALSE(outlet<QCheckBox>("addBookmarkDefaultCheckbox")->isChecked());
    bookmarks.added.clear();
    QTest::mouseClick(outlet<QPushButton>("addBookmarkCancelButton"), Qt::LeftButton);
    EXPECT_EQ(bookmarks.added, QString());
}

TEST_P(NavigationTest, GoesBackAndForth)
{
    EXPECT_FALSE(action("goBackAction")->isEnabled());
    selectArray();
    select({"Root", "Host", "disk@1"}, "DxBlock");
    select({"Root", "Host", "bus", "disk@0"});
    action("goBackAction")->trigger();
    EXPECT_TRUE(isSelected("DxBlock:/disk@1"));
    QWidget *const explorer = controller_->window()->focusWidget();
    QTest::mouseClick(explorer, Qt::BackButton);
    EXPECT_TRUE(isSelected("DxService:/bus/array"));
    QTest::mouseClick(explorer, Qt::ForwardButton);
    EXPECT_TRUE(isSelected("DxBlock:/disk@1"));
    controller_->selectParent(); // what was ahead is forgotten
    EXPECT_FALSE(action("goForwardAction")->isEnabled());
    controller_->goForward();
    EXPECT_EQ(beeps_, 1);
    action("goBackAction")->trigger();
    EXPECT_TRUE(isSelected("DxBlock:/disk@1"));
    controller_->goToNextSnapshot();
    controller_->goToPrevSnapshot();
    EXPECT_EQ(beeps_, 3);
    for (int i = 0; i < 1000; ++i)
        i % 2 ? selectArray() : select({"Root", "Host", "bus"});
    int steps = 0;
    for (; action("goBackAction")->isEnabled(); ++steps)
        controller_->goBack();
    EXPECT_EQ(steps, static_cast<int>(SelectionHistory::most) - 1);
}

TEST_P(NavigationTest, SelectsPropertiesByKeysAndIndexes)
{
    using namespace values;
    service_.setProperties(registry_["array"], dictionary({{"list", array({number(1), number(2)})},
                                                           {"size", number(3)}}));
    update();
    selectArray();
    const auto &view = *outlet<TavPropertiesOutlineView>("propertiesOutlineView");
    const QString list = QStringLiteral("list");
    controller_->selectPropertyKeyIndexPath({list, qsizetype(1)});
    const TavRegistryProperty *const second =
        entry("array")->properties()->childWithName(list)->childAtIndex(1);
    EXPECT_EQ(view.selectedItem(), second);
    EXPECT_TRUE(TavFormatController::sharedInstance().selectedPropertyItem() == second);
    EXPECT_TRUE(view.isExpanded(view.model()->index(0, 0)));
    for (const std::vector<PropertyPathMember> &path :
         {std::vector<PropertyPathMember>{list, qsizetype(2)},
          {list, qsizetype(-1)},
          {QStringLiteral("none")},
          {QStringLiteral("size"), qsizetype(0)}}) {
        controller_->selectPropertyKeyIndexPath({list, qsizetype(0)});
        controller_->selectPropertyKeyIndexPath(path);
        EXPECT_FALSE(view.selectedItem());
        EXPECT_FALSE(TavFormatController::sharedInstance().selectedPropertyItem());
    }
}

INSTANTIATE_TEST_SUITE_P(Views, NavigationTest, testing::Bool(), [](const auto &its) {
    return std::string(its.param ? "Columns" : "Tree");
});

namespace {
class CollapsingTest : public ExplorerFixture
{};
} // namespace

TEST_F(CollapsingTest, ClosesWhatIsNotOnTheWayToTheSelection)
{
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              disk
                part
            net
              card
                port)");
    open();
    auto *const view = outlet<TavRegistryOutlineView>("registryOutlineView");
    controller_->goToEntryPath(path({"Root", "Host", "bus", "disk"}), true, true);
    controller_->collapseAroundSelection();
    const std::string around = dedented(R"(
        Root
          Host
            bus
              disk *
                part
            net +)");
    EXPECT_EQ(rowsOf(*view), around);
    update();
    EXPECT_EQ(rowsOf(*view), around);
    controller_->expandAll();
    EXPECT_EQ(rowsOf(*view).find('+'), std::string::npos);
}
