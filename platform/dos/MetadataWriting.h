// Bits, comments and dates as they are kept and changed: the one place that decides between modes,
// attributes and sidecars. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/SidecarFiles.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dos {

// What of an object is kept where.
struct StoredMetadata {
    std::optional<std::string> Letters; // of the attribute, eight of them
    SidecarFile Sidecar;
    std::uint32_t Bits = 0; // the low eight bits that count
};

// Reads it for an entry with drawer and name (an entry without both has no sidecar). False with
// errno when the disk does not tell, so that a protection is never overlooked.
[[nodiscard]] bool ReadStored(const Spot& spot, StoredMetadata& stored);

// The whole of what is told about an entry, wherever it is kept: bits, date and comment as a sidecar
// would have them. A comment that is too long for one is left out. False with errno.
[[nodiscard]] bool TellAll(const Spot& spot, SidecarFacts& facts, SidecarFile& sidecar);

// Makes one change as the entries of Changes.h say; false with IoErr, and then all is as it was.
[[nodiscard]] bool ChangeStored(const Spot& spot, const MetadataChange& change);

} // namespace dos
