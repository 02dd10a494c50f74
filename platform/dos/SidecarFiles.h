// The ".uaem" file beside an object: found, written, and what follows its owner. Private to
// platform/dos.
#pragma once

#include "platform/dos/HostFd.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/Sidecar.h"
#include "platform/dos/Volumes.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace dos {

enum class SidecarState {
    None,
    Ours,    // tells of its owner
    Foreign, // something of that name that is no sidecar; never touched
};

struct SidecarFile {
    SidecarState State = SidecarState::None;
    HostFd Object;          // open for reading; only of Ours
    SidecarFacts Facts;     // the bits are there for Ours
    bool HasNoRoom = false; // its name would be too long; the object has what the host keeps
};

[[nodiscard]] std::string SidecarNameOf(std::string_view owner);

// A second's part as a sidecar has it: hundredths in steps of a tick.
[[nodiscard]] std::uint8_t HundredthsOf(std::uint32_t nanoseconds) noexcept;

// Looks for the sidecar of an entry. False with errno when the disk does not tell.
[[nodiscard]] bool FindSidecar(int drawer, std::string_view owner, SidecarFile& sidecar);

// Does a name of the host belong to a sidecar whose owner is there? Such an entry is no object of its own.
// So it counts too while the disk does not tell.
[[nodiscard]] bool IsSidecarInUse(int drawer, std::string_view hostName);

// Whether an entry may be opened for reading, as far as its sidecar says; fills that in. One that may not
// be read itself forbids nothing and counts as foreign. False with IoErr: 224, or the reason why the
// disk does not tell.
[[nodiscard]] bool LetsRead(int drawer, std::string_view owner, SidecarFile& sidecar);
// The same for an object that is held; one that was removed is read on.
[[nodiscard]] bool LetsRead(const HostFd& object);

// Writes the sidecar anew, as a whole or not at all; false with errno. Facts need bits and date.
[[nodiscard]] bool WriteSidecar(int drawer, std::string_view owner, const SidecarFile& old,
                                const SidecarFacts& facts, Flush flush = Flush::Now);

// After new contents: the date of the file goes into its sidecar, which was looked for before, and
// the archive bit is cleared. False with errno; true when there is none.
[[nodiscard]] bool RefreshSidecar(int drawer, std::string_view owner, const SidecarFile& sidecar);

// The same for an entry that was just made; where the volume keeps a sidecar for all it gets one, with
// the bits of a new object ("----rwed").
[[nodiscard]] bool BeginSidecar(int drawer, std::string_view owner, const SidecarFile& sidecar,
                                MetadataRule rule);

} // namespace dos
