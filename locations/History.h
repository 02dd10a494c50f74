// Where the user has been. There is no history yet; places are told to it where they will be needed.
#pragma once

#include "model/Content.h"

#include <string_view>

namespace solvane {

void AddHistoryNode(std::string_view name, std::string_view path, LocationKind location);

} // namespace solvane
