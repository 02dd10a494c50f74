// Names of host files that do not fit AmigaDOS: more than 127 bytes, or with a ":" in them. Such a
// file is shown under an alias, a readable head, "~", 8 hexadecimal digits and the extension. Pure
// text; which alias belongs to which file of a drawer is the work of NameIndex. Private to
// platform/dos.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

inline constexpr std::size_t LongestName = 127;          // bytes of a name that fits
inline constexpr std::string_view AliasColon = "\uA789"; // stands for ":"

[[nodiscard]] bool NeedsAlias(std::string_view hostName) noexcept;

// The alias of a name; different salts give different ones. The alias of "X.info" is that of "X"
// with ".info" behind it, so that icons are found by the name of their file.
[[nodiscard]] std::string MakeAlias(std::string_view hostName, unsigned salt);

// Could it be an alias? Most names are told from one by a glance.
[[nodiscard]] bool LooksLikeAlias(std::string_view name) noexcept;

// The aliases of one drawer: each leads to one file and is the real name of none.
struct AliasTable {
    std::map<std::string, std::string, std::less<>> AliasOf; // by real name
    std::map<std::string, std::string, std::less<>> RealOf;  // by alias
};
// hostNames are those that need one; isTaken tells whether a file of the drawer is called so.
[[nodiscard]] AliasTable MakeAliasTable(std::vector<std::string> hostNames,
                                        const std::function<bool(std::string_view)>& isTaken);

} // namespace dos
