// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/widgets/OutlineRowDelegate.h"

// Rows with an arrow where another column follows.
class ColumnBrowserRowDelegate : public OutlineRowDelegate
{
    Q_OBJECT
public:
    using OutlineRowDelegate::OutlineRowDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
