#include "frame/Toolbars.h"

#include "automation/ARexxScripts.h"
#include "frame/MenuDispatch.h"
#include "interface/Choosers.h"
#include "interface/MenuIds.h"

namespace solvane {

void HandleToolbars(std::uint32_t number) {
    if (number == 0 || number > ItemOfButton.size()) {
        return;
    }
    switch (ItemOfButton[number - 1]) {
    case MenuSelectByType:
        PopUpTypes();
        break;
    case MenuArchive:
        PopUpArchiveCommands();
        break;
    case MenuExecuteScript:
        PopUpScripts();
        break;
    default:
        HandleMenuPick(ItemOfButton[number - 1]);
        break;
    }
}

void HandleScriptChooser(std::uint32_t position) {
    if (position < FirstScriptChoice) {
        ExecuteARexxScriptSelect();
    } else {
        ExecuteListedScript(position - FirstScriptChoice);
    }
}

} // namespace solvane
