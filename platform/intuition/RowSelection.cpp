#include "platform/intuition/RowSelection.h"

#include <algorithm>

namespace intuition {

void RowSelection::Reset(std::size_t rows) {
    Marks.assign(rows, false);
    Selected = 0;
}

std::vector<std::size_t> RowSelection::Rows() const {
    std::vector<std::size_t> rows;
    rows.reserve(Selected);
    for (std::size_t row = 0; row < Marks.size() && rows.size() < Selected; ++row) {
        if (Marks[row])
            rows.push_back(row);
    }
    return rows;
}

void RowSelection::Set(std::size_t row, bool selected) {
    if (row >= Marks.size() || Marks[row] == selected)
        return;
    Marks[row] = selected;
    Selected = selected ? Selected + 1 : Selected - 1;
}

void RowSelection::SetAll(bool selected) {
    Marks.assign(Marks.size(), selected);
    Selected = selected ? Marks.size() : 0;
}

void RowSelection::SetRange(std::size_t from, std::size_t to, bool selected) {
    const auto [first, last] = std::minmax({from, to});
    for (std::size_t row = first; row <= last && row < Marks.size(); ++row)
        Set(row, selected);
}

} // namespace intuition
