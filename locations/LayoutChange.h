// Switching bars and panes of the open window on and off, as the user picks it.
#pragma once

#include <cstdint>

namespace solvane {

// The bars and panes, by their places in the chooser and the menu "Layout".
inline constexpr std::int32_t LayoutBookmarks = 0, LayoutToolbar = 1, LayoutUserButtons = 2;
inline constexpr std::int32_t LayoutNavigation = 3, LayoutPreviewHorizontal = 4, LayoutPreviewVertical = 5;
inline constexpr std::int32_t LayoutDetails = 6, LayoutThumbnail = 7, LayoutStatusBar = 8;

// Reads the panes' weights into Prefs, and switches that pane or the status bar. Of the two styles of the
// Preview pane the one in force switches it off. Rows and selection of the Content list stay as they are.
void ChangeLayout(std::int32_t layout);

// ChangeLayout for a pick of a Preview pane by a script: the style in force counts as the horizontal one,
// whichever it is. The weights are those of the style that was.
void ChangePreviewFromHorizontal(std::int32_t layout);

// The same for a bar.
void ChangeToolbars(std::int32_t layout);

// One of the two, for a pick among all of them.
void ChangeLayoutOrToolbars(std::int32_t layout);

// Switches the Preview pane on or off, in the style that it had last.
void TurnPreviewPane();

} // namespace solvane
