// The texts that the user reads: the built-in English table, the catalog of the user's language over it, and
// texts by number from both. The numbers stand in sak/Messages.h, which the build makes.
#pragma once

#include "sak/Format.h"
#include "sak/Text.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace solvane {

struct CatCompString {
    std::int32_t Id;
    std::string_view Text;
};

// --- State ---

// The built-in texts by ascending number, and how many there are. Reserved numbers have an empty text.
extern const std::span<const CatCompString> CatCompArray;
extern const std::uint32_t SAK_NumAppStrings;

// In the opposite sense to its name, intended: 0 when a locale and a catalog are open and the locale's
// language is unset or English, else 1. Written by SAK_LanguageCheck.
extern std::uint16_t SAK_English;

// The locale's language without its extension ("german"). Written by SAK_LanguageCheck.
extern Text<50> SAK_LanguageName;

// The language that texts are in, by its English name ("german"). Written by SAK_LocaleOpen and
// SAK_LocaleClose.
extern Text<50> SAK_TextLanguage;

// --- Functions, of the main task unless they say otherwise ---

// Opens the locale and the catalog of a language, the user's own when the language is empty. The built-in
// language needs no catalog. False when what was found is below the version; it is not used then.
bool SAK_LocaleOpen(std::string_view catalogName, std::string_view wantedLanguage,
                    std::string_view builtInLanguage, std::uint32_t minimumVersion);
// Texts are the built-in ones from here on.
void SAK_LocaleClose();
[[nodiscard]] bool SAK_LocaleIsOpen(); // any task

void SAK_LanguageCheck();

// The text of a number, empty for one that is not in the table. It stays valid for the life of the process,
// also when another catalog is opened. Any task.
[[nodiscard]] std::string_view SAK_LocaleString(std::int32_t id);
// The built-in text alone.
[[nodiscard]] std::string_view SAK_BuiltInString(std::int32_t id);

// The text of a number with arguments for its conversions; the built-in one serves when the catalog's does
// not fit them. Any task.
template <class... Arguments>
[[nodiscard]] std::string FormatMessage(std::int32_t id, const Arguments&... arguments) {
    return FormatCatalogText(SAK_LocaleString(id), SAK_BuiltInString(id), arguments...);
}

// Fills a table from the numbers before the first -1, only when the first slot is still empty.
void SAK_LocalizeStringTable(std::span<std::string_view> table, std::span<const std::int32_t> ids);
// Fills the slots that are still empty from the numbers first to last, one slot each.
void SAK_LocalizeString(std::span<std::string_view> table, std::int32_t first, std::int32_t last);

// Characters of the longest of these labels, without their "_" marks.
[[nodiscard]] std::size_t SAK_GadToolsLongestString(std::int32_t first, std::int32_t last);

} // namespace solvane
