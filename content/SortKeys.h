// What the entries of a drawer are sorted by, and the order that a list of keys ends up in.
// Knows neither lists nor rows; SortLists applies the order.
#pragma once

#include "model/ContentNode.h"
#include "sak/SortGenericLists.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace solvane {

// Column numbers of a Details view; each is also a sort key.
enum class DetailsColumn : std::int32_t {
    Icon = 0,
    Name = 1,
    Size,
    Date,
    Type,
    Protection,
    Filenote,
    Dimensions,
    Title,
    Time,
    Artist,
    AlbumArtist,
    Album,
    Track,
    Disc,
    Year,
    Genre,
    Comment,
    Composer,
    BitRate,
    SampleRate,
    Encoder,
    Mode,
    Codec,
    Version = 24,
};
inline constexpr std::int32_t DetailsColumnCount = 25; // the icon column counted

// The text that a text column sorts by; the name for a column that is none. By name, SortPrefix counts first.
[[nodiscard]] std::string_view TextKey(const ContentNode& node, DetailsColumn column);
[[nodiscard]] bool IsNumberColumn(DetailsColumn column);

// Puts nodes, given in the order of their arrival, into their order by that column, as OrderAsInserted has
// it.
void OrderByKey(std::vector<ContentNode*>& nodes, DetailsColumn column, SortOrder order);

} // namespace solvane
