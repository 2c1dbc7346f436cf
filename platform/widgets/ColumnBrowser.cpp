// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ColumnBrowser.h"

#include "platform/widgets/ColumnBrowserDelegate.h"
#include "platform/widgets/ColumnBrowserList.h"
#include "platform/widgets/ColumnResizer.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

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
    // Keeps the columns at the browser's place in the tab order, however late they are created.
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
                // A click beside the rows, or a Ctrl-click on the selected one.
                if (selected.isEmpty())
                    leaveColumn(number);
                else
                    chooseRow(selected.first().top(), number);
            });
    // The current row may be clicked to close the columns after it.
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
    // Removed columns may be painted once more before they are hidden.
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
    // A selected cell without a next column reports that itself.
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

// The cells hold colours chosen for the palette.
void ColumnBrowser::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        redisplay();
}

void ColumnBrowser::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
}

// The browser is one stop of the tab key, at the selection.
void ColumnBrowser::updateFocusPolicies()
{
    const int focused = std::max(0, selectedColumn());
    for (int number = 0; const Column *const shown = column(number); ++number)
        shown->list->setFocusPolicy(number == focused ? Qt::StrongFocus : Qt::ClickFocus);
    setFocusProxy(list(focused));
}
