// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DarkStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

DarkStyle::DarkStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{}

void DarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_PanelMenu)
        drawMenuFrame(*option, *painter);
    const bool isRadio = element == PE_IndicatorRadioButton;
    if (!isRadio && element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck)
        return;
    QColor color = option->palette.color(QPalette::PlaceholderText);
    if (!(option->state & State_Enabled))
        color.setAlphaF(0.5F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, isRadio);
    painter->setPen(color);
    painter->setBrush(Qt::NoBrush);
    if (isRadio)
        painter->drawEllipse(QRectF(option->rect).adjusted(1, 1, -1, -1));
    else
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

QPixmap DarkStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap,
                                       const QStyleOption *option) const
{
    if (mode != QIcon::Disabled)
        return QProxyStyle::generatedIconPixmap(mode, pixmap, option);
    QPixmap faded(pixmap.size());
    faded.setDevicePixelRatio(pixmap.devicePixelRatio());
    faded.fill(Qt::transparent);
    QPainter painter(&faded);
    painter.setOpacity(0.35);
    painter.drawPixmap(0, 0, pixmap);
    return faded;
}

void DarkStyle::drawMenuFrame(const QStyleOption &option, QPainter &painter)
{
    QColor color = option.palette.color(QPalette::PlaceholderText);
    color.setAlphaF(0.5F);
    painter.save();
    painter.setPen(color);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter.restore();
}
