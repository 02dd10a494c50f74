#include "interface/PlaceItems.h"

#include "interface/Menus.h"
#include "model/PrefsLists.h"

#include <memory>

namespace solvane {

std::vector<PlaceItem> BookmarksItems;
std::vector<PlaceItem> FavoritesItems;

namespace {

template <class Node>
std::vector<PlaceItem> ItemsOf(const std::unique_ptr<GenericList<Node>>& list, std::uint32_t first) {
    std::vector<PlaceItem> items;
    if (!list) {
        return items;
    }
    for (const Node& node : *list) {
        if (items.size() == MostPlaceItems) {
            break;
        }
        items.push_back({first + static_cast<std::uint32_t>(items.size()), node.Name});
    }
    return items;
}

} // namespace

void RemoveBookmarksItems() {
    BookmarksItems.clear();
}

void FillInBookmarksItems() {
    BookmarksItems = ItemsOf(MasterBookmarksList, FirstBookmarkItem);
    ShowBookmarksItems();
}

void RemoveFavoritesItems() {
    FavoritesItems.clear();
}

void FillInFavoritesItems() {
    FavoritesItems = ItemsOf(MasterFavoritesList, FirstFavoriteItem);
    ShowFavoritesItems();
}

} // namespace solvane
