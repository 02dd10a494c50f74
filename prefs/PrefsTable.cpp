#include "prefs/PrefsTable.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace solvane {

namespace {

using application::Dictionary;

constexpr std::size_t ColourDigits = 6;

template <auto Field>
using FieldType = std::remove_cvref_t<decltype(PrefsRecord().*Field)>;

// A number that the field cannot hold counts as missing.
std::int32_t InRange(std::int64_t number, std::int32_t fallback) {
    return std::in_range<std::int32_t>(number) ? static_cast<std::int32_t>(number) : fallback;
}

// Numbers are 32 bits wide, booleans 16, all else is text.
template <auto Field>
void LoadField(const Dictionary& from, std::string_view key, const PrefsRecord& defaults, PrefsRecord& into) {
    using Type = FieldType<Field>;
    if constexpr (std::same_as<Type, std::int32_t>) {
        into.*Field = InRange(from.Number(key, defaults.*Field), defaults.*Field);
    } else if constexpr (std::same_as<Type, std::int16_t>) {
        into.*Field = from.Boolean(key, defaults.*Field != 0) ? 1 : 0;
    } else {
        into.*Field = from.String(key, (defaults.*Field).View());
    }
}

template <auto Field>
void SaveField(const PrefsRecord& from, std::string_view key, Dictionary& into) {
    using Type = FieldType<Field>;
    if constexpr (std::same_as<Type, std::int32_t>) {
        into.Set(key, {std::int64_t{from.*Field}});
    } else if constexpr (std::same_as<Type, std::int16_t>) {
        into.Set(key, {from.*Field != 0});
    } else {
        into.Set(key, {std::string((from.*Field).View())});
    }
}

// A colour counts only with exactly six characters; that they are digits is not asked, so that "ZZZZZZ" can
// say that none was chosen.
template <auto Field>
void LoadColour(const Dictionary& from, std::string_view key, const PrefsRecord& defaults,
                PrefsRecord& into) {
    const std::string_view colour = from.String(key, (defaults.*Field).View());
    into.*Field = colour.size() == ColourDigits ? colour : (defaults.*Field).View();
}

template <auto Field>
constexpr PrefsKey Setting(std::string_view key) {
    return {key, LoadField<Field>, SaveField<Field>};
}

template <auto Field>
constexpr PrefsKey Colour(std::string_view key) {
    return {key, LoadColour<Field>, SaveField<Field>};
}

#define SETTING(field) Setting<&PrefsRecord::field>(#field)
#define COLOUR(field) Colour<&PrefsRecord::field>(#field)

constexpr std::array Table = {
    SETTING(ContentSortDirection),
    SETTING(ContentDetailsCISortColumn),
    SETTING(UseCommodity),
    SETTING(MonitorDrawer),
    SETTING(VerifyQuit),
    SETTING(EnableRinghio),
    SETTING(IncludeREXX),
    SETTING(ShowFullPathForAssigns),
    SETTING(SavePrefsOnExit),
    SETTING(OpenOnOwnScreen),
    SETTING(WindowX),
    SETTING(WindowY),
    SETTING(WindowWidth),
    SETTING(WindowHeight),
    SETTING(AutosaveWindowPosition),
    SETTING(StartIconified),
    SETTING(DrawersOrder),
    SETTING(StatusBar),
    SETTING(DateFormat),
    SETTING(CustomDateFormat),
    SETTING(ContentViewStyle),
    SETTING(ProcessInfoFiles),
    SETTING(ShowHiddenEntries),
    SETTING(WHDLoadGamesRootDrawer),
    SETTING(DetermineDatatype),
    SETTING(WhenScanningADrawer),
    SETTING(DefaultOpenAt),
    SETTING(DefaultOpenAtName),
    SETTING(DefaultOpenAtPath),
    COLOUR(DrawersColor),
    SETTING(DrawersBold),
    SETTING(DrawersItalic),
    SETTING(DrawersUnderline),
    COLOUR(FilesColor),
    SETTING(FilesBold),
    SETTING(FilesItalic),
    SETTING(FilesUnderline),
    COLOUR(LinksColor),
    SETTING(LinksBold),
    SETTING(LinksItalic),
    SETTING(LinksUnderline),
    COLOUR(Background1Color),
    COLOUR(Background2Color),
    SETTING(CheckForUpdates),
    SETTING(UpdateFrequency),
    SETTING(PreferredLanguage),
};

#undef SETTING
#undef COLOUR

} // namespace

std::span<const PrefsKey> PrefsKeys() {
    return Table;
}

} // namespace solvane
