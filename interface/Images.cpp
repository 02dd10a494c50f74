#include "interface/Images.h"

namespace solvane {

bool LoadBitMapImages() {
    return true;
}

void DisposeBitMapImages() {}

} // namespace solvane
