// Listing a drawer of the host with all facts of its objects. Large drawers are examined ahead of
// the caller by two threads. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"
#include "platform/dos/HostLocks.h"

#include <memory>

namespace dos {

// Null with IoErr: 212 for what is no drawer, 224 for one that may not be read.
[[nodiscard]] std::unique_ptr<Lister> ListHostDrawer(const HostLockRef& drawer);

} // namespace dos
