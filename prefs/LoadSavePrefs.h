// The preferences document and the small files beside it: reads them into Prefs and its lists and writes them
// back.
#pragma once

namespace solvane {

// Makes the record with its defaults. False when it cannot be had; the message was shown.
[[nodiscard]] bool DefaultPrefs();
void FreePrefs();

// Fills Prefs and the lists from ProgramPrefsFile; a missing or broken document, like a missing key, gives
// the defaults. A broken one is kept under a name of its own beside it (".broken"); while that fails, and
// while the document cannot be read, no save replaces it. False after a message when a list cannot be filled:
// those before it stand.
bool LoadPrefs();

// Brings the record up to date with the open window, unless the editor is at work on it; with writeFile not 0
// writes the document, whole or not at all, and the small files. False after a message; the old document then
// stands as it was.
bool SavePrefs(int writeFile);

// Takes back the wish of a command that nothing is saved at the end. Where the document has to stand as it
// is, it still does.
void TakeBackQuitNoSave();

// Copies what the user has changed in the open window into the record: its box, where the preferences want
// that. What he does to columns stands in their lists from the moment that he does it.
void CollectPrefs();

// Sets the format in which all dates from now on are made: at start, and when settings are applied.
void SetDateFormatInForce();

// The name of the document in use, "ENVARC:Solvane/prefs". Loading leaves ProgramPrefsFile as it is when the
// file is missing or names no document of the program's drawer.
void LoadWhichPrefs();
void SaveWhichPrefs();

// Whether the program shows itself in the dock, "ENVARC:Solvane/application". Loading sets appShowInAmiDock
// and leaves it as it is when the file is missing; saving writes the setting.
void LoadApplicationPrefs();
void SaveApplicationPrefs();

// The document of a start: the one that the small file names, or the default one.
inline constexpr const char* DefaultPrefsFile = "ENVARC:Solvane/Solvane.xml";

} // namespace solvane
