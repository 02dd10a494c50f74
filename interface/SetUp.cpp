#include "interface/SetUp.h"

namespace solvane {

bool SAK_OpenInputDevice() {
    return true;
}

void SAK_CloseInputDevice() {}

bool SetUpOtherLists() {
    return true;
}

void FreeOtherLists() {}

bool SetUpHooks() {
    return true;
}

void FreeHooks() {}

bool SetUpChooserLists() {
    return true;
}

void FreeChooserLists() {}

void DisposeHiddenChoosers() {}

bool AllocateFileRequester() {
    return true;
}

bool AllocateFontRequester() {
    return true;
}

bool AllocateScreenModeRequester() {
    return true;
}

void FreeRequesters() {}

} // namespace solvane
