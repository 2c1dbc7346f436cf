// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTreeView>
#include <functional>

// A tree view that opens and closes many rows quickly: an Alt-click on an expander, or Alt+Shift
// with Left or Right, opens or closes all rows below too; the asterisk opens them.
class OutlineView : public QTreeView
{
    Q_OBJECT
public:
    explicit OutlineView(QWidget *parent = nullptr);

    // Lays out only once.
    virtual void setSubtreeExpanded(const QModelIndex &top, bool isExpanded);

protected:
    // The maximum depth for opening rows in bulk: the layout takes a stack frame for each level.
    static constexpr int maxLevel = 1000;
    // The maximum number of rows to open or close in bulk; the others stay as they are. An entry on
    // many paths has that many rows, and so do its descendants.
    virtual qsizetype maxRowsInBulk() const;

    // Opens the tops and, below opened rows, those that match the predicate, with a single layout.
    // Does nothing during another bulk change.
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
