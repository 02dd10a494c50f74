// What a watched path leads to at a moment, and what tells that it has changed. Private to
// platform/dos.
#pragma once

#include "platform/dos/HostFd.h"

#include <cstdint>
#include <string>

namespace dos {

// What is compared where the host gives no notices.
struct TargetStamp {
    bool IsThere = false;
    ObjectId Id;
    std::int64_t Modified = 0; // nanoseconds
    std::int64_t Changed = 0;
    bool operator==(const TargetStamp&) const = default;
};

struct NotifyTarget {
    TargetStamp Stamp;
    bool IsDrawer = false;
    bool IsSlow = false;    // may not answer: never to be asked but with a limit
    std::string SelfPath;   // host path of the object, empty when it is not there
    std::string DrawerPath; // host path of the drawer it lies in, empty when unknown or a root
    std::string Leaf;       // its name there
};

// Looks the path up; asks nobody for volumes. Takes two seconds at most.
[[nodiscard]] NotifyTarget FindNotifyTarget(const std::string& path);

} // namespace dos
