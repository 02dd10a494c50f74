#include "online/UpdateCheck.h"

namespace solvane {

void CheckLatestVersion(int /*quiet*/) {}

} // namespace solvane
