#include "platform/widgets/OutlineView.h"

#include "platform/widgets/OutlineRowDelegate.h"

#include <QMouseEvent>
#include <QScopedValueRollback>

namespace {
// Visits an index and the ones below it that have children, parents first, without recursion. Those
// below an index are left out when its visit answers false, its level is the deepest or they are
// more than are left of the most.
template<class Visit>
void visitSubtree(const QAbstractItemModel &model, const QModelIndex &top, int deepest,
                  qsizetype &most, Visit visit)
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
        if (most <= 0 || !visit(index) || level >= deepest || !model.hasChildren(index))
            continue;
        most -= model.rowCount(index);
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

qsizetype OutlineView::mostRowsInBulk() const
{
    constexpr qsizetype most = 1'000'000;
    return most;
}

void OutlineView::openRows(const QModelIndexList &tops, const Predicate &shouldOpen)
{
    if (isOpeningRows_ || isChangingSubtree_ || !model())
        return;
    const QScopedValueRollback opening(isOpeningRows_, true);
    // With a layout pending, opening or closing a row does no more than note it.
    scheduleDelayedItemsLayout();
    qsizetype most = mostRowsInBulk();
    for (const QModelIndex &top : tops) {
        visitSubtree(*model(), top, deepestLevel, most, [&](const QModelIndex &index) {
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
    qsizetype most = mostRowsInBulk();
    visitSubtree(*model(), top, deepestLevel, most, [&](const QModelIndex &index) {
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
    // With Alt alone these keys are the window's.
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
