#include "automation/ARexxScripts.h"

#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "sak/FilenameSupport.h"
#include "sak/SortGenericLists.h"

#include <string_view>
#include <utility>

namespace solvane {

namespace {

bool AddScripts(std::string_view drawer) {
    dos::DirContext context = dos::ObtainDirContext(drawer);
    if (!context) {
        return false;
    }
    while (const dos::ExamineData* object = dos::ExamineDir(context)) {
        if (object->Type != dos::TypeFile || SAK_IsInfoFile(object->Name)) {
            continue;
        }
        NodePointer<ARexxNode> node = SAK_CreateGenericListNode<ARexxNode>();
        if (!node) {
            return false;
        }
        node->ScriptName = object->Name;
        if (SAK_JoinFilename(node->ScriptPath, drawer, object->Name)) {
            SAK_AddGenericListNode(*ARexxList, std::move(node));
        }
    }
    return dos::IoErr() == dos::ErrorNoMoreEntries;
}

} // namespace

bool DiscoverARexxScripts() {
    SAK_ClearGenericList(*ARexxList);
    Text<1024> drawer;
    if (!SAK_JoinFilename(drawer, ProgramDir.View(), "ARexx") || !AddScripts(drawer.View())) {
        return false;
    }
    if (Prefs.IncludeREXX != 0 && !AddScripts("REXX:")) {
        return false;
    }
    SortARexxList();
    return true;
}

void SortARexxList() {
    SAK_SortGenericList(*ARexxList, SortOrder::Ascending, ByText(&ARexxNode::ScriptName));
}

} // namespace solvane
