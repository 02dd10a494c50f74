// The sets of columns that lists have, as one table: titles, usual widths, and where the widths that the user
// gives them are kept. ColumnInfo brings them on screen.
#pragma once

#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/intuition/Gadget.h"

#include <cstdint>
#include <memory>
#include <span>

namespace solvane {

inline constexpr std::int32_t IconColumnWidth = 26; // pixels, where the picture is a small one

enum class ColumnSet : std::uint8_t {
    IconsCI,
    ListCI,
    TilesCI,
    ContentCI,
    ThumbnailCI,
    FilmstripCI,
    DetailsCI,
    ComputerCI,
    AssignsCI,
    ArchiveCI,
    BookmarksCI,
    FavoritesCI,
    FTPSitesCI,
    FTPSitesRecentCI,
    FTPSitesFullCI,
    SearchCI,
    DuplicateCI,
    Last = DuplicateCI
};

// One column; its place in its set is its number.
struct ColumnDefault {
    std::int32_t Title = 0;                      // number of the text; 0: none
    std::int32_t Width = 0;                      // pixels; 0: what the others leave
    std::int32_t PrefsRecord::*Stored = nullptr; // where its width is kept; null: nowhere, or in List
    bool Shown = true;                           // at first
    intuition::Align Alignment = intuition::Align::Left;
};

using ColumnList = std::unique_ptr<GenericList<ColumnInfoNode>>;

struct ColumnSetInfo {
    std::span<const ColumnDefault> Columns; // the icon's first
    ColumnList* List = nullptr; // which columns the user sees, in which order; null: all, as they are
};

[[nodiscard]] const ColumnSetInfo& InfoOf(ColumnSet set);

// The set of a list at that location in that view style. Of the online lists the recent one.
[[nodiscard]] ColumnSet ColumnSetOf(LocationKind location, std::int32_t style);

} // namespace solvane
