// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStyledItemDelegate>

// Rows with a margin between them. Control characters are replaced by visible ones; very long texts
// are elided.
class OutlineRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    static constexpr int verticalMargin = 3; // pixels, above and below the text

    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
