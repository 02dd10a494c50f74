// The main menu strip: its items, the lists in it that come and go, and the marks that follow the settings.
// Which items can be picked is set by MenuState, what a pick does is decided by the main loop.
#pragma once

#include "interface/MenuIds.h"
#include "platform/intuition/Menus.h"

#include <cstdint>
#include <memory>

namespace solvane {

// --- State ---

extern std::unique_ptr<intuition::Menu> MenuStripObj; // null before CreateMainMenuStrip
extern std::uint16_t EntireMenuStripDone;             // the lists have been filled in

// --- Functions ---

// Makes the strip anew, with texts and pictures as the preferences and the language are now.
[[nodiscard]] bool CreateMainMenuStrip();
void FreeMainMenuStrip();
// Shows it in the open window.
void AttachMenuStrip();

// Fills all lists and sets all marks but that of the view style, which comes with the window.
void UpdateEntireMenuStrip();

// The marks; nothing without a strip.
void UpdateMenus_ViewMisc();
void UpdateMenus_Layout();
void UpdateMenus_ViewStyle(std::int32_t style);
// Whether there is a way back and forth.
void UpdateMenus_History();

// Lists of the strip, put in anew from what they show. Nothing without a strip.
void FillInARexxItems();
void FillInFTPSitesItems();
void FillInUserButtonsItems();
void FillInTabItems();        // the tabs that entries can be pasted to
void FillInGoItemsComputer(); // the mounted devices, to go to and to paste to
void FillInBookmarksItems();  // to go to and to paste to
void FillInFavoritesItems();

// Take these places out of the strip before their list changes.
void RemoveBookmarksItems();
void RemoveFavoritesItems();

} // namespace solvane
