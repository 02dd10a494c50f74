// Catalog files (IFF CTLG): the texts of a program in one language, by number. Made from bytes and
// made into bytes; which file is the right one is the question of Catalogs.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace locale {

inline constexpr std::uint32_t CodeSetDefault = 0; // ISO 8859-1
inline constexpr std::uint32_t CodeSetUtf8 = 106;

struct CatalogText {
    std::int32_t Id = 0;
    std::string Text; // UTF-8

    bool operator==(const CatalogText&) const = default;
};

struct CatalogVersion {
    std::uint32_t Version = 0, Revision = 0;
    auto operator<=>(const CatalogVersion&) const = default;
};

struct CatalogFile {
    std::string VersionText; // "$VER: name version.revision (date)"
    std::string Language;    // as its own speakers call it, often; may be empty
    std::uint32_t CodeSet = CodeSetDefault;
    std::vector<CatalogText> Texts; // by ascending id, each id once
    bool IsDamaged = false;         // broken behind what is here

    bool operator==(const CatalogFile&) const = default;
};

// What the third word of a version text says; 0.0 when that is no number.
[[nodiscard]] CatalogVersion VersionOf(std::string_view versionText);

// Nothing when the bytes are no catalog at all. Texts are read by the code set that the catalog names, the
// default where that is unknown or has characters of several bytes; what is nothing in the set, or no valid
// UTF-8, gets replacement marks. Of texts with the same id the first counts.
[[nodiscard]] std::optional<CatalogFile> ParseCatalog(std::string_view bytes);

// The text in a code set: UTF-8, or ISO 8859-1 for the default. Nothing when the set lacks a
// character, is another one, or the text has a NUL in it.
[[nodiscard]] std::optional<std::string> EncodeText(std::string_view text, std::uint32_t codeSet);

// The bytes of a catalog file; the order of the texts does not matter. Nothing when an id comes
// twice, a text does not go into the code set (as EncodeText tells) or the whole is too large.
[[nodiscard]] std::optional<std::string> WriteCatalog(const CatalogFile& catalog);

} // namespace locale
