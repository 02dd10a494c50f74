#include "automation/TypeAhead.h"

#include "automation/ListKeys.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Program.h"
#include "platform/intuition/Application.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace solvane {

Text<128> JumpToBuffer;

namespace {

constexpr std::uint32_t LastTick = 9; // after which the next key begins a new word

bool BeginsAsTyped(const ListRow& row) {
    return row.Record != nullptr &&
           utility::Strnicmp(row.Record->EntryName.View(), JumpToBuffer.View(), JumpToBuffer.Size()) == 0;
}

} // namespace

void FindFirstNodeByLetter(std::string_view text) {
    if (text.empty() || !MainWindow) {
        return;
    }
    if (SameJumpTo == 0) {
        JumpToBuffer.Clear();
        SameJumpTo = 1;
    }
    MainWindow->SetTicks(true); // this window may be another one than that of the key before
    JumpToBuffer.Append(text);
    JumpToCount = 0;
    const auto found = std::find_if(lblist2.begin(), lblist2.end(), BeginsAsTyped);
    if (found != lblist2.end()) {
        ClickRow(static_cast<std::size_t>(found - lblist2.begin()));
    } else {
        intuition::DisplayBeep();
    }
}

void TickTypeAhead() {
    if (++JumpToCount > LastTick) {
        EndTypeAhead();
    }
}

void EndTypeAhead() {
    JumpToCount = 0;
    SameJumpTo = 0;
    if (MainWindow) {
        MainWindow->SetTicks(false);
    }
}

} // namespace solvane
