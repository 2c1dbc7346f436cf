// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

// The edge of a column, which the user drags to resize it.
class ColumnResizer : public QWidget
{
    Q_OBJECT
public:
    static constexpr int thickness = 5;

    explicit ColumnResizer(QWidget *parent);

Q_SIGNALS:
    void draggedBy(int pixels); // since the last signal; positive away from the column's start
    void dragEnded();
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    int lastX_ = 0;
};
