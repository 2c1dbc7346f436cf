// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "explorer/tree/OutlineConnectors.h"
#include "explorer/tree/TavRegistryOutlineItem.h"

#include <QComboBox>
#include <QPainter>
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
        view_ = &tree();
    }
    QRect rectOf(Labels labels) const // as wide as the view
    {
        QRect rect = view_->visualRect(row(labels));
        rect.setLeft(0);
        rect.setRight(view_->viewport()->width() - 1);
        return rect;
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
    QImage painted(const QRect &place) const { return view_->viewport()->grab(place).toImage(); }

    TavRegistryOutlineView *view_ = nullptr;
};

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
    const std::string expected = dedented(R"(
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
        )");
    EXPECT_EQ(connectors(), expected);
    select({"Root", "Host", "bus", "a"});
    EXPECT_NE(connectors(), expected);
    select({"Root", "Host", "port", "inner"});
    update();
    EXPECT_EQ(connectors(), expected);
    selectNothing();
    EXPECT_EQ(connectors().find("SelectionPath"), std::string::npos);
}

TEST_F(OutlineDrawingTest, FramesOtherRowsOfTheSelectedEntryAsTheFocusIs)
{
    QPalette palette = view_->palette();
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::magenta);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::cyan);
    view_->setPalette(palette);
    view_->setFocus();
    select({"Root", "Host", "bus", "shared"});
    const QRect framed = rectOf({"Root", "Host", "port", "shared"});
    const auto frame = [&](int y = 0) { return painted(framed).pixelColor(200, y); };
    EXPECT_EQ(frame(), QColor(Qt::magenta));
    EXPECT_NE(frame(2), QColor(Qt::magenta));
    EXPECT_NE(painted(rectOf({"Root", "Host", "port", "inner"})).pixelColor(200, 0), frame());
    QWidget other;
    other.show();
    ASSERT_TRUE(activate(other));
    EXPECT_EQ(frame(), QColor(Qt::cyan));
    ASSERT_TRUE(activate(window()));
    EXPECT_EQ(frame(), QColor(Qt::magenta));
    outlet<QComboBox>("planeListButton")->setFocus();
    EXPECT_EQ(frame(), QColor(Qt::cyan));
    ASSERT_TRUE(activate(other) && activate(window()));
    EXPECT_EQ(frame(), QColor(Qt::cyan));
    view_->setFocus();
    EXPECT_EQ(frame(), QColor(Qt::magenta));
    select({"Root", "Host", "bus", "a"});
    EXPECT_NE(frame(), QColor(Qt::magenta));
}

// Lines meet from row to row at any row height, in whole pixels.
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
