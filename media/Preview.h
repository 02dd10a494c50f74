// The Preview pane and the sound and animation that play in it; both come with their feature.
#pragma once

namespace solvane {

// Ends any preview and shows the empty page.
void SetPreviewPaneNone();

void PreviewAnimRender();
void PreviewSoundTime();
void SetUpPreviewFonts();

} // namespace solvane
