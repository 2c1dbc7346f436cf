// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVariant>

class QWidget;

// A row of a column browser, prepared by the browser's delegate when it is first needed.
class ColumnBrowserCell
{
public:
    ColumnBrowserCell() = default;
    virtual ~ColumnBrowserCell() = default;
    ColumnBrowserCell(const ColumnBrowserCell &) = delete;
    ColumnBrowserCell &operator=(const ColumnBrowserCell &) = delete;

    QString text;
    QString detail; // behind the text; null: none
    QString accessibleText;
    QString accessibleDescription;
    QString toolTip; // null: not asked for yet
    QVariant font;   // none: the list's
    QVariant color;  // none: the list's
    QVariant mark;   // an icon before the text
    bool isLeaf = true;
    bool state = false; // on: part of the browser's selection

    QWidget *controlView() const { return controlView_; } // the list that shows the cell

private:
    friend class ColumnBrowserModel;

    QWidget *controlView_ = nullptr;
    bool isPrepared_ = false;
};
