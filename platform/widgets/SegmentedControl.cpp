// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/SegmentedControl.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QEvent>
#include <QGuiApplication>

namespace {
// A mix of the button and the selection colour; icons stay readable on it.
QColor tinted(const QPalette &palette)
{
    const QColor button = palette.color(QPalette::Button);
    const QColor selection = palette.color(QPalette::Highlight);
    const auto mix = [](int a, int b) { return (2 * a + b) / 3; };
    return {mix(button.red(), selection.red()), mix(button.green(), selection.green()),
            mix(button.blue(), selection.blue())};
}
} // namespace

SegmentedControl::SegmentedControl(QWidget *parent)
    : QWidget(parent)
    , segments_(new QButtonGroup(this))
{
    connect(segments_, &QButtonGroup::idClicked, this, &SegmentedControl::segmentChosen);
    connect(segments_, &QButtonGroup::idToggled, this, &SegmentedControl::showSelection);
}

void SegmentedControl::setUp()
{
    for (QAbstractButton *segment : findChildren<QAbstractButton *>()) {
        segment->setCheckable(true);
        segments_->addButton(segment, segment->property("tag").toInt());
    }
}

void SegmentedControl::selectSegmentWithTag(int tag)
{
    if (QAbstractButton *const segment = segments_->button(tag))
        segment->setChecked(true);
}

int SegmentedControl::selectedTag() const
{
    return segments_->checkedId();
}

// A button that is only down is hard to see in a dark window.
void SegmentedControl::showSelection()
{
    const QPalette plain = QGuiApplication::palette();
    QPalette selected = plain;
    selected.setColor(QPalette::Button, tinted(plain));
    for (QAbstractButton *segment : segments_->buttons())
        segment->setPalette(segment->isChecked() ? selected : QPalette());
}

void SegmentedControl::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showSelection();
}
