// Names of host files that do not fit AmigaDOS: more than 127 bytes, or with a ":" in them, or with
// the name for which an escape beside them stands. Such a file is shown under an alias, a readable
// head, "~", 8 hexadecimal digits and the extension. Pure text; which alias belongs to which file of
// a drawer is the work of NameIndex. Private to platform/dos.
#pragma once

#include "platform/dos/Volumes.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace dos {

inline constexpr std::size_t LongestName = 127;          // bytes of a name that fits
inline constexpr std::string_view AliasColon = "\uA789"; // stands for ":"

// Can the name not be shown? It is the one for which the host's stands, where names are escaped.
[[nodiscard]] bool NeedsAlias(std::string_view name) noexcept;

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

// Finds those of a drawer whose names are added one by one, in any order.
class AliasFinder {
public:
    explicit AliasFinder(MetadataRule rule) : Rule(rule) {}

    void Add(std::string_view hostName);
    // After the last name.
    [[nodiscard]] AliasTable Table();

private:
    MetadataRule Rule;
    std::vector<std::string> Needing;
    std::unordered_set<std::string> Suspects; // shown names that an alias could collide with
    std::unordered_set<std::string> Escapes;
    std::vector<std::string> Unescaped; // that would be written as escapes now
};

} // namespace dos
