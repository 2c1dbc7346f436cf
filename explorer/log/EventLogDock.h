// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/activity/LogExport.h"

#include <QDockWidget>
#include <memory>

class EventLogModel;
class FieldNote;
class QLabel;
class QTableView;
class QToolButton;
class SearchField;
class TavDataStore;

// The log of events at the bottom of a window.
class EventLogDock : public QDockWidget
{
    Q_OBJECT
public:
    EventLogDock(EventLog &log, std::shared_ptr<TavDataStore> store, QWidget *parent);
    ~EventLogDock() override;

    // Of the whole window, beside the log's own.
    void setPaused(bool paused);
    EventLogModel &model() { return *model_; }

Q_SIGNALS:
    void entryChosen(quint64 tag); // 0: of an entry that is not known

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    using Format = LogExport::Format;

    QWidget *makeBar(const std::shared_ptr<TavDataStore> &store);
    void setUpTable();
    void showMenu(const QPoint &place);
    void applyFilter();
    void updatePause();
    void showCounts();
    void choose(const QModelIndex &index);
    std::vector<quint64> selectedNumbers() const; // rising
    std::vector<quint64> numbersToSave() const;
    void copyRows();
    void copyPath();
    void clear();
    void saveAs();
    void save(const QString &file, const std::vector<quint64> &numbers);

    EventLog &log_;
    std::unique_ptr<EventLogModel> model_;
    QTableView *table_;
    SearchField *filterField_;
    FieldNote *note_;
    QToolButton *pause_;
    QLabel *counts_;
    bool isWindowPaused_ = false;
    bool isAtEnd_ = true;
};
