#include "platform/locale/Catalogs.h"

#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/dos/Locks.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace locale {
namespace {

constexpr std::string_view LanguageSuffix = ".language";
constexpr std::string_view Places[] = {"PROGDIR:Catalogs/", "LOCALE:Catalogs/"};

// Names of the same language: the one that languages have here first, then how Amigas call their
// drawers. Empty entries fill a row up.
constexpr std::array<std::string_view, 4> LanguageNames[] = {
    {"croatian", "hrvatski"},
    {"czech", "česky", "čeština", "cesky"},
    {"danish", "dansk"},
    {"dutch", "nederlands"},
    {"finnish", "suomi"},
    {"french", "français", "francais"},
    {"german", "deutsch"},
    {"greek", "hellenic"},
    {"hungarian", "magyar"},
    {"italian", "italiano"},
    {"norwegian", "norsk", "bokmål"},
    {"polish", "polski"},
    {"portuguese", "português", "portugues"},
    {"spanish", "español", "espanol"},
    {"swedish", "svenska"},
    {"turkish", "türkçe", "turkce"},
};

// No volume is asked for while this exists.
class WithoutRequesters {
public:
    WithoutRequesters() : Before(dos::SetRequesters(false)) {}
    ~WithoutRequesters() { dos::SetRequesters(Before); }
    WithoutRequesters(const WithoutRequesters&) = delete;
    WithoutRequesters& operator=(const WithoutRequesters&) = delete;

private:
    bool Before;
};

std::string_view WithoutSuffix(std::string_view language) {
    const std::size_t head = language.size() - std::min(language.size(), LanguageSuffix.size());
    const bool hasSuffix = utility::Stricmp(language.substr(head), LanguageSuffix) == 0;
    return hasSuffix ? language.substr(0, head) : language;
}

void AddName(std::vector<std::string>& names, std::string_view name) {
    if (!name.empty() && std::ranges::find(names, name) == names.end())
        names.emplace_back(name);
}

// The English name of a language, in small letters; the name itself where the language is not known.
std::string EnglishName(std::string_view language) {
    const std::string_view name = WithoutSuffix(language);
    for (const auto& row : LanguageNames)
        for (const std::string_view other : row)
            if (!other.empty() && utility::Stricmp(name, other) == 0)
                return std::string(row.front());
    return utility::Fold(name);
}

// What the drawer of a language may be called: as it was given, in small letters, then its other
// names.
std::vector<std::string> DrawerNames(std::string_view language) {
    const std::string_view name = WithoutSuffix(language);
    std::vector<std::string> names;
    AddName(names, name);
    AddName(names, utility::Fold(name));
    const auto isName = [&](std::string_view other) { return utility::Stricmp(name, other) == 0; };
    for (const auto& row : LanguageNames)
        if (!name.empty() && std::ranges::any_of(row, isName))
            for (const std::string_view other : row)
                AddName(names, other);
    return names;
}

bool IsSameLanguage(std::string_view a, std::string_view b) {
    const std::vector<std::string> names = DrawerNames(a);
    return std::ranges::any_of(names, [name = WithoutSuffix(b)](const std::string& other) {
        return utility::Stricmp(name, other) == 0;
    });
}

// A language comes from settings and the environment: it names a drawer and leads nowhere else.
bool IsDrawerName(std::string_view language) {
    return language.find_first_of("/:") == std::string_view::npos;
}

// Tries one file. Why there is none in the end is told by the last that was there.
void TryFile(const std::string& path, std::uint32_t minimumVersion, OpenedCatalog& result, long& reason) {
    const std::optional<std::string> bytes = dos::ReadWhole(path, MaxCatalogFile);
    const long error = dos::IoErr();
    if (!bytes && (error == dos::ErrorObjectNotFound || error == dos::ErrorDirNotFound ||
                   error == dos::ErrorDeviceNotMounted))
        return;
    std::optional<CatalogFile> file = bytes ? ParseCatalog(*bytes) : std::nullopt;
    if (!file) {
        result.Outcome = CatalogOutcome::NoCatalog;
        reason = bytes ? dos::ErrorObjectWrongType : error;
    } else if (VersionOf(file->VersionText).Version < minimumVersion) {
        result.Outcome = CatalogOutcome::TooOld;
        reason = 0;
    } else {
        result.Texts = std::make_unique<const Catalog>(*std::move(file));
        result.Outcome = CatalogOutcome::Opened;
        reason = 0;
    }
}

OpenedCatalog OpenFor(const CatalogWish& wish, const std::vector<std::string>& languages, long& reason) {
    const WithoutRequesters quiet;
    OpenedCatalog result;
    reason = dos::ErrorObjectNotFound;
    for (const std::string& language : languages) {
        if (IsSameLanguage(wish.BuiltInLanguage, language)) {
            reason = 0;
            return {nullptr, CatalogOutcome::NotNeeded};
        }
        if (!IsDrawerName(language))
            continue;
        for (const std::string_view place : Places)
            for (const std::string& drawer : DrawerNames(language)) {
                const std::string path = std::string(place) + drawer + '/' + wish.Name;
                TryFile(path, wish.MinimumVersion, result, reason);
                if (result.Texts != nullptr) {
                    result.Language = EnglishName(language);
                    return result;
                }
            }
    }
    return result;
}

} // namespace

std::optional<std::string_view> Catalog::Find(std::int32_t id) const noexcept {
    const auto found = std::ranges::lower_bound(File.Texts, id, {}, &CatalogText::Id);
    if (found == File.Texts.end() || found->Id != id)
        return std::nullopt;
    return found->Text;
}

OpenedCatalog OpenCatalog(const CatalogWish& wish) {
    std::vector<std::string> languages = wish.Languages;
    if (languages.empty())
        languages = PreferredLanguages();
    long reason = 0;
    OpenedCatalog result = OpenFor(wish, languages, reason);
    if (result.Texts == nullptr)
        result.Language = wish.BuiltInLanguage;
    dos::SetIoErr(reason);
    return result;
}

std::string_view GetCatalogStr(const Catalog* catalog, std::int32_t id, std::string_view builtIn) noexcept {
    return catalog == nullptr ? builtIn : catalog->Find(id).value_or(builtIn);
}

} // namespace locale
