// Copies of single objects with all that belongs to them: contents, protection, comment, date, the
// host's own modes, access lists and attributes, and the ".uaem" file. What is inside of drawers is
// the work of CopyTree.h.
//
// A file becomes visible under its name when it is whole: a copy that fails leaves what was there
// before. What the target cannot keep does not fail a copy, the result tells of it.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace dos {

// How a copy came out; for all but Done the reason is in IoErr.
enum class CopyEnd {
    SourceRefused,  // not found, not readable, or nothing that can be copied (212)
    TargetRefused,  // cannot be made or replaced: 203 is there already, 222, 223, 202 the same object
    ContentsFailed, // reading or writing failed
    SourceChanged,  // its size changed under way (202)
    Cancelled,      // by the progress function (304)
    SourceKept,     // of a move: the copy is whole, but the source cannot be deleted
    Done,
};

// What the target could not keep, as bits of CopyResult::Lost.
inline constexpr unsigned LostProtection = 1u << 0; // bits or modes
inline constexpr unsigned LostComment = 1u << 1;
inline constexpr unsigned LostDate = 1u << 2;
inline constexpr unsigned LostAttributes = 1u << 3; // those of other programs
inline constexpr unsigned LostAccess = 1u << 4;     // access lists

struct CopyResult {
    CopyEnd End = CopyEnd::SourceRefused;
    unsigned Lost = 0;

    explicit operator bool() const noexcept { return End == CopyEnd::Done; }
};

struct CopyOptions {
    bool Date = true;         // is kept; else the copy is dated now
    bool Protection = true;   // bits, modes and access lists are kept; else those of what is replaced
    bool Comment = true;      // is kept; else that of what is replaced
    bool Replaces = false;    // a file that is there; else 203
    bool FollowsLink = false; // copies what a soft link at the end of the source path leads to
    bool Moves = false;       // the source goes: by renaming within a disk, else after its copy;
                              // never together with FollowsLink (209). Under a new name a renamed
                              // object keeps all; it replaces a file only where all is kept
};

// Told of the bytes copied since the last call; false cancels. Called on the caller's thread, often:
// it decides itself how often it has something to do.
using CopyProgress = std::function<bool(std::uint64_t bytes)>;

// Copies a file, a soft link as a link, or a drawer without what is in it. A soft link at the end of
// the target path is written through by a file. An object that is shown under an alias keeps its
// real name when the target ends in that alias. A file that may not be read is refused (224), also
// when only its sidecar says so. Drawers are not moved across disks (215). Between
// devices that are no disks only contents, bits, comment and date go over, and nothing moves (209).
[[nodiscard]] CopyResult Copy(std::string_view from, std::string_view to, const CopyOptions& options = {},
                              const CopyProgress& progress = {});

} // namespace dos
