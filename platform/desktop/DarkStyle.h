#pragma once

#include <QProxyStyle>

// Fusion for dark windows: it outlines check boxes, radio buttons and menus a shade darker than the
// window, where that cannot be seen, and leaves the icons of what is disabled as bright as others.
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
