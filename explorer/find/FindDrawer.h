#pragma once

#include <QObject>

class QDockWidget;
class QMainWindow;

// Keeps the drawer of find options at the right edge of its window as long as there is room for it
// beside the tree and the properties, and else below them.
class FindDrawer : public QObject
{
    Q_OBJECT
public:
    static constexpr int leastWidthBeside = 960; // of the window

    FindDrawer(QMainWindow &window, QDockWidget &drawer); // owned by the window

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isInWindow() const;
    void arrange();
    void makeRoom();

    QMainWindow &window_;
    QDockWidget &drawer_;
    int leastHeight_; // of the window without the drawer
};
