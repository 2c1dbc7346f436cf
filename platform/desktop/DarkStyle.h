// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProxyStyle>

// Fusion for dark windows. Fusion's own outlines of check boxes, radio buttons and menus are darker
// than the window and thus invisible there, and it leaves disabled icons as bright as others.
class DarkStyle : public QProxyStyle
{
    Q_OBJECT
public:
    DarkStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap,
                                const QStyleOption *option) const override;

private:
    static void drawMenuFrame(const QStyleOption &option, QPainter &painter);
};
