#include "prefs/PrefsTable.h"

#include "model/Content.h"

#include <algorithm>
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

// Pixels.
constexpr std::int32_t NarrowestColumn = 8, WidestColumn = 4096;
constexpr std::int32_t SmallestWindow = 50, LargestWindow = 16384;
constexpr std::int32_t FarthestPlace = 32767; // a coordinate of a screen
constexpr std::int32_t LargestPicture = 16384;
constexpr std::int32_t SmallestFont = 4, LargestFont = 200;

template <auto Field>
using FieldType = std::remove_cvref_t<decltype(PrefsRecord().*Field)>;

// A number that the field cannot hold counts as missing.
std::int32_t InRange(std::int64_t number, std::int32_t fallback) {
    return std::in_range<std::int32_t>(number) ? static_cast<std::int32_t>(number) : fallback;
}

// A cut path would lead elsewhere.
template <auto Field>
constexpr bool IsPath = std::same_as<FieldType<Field>, Text<1024>>;

// Numbers are 32 bits wide, booleans 16, all else is text. A path that does not fit counts as missing.
template <auto Field>
void LoadField(const Dictionary& from, std::string_view key, const PrefsRecord& defaults, PrefsRecord& into) {
    using Type = FieldType<Field>;
    if constexpr (std::same_as<Type, std::int32_t>) {
        into.*Field = InRange(from.Number(key, defaults.*Field), defaults.*Field);
    } else if constexpr (std::same_as<Type, std::int16_t>) {
        into.*Field = from.Boolean(key, defaults.*Field != 0) ? 1 : 0;
    } else {
        const std::string_view text = from.String(key, (defaults.*Field).View());
        into.*Field = IsPath<Field> && text.size() > Type::Limit ? (defaults.*Field).View() : text;
    }
}

// A choice that there is not counts as missing.
template <auto Field, std::int32_t First, std::int32_t Last>
void LoadChoice(const Dictionary& from, std::string_view key, const PrefsRecord& defaults,
                PrefsRecord& into) {
    const std::int64_t number = from.Number(key, defaults.*Field);
    into.*Field = number >= First && number <= Last ? static_cast<std::int32_t>(number) : defaults.*Field;
}

// The icon view is on no menu, and yet a style.
template <auto Field, std::int32_t Last>
void LoadStyle(const Dictionary& from, std::string_view key, const PrefsRecord& defaults, PrefsRecord& into) {
    if (from.Number(key, defaults.*Field) == ViewIcons) {
        into.*Field = ViewIcons;
    } else {
        LoadChoice<Field, ViewList, Last>(from, key, defaults, into);
    }
}

