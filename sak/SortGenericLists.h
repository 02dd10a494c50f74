// The order in which records end that are put one by one into a sorted list. All lists of the program sort by
// it; what they compare is told by their owners.
#pragma once

#include "sak/GenericLists.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <functional>
#include <iterator>
#include <vector>

namespace solvane {

enum class SortOrder { Ascending, Descending };

// 0 is ascending, any other direction descending.
[[nodiscard]] constexpr SortOrder SortOrderOf(std::int32_t direction) {
    return direction == 0 ? SortOrder::Ascending : SortOrder::Descending;
}

// Puts items, given in the order of their arrival, where a stable sort makes the order of that insertion of
// them: ascending, an item at least as large as all before it goes to the tail and any other before its
// equals; descending, every item goes before its equals. So the insertion is no stable sort; intended.
// compare(a, b) is below, equal to or above 0. Returns how many items, at the front, are not known to stand
// in order yet; those behind them do. Linear cost.
template <class Item, class Compare>
std::size_t ArrangeArrivals(std::vector<Item>& items, SortOrder order, Compare compare) {
    if (order == SortOrder::Descending) {
        std::reverse(items.begin(), items.end());
        const auto rises = [&compare](const Item& a, const Item& b) { return compare(a, b) > 0; };
        return std::is_sorted(items.begin(), items.end(), rises) ? 0 : items.size();
    }
    std::vector<Item> others;
    auto tail = items.begin(); // behind the last one that went to the tail, which is the largest so far
    for (Item& item : items) {
        if (tail == items.begin() || compare(item, *std::prev(tail)) >= 0) {
            *tail++ = item;
        } else {
            others.push_back(item);
        }
    }
    std::move_backward(items.begin(), tail, items.end());
    std::reverse_copy(others.begin(), others.end(), items.begin());
    return others.size();
}

// Puts items, given in the order of their arrival, into the order of that insertion. n log n comparisons
// whatever the arrival, n when the items come in order.
template <class Item, class Compare>
void OrderAsInserted(std::vector<Item>& items, SortOrder order, Compare compare) {
    const auto unsorted = static_cast<std::ptrdiff_t>(ArrangeArrivals(items, order, compare));
    const auto before = [&compare, ascending = order == SortOrder::Ascending](const Item& a, const Item& b) {
        return ascending ? compare(a, b) < 0 : compare(a, b) > 0;
    };
    std::stable_sort(items.begin(), items.begin() + unsorted, before);
    std::inplace_merge(items.begin(), items.begin() + unsorted, items.end(), before);
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
    SAK_SortGenericListBy(list, [order, &compare](std::vector<Node*>& nodes) {
        OrderAsInserted(nodes, order, [&compare](Node* a, Node* b) { return compare(*a, *b); });
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
