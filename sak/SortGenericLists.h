// The order in which records end that are put one by one into a sorted list. All lists of the program sort by
// it; what they compare is told by their owners.
#pragma once

#include "sak/GenericLists.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <functional>
#include <vector>

namespace solvane {

enum class SortOrder { Ascending, Descending };

// 0 is ascending, any other direction descending.
[[nodiscard]] constexpr SortOrder SortOrderOf(std::int32_t direction) {
    return direction == 0 ? SortOrder::Ascending : SortOrder::Descending;
}

// Puts items, given in the order of their arrival, into the order of that insertion: ascending, an item at
// least as large as all before it goes to the tail and any other before its equals; descending, every item
// goes before its equals. So it is no stable sort; intended. compare(a, b) is below, equal to or above 0.
// Each item has a member Rank, std::int32_t, that is written here. n log n comparisons whatever the arrival.
template <class Item, class Compare>
void OrderAsInserted(std::vector<Item>& items, SortOrder order, Compare compare) {
    const bool ascending = order == SortOrder::Ascending;
    std::size_t largest = 0;
    for (std::size_t at = 0; at < items.size(); ++at) {
        const bool toTail = ascending && compare(items[at], items[largest]) >= 0;
        const auto arrival = static_cast<std::int32_t>(at);
        items[at].Rank = toTail ? arrival : -arrival;
        largest = toTail ? at : largest;
    }
    std::sort(items.begin(), items.end(), [ascending, &compare](const Item& a, const Item& b) {
        const int compared = compare(a, b);
        if (compared != 0) {
            return ascending ? compared < 0 : compared > 0;
        }
        return a.Rank < b.Rank;
    });
}

// The same for the records of a list; compare takes two of them. The cursor goes to the last record; pointers
// to records stay good. A list of fewer than two is left alone.
template <class Node, class Compare>
void SAK_SortGenericList(GenericList<Node>& list, SortOrder order, Compare compare) {
    struct Item {
        Node* Record = nullptr;
        std::int32_t Rank = 0;
    };
    if (SAK_GenericListCount(list) < 2) {
        return;
    }
    std::vector<Item> items;
    items.reserve(SAK_GenericListCount(list));
    for (Node& node : list) {
        items.push_back({&node});
    }
    OrderAsInserted(items, order,
                    [&compare](const Item& a, const Item& b) { return compare(*a.Record, *b.Record); });
    std::vector<Node*> sorted;
    sorted.reserve(items.size());
    for (const Item& item : items) {
        sorted.push_back(item.Record);
    }
    static_cast<void>(SAK_ReorderGenericList(list, sorted));
}

// Compares two records by one of their texts, without regard to case.
template <class Projection>
[[nodiscard]] auto ByText(Projection textOf) {
    return [textOf](const auto& a, const auto& b) {
        const std::weak_ordering order = std::invoke(textOf, a) <=> std::invoke(textOf, b);
        return order < 0 ? -1 : (order > 0 ? 1 : 0);
    };
}

} // namespace solvane
