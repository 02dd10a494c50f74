#include "content/ColumnSets.h"

#include "sak/Messages.h"

#include <array>

namespace solvane {

namespace {

using intuition::Align;

constexpr ColumnDefault IconColumn{.Width = IconColumnWidth};

constexpr std::array Details = {
    IconColumn,
    ColumnDefault{MSG_NAME, 250},
    ColumnDefault{MSG_SIZE, 80, nullptr, true, Align::Right},
    ColumnDefault{MSG_DATE, 150},
    ColumnDefault{MSG_TYPE, 100},
    ColumnDefault{MSG_PROTECTION, 100},
    ColumnDefault{MSG_FILENOTE, 250},
    ColumnDefault{MSG_DIMENSIONS, 100, nullptr, false},
    ColumnDefault{MSG_TITLE, 130, nullptr, false},
    ColumnDefault{MSG_TIME, 50, nullptr, false},
    ColumnDefault{MSG_ARTIST, 120, nullptr, false},
    ColumnDefault{MSG_ALBUM_ARTIST, 120, nullptr, false},
    ColumnDefault{MSG_ALBUM, 120, nullptr, false},
    ColumnDefault{MSG_TRACK, 50, nullptr, false},
    ColumnDefault{MSG_DISC, 50, nullptr, false},
    ColumnDefault{MSG_YEAR, 50, nullptr, false},
    ColumnDefault{MSG_GENRE, 120, nullptr, false},
    ColumnDefault{MSG_COMMENT, 120, nullptr, false},
    ColumnDefault{MSG_COMPOSER, 120, nullptr, false},
    ColumnDefault{MSG_BIT_RATE, 60, nullptr, false},
    ColumnDefault{MSG_SAMPLE_RATE, 60, nullptr, false},
    ColumnDefault{MSG_ENCODER, 120, nullptr, false},
    ColumnDefault{MSG_MODE, 100, nullptr, false},
    ColumnDefault{MSG_CODEC, 100, nullptr, false},
    ColumnDefault{MSG_VERSION, 43, nullptr, false},
};

constexpr std::array Computer = {
    IconColumn,
    ColumnDefault{MSG_NAME, 250},
    ColumnDefault{MSG_FREE, 80, nullptr, true, Align::Right},
    ColumnDefault{MSG_USED, 80, nullptr, true, Align::Right},
    ColumnDefault{MSG_TOTAL, 120, nullptr, true, Align::Right},
    ColumnDefault{MSG_USAGE, 150},
};

constexpr std::array Assigns = {
    IconColumn,
    ColumnDefault{MSG_NAME, 200, &PrefsRecord::Assigns_1Width},
    ColumnDefault{MSG_LINK_TARGET},
};

constexpr std::array Archive = {
    IconColumn,
    ColumnDefault{MSG_NAME, 250},
    ColumnDefault{MSG_ORIGINAL_SIZE, 100, nullptr, true, Align::Right},
    ColumnDefault{MSG_PACKED_SIZE, 100, nullptr, true, Align::Right},
    ColumnDefault{MSG_RATIO, 50, nullptr, true, Align::Right},
    ColumnDefault{MSG_DATE, 120},
    ColumnDefault{MSG_PROTECTION, 65},
    ColumnDefault{MSG_FILENOTE, 100},
};

constexpr std::array Bookmarks = {
    IconColumn,
    ColumnDefault{MSG_NAME, 150, &PrefsRecord::Bookmarks_1Width},
    ColumnDefault{MSG_LINK_TARGET, 250, &PrefsRecord::Bookmarks_2Width},
};

constexpr std::array Favorites = {
    IconColumn,
    ColumnDefault{MSG_NAME, 150, &PrefsRecord::Favorites_1Width},
    ColumnDefault{MSG_LINK_TARGET, 250, &PrefsRecord::Favorites_2Width},
};

constexpr std::array FTPSites = {
    IconColumn,
    ColumnDefault{MSG_NAME, 200, &PrefsRecord::FTPSites_1Width},
    ColumnDefault{MSG_HOST, 200, &PrefsRecord::FTPSites_2Width},
    ColumnDefault{MSG_REMOTE_DRAWER, 250, &PrefsRecord::FTPSites_3Width},
};

constexpr std::array FTPSitesRecent = {
    IconColumn,
    ColumnDefault{MSG_NAME, 150, &PrefsRecord::FTPSitesRecent_1Width},
    ColumnDefault{MSG_CATEGORY, 100, &PrefsRecord::FTPSitesRecent_2Width},
    ColumnDefault{MSG_VERSION, 70, &PrefsRecord::FTPSitesRecent_3Width},
    ColumnDefault{MSG_SIZE, 70, &PrefsRecord::FTPSitesRecent_4Width, true, Align::Right},
    ColumnDefault{MSG_DATE, 125, &PrefsRecord::FTPSitesRecent_5Width},
    ColumnDefault{MSG_DESCRIPTION, 250, &PrefsRecord::FTPSitesRecent_6Width},
};

constexpr std::array FTPSitesFull = {
    IconColumn,
    ColumnDefault{MSG_NAME, 150, &PrefsRecord::FTPSitesFull_1Width},
    ColumnDefault{MSG_VERSION, 70, &PrefsRecord::FTPSitesFull_2Width},
    ColumnDefault{MSG_SIZE, 70, &PrefsRecord::FTPSitesFull_3Width, true, Align::Right},
    ColumnDefault{MSG_DATE, 125, &PrefsRecord::FTPSitesFull_4Width},
    ColumnDefault{MSG_DESCRIPTION, 250, &PrefsRecord::FTPSitesFull_5Width},
};

// The picture, its first label and its second one.
constexpr std::array Content = {
    ColumnDefault{.Width = 40, .Stored = &PrefsRecord::Content_0Width},
    ColumnDefault{MSG_NAME, 375, &PrefsRecord::Content_1Width},
    ColumnDefault{.Width = 225, .Stored = &PrefsRecord::Content_2Width},
};

constexpr std::array Plain = {IconColumn, ColumnDefault{MSG_NAME}};
constexpr std::array Search = {IconColumn, ColumnDefault{MSG_NAME, 250, &PrefsRecord::Search_1Width},
                               ColumnDefault{MSG_DRAWER}};

// In the order of ColumnSet.
constexpr std::array Sets = {
    ColumnSetInfo{Plain},
    ColumnSetInfo{Plain},
    ColumnSetInfo{Plain},
    ColumnSetInfo{Content},
    ColumnSetInfo{Plain},
    ColumnSetInfo{Plain},
    ColumnSetInfo{Details, &ShowDetailsColumnsList},
    ColumnSetInfo{Computer, &ShowComputerColumnsList},
    ColumnSetInfo{Assigns},
    ColumnSetInfo{Archive, &ShowArchiveColumnsList},
    ColumnSetInfo{Bookmarks},
    ColumnSetInfo{Favorites},
    ColumnSetInfo{FTPSites},
    ColumnSetInfo{FTPSitesRecent},
    ColumnSetInfo{FTPSitesFull},
    ColumnSetInfo{Search},
    ColumnSetInfo{Plain},
};
static_assert(Sets.size() == static_cast<std::size_t>(ColumnSet::Last) + 1);

// The set of the Details style.
ColumnSet DetailsSetOf(LocationKind location) {
    switch (location) {
    case LocationKind::Bookmarks:
        return ColumnSet::BookmarksCI;
    case LocationKind::Favorites:
        return ColumnSet::FavoritesCI;
    case LocationKind::Computer:
        return ColumnSet::ComputerCI;
    case LocationKind::Assigns:
        return ColumnSet::AssignsCI;
    case LocationKind::FTPSites:
        return ColumnSet::FTPSitesCI;
    case LocationKind::OS4Depot:
    case LocationKind::Aminet:
        return ColumnSet::FTPSitesRecentCI;
    case LocationKind::Archive:
        return ColumnSet::ArchiveCI;
    default:
        return ColumnSet::DetailsCI;
    }
}

} // namespace

const ColumnSetInfo& InfoOf(ColumnSet set) {
    return Sets[static_cast<std::size_t>(set)];
}

ColumnSet ColumnSetOf(LocationKind location, std::int32_t style) {
    if (location == LocationKind::SearchResults) {
        return ColumnSet::SearchCI;
    }
    if (location == LocationKind::DuplicateFiles) {
        return ColumnSet::DuplicateCI;
    }
    switch (style) {
    case ViewList:
        return ColumnSet::ListCI;
    case ViewTiles:
        return ColumnSet::TilesCI;
    case ViewContent:
        return ColumnSet::ContentCI;
    case ViewThumbnail:
        return ColumnSet::ThumbnailCI;
    case ViewFilmstrip:
        return ColumnSet::FilmstripCI;
    case ViewIcons:
        return ColumnSet::IconsCI;
    default:
        return DetailsSetOf(location);
    }
}

} // namespace solvane
