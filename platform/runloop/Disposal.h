#pragma once

#include <cstddef>
#include <memory>

// Frees what is large on another thread, for the main one would stand still meanwhile. What is
// freed must not be reachable any more, and need nothing of the main thread.
namespace Disposal {
constexpr std::size_t worthwhile = 20'000; // objects; fewer are freed at once
void later(std::shared_ptr<void> last);
void wait(); // until all is freed
} // namespace Disposal
