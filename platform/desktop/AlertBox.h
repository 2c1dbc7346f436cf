#pragma once

#include "platform/host/Alert.h"

// Shows an alert as a box: on its window, which alone it keeps from being used, or for the whole
// program.
namespace AlertBox {
void present(const Alert &alert, const AlertPanel::Answer &answer);
} // namespace AlertBox
