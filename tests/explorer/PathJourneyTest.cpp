// One walk through all the places of an entry, as a user would take it, in the tree and in columns:
// on a scripted registry, and on a recorded machine with a volume on four disks.
#include "BookmarksSpy.h"
#include "ExplorerFixture.h"
#include "model/linux/LinuxRegistryService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RecordedTrees.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {
struct Stations
{
    QStringList paths;             // of the entry, by plane
    QList<qsizetype> firstInPlane; // in paths
    qsizetype stop;                // in paths: where the walk looks around
    QString sibling;               // that follows the parent at the stop

    const QString &path() const { return paths[stop]; }
};

QString parentOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/'));
}

QString planeOf(const QString &path)
{
    return path.left(path.indexOf(u':'));
}

class PathJourneyTest : public ExplorerFixture, public testing::WithParamInterface<bool>
{
protected:
    void showView()
    {
        if (GetParam())
            controller_->browserView();
        else
            controller_->outlineView();
        controller_->makeExplorerFirstResponder();
    }
    QString selected() const { return controller_->registryPathForSelectedEntry(); }

    void listPaths(const Stations &stations)
    {
        controller_->goToRegistryPath(stations.paths.first());
        const auto *const popup = outlet<QComboBox>("entryPathsButton");
        QStringList listed;
        for (int i = 0; i < popup->count(); ++i)
            listed.append(popup->itemText(i));
        QStringList expected = stations.paths;
        for (auto first = stations.firstInPlane.rbegin(); first + 1 != stations.firstInPlane.rend();
             ++first)
            expected.insert(*first, QString());
        EXPECT_EQ(listed, expected);
    }
    void stepThroughPaths(const Stations &stations)
    {
        const qsizetype count = stations.paths.size();
        for (qsizetype i = 0; i < count; ++i) {
            EXPECT_EQ(selected(), stations.paths[i]);
            EXPECT_EQ(controller_->registryPlane(), planeOf(stations.paths[i]));
            const QString &next = stations.paths[(i + 1) % count];
            const bool isInPlane = planeOf(next) == planeOf(selected());
            EXPECT_EQ(controller_->nextEntryPathInPlane(true).has_value(), isInPlane) << i;
            if (isInPlane)
                controller_->goToNextPathInPlane();
            else
                controller_->goToNextPathCrossPlane();
        }
        EXPECT_EQ(selected(), stations.paths.first()); // around once
        controller_->goToNextPathCrossPlane();
        controller_->goToPrevPathCrossPlane();
        EXPECT_EQ(selected(), stations.paths.first());
    }
    void visitRelatives(const Stations &stations)
    {
        controller_->goToRegistryPath(stations.path());
        controller_->selectParent();
        EXPECT_EQ(selected(), parentOf(stations.path()));
        controller_->selectNextSibling();
        EXPECT_EQ(selected(), stations.sibling);
        controller_->selectPreviousSibling();
        controller_->selectChild();
        EXPECT_EQ(selected(), stations.path());
        controller_->goBack();
        EXPECT_EQ(selected(), parentOf(stations.path()));
        controller_->goForward();
    }
    void copyAndPaste(const Stations &stations)
    {
        EXPECT_EQ(selected(), stations.path());
        controller_->copy();
        controller_->goToRegistryPath(stations.paths.first());
        controller_->paste();
        EXPECT_EQ(selected(), stations.path());
        QGuiApplication::clipboard()->clear();
    }
    void bookmarkAndReturn(const Stations &stations)
    {
        BookmarksSpy bookmarks;
        controller_->promptForBookmark();
        QTest::mouseClick(outlet<QPushButton>("addBookmarkOKButton"), Qt::LeftButton);
        EXPECT_TRUE(bookmarks.added.endsWith(QLatin1String(" = ") + stations.path() + u'.'));
        controller_->goToRegistryPath(stations.sibling);
        controller_->promptForPath();
        outlet<QLineEdit>("goToPathField")->clear();
        QTest::keyClicks(outlet<QLineEdit>("goToPathField"), stations.path());
        QTest::mouseClick(outlet<QPushButton>("goToPathGoButton"), Qt::LeftButton);
        EXPECT_EQ(selected(), stations.path());
    }
    void lookFromTheOtherSide(const Stations &stations)
    {
        controller_->browserIsVisible() ? controller_->outlineView() : controller_->browserView();
        EXPECT_EQ(selected(), stations.path());
        controller_->goToPrevPathCrossPlane();
        EXPECT_EQ(selected(), stations.paths[stations.stop - 1]);
    }
    void travel(const Stations &stations)
    {
        showView();
        listPaths(stations);
        stepThroughPaths(stations);
        visitRelatives(stations);
        copyAndPaste(stations);
        bookmarkAndReturn(stations);
        lookFromTheOtherSide(stations);
        EXPECT_EQ(beeps_, 0);
    }
};
} // namespace

TEST_P(PathJourneyTest, ThroughAnArrayOnTwoDisks)
{
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              array
              disk@0
              disk@1)");
    registry_.plane("DxBlock", R"(
        Root
          Host
            disk@1
              array
            disk@0
              array
            spare)");
    open();
    travel({{QStringLiteral("DxService:/bus/array"), QStringLiteral("DxBlock:/disk@0/array"),
             QStringLiteral("DxBlock:/disk@1/array")},
            {0, 1},
            2,
            QStringLiteral("DxBlock:/spare")});
}

TEST_P(PathJourneyTest, ThroughAVolumeOfARecordedMachine)
{
    const QString folder = RecordedTrees::folder(QStringLiteral("d6-block-lvm"));
    if (folder.isNull())
        GTEST_SKIP() << qPrintable(RecordedTrees::missingMessage());
    QString error;
    const auto service = LinuxRegistryService::create(folder + QLatin1String("/sys"), &error);
    ASSERT_TRUE(service) << qPrintable(error);
    TavDocumentController documents(*service);
    documents.setWindowControllerFactory(
        [](TavDocument &document) { return std::make_unique<TavWindowController>(document); });
    controller_ = static_cast<TavWindowController *>(
        documents.newDocument().windowControllers().front().get());
    travel({{QStringLiteral("DxService:/virtual/block/dm-0"), QStringLiteral("DxBlock:/loop0/dm-0"),
             QStringLiteral("DxBlock:/loop1/dm-0"), QStringLiteral("DxBlock:/loop2/dm-0"),
             QStringLiteral("DxBlock:/loop3/dm-0"), QStringLiteral("DxClass:/block/dm-0")},
            {0, 1, 5},
            1,
            QStringLiteral("DxBlock:/loop1")});
}

INSTANTIATE_TEST_SUITE_P(Views, PathJourneyTest, testing::Bool(), [](const auto &its) {
    return std::string(its.param ? "Columns" : "Tree");
});
