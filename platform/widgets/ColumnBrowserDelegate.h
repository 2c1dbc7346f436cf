#pragma once

class ColumnBrowser;
class ColumnBrowserCell;

// Says what a column browser shows. A column depends on the cell selected in the one before it.
class ColumnBrowserDelegate
{
public:
    virtual ~ColumnBrowserDelegate() = default;
    virtual int numberOfRowsInColumn(ColumnBrowser &browser, int column) = 0;
    // Before a cell is first shown, and anew after each call for redisplay.
    virtual void willDisplayCell(ColumnBrowser &browser, ColumnBrowserCell &cell, int row,
                                 int column) = 0;
};
