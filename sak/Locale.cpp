#include "sak/Locale.h"

#include "platform/locale/Catalogs.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"
#include "sak/StringFunctions.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>
#include <vector>

namespace solvane {

std::uint16_t SAK_English = 1;
Text<50> SAK_LanguageName;
Text<50> SAK_TextLanguage = "english";

namespace {

constexpr std::size_t MaxLanguageText = 34; // bytes of a language's file name that count

// The open catalog is read by all tasks; one that was closed stays in memory, because its texts are in use.
struct {
    std::atomic<bool> IsLocaleOpen = false;
    std::atomic<const locale::Catalog*> Catalog = nullptr;
    std::vector<std::unique_ptr<const locale::Catalog>> Opened;
} State;

// Keeps a catalog for good; one that says the same as a kept one goes, and that one is open again.
const locale::Catalog* Keep(std::unique_ptr<const locale::Catalog> catalog) {
    const auto same = std::ranges::find_if(
        State.Opened, [&catalog](const auto& kept) { return kept->Contents() == catalog->Contents(); });
    return same != State.Opened.end() ? same->get() : State.Opened.emplace_back(std::move(catalog)).get();
}

} // namespace

bool SAK_LocaleOpen(std::string_view catalogName, std::string_view wantedLanguage,
                    std::string_view builtInLanguage, std::uint32_t minimumVersion) {
    locale::CatalogWish wish{.Name = std::string(catalogName),
                             .Languages = {},
                             .BuiltInLanguage = std::string(builtInLanguage),
                             .MinimumVersion = minimumVersion};
    if (!wantedLanguage.empty()) {
        wish.Languages.emplace_back(wantedLanguage);
    }
    locale::OpenedCatalog opened = locale::OpenCatalog(wish);
    if (opened.Texts) {
        State.Catalog = Keep(std::move(opened.Texts));
    }
    SAK_TextLanguage = opened.Language;
    State.IsLocaleOpen = true;
    return opened.Outcome != locale::CatalogOutcome::TooOld;
}

void SAK_LocaleClose() {
    State.IsLocaleOpen = false;
    State.Catalog = nullptr;
    SAK_TextLanguage = "english";
}

bool SAK_LocaleIsOpen() {
    return State.IsLocaleOpen;
}

void SAK_LanguageCheck() {
    const std::string language = State.IsLocaleOpen ? locale::LanguageName() : std::string();
    const Text<MaxLanguageText + 1> work = language;
    SAK_LanguageName = work.View().substr(0, work.View().rfind('.'));
    const bool isEnglish = language.empty() || utility::Stricmp(work.View(), "english.language") == 0;
    SAK_English = State.IsLocaleOpen && State.Catalog != nullptr && isEnglish ? 0 : 1;
}

// The table begins with number 1, so the entry at the index of the number is normally the one behind it, and
// the scan finds the text. Intended.
std::string_view SAK_BuiltInString(std::int32_t id) {
    const auto index = static_cast<std::uint32_t>(id);
    if (index < SAK_NumAppStrings && CatCompArray[index].Id == id) {
        return CatCompArray[index].Text;
    }
    const auto found = std::ranges::find(CatCompArray, id, &CatCompString::Id);
    return found != CatCompArray.end() ? found->Text : std::string_view();
}

std::string_view SAK_LocaleString(std::int32_t id) {
    const std::string_view builtIn = SAK_BuiltInString(id);
    const std::string_view text = locale::GetCatalogStr(State.Catalog, id, builtIn);
    return text.empty() ? builtIn : text;
}

void SAK_LocalizeStringTable(std::span<std::string_view> table, std::span<const std::int32_t> ids) {
    if (table.empty() || !table.front().empty()) {
        return;
    }
    for (std::size_t slot = 0; slot < std::min(table.size(), ids.size()) && ids[slot] != -1; ++slot) {
        table[slot] = SAK_LocaleString(ids[slot]);
    }
}

void SAK_LocalizeString(std::span<std::string_view> table, std::int32_t first, std::int32_t last) {
    for (std::string_view& slot : table) {
        if (first > last) {
            return;
        }
        if (slot.empty()) {
            slot = SAK_LocaleString(first);
        }
        ++first;
    }
}

std::size_t SAK_GadToolsLongestString(std::int32_t first, std::int32_t last) {
    std::size_t longest = 0;
    for (std::int32_t id = first; id <= last; ++id) {
        longest = std::max(longest, SAK_GadToolsStrlen(SAK_LocaleString(id)));
    }
    return longest;
}

} // namespace solvane
