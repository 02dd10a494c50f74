// Reading the bare names of a host drawer. Private to platform/dos.
#pragma once

#include "platform/dos/HostFd.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace dos {

// One entry as the drawer tells it; Name points into the block that holds it and ends in a NUL.
struct BareEntry {
    const char* Name;
    std::uint16_t Length;
    std::uint8_t Type; // DT_* of the host, 0 when the file system does not tell

    [[nodiscard]] std::string_view View() const noexcept { return {Name, Length}; }
};

// A drawer opened for reading, apart from the descriptor given; empty with errno.
[[nodiscard]] HostFd OpenForListing(int drawer);

// A piece of a drawer's names, "." and ".." left out. Does not move once it is filled.
class NameBlock {
public:
    // Reads on from where the descriptor stands: above 0 something was read (it may have held no
    // entry of interest), 0 at the end, below 0 with errno.
    [[nodiscard]] long Fill(int openDrawer);
    [[nodiscard]] const std::vector<BareEntry>& Entries() const noexcept { return Found; }

private:
    std::unique_ptr<std::byte[]> Bytes;
    std::vector<BareEntry> Found;
};

// Calls visit(std::string_view) for each name; false with errno when the drawer cannot be read to
// its end.
template <typename Visit>
[[nodiscard]] bool ForEachName(int drawer, Visit visit) {
    const HostFd open = OpenForListing(drawer);
    NameBlock block;
    long got = open ? block.Fill(open.Get()) : -1;
    for (; got > 0; got = block.Fill(open.Get()))
        for (const BareEntry& entry : block.Entries())
            visit(entry.View());
    return got == 0;
}

} // namespace dos
