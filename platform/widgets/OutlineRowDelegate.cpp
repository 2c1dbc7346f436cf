// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/OutlineRowDelegate.h"

#include "platform/widgets/ReadableColor.h"
#include "platform/widgets/VisibleText.h"

#include <QApplication>
#include <QPainter>

namespace {
constexpr int maxWidth = 150;  // characters
constexpr int leastDetail = 4; // characters, for which a detail is worthwhile

QColor detailColor(const QStyleOptionViewItem &row)
{
    const QPalette::ColorGroup group =
        row.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const bool isSelected = row.state & QStyle::State_Selected;
    const auto color = [&](QPalette::ColorRole selected, QPalette::ColorRole other) {
        return row.palette.color(group, isSelected ? selected : other);
    };
    return paleColor(color(QPalette::HighlightedText, QPalette::Text),
                     color(QPalette::Highlight, QPalette::Base));
}
} // namespace

void OutlineRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (index.data(DetailRole).isNull())
        return;
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    paintDetail(*painter, row, index);
}

void OutlineRowDelegate::paintDetail(QPainter &painter, const QStyleOptionViewItem &row,
                                     const QModelIndex &index)
{
    const QString detail = index.data(DetailRole).toString();
    if (detail.isEmpty())
        return;
    const QStyle *const style = row.widget ? row.widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &row, row.widget) + 1;
    const QRect text =
        QStyle::visualRect(row.direction, row.rect,
                           style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget));
    const QFont font = row.widget ? row.widget->font() : painter.font(); // the text's may be bold
    const QFontMetrics metrics(font);
    QRect place = row.rect;
    place.setLeft(text.left() + row.fontMetrics.horizontalAdvance(row.text) + 2 * margin +
                  metrics.averageCharWidth());
    place.setRight(row.rect.right() - margin);
    if (place.width() < leastDetail * metrics.averageCharWidth())
        return;
    painter.save();
    painter.setFont(font);
    painter.setPen(detailColor(row));
    const auto alignment = QStyle::visualAlignment(row.direction, Qt::AlignLeft) | Qt::AlignVCenter;
    painter.drawText(QStyle::visualRect(row.direction, row.rect, place),
                     static_cast<int>(alignment.toInt()) | Qt::TextSingleLine,
                     metrics.elidedText(visibleText(detail), Qt::ElideRight, place.width()));
    painter.restore();
}

QString OutlineRowDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    return visibleText(value.userType() == QMetaType::QString
                           ? value.toString()
                           : QStyledItemDelegate::displayText(value, locale));
}

QSize OutlineRowDelegate::sizeHint(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {std::min(size.width(), maxWidth * option.fontMetrics.averageCharWidth()),
            std::max(size.height(), option.fontMetrics.height() + 2 * verticalMargin)};
}
