// Asks the update server for a newer version; the transfer comes later.
#pragma once

namespace solvane {

// quiet 1: nothing is said when there is none.
void CheckLatestVersion(int quiet);

} // namespace solvane
