#include "automation/ARexxScripts.h"

#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/CommandLine.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Paths.h"
#include "platform/intuition/FileRequester.h"
#include "platform/rexx/ScriptStart.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/SortGenericLists.h"

#include <string>
#include <string_view>
#include <utility>

namespace solvane {

namespace {

// Adds the scripts of a drawer. What prevents that is told.
bool AddScripts(std::string_view drawer) {
    dos::DirContext context = dos::ObtainDirContext(drawer);
    while (const dos::ExamineData* object = context ? dos::ExamineDir(context) : nullptr) {
        if (object->Type != dos::TypeFile || SAK_IsInfoFile(object->Name)) {
            continue;
        }
        NodePointer<ARexxNode> node = SAK_CreateGenericListNode<ARexxNode>();
        if (!node) {
            Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
            return false;
        }
        node->ScriptName = object->Name;
        if (SAK_JoinFilename(node->ScriptPath, drawer, object->Name)) {
            SAK_AddGenericListNode(*ARexxList, std::move(node));
        }
    }
    if (context && dos::IoErr() == dos::ErrorNoMoreEntries) {
        return true;
    }
    Tell(MSG_AREXX_SCAN_ERROR);
    return false;
}

} // namespace

bool DiscoverARexxScripts() {
    SAK_ClearGenericList(*ARexxList);
    Text<1024> drawer;
    const bool hasOwn = SAK_JoinFilename(drawer, ProgramDir.View(), "ARexx") && AddScripts(drawer.View());
    const bool hasOfSystem = Prefs.IncludeREXX == 0 || AddScripts("REXX:");
    SortARexxList();
    return hasOwn && hasOfSystem;
}

void SortARexxList() {
    SAK_SortGenericList(*ARexxList, SortOrder::Ascending, ByText(&ARexxNode::ScriptName));
}

void ExecuteARexxScript(std::string_view path) {
    if (path.empty()) {
        return;
    }
    const std::string line = FormatText("rx \"%s\"", dos::EscapeArgument(path));
    if (!rexx::StartScript(line, ARexxPortBuffer.View())) {
        TellDosError(path);
    }
}

void ExecuteListedScript(std::uint32_t index) {
    const ARexxNode* script = ARexxList ? SAK_GetGenericListNode(*ARexxList, index) : nullptr;
    if (script != nullptr) {
        ExecuteARexxScript(std::string(script->ScriptPath.View()));
    }
}

void ExecuteARexxScriptSelect() {
    static std::string drawer = "PROGDIR:ARexx"; // where the user has chosen last
    const auto path = intuition::RequestFile(
        MainWindow.get(), {.Title = std::string(SAK_LocaleString(MSG_TB_EXECUTE_AREXX)), .Drawer = drawer});
    if (path) {
        drawer = dos::PathPart(*path);
        ExecuteARexxScript(*path);
    }
}

} // namespace solvane
