// Whole trees copied and deleted. The work knows people only through a control record, so that it
// serves a window, a command and a test alike; all its functions are called on the caller's thread.
// Links are never followed, and neither depth nor size of a tree has a limit of its own. On network
// and FUSE mounts a cancel is heard while the disk is waited for, and a dead one
// ends the work unless the answer is to wait on.
#pragma once

#include "platform/dos/Copy.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace dos {

enum class TreeStep { Examine, MakeDrawer, Copy, Delete };

// Something that went wrong with one object.
struct TreeTrouble {
    std::string Path;     // of the object, below the drawer that was given; empty for that itself
    TreeStep Step;        // what was tried
    long Error;           // 212 for a pipe, a socket or a device: these are never opened; 226 with an
                          // empty path for a disk that does not answer: Retry waits on for it, else
                          // the work is over
    CopyEnd End;          // of Copy; what failed
    bool IsDrawer;        // skipping it leaves all that is in it
    std::uint32_t Type{}; // as of ExamineData
};

enum class TroubleAnswer {
    Skip,  // goes on with the next
    Retry, // tries again
    Force, // takes the protection of what is in the way and tries again (222, 223)
    Abort, // ends the whole work (304)
};

// Another object has the name of a copy.
struct TreeConflict {
    std::string Path;     // of the source, below its drawer
    std::string Existing; // name of what is there, as it is shown
    bool IsDrawer;        // the source is one
    bool IsDrawerThere;   // what is there is one
};

enum class ConflictAnswer {
    Skip,    // the source, with all that is in it
    Replace, // a file by a file, but never a copy that this work made (trouble 203); drawers become one
    Rename,  // the copy gets NewName
    Abort,
};

struct ConflictReply {
    ConflictAnswer Answer = ConflictAnswer::Skip;
    std::string NewName{}; // one name; what is none skips
};

struct TreeProgress {
    std::uint64_t Objects = 0; // done so far, drawers among them
    std::uint64_t Bytes = 0;   // copied so far
};

// Empty functions stand for: no cancel; Skip; Skip, or Replace where the options say so.
struct TreeControl {
    std::function<bool(const TreeProgress&)> Progress{}; // false cancels; called often
    std::function<TroubleAnswer(const TreeTrouble&)> Trouble{};
    std::function<ConflictReply(const TreeConflict&)> Conflict{};
    // Each object that is done, if somebody wants to hear of it; Path as in TreeTrouble.
    std::function<void(const std::string& path, bool isDrawer)> Finished{};
};

struct TreeResult {
    bool IsWhole = false; // nothing was skipped, refused or cancelled
    bool IsCancelled = false;
    TreeProgress Done{};
    std::uint64_t Skipped = 0; // objects
    unsigned Lost = 0;         // of all copies, as of CopyResult
    long FirstError = 0;       // of the first object that was skipped for trouble

    explicit operator bool() const noexcept { return IsWhole; }
};

struct TreeOptions {
    CopyOptions Copy{};        // FollowsLink and Moves mean nothing here
    bool MergesDrawers = true; // a drawer that is there takes the contents without a question
};

// Copies a drawer with all that is in it; "to" is the name of the copy and is made when it is not
// there. A single file or link is copied as by Copy. Failure as a whole, with nothing touched, gives
// FirstError and IoErr: 202 for a drawer into itself, 209 where a device knows no trees.
[[nodiscard]] TreeResult CopyTree(std::string_view from, std::string_view to, const TreeOptions& options = {},
                                  const TreeControl& control = {});

enum class Protected { Respected, Forced }; // objects with the bit against deletion

// Deletes an object with all that is in it. Respected: what is protected is trouble 222, and a
// protected drawer stays with all that is in it.
[[nodiscard]] TreeResult DeleteTree(std::string_view path, Protected rule = Protected::Respected,
                                    const TreeControl& control = {});

} // namespace dos
