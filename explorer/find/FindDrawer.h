// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QDockWidget;
class QMainWindow;

// Keeps the drawer of find options at the right edge of its window where there is room beside the
// tree and the properties, and otherwise below them.
class FindDrawer : public QObject
{
    Q_OBJECT
public:
    static constexpr int minWidthBeside = 960; // of the window

    FindDrawer(QMainWindow &window, QDockWidget &drawer); // owned by the window

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isInWindow() const;
    void arrange();
    void makeRoom();

    QMainWindow &window_;
    QDockWidget &drawer_;
    int minHeight_; // of the window without the drawer
};
