// What menus and the bookmarks bar show of the bookmarks and favorites: a text and a number each. The menus
// and the bar read these lists; picks come back as the number.
#pragma once

#include "sak/Text.h"

#include <cstdint>
#include <vector>

namespace solvane {

inline constexpr std::uint32_t FirstBookmarkItem = 500, FirstFavoriteItem = 600;
inline constexpr std::size_t MostPlaceItems = 100; // of each kind; those behind have no item

struct PlaceItem {
    std::uint32_t Id = 0; // the first number of its kind, and its place in the list
    Text<128> Label;
};

// --- State: written by the functions below ---

extern std::vector<PlaceItem> BookmarksItems, FavoritesItems;

// --- Functions ---

// Takes the items away before the list changes, and makes them anew from it afterwards.
void RemoveBookmarksItems();
void FillInBookmarksItems();
void RemoveFavoritesItems();
void FillInFavoritesItems();

} // namespace solvane
