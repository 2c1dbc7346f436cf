// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QSet>
#include <memory>

class DocumentActivity;
class EventLogDock;
class PlotsDock;
class QDockWidget;
class QMainWindow;
class TavDataStore;

// The log and the plots at the bottom of a window, made when they are first shown.
class WindowDocks : public QObject
{
    Q_OBJECT
public:
    // The window owns the docks.
    WindowDocks(QMainWindow &window, DocumentActivity &activity,
                std::shared_ptr<TavDataStore> store);

    bool showsLog() const;
    void toggleLog();
    EventLogDock *log() const { return log_; } // null: never shown
    bool showsPlots() const;
    void togglePlots();
    void showPlots();
    PlotsDock *plots() const { return plots_; } // null: never shown
    void updatePause();                         // the store may have been paused

Q_SIGNALS:
    void entryChosen(quint64 tag);
    void visibilityChanged();

private:
    bool isSeen(const QDockWidget *dock) const;
    void add(QDockWidget &dock, QDockWidget *other); // null: there is no other
    static void bringUp(QDockWidget &dock);

    QMainWindow &window_;
    DocumentActivity &activity_;
    std::shared_ptr<TavDataStore> store_;
    EventLogDock *log_ = nullptr;
    PlotsDock *plots_ = nullptr;
    QSet<const QDockWidget *> covered_; // by the other one
};
