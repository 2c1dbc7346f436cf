#include "platform/desktop/SegmentedControl.h"

#include <QAbstractButton>
#include <QButtonGroup>

SegmentedControl::SegmentedControl(QWidget *parent)
    : QWidget(parent)
    , segments_(new QButtonGroup(this))
{
    connect(segments_, &QButtonGroup::idClicked, this, &SegmentedControl::segmentChosen);
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
