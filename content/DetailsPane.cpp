#include "content/DetailsPane.h"

#include "content/Status.h"

namespace solvane {

void DetailsPane2() {
    ShowContentStatus();
}

void DetailsPane3() {
    ShowContentStatus();
}

} // namespace solvane
