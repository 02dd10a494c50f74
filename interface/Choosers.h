// The lists that pop up under buttons: their entries and marks. What a pick does is known above; where an
// entry stands in its list is said here.
#pragma once

#include "interface/MenuIds.h"
#include "platform/intuition/Layout.h"

#include <cstddef>
#include <cstdint>

namespace solvane {

inline constexpr std::uint16_t FirstScriptChoice = 2; // in the chooser of scripts; before it: any script

// Makes the choosers, which are not seen and take no room, as part of a layout of the window.
void CreateHiddenChoosers(intuition::Layout& layout);

// Each pops its chooser up under its button. Without a window or the button they do nothing.
void PopUpViewStyles(std::size_t offered, std::int32_t style); // the first styles, one of them in force
void PopUpLayout();                                            // bars and panes, those that are on marked
void PopUpTypes();
void PopUpArchiveCommands();
void PopUpScripts();

// The menu item of a position in the chooser of archive commands; MenuNone for lines and beyond the end.
[[nodiscard]] MenuId ArchiveItemAt(std::uint32_t position);

// Has the hint of the view style button name the style in force.
void UpdateGadgets_ViewStyle(std::int32_t style);

} // namespace solvane
