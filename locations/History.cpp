#include "locations/History.h"

namespace solvane {

void AddHistoryNode(std::string_view /*name*/, std::string_view /*path*/, LocationKind /*location*/) {}

} // namespace solvane
