#include "automation/Windows.h"

namespace solvane {

void OpenNewSolvaneWindow(std::string_view /*argument*/) {}

} // namespace solvane
