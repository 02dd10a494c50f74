// The sources of catalogs as people write them: a description (.cd) with numbers, names and English texts,
// and translations (.ct) that name them again. Reads and checks both; says with file and line what is wrong.
#pragma once

#include "platform/locale/CatalogFile.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace catalogs {

inline constexpr std::int32_t LastNumber = 1502;

// One text of a description. Escapes are resolved.
struct DescribedText {
    std::string Name; // "MSG_CONTINUE_GAD"
    std::int32_t Number = 0;
    std::size_t Least = 0, Most = SIZE_MAX; // bytes
    std::string Text;
    std::size_t Line = 0;
};

struct Description {
    std::vector<DescribedText> Texts; // by ascending number
    std::uint32_t Version = 0;
};

// Findings, each as "file:line: text".
using Findings = std::vector<std::string>;

// What can be read of a description. Findings tell of malformed lines, numbers outside 1 to LastNumber, not
// ascending, or doubled, of doubled names, empty texts, and texts that break their own limits.
[[nodiscard]] Description ParseDescription(std::string_view source, std::string_view file,
                                           Findings& findings);

// The catalog that a translation makes. Findings tell of texts that are missing, unknown, doubled or empty,
// of conversions ("%s", "%2$lu") and tags ("{f}") that differ from the English ones, of gadgets that differ
// in number or share their marked letter, of lengths, and of a version below the description's.
[[nodiscard]] locale::CatalogFile ParseTranslation(std::string_view source, std::string_view file,
                                                   const Description& description, Findings& findings);

} // namespace catalogs
