#pragma once

#include <QtGlobal>
#include <optional>

// Decides which rows that open or close are the user's doing and thus worth remembering: of all
// those of one click or key press the first alone, or every one when Alt is held.
class ExpansionRecorder
{
public:
    ExpansionRecorder(); // from now on clicks and keys are told apart
    bool shouldRecord();

private:
    std::optional<quint64> lastCollapseExpandEvent_;
};
