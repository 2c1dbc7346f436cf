// SPDX-License-Identifier: Apache-2.0
#pragma once

class ColumnBrowser;
class ColumnBrowserCell;

// Provides the contents of a column browser. A column depends on the cell selected in the one
// before it.
class ColumnBrowserDelegate
{
public:
    virtual ~ColumnBrowserDelegate() = default;
    virtual int numberOfRowsInColumn(ColumnBrowser &browser, int column) = 0;
    // Called before a cell is first shown, and again after each redisplay().
    virtual void willDisplayCell(ColumnBrowser &browser, ColumnBrowserCell &cell, int row,
                                 int column) = 0;
};
