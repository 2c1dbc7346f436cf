// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/widgets/ColumnBrowserCell.h"

#include <QAbstractListModel>
#include <functional>
#include <memory>
#include <vector>

// The cells of one column, created on demand.
class ColumnBrowserModel : public QAbstractListModel
{
    Q_OBJECT
public:
    using Factory = std::function<std::unique_ptr<ColumnBrowserCell>()>;
    using Preparation = std::function<void(ColumnBrowserCell &cell, int row)>;

    ColumnBrowserModel(QWidget &controlView, Factory factory, Preparation prepare);

    void setRows(int count); // drops all cells
    void redisplay();        // prepares them again
    void switchCellsOff();
    ColumnBrowserCell *cell(int row) const; // prepared; null: no such row

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QWidget &controlView_;
    Factory makeCell_;
    Preparation prepare_;
    mutable std::vector<std::unique_ptr<ColumnBrowserCell>> cells_;
};
