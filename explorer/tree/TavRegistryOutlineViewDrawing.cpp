// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/OutlineConnectors.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"

#include <QFocusEvent>
#include <QHeaderView>
#include <QPainter>

namespace {
constexpr qreal sameEntryFrameWidth = 2.0;
} // namespace

void TavRegistryOutlineView::_readIcons()
{
    OutlineImages::shared();
}

void TavRegistryOutlineView::drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    OutlineView::drawRow(painter, option, index);
    TavRegistryOutlineItem &item = *TavRegistryOutlineViewDataSource::item(index);
    if (sameEntryHighlightColor_ && showsSelectedEntry(item)) {
        constexpr qreal inset = sameEntryFrameWidth / 2;
        painter->setPen(QPen(*sameEntryHighlightColor_, sameEntryFrameWidth, Qt::SolidLine,
                             Qt::SquareCap, Qt::MiterJoin));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset));
    }
    drawConnectors(*painter, option.rect, item);
}

void TavRegistryOutlineView::drawConnectors(QPainter &painter, const QRect &row,
                                            TavRegistryOutlineItem &item) const
{
    painter.save();
    const int left = header()->sectionViewportPosition(0);
    const int right = left + header()->sectionSize(0);
    if (isRightToLeft()) {
        painter.translate(right, 0);
        painter.scale(-1, 1);
    } else {
        painter.translate(left, 0);
    }
    const int firstVisible = isRightToLeft() ? right - viewport()->width() : -left;
    for (const OutlineConnector &connector : outlineConnectors(item, indentation())) {
        if (connector.x + OutlineImages::width < firstVisible)
            break; // the others are further to the left
        OutlineImages::shared().draw(
            painter, connector.image,
            QRect(connector.x, row.top(), OutlineImages::width, row.height()));
    }
    painter.restore();
}

// The style's own lines would show under ours, and the selection's colour would hide the lines of
// the path to it.
void TavRegistryOutlineView::drawBranches(QPainter *painter, const QRect &rect,
                                          const QModelIndex &index) const
{
    painter->fillRect(rect, palette().brush(QPalette::Base));
    if (!model()->hasChildren(index))
        return;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = rect;
    if (isRightToLeft())
        option.rect.setRight(rect.left() + indentation() - 1);
    else
        option.rect.setLeft(rect.right() - indentation() + 1);
    option.state = QStyle::State_Enabled | QStyle::State_Children;
    option.state.setFlag(QStyle::State_Open, isExpanded(index));
    option.state.setFlag(QStyle::State_Active, isActiveWindow());
    style()->drawPrimitive(QStyle::PE_IndicatorBranch, &option, painter, this);
}

bool TavRegistryOutlineView::showsSelectedEntry(const TavRegistryOutlineItem &item) const
{
    const TavRegistryOutlineItem *const selected = dataSource_->selectedItem();
    return selected && selected != &item && selected->registryEntry() == item.registryEntry();
}

void TavRegistryOutlineView::setSameEntryHighlightColor(const QColor &color)
{
    sameEntryHighlightColor_ = color;
}

void TavRegistryOutlineView::checkRowsNeedingRedisplay(bool windowChanged)
{
    if (windowChanged)
        setSameEntryHighlightColor(highlightColor(isActiveWindow() && hasFocus()));
    if (!model())
        return;
    for (const QModelIndex &row : rowsInSight()) {
        const QRect place = visualRect(row);
        if (showsSelectedEntry(*TavRegistryOutlineViewDataSource::item(row)))
            viewport()->update(0, place.top(), viewport()->width(), place.height());
    }
}

QColor TavRegistryOutlineView::highlightColor(bool isActive) const
{
    return palette().color(isActive ? QPalette::Active : QPalette::Inactive, QPalette::Highlight);
}

void TavRegistryOutlineView::focusInEvent(QFocusEvent *event)
{
    OutlineView::focusInEvent(event);
    becomeFirstResponder();
}

void TavRegistryOutlineView::focusOutEvent(QFocusEvent *event)
{
    OutlineView::focusOutEvent(event);
    resignFirstResponder();
}

void TavRegistryOutlineView::becomeFirstResponder()
{
    setSameEntryHighlightColor(highlightColor(true));
    checkRowsNeedingRedisplay(false);
}

void TavRegistryOutlineView::resignFirstResponder()
{
    setSameEntryHighlightColor(highlightColor(false));
    checkRowsNeedingRedisplay(false);
}

bool TavRegistryOutlineView::event(QEvent *event)
{
    const bool handled = OutlineView::event(event);
    switch (event->type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
    case QEvent::PaletteChange:
        checkRowsNeedingRedisplay(true);
        break;
    default:
        break;
    }
    return handled;
}
