// What a copy takes over besides its contents: attributes, access lists, owner, modes, times, and
// the ".uaem" file. Nothing here fails a copy; what could not be kept is told as bits of
// CopyResult::Lost. Private to platform/dos.
#pragma once

#include "platform/dos/Copy.h"
#include "platform/dos/HostLocks.h"

#include <string>

struct statx;

namespace dos {

// Attributes of open files and drawers; serves one thread.
class AttributeCopier {
public:
    [[nodiscard]] unsigned Run(int from, int to, const CopyOptions& options);
    // Takes over the comment of what is replaced.
    [[nodiscard]] unsigned KeepComment(int old, int to);

private:
    unsigned CopyOne(int from, int to, const char* name);

    std::string Names;
    std::string Value;
};

// Does a drawer hand an access list to what is made in it?
[[nodiscard]] bool HandsDownAccess(int drawer);
// Takes from a new object what its drawer has handed down; a copy has the lists of its source.
void DropAccessHandedDown(int object);

// Gives an open copy the times of its source.
[[nodiscard]] bool KeepTimes(int to, const struct statx& source);
// Gives an open copy owner and modes of the source, as the options say. copy tells what it is since it
// has got its times; what did not stay of these is told too.
[[nodiscard]] unsigned KeepStatus(int to, const struct statx& copy, const struct statx& source,
                                  const CopyOptions& options);
// The times of a soft link, which are all that it has.
[[nodiscard]] unsigned KeepTimesOfLink(int drawer, const std::string& name, const struct statx& source);

// What a sidecar of a copy has come to, as bits of CopyResult::Lost.
struct SidecarOutcome {
    unsigned Lost = 0; // was to be written there and is not
    unsigned Kept = 0; // stands there, so that it is no loss if the copy itself cannot keep it

    [[nodiscard]] unsigned After(unsigned lost) const noexcept { return (lost & ~Kept) | Lost; }
};

// Writes the sidecar of a copy where its source has one, its volume wants one, or one lies there.
// Both spots have drawer, name and object; source may lack the drawer.
[[nodiscard]] SidecarOutcome CopySidecar(const Spot& source, const Spot& copy, const CopyOptions& options);

} // namespace dos
