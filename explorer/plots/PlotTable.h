// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/Plots.h"

#include <QTableWidget>

// The plotted lines with their amounts in the stretch of time that is shown.
class PlotTable : public QTableWidget
{
    Q_OBJECT
public:
    explicit PlotTable(Plots &plots, QWidget *parent = nullptr);

    void setRange(qint64 from, qint64 until);

Q_SIGNALS:
    void entryChosen(quint64 tag);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    enum Column {
        ValueColumn,
        RateColumn,
        LastColumn,
        MinColumn,
        MeanColumn,
        MaxColumn,
        PathColumn
    };

    void makeRows();
    void showAmounts(int row, const PlotLine &line);
    void setCell(int row, int column, const QString &text);
    static QString stateText(PlotLine::State state); // null: none
    QIcon swatch(const PlotLine &line) const;
    void showMenu(const QPoint &place);
    void copyRow(int row);

    Plots &plots_;
    qint64 from_ = 0;
    qint64 until_ = 0;
};
