#pragma once

#include "platform/widgets/ColumnBrowserModel.h"
#include "platform/widgets/ColumnWidths.h"

#include <QScrollArea>
#include <QTimer>

class ColumnBrowserDelegate;
class ColumnBrowserList;
class ColumnResizer;
class QContextMenuEvent;
class QListView;

// Shows a tree as columns, each with the children of what is selected in the one before it. Columns
// are asked of the delegate when they come into being.
class ColumnBrowser : public QScrollArea
{
    Q_OBJECT
public:
    explicit ColumnBrowser(QWidget *parent = nullptr);

    // All before the first column is loaded. The delegate must outlive the browser's use.
    void setDelegate(ColumnBrowserDelegate &delegate) { delegate_ = &delegate; }
    void setCellClass(ColumnBrowserModel::Factory factory) { makeCell_ = std::move(factory); }
    void setColumnsAutosaveName(const QString &name);

    int lastColumn() const { return columnCount_ - 1; }
    int numberOfRows(int column) const; // 0 where there is no column
    QListView *list(int column) const;  // null where there is no column
    ColumnBrowserCell *cell(int row, int column) const;
    int selectedRow(int column) const;                 // -1 for none
    ColumnBrowserCell *selectedCell(int column) const; // null for none
    int selectedColumn() const;                        // the last with a selected row, or -1

    // Asks for a column anew; it has no selection then and is the last.
    void reloadColumn(int column);
    // Opens the next column if the cell has one; leaves the cell's state to the caller.
    void selectRow(int row, int column);
    // As the user would, which is told.
    void chooseRow(int row, int column);
    void redisplay(); // has all cells prepared anew

    void scrollColumnToVisible(int column);
    void scrollRowToVisible(int row, int column);
    // What is in sight, to be restored after columns were reloaded: selected rows keep their place.
    struct Scrolling
    {
        int x = 0;
        struct Column
        {
            int value;
            std::optional<int> selectionTop;
        };
        std::vector<Column> columns;
    };
    Scrolling scrolling() const;
    void setScrolling(const Scrolling &scrolling);

Q_SIGNALS:
    void selectionChosen(); // by the user, in whatever column
    // Of the last selected row, which is the one under the pointer.
    void contextMenuRequested(const QPoint &globalPosition);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    struct Column
    {
        ColumnBrowserList *list;
        ColumnBrowserModel *model;
        ColumnResizer *resizer;
    };

    const Column *column(int number) const;
    void addColumn();
    void setColumnCount(int count);
    void clearSelection(int column);
    void setCurrentRow(int row, int column);
    void goBackFrom(int column);
    void leaveColumn(int column); // for the one before, whose selection counts from then on
    void goForwardFrom(int column);
    void requestContextMenu(const QContextMenuEvent &event, int column);
    void resizeColumn(int column, int width);
    void layOutColumns();
    void showColumns();
    void updateFocusPolicies();
    QRect columnRect(int column) const;

    ColumnBrowserDelegate *delegate_ = nullptr;
    ColumnBrowserModel::Factory makeCell_;
    ColumnWidths widths_;
    std::vector<Column> columns_; // those beyond the last are hidden and kept for later
    int columnCount_ = 0;
    bool isChanging_ = false;
    bool scrollsOnShow_ = false;
    QTimer layoutTimer_;
};
