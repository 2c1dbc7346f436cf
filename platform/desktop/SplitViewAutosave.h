#pragma once

#include <QObject>
#include <QTimer>

class QSplitter;

// Keeps the place of a split view's dividers in the preferences, each arrangement under a name of
// its own.
class SplitViewAutosave : public QObject
{
    Q_OBJECT
public:
    explicit SplitViewAutosave(QSplitter &splitView); // which must outlive this
    ~SplitViewAutosave() override;

    // Saves under the name so far, then lays the panes out anew as was saved under the new one.
    // False when there is nothing of use.
    bool arrange(Qt::Orientation panes, const QString &name);

private:
    void save();
    bool restore();

    QSplitter &splitView_;
    QString name_;
    QTimer saveTimer_; // not for each step of a drag
};
