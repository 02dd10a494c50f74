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
    return {key, LoadField<Field>, SaveField<Field>};
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
#define COLOUR(field) Colour<&PrefsRecord::field>(#field)
#define FIXED(field) Fixed<&PrefsRecord::field>(#field)
#define FLAG_AS_NUMBER(field) FlagAsNumber<&PrefsRecord::field>(#field)
#define SHORT(field) Short<&PrefsRecord::field>(#field)

constexpr std::array Table = {
    SETTING(NavigationWidth),
    SETTING(ContentHeight),
    SETTING(ContentWidth),
    SETTING(ThumbnailPreviewWidth),
    SETTING(DetailsHeight),
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
    SETTING(ComputerDetailsCISortColumn),
    SETTING(FTPSitesDetailsCISortColumn),
    SETTING(ArchiveDetailsCISortColumn),
    SETTING(ContentDetailsCISortColumn),
    FIXED(Bookmarks_0Width),
    SETTING(Bookmarks_1Width),
    SETTING(Bookmarks_2Width),
    FIXED(Favorites_0Width),
    SETTING(Favorites_1Width),
    SETTING(Favorites_2Width),
    FIXED(FTPSites_0Width),
    SETTING(FTPSites_1Width),
    SETTING(FTPSites_2Width),
    SETTING(FTPSites_3Width),
    FIXED(FTPSitesRecent_0Width),
    SETTING(FTPSitesRecent_1Width),
    SETTING(FTPSitesRecent_2Width),
    SETTING(FTPSitesRecent_3Width),
    SETTING(FTPSitesRecent_4Width),
    SETTING(FTPSitesRecent_5Width),
    SETTING(FTPSitesRecent_6Width),
    FIXED(FTPSitesFull_0Width),
    SETTING(FTPSitesFull_1Width),
    SETTING(FTPSitesFull_2Width),
    SETTING(FTPSitesFull_3Width),
    SETTING(FTPSitesFull_4Width),
    SETTING(FTPSitesFull_5Width),
    FIXED(Content_0Width),
    SETTING(Content_1Width),
    SETTING(Content_2Width),
    SETTING(UseCommodity),
    SETTING(HotKey),
    SETTING(MiddleButtonAction),
    SETTING(FourthButtonAction),
    SETTING(FifthButtonAction),
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
    SETTING(WindowX),
    SETTING(WindowY),
    SETTING(WindowWidth),
    SETTING(WindowHeight),
    SETTING(AutosaveWindowPosition),
    SETTING(StartIconified),
    FLAG_AS_NUMBER(IconifyAppIcon),
    FLAG_AS_NUMBER(IconifyAppMenu),
    FLAG_AS_NUMBER(IconifyAppDocky),
    SETTING(Icon_X),
    SETTING(Icon_Y),
    SETTING(MenuImageSize),
    SETTING(ToolbarImageSize),
    SETTING(ShowVolumeLabelAs),
    SETTING(SortDevices),
    SETTING(DrawersOrder),
    SETTING(ShowEmptyDevices),
    SETTING(BookmarksBar),
    SETTING(Toolbar),
    SETTING(UserButtonsBar),
    SETTING(NavigationPane),
    SETTING(PreviewPane),
    SETTING(ThumbnailPane),
    SETTING(DetailsPane),
    SETTING(StatusBar),
    SETTING(DateFormat),
    SETTING(CustomDateFormat),
    SETTING(TilesIconSize),
    SETTING(ThumbnailSize),
    SETTING(FilmstripStyle),
    SETTING(FilmstripEffect),
    SETTING(FilmstripPosOfCurrent),
    SHORT(FilmstripOnlyDrawersAndImages),
    SHORT(FilmstripNoUpscale),
    SETTING(ChangeAllTabs),
    SETTING(BookmarksViewStyle),
    SETTING(FavoritesViewStyle),
    SETTING(WorkbenchViewStyle),
    SETTING(ComputerViewStyle),
    SETTING(AssignsViewStyle),
    SETTING(FTPSitesViewStyle),
    SETTING(ArchiveViewStyle),
    SETTING(ContentViewStyle),
    SETTING(ProcessInfoFiles),
    SETTING(ShowHiddenEntries),
    SETTING(ShowActualIcons),
    SETTING(EnableWHDLoadSupport),
    SETTING(WHDLoadGamesRootDrawer),
    SETTING(PreviewStyle),
    SETTING(TextTabSize),
    SETTING(UseDefaultFont),
    SETTING(TextFont),
    SETTING(TextFontSize),
    SETTING(MonoTextFont),
    SETTING(MonoTextFontSize),
    SETTING(AutoplaySoundFiles),
    SETTING(SoundVolume),
    SETTING(ShowMP3Data),
    SETTING(CoverArtName),
    SETTING(CoverArtKeepOriginal),
    SETTING(CoverArtWidth),
    SETTING(CoverArtHeight),
    SETTING(ShowImageDetails),
    COLOUR(ImageBackgroundColor),
    COLOUR(ImageDetailsTextColor),
    SETTING(ShowEXIFData),
    SETTING(RotateJPEG),
    SETTING(ShowThumbnail),
    SETTING(ShowAnimLoadingProgress),
    SETTING(DetermineDatatype),
    SETTING(WhenScanningADrawer),
    SETTING(DefaultOpenAt),
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
    SETTING(DuplicateFileHashType),
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
    SETTING(OutputWindowX),
    SETTING(OutputWindowY),
    SETTING(OutputWindowWidth),
    SETTING(OutputWindowHeight),
    SETTING(CloseOutputWindow),
    SETTING(CheckForUpdates),
    SETTING(UpdateFrequency),
    SETTING(PreferredLanguage),
};

#undef SETTING
#undef COLOUR
#undef FIXED
#undef FLAG_AS_NUMBER
#undef SHORT

} // namespace

std::span<const PrefsKey> PrefsKeys() {
    return Table;
}

} // namespace solvane
