#pragma once

#include <QStyledItemDelegate>

// Rows with air between them, of texts made visible, elided when they are absurdly long.
class OutlineRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    static constexpr int verticalMargin = 3; // above and below the text

    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
