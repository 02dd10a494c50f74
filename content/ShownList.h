// Looking things up among the rows of the Content list. The rows themselves are built by BuildLists; what the
// user has selected is asked of the list browser, without a window of the records.
#pragma once

#include "model/Content.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// The first row whose record has exactly that display name and which is of that kind. Null: none.
[[nodiscard]] ListRow* FindListNode(std::string_view text, std::uint32_t kind);

// The first selected row, null when there is none. The second takes its selection away, in row and record.
[[nodiscard]] ListRow* FindSelectedListNode();
[[nodiscard]] ListRow* FindFirstSelectedListNodeAndUnselect();

// Rows, the one empty row of an empty drawer counted.
[[nodiscard]] bool ListHasItems();
[[nodiscard]] std::uint32_t GetListCount();

} // namespace solvane
