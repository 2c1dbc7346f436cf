// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/Plots.h"

#include <QDockWidget>

class PlotTable;
class PlotView;
class QComboBox;
class QSplitter;
class QToolButton;

// The plots at the bottom of a window.
class PlotsDock : public QDockWidget
{
    Q_OBJECT
public:
    PlotsDock(Plots &plots, QWidget *parent);

    // Of the whole window, beside the dock's own.
    void setPaused(bool paused);

Q_SIGNALS:
    void entryChosen(quint64 tag);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeBar();
    void updatePause();
    void showRange();
    void chooseSpan(int index);
    void saveAs();
    void save(const QString &file);
    bool write(const QString &file, QIODevice &device) const;

    Plots &plots_;
    PlotView *view_;
    PlotTable *table_;
    QSplitter *splitter_;
    QToolButton *pause_;
    QToolButton *toNow_;
    QComboBox *spans_;
    bool isWindowPaused_ = false;
};
