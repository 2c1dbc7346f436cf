// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/OutlineView.h"

#include "platform/widgets/OutlineRowDelegate.h"

#include <QMouseEvent>
#include <QScopedValueRollback>

namespace {
// Visits an index and its descendants with children, parents first, without recursion. Skips the
// descendants of an index when its visit returns false, at the maximum level, or when more rows
// than budget would be visited.
template<class Visit>
void visitSubtree(const QAbstractItemModel &model, const QModelIndex &top, int maxDepth,
                  qsizetype &budget, Visit visit)
{
    struct Pending
    {
        QModelIndex index;
        int level;
    };
    std::vector<Pending> pending{{top, 0}};
    while (!pending.empty()) {
        const auto [index, level] = pending.back();
        pending.pop_back();
        if (budget <= 0 || !visit(index) || level >= maxDepth || !model.hasChildren(index))
            continue;
        budget -= model.rowCount(index);
        for (int row = model.rowCount(index) - 1; row >= 0; --row) {
            const QModelIndex child = model.index(row, 0, index);
            if (model.hasChildren(child))
                pending.push_back({child, level + 1});
        }
    }
}

bool isMoving(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}
} // namespace

OutlineView::OutlineView(QWidget *parent)
    : QTreeView(parent)
{
    setItemDelegate(new OutlineRowDelegate(this));
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
}

qsizetype OutlineView::maxRowsInBulk() const
{
    constexpr qsizetype maxRows = 1'000'000;
    return maxRows;
}

void OutlineView::openRows(const QModelIndexList &tops, const Predicate &shouldOpen)
{
    if (isOpeningRows_ || isChangingSubtree_ || !model())
        return;
    const QScopedValueRollback opening(isOpeningRows_, true);
    // With a pending layout, opening or closing a row only records it.
    scheduleDelayedItemsLayout();
    qsizetype budget = maxRowsInBulk();
    for (const QModelIndex &top : tops) {
        visitSubtree(*model(), top, maxLevel, budget, [&](const QModelIndex &index) {
            if (index != top && !shouldOpen(index))
                return false;
            expand(index);
            return true;
        });
    }
    executeDelayedItemsLayout();
}

void OutlineView::setSubtreeExpanded(const QModelIndex &top, bool isExpanded)
{
    if (!top.isValid() || !model()->hasChildren(top))
        return;
    const QScopedValueRollback changing(isChangingSubtree_, true);
    scheduleDelayedItemsLayout();
    qsizetype budget = maxRowsInBulk();
    visitSubtree(*model(), top, maxLevel, budget, [&](const QModelIndex &index) {
        setExpanded(index, isExpanded);
        return true;
    });
    executeDelayedItemsLayout();
}

bool OutlineView::isOnExpander(const QPoint &position, const QModelIndex &index) const
{
    if (!model()->hasChildren(index))
        return false;
    const QRect row = visualRect(index.siblingAtColumn(0));
    return layoutDirection() == Qt::RightToLeft
               ? position.x() > row.right() && position.x() <= row.right() + indentation()
               : position.x() < row.left() && position.x() >= row.left() - indentation();
}

void OutlineView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && event->modifiers() & Qt::AltModifier &&
        index.isValid() && isOnExpander(event->position().toPoint(), index)) {
        setSubtreeExpanded(index.siblingAtColumn(0), !isExpanded(index.siblingAtColumn(0)));
        event->accept();
        return;
    }
    QTreeView::mousePressEvent(event);
}

void OutlineView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Asterisk) {
        setSubtreeExpanded(currentIndex().siblingAtColumn(0), true);
        event->accept();
        return;
    }
    // With Alt alone, the window uses these keys.
    if ((event->modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier && isMoving(*event)) {
        event->ignore();
        return;
    }
    const auto modifiers = Qt::AltModifier | Qt::ShiftModifier;
    if ((event->modifiers() & modifiers) == modifiers && currentIndex().isValid() &&
        (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        const bool isForward = (event->key() == Qt::Key_Right) == !isRightToLeft();
        setSubtreeExpanded(currentIndex().siblingAtColumn(0), isForward);
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}
