// Commands that select entries of the Content pane, and those that act on entries.
#include "automation/ARexxHandlers.h"
#include "automation/SelectCommands.h"
#include "fileops/RenameFiles.h"
#include "model/Program.h"

namespace solvane {

namespace {

void SelectNamed(const rexx::CommandCall& call, EntrySort sort) {
    const auto name = call.Arguments.Text("NAME");
    if (IsWindowOpen() && name) {
        SelectEntry(*name, sort);
    }
}

} // namespace

void rexx_SelectDrawer(rexx::CommandCall& call) {
    SelectNamed(call, EntrySort::Drawer);
}

void rexx_SelectFile(rexx::CommandCall& call) {
    SelectNamed(call, EntrySort::File);
}

void rexx_SelectByType(rexx::CommandCall& call) {
    const auto group = CountOf(call, "TYPE");
    if (IsWindowOpen() && group) {
        Qualifier = 0; // keys held at the last event are not meant
        SelectByType(*group);
    }
}

void rexx_Pattern(rexx::CommandCall& call) {
    const auto pattern = call.Arguments.Text("PATTERN");
    if (IsWindowOpen() && pattern && call.Arguments.Flag("CASE")) {
        Pattern(*pattern, true);
    }
}

void rexx_Rename(rexx::CommandCall& call) {
    const auto oldName = call.Arguments.Text("OLD");
    const auto newName = call.Arguments.Text("NEW");
    if (IsWindowOpen() && oldName && newName) {
        RenameFiles(*oldName, *newName);
    }
}

} // namespace solvane
