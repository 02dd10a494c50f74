// Catalogs of the user's language: finds the file that fits, looks texts up by number. Says nothing
// to the user; a program without a catalog speaks its built-in language.
#pragma once

#include "platform/locale/CatalogFile.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace locale {

inline constexpr std::size_t MaxCatalogFile =
    std::size_t{16} * 1024 * 1024; // bytes; larger files are not read

struct CatalogWish {
    std::string Name;                   // "solvane.catalog"
    std::vector<std::string> Languages; // the best first; none: the user's
    std::string BuiltInLanguage = "english";
    std::uint32_t MinimumVersion = 0; // a file below it is passed over
};

enum class CatalogOutcome {
    Opened,
    NotNeeded, // the built-in language is wanted before any that has a catalog; IoErr 0
    NotFound,  // IoErr 205
    TooOld,    // what was found is below the minimum; IoErr 0
    NoCatalog, // what was found is no catalog or cannot be read; the reason is in IoErr
};

class Catalog {
public:
    explicit Catalog(CatalogFile file) noexcept : File(std::move(file)) {}

    // The text of a number; nothing when the catalog has none.
    [[nodiscard]] std::optional<std::string_view> Find(std::int32_t id) const noexcept;
    [[nodiscard]] const CatalogFile& Contents() const noexcept { return File; }

private:
    CatalogFile File;
};

struct OpenedCatalog {
    std::unique_ptr<const Catalog> Texts; // null unless opened
    CatalogOutcome Outcome = CatalogOutcome::NotFound;
    std::string Language = {}; // what the texts are in, by its English name where it is known; the built-in
                               // one unless opened
};

// Looks language by language in "PROGDIR:Catalogs/<language>/" and "LOCALE:Catalogs/<language>/".
// Languages compare without regard to case and have several names ("german", "deutsch"); a
// ".language" behind one is ignored. A missing LOCALE: asks nobody for a volume.
[[nodiscard]] OpenedCatalog OpenCatalog(const CatalogWish& wish);

// The text of a number, else the one given; a null catalog has none. Valid as long as both.
[[nodiscard]] std::string_view GetCatalogStr(const Catalog* catalog, std::int32_t id,
                                             std::string_view builtIn) noexcept;

} // namespace locale
