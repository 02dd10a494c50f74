#include "media/Preview.h"

namespace solvane {

exec::SignalMask PreviewSoundSignal = 0;

void SetPreviewPaneNone() {}

void RefreshFilmstrip() {}

void FreeFilmstripList() {}

void PreviewAnimRender() {}

void PreviewSoundTime() {}

void SetUpPreviewFonts() {}

} // namespace solvane
