// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/plots/PlotPainter.h"

#include <QWidget>

// Shows plotted lines over a stretch of time that ends now or at a time that was chosen. The wheel
// and the keys + and - zoom, dragging and the arrow keys move it, End goes back to now.
class PlotView : public QWidget
{
    Q_OBJECT
public:
    static constexpr qint64 shortestSpan = 5LL * 1'000'000; // microseconds
    static constexpr qint64 longestSpan = PlotSeries::longest;
    static constexpr qint64 firstSpan = 10LL * 60 * 1'000'000;

    explicit PlotView(const Plots &plots, QWidget *parent = nullptr);

    qint64 span() const { return span_; }
    void setSpan(qint64 span);
    void setPaused(bool paused); // now stands still
    bool followsNow() const { return !end_; }
    void goToNow();
    qint64 from() const { return until() - span_; }
    qint64 until() const;

    QSize sizeHint() const override { return {480, 200}; }
    QSize minimumSizeHint() const override { return {200, 80}; }

Q_SIGNALS:
    void rangeChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    PlotPainter painterFor(const QRect &area) const;
    void zoom(double factor, qint64 fixedTime);
    void setUntil(qint64 until);
    qint64 now() const;

    const Plots &plots_;
    qint64 span_ = firstSpan;
    std::optional<qint64> end_;                  // none: now
    std::optional<qint64> pausedAt_;             // none: not paused
    std::optional<int> cursor_;                  // of the pointer
    std::optional<std::pair<int, qint64>> drag_; // where it began, and the end of the range then
};
