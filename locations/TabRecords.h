// The records of tabs: making and freeing them, and moving the working set of the active tab out of and into
// them. Which tab is shown is decided in Tabs.
#pragma once

#include "model/Prefs.h"
#include "model/Tabs.h"

#include <cstdint>
#include <string_view>

namespace solvane {

struct RenamedVolume;

// A number that no tab has yet.
[[nodiscard]] std::uint32_t MakeTabID();

// Makes a record at the end of TabsList, with empty lists, at the place and with the settings of the
// preferences. Null after a requester.
TabsNode* AddTab(std::uint32_t number, std::uint32_t userData);
// The same for a tab with its place in the tab bar, at the end.
TabsNode* AddTabWithLabel(std::uint32_t number, std::uint32_t userData, std::string_view label);

// Adds the extra tab, and shows the bar with it when refresh is not 0. False after a requester.
bool AddSmallTab(int refresh);

// Null when there is none. Leaves the cursor of the list alone.
[[nodiscard]] TabsNode* FindTabsNode(std::uint32_t userData);
[[nodiscard]] ClickTabNode* FindClickTab(std::uint32_t userData);

// Gathers what the window and Prefs know of the active tab in ActiveSet, and saves its values in its record.
// With keepSelection 0 the selection of the rows goes into the records too.
void BeforeSwitchTabs(int keepSelection);
// Puts the working set of the active tab back into its record, and takes out that of the other, which is the
// active tab from then on. Its rows are not shown yet. With setView not 0 choosers show its view style.
void AfterSwitchTabs(TabsNode& other, int setView);

// Gives one setting of Prefs that tabs have of their own, as it is now, to all tabs.
void GiveSettingToTabs(std::int32_t PrefsRecord::*setting);

// A volume has another name: paths, histories and labels of all tabs follow, and rows that name it are marked
// as out of date.
void RenameVolumeInTabs(const RenamedVolume& volume);

// Frees a tab with all it has, in list and bar. Of the active one only the record remains to be taken.
void DeleteTabsNode(std::uint32_t userData);

// Frees all tabs and the bar.
void FreeAllTabs();

} // namespace solvane
