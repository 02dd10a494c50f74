// The panes between the bars: Navigation, Content, Preview, Thumbnail and Details, with bounds that the user
// drags. Which of them there are is said by Prefs; what stands in them is not decided here.
#pragma once

#include "platform/intuition/Layout.h"

#include <cstdint>
#include <memory>

namespace solvane {

// Makes the panes that Prefs asks for, with the weights that stand there. Called once for a window.
[[nodiscard]] std::unique_ptr<intuition::Layout> CreateNavConPreDetGroup();

// Takes panes into the open window or out of it until they are those that Prefs asks for. One that comes is
// empty but for the Details pane, which shows its buffers; the others stay as they are, rows and selection
// included.
void ArrangePanes();

// The weight of a pane in per cent of its group: as the user has dragged it, or as it is set while there is
// no such pane. That of the Content list is its height or its width, by Prefs.PreviewStyle.
[[nodiscard]] std::int32_t GetNavigationWidth();
[[nodiscard]] std::int32_t GetContentSize();
[[nodiscard]] std::int32_t GetThumbnailWidth();
[[nodiscard]] std::int32_t GetDetailsHeight();

// Reads all of them into Prefs.
void CollectPaneWeights();

} // namespace solvane
