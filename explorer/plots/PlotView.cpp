// SPDX-License-Identifier: Apache-2.0
#include "explorer/plots/PlotView.h"

#include "platform/host/BootClock.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>
#include <cmath>

namespace {
constexpr double zoomStep = 1.25; // of a key or a notch of the wheel
constexpr int moveParts = 10;     // of the span, for a key
} // namespace

PlotView::PlotView(const Plots &plots, QWidget *parent)
    : QWidget(parent)
    , plots_(plots)
{
    setObjectName(QStringLiteral("plotView"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName(tr("Plots"));
    setAccessibleDescription(tr("Plus and minus zoom, the arrow keys move, End goes back to now."));
    connect(&plots, &Plots::changed, this, qOverload<>(&QWidget::update));
    connect(&plots, &Plots::sampled, this, [this] {
        if (!pausedAt_)
            update();
    });
}

qint64 PlotView::now() const
{
    return pausedAt_.value_or(BootClock::now());
}

qint64 PlotView::until() const
{
    return end_.value_or(now());
}

void PlotView::setSpan(qint64 span)
{
    span_ = std::clamp(span, shortestSpan, longestSpan);
    update();
    Q_EMIT rangeChanged();
}

void PlotView::setPaused(bool paused)
{
    if (paused == pausedAt_.has_value())
        return;
    pausedAt_ = paused ? std::optional(BootClock::now()) : std::nullopt;
    update();
    Q_EMIT rangeChanged();
}

void PlotView::goToNow()
{
    end_.reset();
    update();
    Q_EMIT rangeChanged();
}

void PlotView::setUntil(qint64 until)
{
    qint64 first = now();
    for (const auto &line : plots_.lines()) {
        if (!line->series.isEmpty())
            first = std::min(first, line->series.firstTime());
    }
    end_ = std::clamp(until, std::min(first + span_, now()), now());
    if (*end_ == now())
        end_.reset();
    update();
    Q_EMIT rangeChanged();
}

// The time keeps its place in the view.
void PlotView::zoom(double factor, qint64 fixedTime)
{
    const qint64 end = until();
    const double share =
        static_cast<double>(end - fixedTime) / static_cast<double>(std::max<qint64>(1, span_));
    const auto wanted = static_cast<qint64>(static_cast<double>(span_) * factor);
    span_ = std::clamp(wanted, shortestSpan, longestSpan);
    if (end_ || end != fixedTime)
        setUntil(fixedTime + static_cast<qint64>(share * static_cast<double>(span_)));
    update();
    Q_EMIT rangeChanged();
}

PlotPainter PlotView::painterFor(const QRect &area) const
{
    return {plots_.lines(), from(), until(), {palette(), font()}, area};
}

void PlotView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    if (plots_.lines().empty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(8, 8, -8, -8),
                         static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap,
                         tr("Nothing is plotted.\nChoose Plot in the context menu of a number."));
    } else {
        const PlotPainter plot = painterFor(rect());
        plot.paint(painter);
        if (cursor_ && !drag_)
            plot.paintCursor(painter, plot.timeAt(*cursor_));
    }
    if (!hasFocus())
        return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void PlotView::wheelEvent(QWheelEvent *event)
{
    constexpr double notch = 120;
    const QPoint turn = event->angleDelta();
    const bool isSideways = std::abs(turn.x()) > std::abs(turn.y());
    if (isSideways)
        setUntil(until() -
                 static_cast<qint64>(turn.x() / notch * static_cast<double>(span_)) / moveParts);
    else
        zoom(std::pow(zoomStep, -turn.y() / notch),
             // At now, as long as it follows that.
             end_ ? painterFor(rect()).timeAt(qRound(event->position().x())) : until());
    event->accept();
}

void PlotView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        drag_ = {qRound(event->position().x()), until()};
}

void PlotView::mouseMoveEvent(QMouseEvent *event)
{
    const int x = qRound(event->position().x());
    const QRect plot = painterFor(rect()).plot();
    if (drag_ && event->buttons() & Qt::LeftButton) {
        const double share = static_cast<double>(x - drag_->first) / std::max(1, plot.width());
        if (x != drag_->first)
            setUntil(drag_->second - static_cast<qint64>(share * static_cast<double>(span_)));
    }
    cursor_ = plot.contains(event->position().toPoint()) ? std::optional(x) : std::nullopt;
    update();
}

void PlotView::mouseReleaseEvent(QMouseEvent *)
{
    drag_.reset();
    update();
}

void PlotView::mouseDoubleClickEvent(QMouseEvent *)
{
    goToNow();
}

void PlotView::leaveEvent(QEvent *)
{
    cursor_.reset();
    update();
}

void PlotView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoom(1 / zoomStep, until());
    case Qt::Key_Minus:
        return zoom(zoomStep, until());
    case Qt::Key_Left:
        return setUntil(until() - span_ / moveParts);
    case Qt::Key_Right:
        return setUntil(until() + span_ / moveParts);
    case Qt::Key_Home:
        return setUntil(0);
    case Qt::Key_End:
        return goToNow();
    default:
        QWidget::keyPressEvent(event);
    }
}
