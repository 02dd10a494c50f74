#include "content/SortKeys.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <bit>

namespace solvane {

namespace {

// One entry while it is being sorted. Prefix and Number order most pairs alone: Number is the whole key of a
// number column and the folded head of a text.
struct SortItem {
    std::uint64_t Number = 0;
    const char* Bytes = nullptr; // the text key
    std::uint16_t Size = 0;
    char Prefix = 0;       // order prefix before a name
    std::int32_t Rank = 0; // place among equal keys
    ContentNode* Node = nullptr;
};
static_assert(Text<4096>::Limit <= UINT16_MAX, "the longest text key fits its size");

constexpr std::size_t LongestName = 126; // bytes of a name that count behind its prefix

constexpr std::uint64_t SignBit = 1ULL << 63;

std::uint64_t FromSigned(std::int64_t value) {
    return std::bit_cast<std::uint64_t>(value) ^ SignBit;
}

// The bits of a float, turned so that they order as the numbers do; both zeros are one number.
std::uint64_t FromFloat(float value) {
    constexpr std::uint32_t Sign = 1U << 31;
    const auto bits = std::bit_cast<std::uint32_t>(value == 0.0F ? 0.0F : value);
    return (bits & Sign) != 0 ? ~bits : bits | Sign;
}

// Dates and tag numbers compare as signed values, so a date past 2046 comes before all others; intended.
std::uint64_t NumberKey(const ContentNode& node, DetailsColumn column) {
    const auto fromSigned32 = [](std::uint32_t value) {
        return FromSigned(std::bit_cast<std::int32_t>(value));
    };
    switch (column) {
    case DetailsColumn::Size:
        return FromSigned(std::bit_cast<std::int64_t>(node.EntrySize));
    case DetailsColumn::Date:
        return fromSigned32(node.DateSeconds);
    case DetailsColumn::Time:
        return fromSigned32(TagsOf(node).TagTimeSeconds);
    case DetailsColumn::BitRate:
        return fromSigned32(TagsOf(node).TagBitRate);
    case DetailsColumn::SampleRate:
        return fromSigned32(TagsOf(node).TagSampleRate);
    default:
        return FromFloat(node.VersionNumber);
    }
}

bool IsNameColumn(DetailsColumn column) {
    return column <= DetailsColumn::Name || column > DetailsColumn::Version;
}

SortItem MakeItem(ContentNode* node, DetailsColumn column) {
    SortItem item;
    item.Node = node;
    if (IsNumberColumn(column)) {
        item.Number = NumberKey(*node, column);
        return item;
    }
    std::string_view text = TextKey(*node, column);
    if (IsNameColumn(column)) {
        item.Prefix = node->SortPrefix;
        text = text.substr(0, utility::CutLength(text, LongestName));
    }
    item.Number = text.empty() ? 0 : utility::FoldPrefix(text);
    item.Bytes = text.data();
    item.Size = static_cast<std::uint16_t>(text.size());
    return item;
}

// Below, equal to or above 0. Entries that share one block of text need no look at its bytes.
int CompareKeys(const SortItem& a, const SortItem& b) {
    if (a.Prefix != b.Prefix) {
        return a.Prefix < b.Prefix ? -1 : 1;
    }
    if (a.Number != b.Number) {
        return a.Number < b.Number ? -1 : 1;
    }
    if (a.Bytes == b.Bytes) {
        return 0;
    }
    return utility::Stricmp({a.Bytes, a.Size}, {b.Bytes, b.Size});
}

} // namespace

std::string_view TextKey(const ContentNode& node, DetailsColumn column) {
    switch (column) {
    case DetailsColumn::Type:
        return node.DatatypeName;
    case DetailsColumn::Protection:
        return node.ProtectionText;
    case DetailsColumn::Filenote:
        return node.Comment;
    case DetailsColumn::Dimensions:
        return node.Dimensions;
    case DetailsColumn::Title:
        return TagsOf(node).TagTitle;
    case DetailsColumn::Artist:
        return TagsOf(node).TagArtist;
    case DetailsColumn::AlbumArtist:
        return TagsOf(node).TagAlbumArtist;
    case DetailsColumn::Album:
        return TagsOf(node).TagAlbum;
    case DetailsColumn::Track:
        return TagsOf(node).TagTrack;
    case DetailsColumn::Disc:
        return TagsOf(node).TagDisc;
    case DetailsColumn::Year:
        return TagsOf(node).TagYear;
    case DetailsColumn::Genre:
        return TagsOf(node).TagGenre;
    case DetailsColumn::Comment:
        return TagsOf(node).TagComment;
    case DetailsColumn::Composer:
        return TagsOf(node).TagComposer;
    case DetailsColumn::Encoder:
        return TagsOf(node).TagEncoder;
    case DetailsColumn::Mode:
        return TagsOf(node).TagMode;
    case DetailsColumn::Codec:
        return TagsOf(node).TagCodec;
    default:
        return node.EntryName;
    }
}

bool IsNumberColumn(DetailsColumn column) {
    switch (column) {
    case DetailsColumn::Size:
    case DetailsColumn::Date:
    case DetailsColumn::Time:
    case DetailsColumn::BitRate:
    case DetailsColumn::SampleRate:
    case DetailsColumn::Version:
        return true;
    default:
        return false;
    }
}

void OrderByKey(std::vector<ContentNode*>& nodes, DetailsColumn column, SortOrder order) {
    std::vector<SortItem> items;
    items.reserve(nodes.size());
    for (ContentNode* node : nodes) {
        items.push_back(MakeItem(node, column));
    }
    OrderAsInserted(items, order, CompareKeys);
    std::transform(items.begin(), items.end(), nodes.begin(), [](const SortItem& item) { return item.Node; });
}

} // namespace solvane
