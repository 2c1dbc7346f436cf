// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/host/Alert.h"

class QMessageBox;

// Shows alerts as message boxes, which delete themselves when closed.
namespace AlertBox {
// Shows the box immediately and returns without waiting for the answer.
QMessageBox *show(const Alert &alert, const DesktopServices::AlertAnswer &answer = {});
// Shows the box from the event loop, because its window may be about to show.
void present(const Alert &alert, const DesktopServices::AlertAnswer &answer);
} // namespace AlertBox
