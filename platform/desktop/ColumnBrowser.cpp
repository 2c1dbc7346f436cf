#include "platform/desktop/ColumnBrowser.h"

#include "platform/desktop/ColumnBrowserDelegate.h"
#include "platform/desktop/ColumnBrowserList.h"
#include "platform/desktop/ColumnResizer.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

ColumnBrowser::ColumnBrowser(QWidget *parent)
    : QScrollArea(parent)
    , makeCell_([] { return std::make_unique<ColumnBrowserCell>(); })
{
    setWidget(new QWidget);
    widget()->setBackgroundRole(QPalette::Base);
    viewport()->setBackgroundRole(QPalette::Base);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layoutTimer_.setSingleShot(true);
    layoutTimer_.setInterval(0);
    connect(&layoutTimer_, &QTimer::timeout, this, &ColumnBrowser::layOutColumns);
}

void ColumnBrowser::setColumnsAutosaveName(const QString &name)
{
    widths_.setAutosaveName(name);
    layoutTimer_.start();
}

const ColumnBrowser::Column *ColumnBrowser::column(int number) const
{
    return number >= 0 && number < columnCount_ ? &columns_[static_cast<std::size_t>(number)]
                                                : nullptr;
}

int ColumnBrowser::numberOfRows(int number) const
{
    const Column *const shown = column(number);
    return shown ? shown->model->rowCount() : 0;
}

QListView *ColumnBrowser::list(int number) const
{
    const Column *const shown = column(number);
    return shown ? shown->list : nullptr;
}

ColumnBrowserCell *ColumnBrowser::cell(int row, int number) const
{
    const Column *const shown = column(number);
    return shown ? shown->model->cell(row) : nullptr;
}

int ColumnBrowser::selectedRow(int number) const
{
    const Column *const shown = column(number);
    const QModelIndexList rows =
        shown ? shown->list->selectionModel()->selectedRows() : QModelIndexList();
    return rows.isEmpty() ? -1 : rows.first().row();
}

ColumnBrowserCell *ColumnBrowser::selectedCell(int number) const
{
    return cell(selectedRow(number), number);
}

int ColumnBrowser::selectedColumn() const
{
    int number = lastColumn();
    while (number >= 0 && selectedRow(number) < 0)
        --number;
    return number;
}

void ColumnBrowser::addColumn()
{
    const auto number = static_cast<int>(columns_.size());
    auto *const list = new ColumnBrowserList(widget());
    // The tab key is to find all columns where the browser is, however late they are made.
    setTabOrder(columns_.empty() ? static_cast<QWidget *>(this) : columns_.back().list, list);
    auto *const model =
        new ColumnBrowserModel(*list, makeCell_, [this, number](ColumnBrowserCell &cell, int row) {
            delegate_->willDisplayCell(*this, cell, row, number);
        });
    list->setModel(model);
    list->setAccessibleName(tr("Column %1").arg(number + 1));
    auto *const resizer = new ColumnResizer(widget());
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this, number](const QItemSelection &selected) {
                if (isChanging_)
                    return;
                // A click beside the rows, or on the selected one with the control key.
                if (selected.isEmpty())
                    leaveColumn(number);
                else
                    chooseRow(selected.first().top(), number);
            });
    // A row that is current already may be chosen in order to leave the columns after it.
    connect(list, &ColumnBrowserList::rowPressed, this, [this, number](int row) {
        if (selectedColumn() != number || selectedRow(number) != row)
            chooseRow(row, number);
    });
    connect(list, &ColumnBrowserList::wentBack, this, [this, number] { goBackFrom(number); });
    connect(list, &ColumnBrowserList::wentForward, this, [this, number] { goForwardFrom(number); });
    connect(list, &ColumnBrowserList::contextMenuRequested, this,
            [this, number](const QContextMenuEvent &event) { requestContextMenu(event, number); });
    connect(resizer, &ColumnResizer::draggedBy, this,
            [this, number](int pixels) { resizeColumn(number, widths_.of(number) + pixels); });
    connect(resizer, &ColumnResizer::dragEnded, this, [this] { widths_.save(); });
    connect(resizer, &ColumnResizer::doubleClicked, this, [this, number, list] {
        resizeColumn(number, list->widthOfContents());
        widths_.save();
    });
    columns_.push_back({list, model, resizer});
}

void ColumnBrowser::setColumnCount(int count)
{
    while (static_cast<int>(columns_.size()) < count)
        addColumn();
    // Those that are left may be painted once more before they are hidden.
    for (int number = count; const Column *const left = column(number); ++number)
        left->model->setRows(0);
    columnCount_ = count;
    layoutTimer_.start();
}

