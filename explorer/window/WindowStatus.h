// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class IncompleteBar;
class QLabel;
class QMainWindow;
class QToolButton;
class TavDataStore;

// The state of the registry that a window shows: the status bar, and the bar above the views where
// devices did not answer.
class WindowStatus : public QObject
{
    Q_OBJECT
public:
    explicit WindowStatus(QMainWindow &window); // which owns the widgets

    void updateStatusBar(const TavDataStore &dataStore);
    void reportPathNotFound(const QString &message); // for a while
    void reportFollowingStopped(const QString &attribute);
    void reportPathFound(bool isAmbiguous);
    void showFindings(std::size_t errors, std::size_t warnings, std::size_t notes);

Q_SIGNALS:
    void tryAgainRequested();
    void findingsRequested();

private:
    QMainWindow &window_;
    IncompleteBar *incompleteBar_;
    QToolButton *findingsButton_;
    QLabel *systemStatusField1_;
    QLabel *systemStatusField2_;
    QLabel *systemStatusField3_;
};
