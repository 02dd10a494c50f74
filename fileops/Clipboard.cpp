#include "fileops/Clipboard.h"

namespace solvane {

bool CCP_CreateClipboard() {
    return true;
}

void CCP_FreeClipboard() {}

} // namespace solvane
