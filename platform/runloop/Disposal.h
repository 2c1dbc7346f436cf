// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>

// Frees large objects on another thread, so that the main one does not block. They must not be
// shared and must not need the main thread.
namespace Disposal {
constexpr std::size_t worthwhile = 20'000; // objects; for fewer a thread does not pay
void later(std::shared_ptr<void> last);
void wait(); // until everything is freed
} // namespace Disposal
