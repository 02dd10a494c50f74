// The walk over all drawers that a name before the colon stands for.
#pragma once

#include "platform/dos/Locks.h"

#include <string_view>
#include <vector>

namespace dos {

// One lock per target of a multi-assign where the rest of the path exists, in the assign's order;
// a plain volume gives one. Targets without it are passed over. complete tells whether the walk
// came to its end (IoErr 232) or broke off with another error.
[[nodiscard]] std::vector<FileLock> LockAllTargets(std::string_view path, bool* complete);

} // namespace dos
