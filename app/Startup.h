#pragma once

#include "platform/desktop/Theme.h"

// What is set up once, before the first document opens.
namespace Startup {
void setUpApplication(Theme theme);
} // namespace Startup
