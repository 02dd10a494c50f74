#include "content/ShownList.h"

#include "interface/MainLayout.h"

#include <algorithm>

namespace solvane {

namespace {

bool IsSelected(const ListRow& row) {
    if (row.Record == nullptr) {
        return false;
    }
    if (Objects.ContentList != nullptr) {
        return Objects.ContentList->IsSelected(static_cast<std::size_t>(&row - lblist2.data()));
    }
    return row.Record->Selected != 0;
}

template <class Predicate>
ListRow* FirstRow(Predicate fits) {
    const auto found = std::find_if(lblist2.begin(), lblist2.end(), fits);
    return found != lblist2.end() ? &*found : nullptr;
}

} // namespace

ListRow* FindListNode(std::string_view text, std::uint32_t kind) {
    return FirstRow([text, kind](const ListRow& row) {
        return row.Record != nullptr && row.DrawerOrFile == kind &&
               row.Record->EntryDisplayName.SameBytes(text);
    });
}

ListRow* FindSelectedListNode() {
    return FirstRow(IsSelected);
}

ListRow* FindFirstSelectedListNodeAndUnselect() {
    ListRow* row = FindSelectedListNode();
    if (row != nullptr) {
        row->Record->Selected = 0;
        if (Objects.ContentList != nullptr) {
            Objects.ContentList->Select(static_cast<std::size_t>(row - lblist2.data()), false);
        }
    }
    return row;
}

bool ListHasItems() {
    return !lblist2.empty();
}

std::uint32_t GetListCount() {
    return static_cast<std::uint32_t>(lblist2.size());
}

} // namespace solvane
