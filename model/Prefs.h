// The record of the user's settings, each field named by its key in the preferences document.
// prefs/ loads, saves and edits it; everything else reads it. Defaults stand beside the fields.
#pragma once

#include "sak/Text.h"

#include <cstdint>

namespace solvane {

struct PrefsRecord {
    // Panes
    std::int32_t NavigationWidth = 25; // weights in per cent
    std::int32_t DetailsHeight = 15;
    std::int16_t StatusBar = 1;

    // Sorting: direction 0 is ascending
    std::int16_t ContentSortDirection = 0;
    std::int32_t ContentDetailsCISortColumn = 1;

    // Behaviour
    std::int16_t UseCommodity = 0;
    std::int16_t MonitorDrawer = 1;
    std::int16_t VerifyQuit = 0;
    std::int16_t EnableRinghio = 0;
    std::int16_t IncludeREXX = 0;
    std::int16_t ShowFullPathForAssigns = 0;
    std::int16_t SavePrefsOnExit = 1;
    std::int16_t CheckForUpdates = 0;
    std::int32_t UpdateFrequency = 1; // 0 day, 1 week, 2 month

    // Window and icon
    std::int16_t OpenOnOwnScreen = 0;
    std::int32_t WindowX = 50, WindowY = 30, WindowWidth = 700, WindowHeight = 500; // pixels
    std::int16_t AutosaveWindowPosition = 0;
    std::int16_t StartIconified = 0;
    std::int16_t IconifyAppDocky = 0;

    // Views and dates
    std::int32_t DrawersOrder = 0; // 0 drawers first, 1 mixed, 2 files first
    std::int32_t DateFormat = 1;   // 0 default, 1 locale, 2 custom
    Text<35> CustomDateFormat;
    Text<35> EffectiveDateFormat; // not saved: the format in force, set at start
    std::int32_t ContentViewStyle = 1;
    std::int16_t ProcessInfoFiles = 1;
    std::int16_t ShowHiddenEntries = 0; // rows for names that begin with "."
    Text<1024> WHDLoadGamesRootDrawer;

    // Preview
    std::int16_t UseDefaultFont = 0;
    Text<130> TextFont = "DejaVu Sans.font";
    std::int32_t TextFontSize = 14;
    Text<128> MonoTextFont = "DejaVu Sans Mono.font";
    std::int32_t MonoTextFontSize = 14;

    // Typing
    std::int32_t DetermineDatatype = 0;   // 0 when scanning, 1 when selecting, 2 never
    std::int32_t WhenScanningADrawer = 0; // 0 collect all, 1 only the file type

    // Start location
    std::int32_t DefaultOpenAt = 5; // a LocationKind
    Text<128> DefaultOpenAtName = "Computer";
    Text<1024> DefaultOpenAtPath = "Computer";

    // Appearance: six hexadecimal digits
    Text<10> DrawersColor = "000000", FilesColor = "000000", LinksColor = "000000";
    std::int16_t DrawersBold = 0, DrawersItalic = 0, DrawersUnderline = 0;
    std::int16_t FilesBold = 0, FilesItalic = 0, FilesUnderline = 0;
    std::int16_t LinksBold = 0, LinksItalic = 0, LinksUnderline = 1;
    Text<10> Background1Color = "CFCFCF", Background2Color = "C0C0C0";

    Text<50> PreferredLanguage;
};

// --- State ---

extern PrefsRecord Prefs;        // valid between DefaultPrefs and FreePrefs
extern std::uint16_t PrefsExist; // Prefs is valid; written by DefaultPrefs and FreePrefs

} // namespace solvane
