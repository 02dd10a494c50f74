#include "media/Preview.h"

namespace solvane {

void SetPreviewPaneNone() {}

void PreviewAnimRender() {}

void PreviewSoundTime() {}

void SetUpPreviewFonts() {}

} // namespace solvane
