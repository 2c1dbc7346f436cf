// SPDX-License-Identifier: Apache-2.0
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

// Shows a tree as columns, each with the children of the cell selected in the one before it. The
// delegate fills columns on demand. Not a QColumnView: that one has a tree model and hides its
// columns, while these are reloaded, selected and measured one by one, and cells have a state
// besides the selection.
class ColumnBrowser : public QScrollArea
{
    Q_OBJECT
public:
    explicit ColumnBrowser(QWidget *parent = nullptr);

    // Call these before loading the first column. The delegate must outlive the browser's use.
    void setDelegate(ColumnBrowserDelegate &delegate) { delegate_ = &delegate; }
    void setCellClass(ColumnBrowserModel::Factory factory) { makeCell_ = std::move(factory); }
    void setColumnsAutosaveName(const QString &name);

    int lastColumn() const { return columnCount_ - 1; }
    int numberOfRows(int column) const; // 0: no such column
    QListView *list(int column) const;  // null: no such column
    ColumnBrowserCell *cell(int row, int column) const;
    int selectedRow(int column) const;                 // -1: none
    ColumnBrowserCell *selectedCell(int column) const; // null: none
    int selectedColumn() const;                        // the last with a selected row; -1: none

    // Reloads a column: it loses its selection and becomes the last one.
    void reloadColumn(int column);
    // Opens the next column if the cell has one; leaves the cell's state to the caller.
    void selectRow(int row, int column);
    // Selects like a click by the user, with the same signals.
    void chooseRow(int row, int column);
    void redisplay(); // prepares all cells again

    void scrollColumnToVisible(int column);
    void scrollRowToVisible(int row, int column);
    // The visible place, to restore after columns were reloaded: selected rows keep their position.
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
    void selectionChosen(); // by the user, in any column
    // For the last selected row, which is under the pointer.
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
    void leaveColumn(int column); // makes the selection of the column before the current one
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
    std::vector<Column> columns_; // those after the last are hidden for reuse
    int columnCount_ = 0;
    bool isChanging_ = false;
    bool scrollsOnShow_ = false;
    QTimer layoutTimer_;
};
