// SPDX-License-Identifier: Apache-2.0
#pragma once

// Sets up the application before the first document opens.
namespace Startup {
void setUpApplication(); // call after applying the theme
} // namespace Startup
