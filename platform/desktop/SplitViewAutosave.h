// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QTimer>

class QSplitter;

// Stores the positions of a split view's dividers in the preferences, under one name for each
// arrangement.
class SplitViewAutosave : public QObject
{
    Q_OBJECT
public:
    explicit SplitViewAutosave(QSplitter &splitView); // must outlive this
    ~SplitViewAutosave() override;

    // Saves under the current name, then restores what was saved under the new one. False when
    // there is nothing valid to restore.
    bool arrange(Qt::Orientation panes, const QString &name);

private:
    void save();
    bool restore();

    QSplitter &splitView_;
    QString name_;
    QTimer saveTimer_; // avoids a write for each step of a drag
};
