// A volume that has another name: what names it in a path follows. Where such paths are kept is for others to
// know.
#pragma once

#include "sak/Text.h"

#include <string_view>

namespace solvane {

// Both names with their colons. A path by the name of the device stays, as devices keep theirs.
struct RenamedVolume {
    std::string_view Before, Now;

    // Puts the new name into a path that begins with the old one. True when it did; a path that would become
    // too long stays as it is.
    bool PutIn(Text<1024>& path) const;
    // The same for the name of a place, which is that of the volume where its root is meant.
    bool PutIn(Text<128>& name) const;
    // Does the path begin with the new name?
    [[nodiscard]] bool Has(const Text<1024>& path) const;
};

} // namespace solvane
