// The shared bitmaps of toolbars and panes. Row images are loaded by the list browser itself, so there is
// nothing to load here until the panes come.
#pragma once

namespace solvane {

[[nodiscard]] bool LoadBitMapImages();
void DisposeBitMapImages();

} // namespace solvane
