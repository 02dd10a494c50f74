// Going to a drawer: the path on show, the scan, and what the window shows around it.
#pragma once

#include "sak/Text.h"

#include <optional>
#include <string_view>

namespace solvane {

// What history and tabs call a path: its last component, or all of a root.
[[nodiscard]] Text<128> NameOfPath(std::string_view path);

// What a person has typed as a path: host paths, file: URLs and "~" become volume paths, and a final "/" is
// dropped. Nothing when it does not fit.
[[nodiscard]] std::optional<Text<1024>> TypedPath(std::string_view typed);

// Makes path the path on show and the one to return to. It must fit (1023 bytes).
void SetCurrentPath(std::string_view path);

// Fills the Details pane for the place that was entered. How full a volume is comes later when its disk does
// not answer at once.
void TellEnteredPlace();

// Shows the drawer at path; name is what history calls it. When it cannot be shown the user is told and stays
// where he was, and the result is false.
bool PopulateContent2(std::string_view name, std::string_view path);

// Shows the drawer at path, which must fit, as a place that was named by its path, with the figures of an
// entered path. False when it cannot be shown, after a requester; the path on show is then what it was.
bool ScanDrawerOther(std::string_view path);

// Goes to the drawer that holds the one on show; from the root of a volume to the list of devices, from that
// of an assign to the list of assigns.
void GoToParent();

} // namespace solvane
