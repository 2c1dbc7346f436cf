#pragma once

#include <QTreeView>
#include <functional>

// A tree view whose rows open and close in bulk quickly: a click on a row's expander with Alt held,
// or the left or right key with Alt and Shift, opens or closes all below it too; so does the
// asterisk open it.
class OutlineView : public QTreeView
{
    Q_OBJECT
public:
    explicit OutlineView(QWidget *parent = nullptr);

    // Lays out once.
    virtual void setSubtreeExpanded(const QModelIndex &top, bool isExpanded);

protected:
    // How far below each other rows are opened in bulk: the layout takes a stack frame a level.
    static constexpr int deepestLevel = 1000;
    // How many rows may come or go when rows are opened or closed in bulk. The others stay as they
    // are: one entry on many paths has as many rows, and so has all below it.
    virtual qsizetype mostRowsInBulk() const;

    // Opens the tops and, below rows that are opened, those that the predicate names; lays out
    // once. Does nothing while rows are opened or closed in bulk already.
    using Predicate = std::function<bool(const QModelIndex &)>;
    void openRows(const QModelIndexList &tops, const Predicate &shouldOpen);
    bool isOpeningRows() const { return isOpeningRows_; }
    bool isChangingSubtree() const { return isChangingSubtree_; }

    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool isOnExpander(const QPoint &position, const QModelIndex &index) const;

    bool isOpeningRows_ = false;
    bool isChangingSubtree_ = false;
};
