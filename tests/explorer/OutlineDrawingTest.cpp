#include "ExplorerFixture.h"
#include "display/EntryColors.h"
#include "explorer/OutlineConnectors.h"
#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavRegistryOutlineView.h"
#include "explorer/TavRegistryOutlineViewDataSource.h"
#include "platform/desktop/Theme.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeText.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QPainter>
#include <QTest>
#include <QWidget>

namespace {
class OutlineDrawingTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        registry_.plane("DxService", R"(
            Root
              Host
                bus
                  a
                  b
                  shared
                port
                  inner
                  shared
                tail)");
        open();
        view_ = outlet<TavRegistryOutlineView>("registryOutlineView");
    }
    void select(std::initializer_list<const char *> labels)
    {
        controller_->goToEntryPath(path(labels), true, true);
    }
    QRect row(std::initializer_list<const char *> labels) const
    {
        const auto items = view_->itemsForEntryPath(path(labels));
        const auto *const model =
            qobject_cast<const TavRegistryOutlineViewDataSource *>(view_->model());
        QRect row = view_->visualRect(model->indexOf(*items.back()));
        row.setLeft(0);
        row.setRight(view_->viewport()->width() - 1);
        return row;
    }
    // Each row's connectors, from left to right with their places.
    std::string connectors()
    {
        std::string text;
        for (QModelIndex index = view_->model()->index(0, 0); index.isValid();
             index = view_->indexBelow(index)) {
            TavRegistryOutlineItem &item = *TavRegistryOutlineViewDataSource::item(index);
            auto list = outlineConnectors(item, view_->indentation());
            std::reverse(list.begin(), list.end());
            text += item.name().toStdString() + ':';
            for (const OutlineConnector &connector : list) {
                const QString name = OutlineImages::nameOf(connector.image, false);
                text += ' ' + name.mid(QStringLiteral("Outline").size()).toStdString() + ' ' +
                        std::to_string(connector.x);
            }
            text += '\n';
        }
        return text;
    }
    // What the view paints in a rectangle, apart from colours' fringes.
    QImage painted(const QRect &place) const { return view_->viewport()->grab(place).toImage(); }

    TavRegistryOutlineView *view_ = nullptr;
};

bool hasColor(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).rgb() == color.rgb())
                return true;
        }
    }
    return false;
}

QImage picture(OutlineImages &images, OutlineImages::Image which, int height, qreal scale)
{
    QImage image((QSizeF(OutlineImages::width, height) * scale).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    images.draw(painter, which, QRect(0, 0, OutlineImages::width, height));
    return image;
}
} // namespace

TEST_F(OutlineDrawingTest, ConnectorsLeadToEachRow)
{
    select({"Root", "Host", "port", "inner"});
    EXPECT_EQ(view_->indentation(), 18);
    EXPECT_EQ(connectors(), dedented(R"(
        Root:
        Host: SelectionPath-L 4
        bus: SelectionPath-TDown 22
        a: SelectionPath-I 22 -T 40 -Leaf 58
        b: SelectionPath-I 22 -T 40 -Leaf 58
        shared: SelectionPath-I 22 -L 40 -Leaf 58
        port: SelectionPath-TRight 22
        inner: -I 22 SelectionPath-TRight 40 SelectionPath-Leaf 58
        shared: -I 22 -L 40 -Leaf 58
        tail: -L 22 -Leaf 40
        )"));
    controller_->goToEntryPath(std::nullopt, false, false);
    EXPECT_EQ(connectors().find("SelectionPath"), std::string::npos);
}

TEST_F(OutlineDrawingTest, PaintsThePathInTheAccentColour)
{
    const QColor accent(0x2f, 0x6f, 0xb8);
    const auto left = [this](std::initializer_list<const char *> labels) {
        return painted(row(labels).intersected(QRect(0, 0, 54, view_->viewport()->height())));
    };
    select({"Root", "Host", "bus", "b"});
    EXPECT_TRUE(hasColor(left({"Root", "Host", "bus"}), accent));
    EXPECT_FALSE(hasColor(left({"Root", "Host", "port"}), accent));
    select({"Root", "Host", "port", "inner"}); // rows of unselected nodes are painted anew, too
    EXPECT_TRUE(hasColor(left({"Root", "Host", "port"}), accent));
    EXPECT_TRUE(hasColor(left({"Root", "Host", "bus"}), accent)); // passing by
}

TEST_F(OutlineDrawingTest, FramesOtherRowsOfTheSelectedEntry)
{
    const QColor active = view_->palette().color(QPalette::Active, QPalette::Highlight);
    view_->setSameEntryHighlightColor(Qt::magenta);
    select({"Root", "Host", "bus", "shared"});
    const QRect framed = row({"Root", "Host", "port", "shared"});
    const auto corner = [&](const QPoint &inner) { return painted(framed).pixelColor(inner); };
    EXPECT_EQ(corner({200, 0}), QColor(Qt::magenta));
    EXPECT_EQ(corner({200, 1}), QColor(Qt::magenta));
    EXPECT_NE(corner({200, 2}), QColor(Qt::magenta));
    EXPECT_EQ(corner({framed.width() - 1, framed.height() / 2}), QColor(Qt::magenta));
    EXPECT_FALSE(hasColor(painted(row({"Root", "Host", "bus", "shared"})), Qt::magenta));
    EXPECT_FALSE(hasColor(painted(row({"Root", "Host", "port", "inner"})), Qt::magenta));

    outlet<QComboBox>("planeListButton")->setFocus();
    const QColor inactive = view_->palette().color(QPalette::Inactive, QPalette::Highlight);
    EXPECT_EQ(corner({200, 0}).rgb(), inactive.rgb());
    view_->setFocus();
    EXPECT_EQ(corner({200, 0}).rgb(), active.rgb());
    select({"Root", "Host", "bus", "a"});
    EXPECT_FALSE(hasColor(painted(framed), active));
}

TEST_F(OutlineDrawingTest, FramesFollowTheActivityOfTheWindow)
{
    QPalette palette = view_->palette();
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::magenta);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::cyan);
    view_->setPalette(palette);
    view_->setFocus();
    select({"Root", "Host", "bus", "shared"});
    const auto frame = [this] {
        return painted(row({"Root", "Host", "port", "shared"})).pixelColor(200, 0);
    };
    EXPECT_EQ(frame(), QColor(Qt::magenta));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(frame(), QColor(Qt::cyan));
    controller_->window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(controller_->window()));
    EXPECT_EQ(frame(), QColor(Qt::magenta));
    outlet<QComboBox>("planeListButton")->setFocus();
    other.activateWindow();
    controller_->window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(controller_->window()));
    EXPECT_EQ(frame(), QColor(Qt::cyan));
}

