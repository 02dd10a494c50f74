// The places that the user keeps: bookmarks, which menus and a bar show, and favorites, which stand in the
// Navigation pane. Both may be a drawer or one of the lists of places.
#pragma once

#include "model/ContentNode.h"
#include "model/PrefsLists.h"

#include <cstdint>
#include <string_view>

namespace solvane {

struct RenamedVolume;

enum class AskFirst : std::uint8_t { No, Yes };

// Keeps the place on show, with the name (and drawer) that the user gives it when he is asked. What lives in
// memory alone, and the two lists themselves, are refused with a requester.
void AddCurrentLocationToBookmarks(AskFirst ask);
void AddCurrentLocationToFavorites(AskFirst ask);

// Goes to the entry at that place of the list; nothing when there is none. Alt opens a window, Control a tab.
void HandleBookmarks(std::uint32_t index);
void HandleFavorites(std::uint32_t index);
void HandleFTPSites(std::uint32_t index);

// Lets the user edit an entry, and makes its key anew. True when it was confirmed. The rows of the Navigation
// pane have the old key until they are built anew.
[[nodiscard]] bool RenameBookmarks(BookmarksNode& node);
[[nodiscard]] bool RenameFavorites(FavoritesNode& node);

// Lets the user edit each selected entry of the list of bookmarks or favorites on show, and keeps and shows
// what was changed. False, and nothing, at any other place.
[[nodiscard]] bool RenameSelectedPlaces();

// A volume has another name: bookmarks, favorites, start-up tabs and drawers of the preferences that lie on
// it follow. True when there are any: the document is for the caller to write, and so are lists on show.
[[nodiscard]] bool RenameVolumeInKeptPlaces(const RenamedVolume& volume);

void OpenAllBookmarksInTabs();
void OpenAllBookmarksInWindows();
void OpenAllFavoritesInTabs();
void OpenAllFavoritesInWindows();

// Appends a place to ContentList. Null after a requester.
ContentNode* AddPlace(std::string_view name, std::string_view path, std::string_view key);

// Appends copies of the entries to ContentList, for the list on show. True.
bool CopyFromMasterBookmarksList();
bool CopyFromMasterFavoritesList();
// Puts the entries in ContentList in the place of the list's, in their order, after a change made on show.
void CopyToMasterBookmarksList();
void CopyToMasterFavoritesList();

} // namespace solvane
