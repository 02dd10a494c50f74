// The preferences document and the small files beside it: reads them into Prefs and writes them back.
#pragma once

namespace solvane {

// Makes the record with its defaults. False when it cannot be had; the message was shown.
[[nodiscard]] bool DefaultPrefs();
void FreePrefs();

// Fills Prefs from ProgramPrefsFile; a missing or broken document, like a missing key, gives the defaults.
bool LoadPrefs();

// Brings the record up to date with the open window; with writeFile not 0 writes the document too, whole or
// not at all. False after a message.
bool SavePrefs(int writeFile);

// Copies the geometry of the open window into the record.
void CollectPrefs();

// The name of the document in use, "ENVARC:Solvane/prefs".
void LoadWhichPrefs();
void SaveWhichPrefs();

// Whether the program shows itself in the dock, "ENVARC:Solvane/application".
void LoadApplicationPrefs();

// What a first start fills the lists with.
void RestoreDefaultToolbar();
void RestoreDefaultFavorites();

// The document of a start: the one that the small file names, or the default one.
inline constexpr const char* DefaultPrefsFile = "ENVARC:Solvane/Solvane.xml";

} // namespace solvane
