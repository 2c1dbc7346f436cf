// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QSet>
#include <memory>

class DocumentActivity;
class DocumentFindings;
class EventLogDock;
class FindingsDock;
class PlotsDock;
class QDockWidget;
class QMainWindow;
class TavDataStore;

// The log, the plots and the findings at the bottom of a window, made when they are first shown.
class WindowDocks : public QObject
{
    Q_OBJECT
public:
    // The window owns the docks.
    WindowDocks(QMainWindow &window, DocumentActivity &activity, DocumentFindings &findings,
                std::shared_ptr<TavDataStore> store);

    bool showsLog() const;
    void toggleLog();
    EventLogDock *log() const { return log_; } // null: never shown
    bool showsPlots() const;
    void togglePlots();
    void showPlots();
    PlotsDock *plots() const { return plots_; } // null: never shown
    bool showsFindings() const;
    void toggleFindings();
    void updatePause(); // the store may have been paused

Q_SIGNALS:
    void entryChosen(quint64 tag);
    void propertyChosen(quint64 tag, const QString &keyPath);
    void visibilityChanged();

private:
    bool isSeen(const QDockWidget *dock) const;
    void add(QDockWidget &dock);
    static void bringUp(QDockWidget &dock);

    QMainWindow &window_;
    DocumentActivity &activity_;
    DocumentFindings &documentFindings_;
    std::shared_ptr<TavDataStore> store_;
    EventLogDock *log_ = nullptr;
    PlotsDock *plots_ = nullptr;
    FindingsDock *findings_ = nullptr;
    QSet<const QDockWidget *> covered_; // by another one
};
