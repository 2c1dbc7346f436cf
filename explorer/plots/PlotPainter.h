// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/Plots.h"
#include "display/activity/PlotUnit.h"

#include <QFontMetrics>
#include <QPalette>
#include <QRect>

class QPainter;

// Draws plotted lines between two times, one strip above the other for each unit.
class PlotPainter
{
public:
    struct Style
    {
        QPalette palette;
        QFont font;
    };
    PlotPainter(const Plots::Lines &lines, qint64 from, qint64 until, Style style, QRect area);

    void paint(QPainter &painter) const;
    // The values at a time, beside a line there.
    void paintCursor(QPainter &painter, qint64 time) const;
    // The names of the lines with their amounts, one below the other.
    void paintLegend(QPainter &painter, QRect area) const;
    int legendLineHeight() const { return metrics_.height() + 4; }

    QRect plot() const; // of all strips; null: there are no lines
    qint64 timeAt(int x) const;
    static QColor color(const PlotLine &line, const QPalette &palette);

private:
    struct Strip
    {
        PlotUnit unit;
        std::vector<const PlotLine *> lines;
        double least = 0;
        double greatest = 1;
        double step = 1; // between marks
        QRect rect = {};

        double y(double amount) const;
    };

    void makeStrips(const Plots::Lines &lines);
    void placeStrips();
    void setRange(Strip &strip) const;
    double x(qint64 time) const;
    void paintTimes(QPainter &painter) const;
    void paintMarks(QPainter &painter, const Strip &strip) const;
    void paintLine(QPainter &painter, const Strip &strip, const PlotLine &line) const;
    QStringList cursorTexts(qint64 time) const;
    QColor faint() const;

    qint64 from_;
    qint64 until_;
    Style style_;
    QFontMetrics metrics_;
    QRect area_;
    std::vector<Strip> strips_;
};
