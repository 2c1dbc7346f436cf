// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>
#include <optional>

// Decides which opened or closed rows to remember: of those that one click or key press changes,
// only the first, or all when Alt is held.
class ExpansionRecorder
{
public:
    ExpansionRecorder(); // starts counting clicks and keys
    bool shouldRecord();

private:
    std::optional<quint64> lastCollapseExpandEvent_;
};
