// Commands that ask for something.
#include "automation/ARexx.h"
#include "automation/ARexxHandlers.h"
#include "content/Selection.h"
#include "content/Status.h"
#include "interface/Screens.h"
#include "model/Content.h"
#include "model/Program.h"
#include "sak/Format.h"

#include <algorithm>

namespace solvane {

namespace {

void AnswerNumber(rexx::CommandCall& call, std::uint64_t number) {
    ARexxReply = FormatText("%lu", number);
    call.Result = ARexxReply.View();
}

void AnswerText(rexx::CommandCall& call, std::string_view text) {
    if (!IsWindowOpen()) {
        call.Rc = rexx::ReturnError;
        return;
    }
    ARexxReply = text;
    call.Result = ARexxReply.View();
}

enum class Which { All, Selected };

bool HasEntries(LocationKind location) {
    return location == LocationKind::Drawer || location == LocationKind::SearchResults ||
           location == LocationKind::DuplicateFiles || location == LocationKind::Archive;
}

// Rows of drawers or of files, links counted by what they lead to. All of them count in a drawer only.
std::uint64_t CountRows(bool drawers, Which which) {
    if (which == Which::All ? LBLocation != LocationKind::Drawer : !HasEntries(LBLocation)) {
        return 0;
    }
    if (which == Which::Selected) {
        SelectContentListItems();
    }
    return static_cast<std::uint64_t>(
        std::count_if(lblist2.begin(), lblist2.end(), [drawers, which](const ListRow& row) {
            return row.Record != nullptr && IsDrawerKind(row.Record->ObjectKind) == drawers &&
                   (which == Which::All || row.Record->Selected != 0);
        }));
}

} // namespace

void rexx_GetPubScreenName(rexx::CommandCall& call) {
    AnswerText(call, NameOfScreen());
}

void rexx_GetCurrentPath(rexx::CommandCall& call) {
    AnswerText(call, CurrentPath);
}

void rexx_GetNumDrawers(rexx::CommandCall& call) {
    AnswerNumber(call, CountRows(true, Which::All));
}

void rexx_GetNumFiles(rexx::CommandCall& call) {
    AnswerNumber(call, CountRows(false, Which::All));
}

void rexx_GetNumEntries(rexx::CommandCall& call) {
    AnswerNumber(call, TotalNodes);
}

void rexx_GetNumDrawersSelected(rexx::CommandCall& call) {
    AnswerNumber(call, CountRows(true, Which::Selected));
}

void rexx_GetNumFilesSelected(rexx::CommandCall& call) {
    AnswerNumber(call, CountRows(false, Which::Selected));
}

void rexx_GetNumEntriesSelected(rexx::CommandCall& call) {
    SelectContentListItems();
    AnswerNumber(call, static_cast<std::uint64_t>(std::max(NumSelected, 0)));
}

void rexx_GetBytesSelected(rexx::CommandCall& call) {
    AnswerNumber(call, SelectedBytes);
}

void rexx_GetTotalBytes(rexx::CommandCall& call) {
    AnswerNumber(call, TotalBytes);
}

} // namespace solvane
