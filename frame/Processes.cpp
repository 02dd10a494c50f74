#include "frame/Processes.h"

namespace solvane {

bool SetUpProcesses() {
    return true;
}

void ShutDownProcesses() {}

} // namespace solvane
