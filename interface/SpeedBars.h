// The three bars of buttons over the panes: bookmarks, toolbar, user buttons. They show the lists of the
// preferences; what a button does is decided by the main loop.
#pragma once

#include "interface/StateTable.h"
#include "platform/intuition/Button.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace solvane {

// A small button with a picture of "PROGDIR:Images/TBImages/", by the picture's plain name.
[[nodiscard]] std::unique_ptr<intuition::Button>
CreatePictureButton(std::uint16_t id, std::string_view picture, std::string_view hint);

// Takes bars into the open window or out of it until they are those that Prefs asks for, in their order, and
// fills those that came.
void ShowSpeedBars();

// Each fills its bar from its list anew; nothing while it is switched off.
void UpdateSpeedBar_Bookmarks();
void UpdateSpeedBar_Toolbar();
void UpdateSpeedBar_UserButtons();

// Makes the toolbar's buttons pickable as far as their commands are, told in the order of the buttons.
void ShowToolbarState(const ItemStates& states);

// Moves the first visible button of a bar; nothing while it is switched off.
void ScrollSpeedBar_Bookmarks(int delta);
void ScrollSpeedBar_Toolbar(int delta);
void ScrollSpeedBar_UserButtons(int delta);

} // namespace solvane
