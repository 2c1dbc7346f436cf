// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ReadOnlyCheckBox.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace {
constexpr qreal frameOpacity = 0.4;
constexpr int frameWidth = 2;
} // namespace

ReadOnlyCheckBox::ReadOnlyCheckBox(QWidget *parent)
    : QCheckBox(parent)
{
    setFocusPolicy(Qt::NoFocus);
}

bool ReadOnlyCheckBox::hitButton(const QPoint &) const
{
    return false;
}

// Assistive programs can click without a pointer.
void ReadOnlyCheckBox::nextCheckState() {}

void ReadOnlyCheckBox::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.state &= ~(QStyle::State_MouseOver | QStyle::State_HasFocus | QStyle::State_Sunken);
    option.state |= QStyle::State_ReadOnly;
    option.palette.setBrush(QPalette::Base, palette().brush(QPalette::Window));

    QStyleOptionButton label = option;
    label.rect = style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this);
    QStyleOptionButton box = option;
    box.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_CheckBoxLabel, label);
    painter.setOpacity(frameOpacity);
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, box);
    painter.setOpacity(1.0);
    painter.setClipRect(box.rect.adjusted(frameWidth, frameWidth, -frameWidth, -frameWidth));
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, box);
}
