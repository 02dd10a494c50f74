#include "automation/ListKeys.h"

#include "automation/ContentEvents.h"
#include "content/ViewStyles.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Program.h"
#include "platform/intuition/Events.h"

#include <algorithm>

namespace solvane {

namespace {

using intuition::NoRow;
namespace qualifier = intuition::qualifier;

constexpr int SidewaysStep = 40; // layout units

bool HasRows() {
    return Objects.ContentList != nullptr && TotalNodes != 0 && !lblist2.empty();
}

// The selected row from which keys move on; NoRow when nothing is selected.
std::size_t SelectedRow() {
    const std::size_t marked = Objects.ContentList->Current();
    if (marked != NoRow && Objects.ContentList->IsSelected(marked)) {
        return marked;
    }
    const auto selected = Objects.ContentList->SelectedRows();
    return selected.empty() ? NoRow : selected.front();
}

std::size_t PageRows() {
    return std::max<std::size_t>(Objects.ContentList->VisibleRows() - 1, 1);
}

// The next row from there on in that direction that can be selected; NoRow without one.
std::size_t SelectableFrom(std::size_t row, bool down) {
    while (row < lblist2.size() && Objects.ContentList->IsDisabled(row)) {
        row = down ? row + 1 : row - 1; // before the first row comes NoRow
    }
    return row < lblist2.size() ? row : NoRow;
}

bool IsSelectedAlone(std::size_t row) {
    return Objects.ContentList->SelectedCount() == 1 && Objects.ContentList->IsSelected(row);
}

void MoveTo(std::size_t row) {
    if (row != NoRow && !IsSelectedAlone(row)) {
        ClickRow(row);
    }
}

// Goes so many rows on, as far as there are any.
void MoveBy(std::size_t rows, bool down) {
    const std::size_t from = SelectedRow();
    const std::size_t last = lblist2.size() - 1;
    std::size_t to = 0;
    if (from != NoRow) {
        to = down ? from + std::min(rows, last - from) : from - std::min(rows, from);
    }
    MoveTo(SelectableFrom(to, down || from == NoRow));
}

void MoveMark(bool down) {
    const std::size_t from = Objects.ContentList->Current();
    const std::size_t last = lblist2.size() - 1;
    const std::size_t to = from == NoRow ? 0
                           : down        ? std::min(from + 1, last)
                                         : from - std::min<std::size_t>(from, 1);
    Objects.ContentList->SetCurrent(to);
    Objects.ContentList->MakeVisible(to);
}

void MoveByQualifier(bool down) {
    if (!HasRows()) {
        return;
    }
    if (IsHeld(qualifier::AnyAlt)) {
        MoveMark(down);
    } else if (IsHeld(qualifier::Control)) {
        down ? MoveToLast() : MoveToFirst();
    } else if (IsHeld(qualifier::AnyShift)) {
        MoveBy(PageRows(), down);
    } else {
        MoveBy(1, down);
    }
}

void MovePage(bool down) {
    if (HasRows() && ViewStyleInForce() != ViewFilmstrip) {
        MoveBy(PageRows(), down);
    }
}

} // namespace

void ClickRow(std::size_t row) {
    if (Objects.ContentList == nullptr || row >= lblist2.size() || Objects.ContentList->IsDisabled(row)) {
        return;
    }
    Objects.ContentList->ClearSelection();
    Objects.ContentList->Select(row, true);
    Objects.ContentList->SetCurrent(row);
    Objects.ContentList->MakeVisible(row);
    RowClicked(row);
}

void MoveUp() {
    MoveByQualifier(false);
}

void MoveDown() {
    MoveByQualifier(true);
}

void MovePageUp() {
    MovePage(false);
}

void MovePageDown() {
    MovePage(true);
}

void MoveToFirst() {
    MoveTo(HasRows() ? SelectableFrom(0, true) : NoRow);
}

void MoveToLast() {
    MoveTo(HasRows() ? SelectableFrom(lblist2.size() - 1, false) : NoRow);
}

void ToggleMarkedRow() {
    if (!HasRows()) {
        return;
    }
    const std::size_t row = Objects.ContentList->Current();
    if (row == NoRow || Objects.ContentList->IsDisabled(row)) {
        return;
    }
    Objects.ContentList->Select(row, !Objects.ContentList->IsSelected(row));
    RowClicked(row);
}

void ScrollContentSideways(int direction) {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->ScrollSideways(direction * SidewaysStep);
    }
}

} // namespace solvane
