#include "interface/Screens.h"

#include "model/Program.h"

namespace solvane {

Text<140> ActiveScreen;

bool OpenMainScreen() {
    return true;
}

void SetActiveScreen() {
    ActiveScreen = DefaultPubScreenID;
}

void ReleaseActiveScreen() {
    ActiveScreen.Clear();
}

void ScreenToFront() {}

bool StartScreenNotification() {
    return true;
}

void EndScreenNotification() {}

} // namespace solvane
