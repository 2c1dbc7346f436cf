// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ColumnBrowserModel.h"

#include "platform/widgets/OutlineRowDelegate.h"
#include "platform/widgets/PlainToolTip.h"

#include <QWidget>

ColumnBrowserModel::ColumnBrowserModel(QWidget &controlView, Factory factory, Preparation prepare)
    : QAbstractListModel(&controlView)
    , controlView_(controlView)
    , makeCell_(std::move(factory))
    , prepare_(std::move(prepare))
{}

void ColumnBrowserModel::setRows(int count)
{
    beginResetModel();
    cells_.clear();
    cells_.resize(static_cast<std::size_t>(count));
    endResetModel();
}

void ColumnBrowserModel::redisplay()
{
    if (cells_.empty())
        return;
    for (const auto &cell : cells_) {
        if (cell)
            cell->isPrepared_ = false;
    }
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void ColumnBrowserModel::switchCellsOff()
{
    for (const auto &cell : cells_) {
        if (cell)
            cell->state = false;
    }
}

ColumnBrowserCell *ColumnBrowserModel::cell(int row) const
{
    if (row < 0 || row >= rowCount())
        return nullptr;
    auto &cell = cells_[static_cast<std::size_t>(row)];
    if (!cell) {
        cell = makeCell_();
        cell->controlView_ = &controlView_;
    }
    if (!std::exchange(cell->isPrepared_, true))
        prepare_(*cell, row);
    return cell.get();
}

int ColumnBrowserModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(cells_.size());
}

QVariant ColumnBrowserModel::data(const QModelIndex &index, int role) const
{
    const ColumnBrowserCell *const shown = cell(index.row());
    if (!shown)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return shown->text;
    case Qt::ToolTipRole:
        return plainToolTip(shown->toolTip);
    case Qt::FontRole:
        return shown->font;
    case Qt::ForegroundRole:
        return shown->color;
    case Qt::DecorationRole:
        return shown->mark;
    case OutlineRowDelegate::DetailRole:
        return shown->detail.isNull() ? QVariant() : shown->detail;
    case Qt::AccessibleDescriptionRole:
        return shown->accessibleDescription;
    case Qt::AccessibleTextRole:
        return shown->accessibleText.isNull() ? shown->text : shown->accessibleText;
    default:
        return {};
    }
}
