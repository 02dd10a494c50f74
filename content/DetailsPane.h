// The Details pane beside the Content list. There is no pane yet: what stands here keeps the status bar,
// which is filled at the same occasions.
#pragma once

namespace solvane {

// After a scan or reload: the figures of the location on show.
void DetailsPane2();

// After a change of the selection.
void DetailsPane3();

} // namespace solvane
