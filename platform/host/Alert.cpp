// SPDX-License-Identifier: Apache-2.0
#include "platform/host/Alert.h"

void AlertPanel::show(const Alert &alert, DesktopServices::AlertAnswer answer)
{
    if (const auto &present = DesktopServices::instance().presentAlert)
        present(alert, std::move(answer));
    else if (answer)
        answer(std::max(static_cast<int>(alert.buttons.size()) - 1, 0));
}
