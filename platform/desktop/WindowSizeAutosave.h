// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

// Opens windows in the size that the user set last, stored in the preferences.
class WindowSizeAutosave : public QObject
{
    Q_OBJECT
public:
    // Owned by the window.
    WindowSizeAutosave(QWidget &window, const QString &name);

    bool eventFilter(QObject *window, QEvent *event) override;

private:
    void save() const;
    void restore();

    QWidget &window_;
    QString name_;
    QTimer saveTimer_; // avoids a write for each step of a drag
};
