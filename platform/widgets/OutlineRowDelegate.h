// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStyledItemDelegate>

// Rows with a margin between them. Control characters are replaced by visible ones; very long texts
// are elided. A detail may follow the text in a paler colour, as far as there is room for it.
class OutlineRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    static constexpr int verticalMargin = 3; // pixels, above and below the text
    static constexpr int DetailRole = Qt::UserRole + 100;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    // Behind the text of a row that was painted with the option.
    static void paintDetail(QPainter &painter, const QStyleOptionViewItem &row,
                            const QModelIndex &index);
};
