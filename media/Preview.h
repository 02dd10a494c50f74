// The Preview pane and the sound and animation that play in it; both come with their feature.
#pragma once

#include "platform/exec/Tasks.h"

namespace solvane {

// --- State ---

extern exec::SignalMask PreviewSoundSignal; // the playing sound has ended; 0 without one

// --- Functions ---

// Ends any preview and shows the empty page.
void SetPreviewPaneNone();

void RefreshFilmstrip();
void FreeFilmstripList();
void PreviewAnimRender();
void PreviewSoundTime();
void SetUpPreviewFonts();

} // namespace solvane