TEST_F(OutlineDrawingTest, ColoursOfWhatCameAndWent)
{
    const struct
    {
        QColor color;
        int hue, saturation, brightness; // in percent
    } rows[] = {
        {EntryColors::colorForTerminatedItem(), 0, 100, 100},
        {EntryColors::colorForParentOfTerminatedItem(), 0, 67, 100},
        {EntryColors::colorForNonmatchingTerminatedItem(), 0, 33, 100},
        {EntryColors::colorForNewItem(), 33, 100, 67},
        {EntryColors::colorForParentOfNewItem(), 33, 50, 80},
        {EntryColors::colorForNonmatchingNewItem(), 33, 33, 90},
    };
    for (const auto &row : rows) {
        const auto name = row.color.name().toStdString();
        EXPECT_NEAR(row.color.hsvHueF(), row.hue / 100.0, 0.003) << name;
        EXPECT_NEAR(row.color.hsvSaturationF(), row.saturation / 100.0, 0.003) << name;
        EXPECT_NEAR(row.color.valueF(), row.brightness / 100.0, 0.003) << name;
        EXPECT_EQ(row.color.alpha(), 255) << name;
    }
}

// The plain pictures serve both appearances. What was loaded first stays.
TEST_F(OutlineDrawingTest, PathPicturesHaveDarkForms)
{
    OutlineImages light(false);
    OutlineImages dark(true);
    const auto isSame = [&](OutlineImages::Image which) {
        return picture(light, which, 20, 1) == picture(dark, which, 20, 1);
    };
    EXPECT_TRUE(isSame(OutlineImages::I) && isSame(OutlineImages::L) && isSame(OutlineImages::T) &&
                isSame(OutlineImages::Leaf));
    EXPECT_FALSE(isSame(OutlineImages::SelectionPathI) || isSame(OutlineImages::SelectionPathL) ||
                 isSame(OutlineImages::SelectionPathTDown) ||
                 isSame(OutlineImages::SelectionPathTRight) ||
                 isSame(OutlineImages::SelectionPathLeaf));
    EXPECT_EQ(OutlineImages::nameOf(OutlineImages::SelectionPathTDown, true),
              QStringLiteral("OutlineSelectionPath-TDown-Dark"));

    const QPalette before = QGuiApplication::palette();
    const QImage loaded = picture(OutlineImages::shared(), OutlineImages::SelectionPathI, 20, 1);
    QGuiApplication::setPalette(QPalette(QColor(40, 40, 40)));
    EXPECT_EQ(picture(OutlineImages::shared(), OutlineImages::SelectionPathI, 20, 1), loaded);
    QGuiApplication::setPalette(before);
}

// Lines meet from row to row whatever their height, in whole pixels.
TEST_F(OutlineDrawingTest, PicturesFillRowsOfAnyHeightCrisply)
{
    OutlineImages images(false);
    for (const qreal scale : {1.0, 2.0}) {
        for (const int height : {16, 21, 24, 60}) {
            const QImage line = picture(images, OutlineImages::I, height, scale);
            int solid = 0;
            for (int y = 0; y < line.height(); ++y) {
                for (int x = 0; x < line.width(); ++x) {
                    const int alpha = line.pixelColor(x, y).alpha();
                    EXPECT_TRUE(alpha == 0 || alpha == 255) << height << " at " << scale;
                    solid += alpha == 255;
                }
            }
            EXPECT_EQ(solid, line.height() * static_cast<int>(scale));
        }
    }
}