void ColumnBrowser::reloadColumn(int number)
{
    if (!delegate_ || number < 0 || number > columnCount_)
        return;
    const QScopedValueRollback changing(isChanging_, true);
    // A selected cell that has no more column says so itself.
    const ColumnBrowserCell *const parent = number > 0 ? selectedCell(number - 1) : nullptr;
    if (number > 0 && (!parent || parent->isLeaf)) {
        setColumnCount(std::min(columnCount_, number));
        return;
    }
    setColumnCount(number + 1);
    columns_[static_cast<std::size_t>(number)].model->setRows(
        std::max(0, delegate_->numberOfRowsInColumn(*this, number)));
}

void ColumnBrowser::clearSelection(int number)
{
    if (ColumnBrowserCell *const cell = selectedCell(number))
        cell->state = false;
    if (const Column *const shown = column(number))
        shown->list->selectionModel()->clear();
}

void ColumnBrowser::setCurrentRow(int row, int number)
{
    const Column *const shown = column(number);
    if (!shown || row < 0 || row >= shown->model->rowCount())
        return;
    const QScopedValueRollback changing(isChanging_, true);
    if (row != selectedRow(number))
        clearSelection(number);
    shown->list->selectionModel()->setCurrentIndex(shown->model->index(row),
                                                   QItemSelectionModel::ClearAndSelect);
}

void ColumnBrowser::selectRow(int row, int number)
{
    if (!cell(row, number))
        return;
    setCurrentRow(row, number);
    reloadColumn(number + 1);
    updateFocusPolicies();
}

void ColumnBrowser::chooseRow(int row, int number)
{
    if (!cell(row, number))
        return;
    column(number)->model->switchCellsOff();
    selectRow(row, number);
    cell(row, number)->state = true;
    if (QListView *const next = list(number + 1))
        next->scrollToTop();
    showColumns();
    Q_EMIT selectionChosen();
}

void ColumnBrowser::goBackFrom(int number)
{
    if (number > 0)
        leaveColumn(number);
}

void ColumnBrowser::leaveColumn(int number)
{
    {
        const QScopedValueRollback changing(isChanging_, true);
        column(number)->model->switchCellsOff();
        clearSelection(number);
        setColumnCount(number + 1);
    }
    updateFocusPolicies();
    list(std::max(0, number - 1))->setFocus(Qt::OtherFocusReason);
    showColumns();
    Q_EMIT selectionChosen();
}

void ColumnBrowser::goForwardFrom(int number)
{
    if (selectedRow(number) < 0 || numberOfRows(number + 1) == 0)
        return;
    list(number + 1)->setFocus(Qt::OtherFocusReason);
    chooseRow(0, number + 1);
}

void ColumnBrowser::requestContextMenu(const QContextMenuEvent &event, int number)
{
    const bool isByKey = event.reason() == QContextMenuEvent::Keyboard;
    if (isByKey)
        number = selectedColumn();
    const int row = isByKey ? selectedRow(number) : list(number)->indexAt(event.pos()).row();
    if (row < 0)
        return;
    if (selectedColumn() != number || selectedRow(number) != row)
        chooseRow(row, number);
    if (!isByKey) {
        Q_EMIT contextMenuRequested(event.globalPos());
        return;
    }
    scrollRowToVisible(row, number);
    const QListView &shown = *list(number);
    Q_EMIT contextMenuRequested(
        shown.viewport()->mapToGlobal(shown.visualRect(shown.currentIndex()).bottomLeft()));
}

void ColumnBrowser::redisplay()
{
    for (int number = 0; const Column *const shown = column(number); ++number)
        shown->model->redisplay();
}

void ColumnBrowser::resizeColumn(int number, int width)
{
    widths_.set(number, width);
    layOutColumns();
}

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

// What a column leaves is no way to scroll sideways.
void ColumnBrowser::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
}

// Where the selection was seen, it stays in sight.
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

// Before, there were no sizes to go by.
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

// The column that follows the selection, and before all that of the selection itself.
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
    // Of a column wider than the view, its beginning.
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

// The tab key stops once, where the selection is.
void ColumnBrowser::updateFocusPolicies()
{
    const int focused = std::max(0, selectedColumn());
    for (int number = 0; const Column *const shown = column(number); ++number)
        shown->list->setFocusPolicy(number == focused ? Qt::StrongFocus : Qt::ClickFocus);
    setFocusProxy(list(focused));
}
