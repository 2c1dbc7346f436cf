// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QWidget;

// Saves a picture of a window shortly after its first paint, for tools and documentation.
class WindowPicture : public QObject
{
    Q_OBJECT
public:
    WindowPicture(QWidget &window, const QString &file);

Q_SIGNALS:
    void saved();
    void failed(const QString &message);

protected:
    bool eventFilter(QObject *window, QEvent *event) override;

private:
    void save();

    QWidget &window_;
    QString file_;
};
