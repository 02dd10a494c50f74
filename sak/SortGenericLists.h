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
// Each item has a member Rank, std::int32_t, that is written here. n log n comparisons whatever the arrival,
// n when the items come in ascending order; no memory but that of the items.
template <class Item, class Compare>
void OrderAsInserted(std::vector<Item>& items, SortOrder order, Compare compare) {
    const bool ascending = order == SortOrder::Ascending;
    bool rises = true;
    std::size_t largest = 0;
    for (std::size_t at = 0; at < items.size(); ++at) {
        const bool isLargest = compare(items[at], items[largest]) >= 0;
        const auto arrival = static_cast<std::int32_t>(at);
        items[at].Rank = ascending && isLargest ? arrival : -arrival;
        largest = isLargest ? at : largest;
        rises = rises && isLargest;
    }
    if (rises) {
        if (!ascending) {
            std::reverse(items.begin(), items.end());
        }
        return;
    }
    std::sort(items.begin(), items.end(), [ascending, &compare](const Item& a, const Item& b) {
        const int compared = compare(a, b);
        if (compared != 0) {
            return ascending ? compared < 0 : compared > 0;
        }
        return a.Rank < b.Rank;
    });
}

// Has order put the records of a list, given as a vector of pointers, into another order; it may only move
// them. The cursor goes to the last record; pointers to records stay good. A list of fewer than two is left
// alone.
template <class Node, class Order>
void SAK_SortGenericListBy(GenericList<Node>& list, Order order) {
    if (SAK_GenericListCount(list) < 2) {
        return;
    }
    const std::vector<Node*> linked = SAK_GenericListNodes(list);
    std::vector<Node*> nodes = linked;
    order(nodes);
    if (nodes == linked) {
        static_cast<void>(SAK_LastGenericListNode(list)); // nothing moved: the records need no visit
    } else {
        list.Core.LinkInOrder(std::vector<ListNode*>(nodes.begin(), nodes.end()));
    }
}

// Puts the records of a list into the order of the insertion; compare takes two of them.
template <class Node, class Compare>
void SAK_SortGenericList(GenericList<Node>& list, SortOrder order, Compare compare) {
    struct Item {
        Node* Record = nullptr;
        std::int32_t Rank = 0;
    };
    SAK_SortGenericListBy(list, [order, &compare](std::vector<Node*>& nodes) {
        std::vector<Item> items;
        items.reserve(nodes.size());
        for (Node* node : nodes) {
            items.push_back({node});
        }
        OrderAsInserted(items, order,
                        [&compare](const Item& a, const Item& b) { return compare(*a.Record, *b.Record); });
        std::transform(items.begin(), items.end(), nodes.begin(),
                       [](const Item& item) { return item.Record; });
    });
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
