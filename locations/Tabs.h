// Which tab is on show: opening, switching and closing tabs. Places that are to open in several tabs are
// OpenTabs' concern, tabs whose rows are out of date RescanTabs'.
#pragma once

#include "model/Tabs.h"

#include <cstdint>
#include <functional>

namespace solvane {

// Makes the tabs of a new window: those of a window that is being rebuilt, else the start-up tabs, else one;
// one for a window that was opened with a path. The extra tab comes last. False after a message.
[[nodiscard]] bool SetUpTabs();

// Makes the first tab the active one, without showing its place.
void SetFirstTab();

// Shows that tab of the bar. The rows that it has kept are shown as they are; they are read only when there
// are none, or when they are marked as out of date. The extra tab becomes a new one. With noRebuild not 0 a
// new tab stays blank, for the caller to fill at once.
void SwitchTabs(ClickTabNode* tab, int noRebuild);

// Makes the extra tab a new one and shows it: with noRebuild 0 on the default place, else blank.
void OpenNewTab(int noRebuild);

// Opens a new tab for a place to be shown in by arrive, which tells whether that could be done. If not, the
// tab is closed again and the one before is shown; the result is then false.
bool OpenNewTabFor(const std::function<bool()>& arrive);

// From 1 on; a number that no real tab has is the first.
void SwitchToTabNumber(std::uint32_t number);
// From the last tab to the first and back; nothing with one tab.
void NextTab();
void PreviousTab();

// Tab: what was to be closed is. WithWindow: it is the last tab, and the caller is to close the window, which
// ends the program or sends it to the background.
enum class Closing { Tab, WithWindow };

// Closes the active tab: its predecessor is shown, of the first one the successor.
[[nodiscard]] Closing CloseTab();
// Closes any tab; for the one that is on show the same.
[[nodiscard]] Closing CloseTabOf(std::uint32_t userData);
void CloseAllButThisTab();

// Serves a click on the tab bar.
[[nodiscard]] Closing HandleTabBar();

} // namespace solvane
