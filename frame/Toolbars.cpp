#include "frame/Toolbars.h"

#include "automation/ARexxScripts.h"
#include "automation/SelectCommands.h"
#include "interface/Choosers.h"
#include "interface/MenuIds.h"
#include "model/Program.h"

namespace solvane {

void HandleToolbars(std::uint32_t number) {
    if (number == 0 || number > ItemOfButton.size()) {
        return;
    }
    switch (ItemOfButton[number - 1]) {
    case MenuSelectAll:
        SelectAll();
        break;
    case MenuSelectNone:
        SelectNone();
        break;
    case MenuToggleSelection:
        ToggleSelection();
        break;
    case MenuPattern:
        Pattern("", false);
        break;
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
        break; // until the command is there
    }
}

void HandleScriptChooser(std::uint32_t position) {
    if (position < FirstScriptChoice) {
        ExecuteARexxScriptSelect();
        return;
    }
    if (!ARexxList) {
        return;
    }
    std::uint32_t at = FirstScriptChoice;
    for (const ARexxNode& script : *ARexxList) {
        if (at++ == position) {
            ExecuteARexxScript(Text<1024>(script.ScriptPath).View());
            return;
        }
    }
}

} // namespace solvane
