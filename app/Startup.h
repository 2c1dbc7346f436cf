#pragma once

// What is set up once, before the first document opens.
namespace Startup {
void setUpApplication(); // the theme is applied
} // namespace Startup
