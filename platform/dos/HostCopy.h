// Copying single objects between places of the host. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"
#include "platform/dos/HostLocks.h"

#include <string>
#include <string_view>

namespace dos {

// As the entry of the handler record.
[[nodiscard]] CopyResult CopyHostEntry(const LockRef& start, std::string_view rest, const LockRef& toStart,
                                       std::string_view toRest, const CopyOptions& options,
                                       const CopyProgress& progress);

// Both ends of a copy, found and decided on; nothing has been touched.
struct CopyPlan {
    CopyEnd End = CopyEnd::SourceRefused; // Done: it may begin. Else IoErr tells why not
    Spot Source;                          // without drawer and name for a root
    Spot Target;                          // the object is what is to be replaced
    bool IsMerge = false;                 // a drawer over one that is there
};
enum class DrawerThere { Refused, Merged };
[[nodiscard]] CopyPlan PlanCopy(const HostLock& from, std::string_view rest, const HostLock& to,
                                std::string_view toRest, const CopyOptions& options, DrawerThere rule,
                                WalkMode& mode);

// Is the drawer, or one that it lies in, that object? False with errno when it cannot be told.
[[nodiscard]] bool LiesWithin(int drawer, const ObjectId& object, bool& isWithin);

// Opens the object of a spot for reading, and nothing that has its name by now.
[[nodiscard]] HostFd OpenObject(const Spot& spot);

} // namespace dos
