// The lists of assigns, and the choice among the drawers of one that stands for several.
#pragma once

#include "sak/Text.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// Reads the assigns into MasterAssignsList. False when a list or record cannot be made, after a requester for
// a record; the list stays as far as it got.
[[nodiscard]] bool GetAssigns();
void SortMasterAssignsList(); // by name

// Is there an assign of that name (with its colon) now, whatever the list says?
[[nodiscard]] bool IsAssignNow(std::string_view name);

// Fills MultiAssignList with the drawers of an assign (its name with the colon), in their order. A drawer
// that cannot be found now is there as it was assigned. False when there is no such assign.
[[nodiscard]] bool GetMultiAssign(std::string_view name);

// Lets the user choose one of these drawers: its place in MultiAssignList, -1 for none.
[[nodiscard]] std::int32_t GetMultiAssignReq(std::string_view name);

// Where an assign leads: to itself, but for a multi-assign to the drawer of it that the user chooses. Empty
// when he gives that up.
[[nodiscard]] Text<1024> ChooseDrawerOfAssign(const Text<128>& name);

} // namespace solvane
