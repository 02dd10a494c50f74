// Which rows of a list are selected: one bit a row, so that any pattern over any number of rows costs the
// same. Knows nothing of the list that shows it.
#pragma once

#include <cstddef>
#include <vector>

namespace intuition {

class RowSelection {
public:
    // Forgets everything; from now on there are so many rows.
    void Reset(std::size_t rows);
    [[nodiscard]] bool Has(std::size_t row) const { return row < Marks.size() && Marks[row]; }
    [[nodiscard]] std::size_t Count() const { return Selected; }
    [[nodiscard]] std::vector<std::size_t> Rows() const; // ascending

    void Set(std::size_t row, bool selected);
    void SetAll(bool selected);
    // Rows from one to the other, both included, in either order.
    void SetRange(std::size_t from, std::size_t to, bool selected);

private:
    std::vector<bool> Marks;
    std::size_t Selected = 0;
};

} // namespace intuition
