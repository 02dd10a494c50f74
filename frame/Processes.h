// The three background helpers for menu state, toolbar state and versions; their work comes with the bars.
#pragma once

namespace solvane {

[[nodiscard]] bool SetUpProcesses();
void ShutDownProcesses();

} // namespace solvane
