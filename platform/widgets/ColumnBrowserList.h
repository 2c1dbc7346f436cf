// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QListView>

// One column of a column browser.
class ColumnBrowserList : public QListView
{
    Q_OBJECT
public:
    explicit ColumnBrowserList(QWidget *parent);

    int widthOfContents() const; // of the visible rows

Q_SIGNALS:
    void wentBack(); // to the column before
    void wentForward();
    void rowPressed(int row);
    void contextMenuRequested(const QContextMenuEvent &event);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
};
