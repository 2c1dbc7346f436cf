// SPDX-License-Identifier: Apache-2.0
// Positions and scrolling of ColumnBrowser's columns.
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/ColumnBrowserList.h"
#include "platform/widgets/ColumnResizer.h"

#include <QResizeEvent>
#include <QScrollBar>

QRect ColumnBrowser::columnRect(int number) const
{
    const Column *const shown = column(number);
    return shown ? shown->list->geometry() | shown->resizer->geometry() : QRect();
}

void ColumnBrowser::layOutColumns()
{
    layoutTimer_.stop();
    updateFocusPolicies();
    for (std::size_t i = static_cast<std::size_t>(columnCount_); i < columns_.size(); ++i) {
        if (columns_[i].list->hasFocus() && columnCount_ > 0)
            list(std::max(0, selectedColumn()))->setFocus(Qt::OtherFocusReason);
        columns_[i].list->hide();
        columns_[i].resizer->hide();
    }
    int total = 0;
    for (int number = 0; number < columnCount_; ++number)
        total += widths_.of(number) + ColumnResizer::thickness;
    widget()->resize(std::max(total, viewport()->width()), viewport()->height());
    int x = 0;
    const auto place = [&](QWidget &part, int width) {
        part.setGeometry(QStyle::visualRect(layoutDirection(), widget()->rect(),
                                            QRect(x, 0, width, viewport()->height())));
        part.show();
        x += width;
    };
    for (int number = 0; const Column *const shown = column(number); ++number) {
        place(*shown->list, widths_.of(number));
        place(*shown->resizer, ColumnResizer::thickness);
    }
}

// A visible selection stays visible.
void ColumnBrowser::resizeEvent(QResizeEvent *event)
{
    const int selected = selectedColumn();
    const QRect seen(horizontalScrollBar()->value(), 0, event->oldSize().width(), 1);
    const QRect rect = columnRect(selected);
    const bool wasSeen = rect.left() >= seen.left() && rect.right() <= seen.right();
    QScrollArea::resizeEvent(event);
    layOutColumns();
    if (wasSeen)
        scrollColumnToVisible(selected);
}

// Without sizes, columns could not be placed earlier.
void ColumnBrowser::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    if (!std::exchange(scrollsOnShow_, false))
        return;
    layOutColumns();
    for (int number = 0; column(number); ++number)
        scrollRowToVisible(selectedRow(number), number);
    showColumns();
}

// Makes the column after the selection visible, but the selection's own column first.
void ColumnBrowser::showColumns()
{
    const int selected = std::max(0, selectedColumn());
    scrollColumnToVisible(lastColumn());
    scrollColumnToVisible(selected);
}

void ColumnBrowser::scrollColumnToVisible(int number)
{
    if (!column(number))
        return;
    layOutColumns();
    const QRect rect = columnRect(number);
    QScrollBar &bar = *horizontalScrollBar();
    const int x = bar.value();
    const int width = viewport()->width();
    // For a column wider than the view, its start.
    if (rect.right() > x + width - 1)
        bar.setValue(rect.right() - width + 1);
    if (rect.left() < bar.value())
        bar.setValue(rect.left());
}

void ColumnBrowser::scrollRowToVisible(int row, int number)
{
    const Column *const shown = column(number);
    if (!shown || row < 0 || row >= shown->model->rowCount())
        return;
    scrollsOnShow_ = !isVisible();
    layOutColumns();
    const QModelIndex index = shown->model->index(row);
    const bool isSeen =
        shown->list->viewport()->rect().contains(shown->list->visualRect(index).center());
    shown->list->scrollTo(index, isSeen ? QListView::EnsureVisible : QListView::PositionAtCenter);
}

ColumnBrowser::Scrolling ColumnBrowser::scrolling() const
{
    Scrolling scrolling;
    scrolling.x = horizontalScrollBar()->value();
    for (int number = 0; const Column *const shown = column(number); ++number) {
        Scrolling::Column &saved = scrolling.columns.emplace_back(
            Scrolling::Column{shown->list->verticalScrollBar()->value(), std::nullopt});
        const QRect row = shown->list->visualRect(shown->list->currentIndex());
        if (selectedRow(number) >= 0 && row.intersects(shown->list->viewport()->rect()))
            saved.selectionTop = row.top();
    }
    return scrolling;
}

void ColumnBrowser::setScrolling(const Scrolling &scrolling)
{
    layOutColumns();
    for (std::size_t i = 0; i < scrolling.columns.size(); ++i) {
        const Column *const shown = column(static_cast<int>(i));
        if (!shown)
            break;
        const Scrolling::Column &saved = scrolling.columns[i];
        QScrollBar &bar = *shown->list->verticalScrollBar();
        shown->list->doItemsLayout();
        bar.setValue(saved.value);
        if (saved.selectionTop && selectedRow(static_cast<int>(i)) >= 0)
            bar.setValue(bar.value() + shown->list->visualRect(shown->list->currentIndex()).top() -
                         *saved.selectionTop);
    }
    horizontalScrollBar()->setValue(scrolling.x);
}
