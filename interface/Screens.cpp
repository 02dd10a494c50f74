#include "interface/Screens.h"

namespace solvane {

bool OpenMainScreen() {
    return true;
}

void SetActiveScreen() {}

void ReleaseActiveScreen() {}

bool StartScreenNotification() {
    return true;
}

void EndScreenNotification() {}

} // namespace solvane
