// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ColumnBrowserRowDelegate.h"

#include "platform/widgets/ColumnBrowserModel.h"

#include <QApplication>
#include <QPainter>

namespace {
constexpr int arrowSize = 10;
constexpr int arrowSpace = 18;

bool isLeaf(const QModelIndex &index)
{
    const auto *const model = qobject_cast<const ColumnBrowserModel *>(index.model());
    const ColumnBrowserCell *const cell = model ? model->cell(index.row()) : nullptr;
    return !cell || cell->isLeaf;
}

QColor mixed(const QColor &a, const QColor &b, double part)
{
    const auto mix = [&](int x, int y) { return static_cast<int>(x * part + y * (1 - part)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

// A selection without the keyboard focus keeps the cell's colours where they are readable.
void fade(QStyleOptionViewItem &option)
{
    QPalette &palette = option.palette;
    palette.setColor(QPalette::Highlight, mixed(palette.color(QPalette::Highlight),
                                                palette.color(QPalette::Base), 0.35));
    palette.setColor(
        QPalette::HighlightedText,
        mixed(palette.color(QPalette::Text), QApplication::palette().color(QPalette::Text), 0.5));
    if (!option.icon.isNull()) // its picture for selected rows is for the unfaded colour
        option.icon = QIcon(option.icon.pixmap(option.decorationSize, QIcon::Normal));
}

// Not by the style, which would keep a picture for each palette that it meets.
void drawArrow(QPainter *painter, const QStyleOptionViewItem &row)
{
    const QRect space = QStyle::visualRect(
        row.direction, row.rect,
        QRect(row.rect.right() - arrowSpace, row.rect.top(), arrowSpace, row.rect.height()));
    const bool isSelected = row.state & QStyle::State_Selected;
    const QColor color =
        row.palette.color(isSelected ? QPalette::HighlightedText : QPalette::PlaceholderText);
    const double height = arrowSize / 2.0;
    const double tip = row.direction == Qt::RightToLeft ? -height / 2 : height / 2;
    const QPointF center = QRectF(space).center();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    painter->drawPolygon(QPolygonF{center + QPointF(tip, 0), center + QPointF(-tip, -height / 2),
                                   center + QPointF(-tip, height / 2)});
    painter->restore();
}
} // namespace

void ColumnBrowserRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    if (!row.widget->hasFocus())
        fade(row);
    QStyle *const style = row.widget->style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &row, painter, row.widget);
    QStyleOptionViewItem text = row;
    const int arrow = isLeaf(index) ? 0 : arrowSpace;
    text.rect = QStyle::visualRect(row.direction, row.rect, row.rect.adjusted(0, 0, -arrow, 0));
    text.state.setFlag(QStyle::State_HasFocus, false); // the selection shows the focus
    style->drawControl(QStyle::CE_ItemViewItem, &text, painter, row.widget);
    paintDetail(*painter, text, index);
    if (arrow > 0)
        drawArrow(painter, row);
}

QSize ColumnBrowserRowDelegate::sizeHint(const QStyleOptionViewItem &option,
                                         const QModelIndex &index) const
{
    return OutlineRowDelegate::sizeHint(option, index) + QSize(arrowSpace, 0);
}
