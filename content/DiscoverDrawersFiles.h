// The recursive walk that file operations start with: every object below a drawer as a DOSNode. Links are
// recorded and never followed. It changes nothing on disk.
#pragma once

#include "model/ContentNode.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace solvane {

// What one walk is told and what it adds up.
struct DiscoverWalk {
    GenericList<DOSNode>* Found = nullptr;          // where the records go; must outlive the walk
    ListPosition Position = ListPosition::Tail;     // where each is placed
    std::uint16_t ClipAction = 0;                   // copied into each record
    bool ForPaste = false;                          // EntryPath is to tell the destination:
    std::string SourceRoot;                         // the drawers it begins with, case aside, ...
    std::string DestinationRoot;                    // ... become these; a link tells its own path
    std::function<void(std::string_view)> Progress; // told "12 items" as the walk goes on; may be empty
    std::uint64_t TotalBytes = 0;                   // of all files found
};

// Adds everything below the drawer, a drawer before what is in it. True when all of it was seen; otherwise
// false with the reason in dos::IoErr, and what was found until then stays in the list. A path that does not
// fit, or for a paste one outside SourceRoot, ends the walk (IoErr 120); a record that cannot be made does so
// after a requester.
[[nodiscard]] bool DiscoverDrawersFiles(DiscoverWalk& walk, std::string_view path);

} // namespace solvane
