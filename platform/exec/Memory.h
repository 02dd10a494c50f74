// How much memory the machine has, as AvailMem tells it.
#pragma once

#include <cstdint>

namespace exec {

struct MemoryFigures {
    std::uint64_t Total = 0; // bytes; 0 where the host does not tell
    std::uint64_t Free = 0;  // what programs can still get, caches that would make room counted
};
[[nodiscard]] MemoryFigures AvailMem();

} // namespace exec
