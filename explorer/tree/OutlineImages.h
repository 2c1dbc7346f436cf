// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>
#include <array>

class QPainter;
class QRect;

// The pictures of an entry tree's connector lines. The lines are longer than the picture, so that
// they meet in rows of any height without being stretched.
class OutlineImages
{
public:
    enum Image {
        I,
        L,
        T,
        Leaf,
        SelectionPathI,
        SelectionPathL,
        SelectionPathTDown,
        SelectionPathTRight,
        SelectionPathLeaf,
    };
    static constexpr std::size_t count = SelectionPathLeaf + 1;
    static constexpr int width = 18; // of each, as wide as one indentation

    // Shared by all views; one set for each of the light and the dark appearance.
    static OutlineImages &shared();

    explicit OutlineImages(bool isDark);

    static QString nameOf(Image image, bool isDark);
    void draw(QPainter &painter, Image image, const QRect &place);

private:
    QImage render(Image image, const QSize &size, qreal scale) const;

    std::array<QByteArray, count> pictures_;
    struct Rendering
    {
        QSize size;
        qreal scale = 0;
        QImage image;
    };
    std::array<Rendering, count> renderings_; // the last one of each
};