// A measure beyond its limits would make the window or one of its parts unusable.
template <auto Field, std::int32_t Least, std::int32_t Most>
void LoadClipped(const Dictionary& from, std::string_view key, const PrefsRecord& defaults,
                 PrefsRecord& into) {
    into.*Field = std::clamp(InRange(from.Number(key, defaults.*Field), defaults.*Field), Least, Most);
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

// An icon column has one width only: what the document says is not taken.
template <auto Field>
void LoadFixed(const Dictionary& /*from*/, std::string_view /*key*/, const PrefsRecord& defaults,
               PrefsRecord& into) {
    into.*Field = defaults.*Field;
}

template <auto Field>
void LoadShort(const Dictionary& from, std::string_view key, const PrefsRecord& defaults, PrefsRecord& into) {
    const std::int64_t number = from.Number(key, defaults.*Field);
    into.*Field = std::in_range<std::int16_t>(number) ? static_cast<std::int16_t>(number) : defaults.*Field;
}

template <auto Field>
void SaveNumber(const PrefsRecord& from, std::string_view key, Dictionary& into) {
    into.Set(key, {std::int64_t{from.*Field}});
}

template <auto Field>
constexpr PrefsKey Setting(std::string_view key) {
    return {key, LoadField<Field>, SaveField<Field>, IsPath<Field>};
}

template <auto Field, std::int32_t First, std::int32_t Last>
constexpr PrefsKey Choice(std::string_view key) {
    return {key, LoadChoice<Field, First, Last>, SaveField<Field>};
}

template <auto Field, std::int32_t Last>
constexpr PrefsKey Style(std::string_view key) {
    return {key, LoadStyle<Field, Last>, SaveField<Field>};
}

template <auto Field, std::int32_t Least, std::int32_t Most>
constexpr PrefsKey Clipped(std::string_view key) {
    return {key, LoadClipped<Field, Least, Most>, SaveField<Field>};
}

template <auto Field>
constexpr PrefsKey Colour(std::string_view key) {
    return {key, LoadColour<Field>, SaveField<Field>};
}

template <auto Field>
constexpr PrefsKey Fixed(std::string_view key) {
    return {key, LoadFixed<Field>, SaveField<Field>};
}

// A flag that stands as a number in the document.
template <auto Field>
constexpr PrefsKey FlagAsNumber(std::string_view key) {
    return {key, LoadField<Field>, SaveNumber<Field>};
}

// A 16 bit number, written and read as one.
template <auto Field>
constexpr PrefsKey Short(std::string_view key) {
    return {key, LoadShort<Field>, SaveNumber<Field>};
}

#define SETTING(field) Setting<&PrefsRecord::field>(#field)
#define CHOICE(field, first, last) Choice<&PrefsRecord::field, first, last>(#field)
#define STYLE(field, last) Style<&PrefsRecord::field, last>(#field)
#define WEIGHT(field) Clipped<&PrefsRecord::field, 1, 99>(#field)
#define WIDTH(field) Clipped<&PrefsRecord::field, NarrowestColumn, WidestColumn>(#field)
#define PLACE(field) Clipped<&PrefsRecord::field, -FarthestPlace, FarthestPlace>(#field)
#define CLIPPED(field, least, most) Clipped<&PrefsRecord::field, least, most>(#field)
#define COLOUR(field) Colour<&PrefsRecord::field>(#field)
#define FIXED(field) Fixed<&PrefsRecord::field>(#field)
#define FLAG_AS_NUMBER(field) FlagAsNumber<&PrefsRecord::field>(#field)
#define SHORT(field) Short<&PrefsRecord::field>(#field)

constexpr std::array Table = {
    WEIGHT(NavigationWidth),
    WEIGHT(ContentHeight),
    WEIGHT(ContentWidth),
    WEIGHT(ThumbnailPreviewWidth),
    WEIGHT(DetailsHeight),
    SETTING(FavoritesHidden),
    SETTING(ComputerHidden),
    SETTING(FTPSitesHidden),
    SETTING(WorkbenchSortDirection),
    SETTING(ComputerSortDirection),
    SETTING(AssignsSortDirection),
    SETTING(FTPSitesSortDirection),
    SETTING(SearchSortDirection),
    SETTING(ArchiveSortDirection),
    SETTING(ContentSortDirection),
    CHOICE(ComputerDetailsCISortColumn, 1, 5),
    CHOICE(FTPSitesDetailsCISortColumn, 1, 6),
    CHOICE(ArchiveDetailsCISortColumn, 1, 7),
    CHOICE(ContentDetailsCISortColumn, 1, 24),
    FIXED(Bookmarks_0Width),
    WIDTH(Bookmarks_1Width),
    WIDTH(Bookmarks_2Width),
    FIXED(Favorites_0Width),
    WIDTH(Favorites_1Width),
    WIDTH(Favorites_2Width),
    FIXED(FTPSites_0Width),
    WIDTH(FTPSites_1Width),
    WIDTH(FTPSites_2Width),
    WIDTH(FTPSites_3Width),
    FIXED(FTPSitesRecent_0Width),
    WIDTH(FTPSitesRecent_1Width),
    WIDTH(FTPSitesRecent_2Width),
    WIDTH(FTPSitesRecent_3Width),
    WIDTH(FTPSitesRecent_4Width),
    WIDTH(FTPSitesRecent_5Width),
    WIDTH(FTPSitesRecent_6Width),
    FIXED(FTPSitesFull_0Width),
    WIDTH(FTPSitesFull_1Width),
    WIDTH(FTPSitesFull_2Width),
    WIDTH(FTPSitesFull_3Width),
    WIDTH(FTPSitesFull_4Width),
    WIDTH(FTPSitesFull_5Width),
    FIXED(Content_0Width),
    WIDTH(Content_1Width),
    WIDTH(Content_2Width),
    WIDTH(Assigns_1Width),
    WIDTH(Search_1Width),
    SETTING(UseCommodity),
    SETTING(HotKey),
    CHOICE(MiddleButtonAction, 0, 5),
    CHOICE(FourthButtonAction, 0, 5),
    CHOICE(FifthButtonAction, 0, 5),
    SETTING(PersistentSelect),
    SETTING(PreserveFileDate),
    SETTING(MonitorDrawer),
    SETTING(VerifyQuit),
    SETTING(EnableRinghio),
    SETTING(IncludeREXX),
    SETTING(ShowNavListbrowserHints),
    SETTING(ShowConListbrowserHints),
    SETTING(EnableInlineRename),
    SETTING(ShowInAmiDock),
    SETTING(ShowFullPathForAssigns),
    SETTING(SavePrefsOnExit),
    SETTING(EscapeToQuit),
    SETTING(UseInternalInformationSystem),
    SETTING(OpenOnOwnScreen),
    PLACE(WindowX),
    PLACE(WindowY),
    CLIPPED(WindowWidth, SmallestWindow, LargestWindow),
    CLIPPED(WindowHeight, SmallestWindow, LargestWindow),
    SETTING(AutosaveWindowPosition),
    SETTING(StartIconified),
    FLAG_AS_NUMBER(IconifyAppIcon),
    FLAG_AS_NUMBER(IconifyAppMenu),
    FLAG_AS_NUMBER(IconifyAppDocky),
    PLACE(Icon_X),
    PLACE(Icon_Y),
    CHOICE(MenuImageSize, 0, 1),
    CHOICE(ToolbarImageSize, 0, 1),
    CHOICE(ShowVolumeLabelAs, 0, 3),
    CHOICE(SortDevices, 0, 1),
    CHOICE(DrawersOrder, 0, 2),
    SETTING(ShowEmptyDevices),
    SETTING(BookmarksBar),
    SETTING(Toolbar),
    SETTING(UserButtonsBar),
    SETTING(NavigationPane),
    SETTING(PreviewPane),
    SETTING(ThumbnailPane),
    SETTING(DetailsPane),
    SETTING(StatusBar),
    CHOICE(DateFormat, 0, 2),
    SETTING(CustomDateFormat),
    SETTING(TilesIconSize),
    SETTING(ThumbnailSize),
    CHOICE(FilmstripStyle, 0, 1),
    CHOICE(FilmstripEffect, 0, 1),
    CHOICE(FilmstripPosOfCurrent, 0, 1),
    SHORT(FilmstripOnlyDrawersAndImages),
    SHORT(FilmstripNoUpscale),
    SETTING(ChangeAllTabs),
    STYLE(BookmarksViewStyle, ViewContent),
    STYLE(FavoritesViewStyle, ViewContent),
    STYLE(WorkbenchViewStyle, ViewContent),
    STYLE(ComputerViewStyle, ViewContent),
    STYLE(AssignsViewStyle, ViewContent),
    STYLE(FTPSitesViewStyle, ViewContent),
    STYLE(ArchiveViewStyle, ViewContent),
    STYLE(ContentViewStyle, ViewFilmstrip),
    SETTING(ProcessInfoFiles),
    SETTING(ShowHiddenEntries),
    SETTING(ShowActualIcons),
    SETTING(EnableWHDLoadSupport),
    SETTING(WHDLoadGamesRootDrawer),
    CHOICE(PreviewStyle, 0, 1),
    CLIPPED(TextTabSize, 1, 64),
    SETTING(UseDefaultFont),
    SETTING(TextFont),
    CLIPPED(TextFontSize, SmallestFont, LargestFont),
    SETTING(MonoTextFont),
    CLIPPED(MonoTextFontSize, SmallestFont, LargestFont),
    SETTING(AutoplaySoundFiles),
    CLIPPED(SoundVolume, 0, 64),
    SETTING(ShowMP3Data),
    CHOICE(CoverArtName, 0, 1),
    SETTING(CoverArtKeepOriginal),
    CLIPPED(CoverArtWidth, 1, LargestPicture),
    CLIPPED(CoverArtHeight, 1, LargestPicture),
    SETTING(ShowImageDetails),
    COLOUR(ImageBackgroundColor),
    COLOUR(ImageDetailsTextColor),
    SETTING(ShowEXIFData),
    SETTING(RotateJPEG),
    SETTING(ShowThumbnail),
    SETTING(ShowAnimLoadingProgress),
    CHOICE(DetermineDatatype, 0, 2),
    CHOICE(WhenScanningADrawer, 0, 1),
    CHOICE(DefaultOpenAt, 2, 13),
    SETTING(DefaultOpenAtName),
    SETTING(DefaultOpenAtPath),
    COLOUR(DevicesColor),
    SETTING(DevicesBold),
    SETTING(DevicesItalic),
    SETTING(DevicesUnderline),
    COLOUR(AssignsColor),
    SETTING(AssignsBold),
    SETTING(AssignsItalic),
    SETTING(AssignsUnderline),
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
    COLOUR(NavBackground1Color),
    COLOUR(NavBackground2Color),
    COLOUR(Background1Color),
    COLOUR(Background2Color),
    SETTING(ColorsInNavPane),
    SETTING(AutoFitColumns),
    SETTING(ShowFavorites),
    SETTING(SearchResultsNewTab),
    SETTING(DuplicateFileResultsNewTab),
    CHOICE(DuplicateFileHashType, 0, 4),
    SETTING(ArchiveManager),
    SETTING(LhAAddOptions),
    SETTING(DefaultExtractPath),
    SETTING(ExtractArchiveOptions),
    SETTING(UseLhAToExtractLhA),
    SETTING(OpenExtractionPath),
    SETTING(ShowArchiveOutputWindow),
    SETTING(EditSystem),
    SETTING(EditText),
    SETTING(EditDocument),
    SETTING(EditSound),
    SETTING(EditInstrument),
    SETTING(EditMusic),
    SETTING(EditAnimation),
    SETTING(EditPicture),
    SETTING(EditMovie),
    SETTING(EditSystemScript),
    SETTING(EditTextScript),
    SETTING(EditDocumentScript),
    SETTING(EditSoundScript),
    SETTING(EditInstrumentScript),
    SETTING(EditMusicScript),
    SETTING(EditPictureScript),
    SETTING(EditAnimationScript),
    SETTING(EditMovieScript),
    SETTING(ShowFTPSites),
    SETTING(ShowOS4DepotRecent),
    SETTING(ShowOS4DepotFull),
    SETTING(ShowAminetRecent),
    SETTING(ShowAminetFull),
    SETTING(ShowUserSites),
    SETTING(DownloadPath),
    PLACE(OutputWindowX),
    PLACE(OutputWindowY),
    CLIPPED(OutputWindowWidth, SmallestWindow, LargestWindow),
    CLIPPED(OutputWindowHeight, SmallestWindow, LargestWindow),
    SETTING(CloseOutputWindow),
    SETTING(CheckForUpdates),
    CHOICE(UpdateFrequency, 0, 2),
    SETTING(PreferredLanguage),
};

#undef SETTING
#undef CHOICE
#undef STYLE
#undef WEIGHT
#undef WIDTH
#undef PLACE
#undef CLIPPED
#undef COLOUR
#undef FIXED
#undef FLAG_AS_NUMBER
#undef SHORT

} // namespace

bool IsPassedOver(const PrefsKey& key, const Dictionary& from) {
    return key.IsPath && from.String(key.Key, {}).size() > Text<1024>::Limit;
}

std::span<const PrefsKey> PrefsKeys() {
    return Table;
}

} // namespace solvane
