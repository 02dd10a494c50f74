// The gadgets of the Details pane: a picture, nine texts in three columns, a gauge. They show what content/
// and locations/ put into the buffers.
#pragma once

#include "platform/intuition/Layout.h"
#include "platform/intuition/WishedImages.h"
#include "sak/Text.h"

#include <memory>
#include <string_view>
#include <vector>

namespace solvane {

inline constexpr int DetailsColumns = 3; // of three texts each

// --- State: what the texts are to show; written by whoever fills the pane. All but the last are the tab's
// ---

extern Text<128>&Details1Buffer, &Details2Buffer, &Details3Buffer; // first column
extern Text<128>&Details4Buffer, &Details5Buffer, &Details6Buffer;
extern Text<128>&Details7Buffer, &Details8Buffer;
extern Text<128> Details9Buffer;

// --- Functions ---

// Makes the texts and the gauge, showing the buffers.
[[nodiscard]] std::unique_ptr<intuition::Layout> CreateDetailsPaneGroup();
// Makes the picture beside them.
[[nodiscard]] std::unique_ptr<intuition::Gadget> CreateThumbnailPane();
// The gadgets are gone with their window, or with their pane.
void ForgetDetailsGadgets();

void ClearDetailsBuffers();
// Shows the buffers of a column, 0 to 2; nothing without a Details pane.
void SetDetailsGadBuffer(int column);
void SetDetailsGadBufferAll();

// Shows all that the tab on show has kept: texts, gauge and picture.
void ShowKeptDetails();

// How full the place on show is, in per cent; -1 for a place of which that cannot be said.
void SetFuelGaugeImage(int percent);

// Whether the preferences want room for the picture.
[[nodiscard]] bool ShowsThumbnail();

// Shows a picture beside the texts: that of the first step that gives one, as soon as it is loaded, and
// meanwhile, or when none gives one, the program's own at usual; none where that is empty. A wish before it
// is dropped; one of a tab that is left waits for the tab's return, and one without a pane for the pane.
void SetThumbnailImage(std::vector<intuition::ImageStep> steps, std::string_view usual);

} // namespace solvane
