// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/OutlineRowDelegate.h"

#include "platform/widgets/VisibleText.h"

namespace {
constexpr int maxWidth = 150; // characters
} // namespace

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
