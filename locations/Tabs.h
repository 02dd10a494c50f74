// The tabs of a window. One tab stands for all until the tab bar comes; its place is kept over a rebuild
// here.
#pragma once

#include <cstdint>

namespace solvane {

// Makes the tabs of a new window; false after a message.
[[nodiscard]] bool SetUpTabs();

// Makes the first tab the active one.
void SetFirstTab();

// Makes a further tab active. There is none to open yet: the active tab takes the next location.
void OpenNewTab(int noRebuild);

// Makes the tab at that position active.
void SwitchToTabNumber(std::uint32_t number);

// Notes the open locations in CommandLineTabsList and sets ReopenTabs, so that a rebuilt window shows them
// again. Search results, duplicates and archives are left out, as they live in memory only.
void GetOpenTabs();

// Frees the tabs; with freeContent not 0 the entries on show too.
void FreeAllTabs(int freeContent);

} // namespace solvane
