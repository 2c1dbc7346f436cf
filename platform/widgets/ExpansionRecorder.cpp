// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ExpansionRecorder.h"

#include "platform/widgets/InputEvents.h"

ExpansionRecorder::ExpansionRecorder()
{
    InputEvents::instance();
}

bool ExpansionRecorder::shouldRecord()
{
    const InputEvents &events = InputEvents::instance();
    if (lastCollapseExpandEvent_ == events.current())
        return events.isAltHeld();
    lastCollapseExpandEvent_ = events.current();
    return true;
}
