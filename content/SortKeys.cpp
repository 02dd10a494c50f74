#include "content/SortKeys.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <iterator>
#include <numeric>

namespace solvane {

namespace {

// One entry while it is being sorted by a text. Prefix and Head order most pairs alone.
struct TextItem {
    std::uint64_t Head = 0; // folded
    const char* Bytes = nullptr;
    std::uint16_t Size = 0;
    char Prefix = 0;       // order prefix before a name
    std::int32_t Rank = 0; // place among equal keys
    ContentNode* Node = nullptr;
};
static_assert(Text<4096>::Limit <= UINT16_MAX, "the longest text key fits its size");

// One entry while it is being sorted by a number.
struct NumberItem {
    std::uint64_t Key = 0;
    ContentNode* Node = nullptr;
};

constexpr std::size_t LongestName = 126; // bytes of a name that count behind its prefix

constexpr unsigned DigitBits = 11; // of the digits by which numbers are sorted
constexpr std::uint64_t Digits = std::uint64_t{1} << DigitBits;

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

TextItem MakeItem(ContentNode* node, DetailsColumn column) {
    TextItem item;
    item.Node = node;
    std::string_view text = TextKey(*node, column);
    if (IsNameColumn(column)) {
        item.Prefix = node->SortPrefix;
        text = text.substr(0, utility::CutLength(text, LongestName));
    }
    item.Head = text.empty() ? 0 : utility::FoldPrefix(text);
    item.Bytes = text.data();
    item.Size = static_cast<std::uint16_t>(text.size());
    return item;
}

// Below, equal to or above 0. Entries that share one block of text need no look at its bytes.
int CompareTexts(const TextItem& a, const TextItem& b) {
    if (a.Prefix != b.Prefix) {
        return a.Prefix < b.Prefix ? -1 : 1;
    }
    if (a.Head != b.Head) {
        return a.Head < b.Head ? -1 : 1;
    }
    if (a.Bytes == b.Bytes) {
        return 0;
    }
    return utility::Stricmp({a.Bytes, a.Size}, {b.Bytes, b.Size});
}

void OrderByText(std::vector<ContentNode*>& nodes, DetailsColumn column, SortOrder order) {
    std::vector<TextItem> items;
    items.reserve(nodes.size());
    for (ContentNode* node : nodes) {
        items.push_back(MakeItem(node, column));
    }
    OrderAsInserted(items, order, CompareTexts);
    std::transform(items.begin(), items.end(), nodes.begin(), [](const TextItem& item) { return item.Node; });
}

// Sorts stably by one digit of the keys, from items into sorted.
void SortByDigit(const std::vector<NumberItem>& items, std::vector<NumberItem>& sorted, unsigned shift) {
    std::array<std::uint32_t, Digits + 1> places = {}; // where the next item of each digit goes
    for (const NumberItem& item : items) {
        ++places[(item.Key >> shift) % Digits + 1];
    }
    std::partial_sum(places.begin(), places.end(), places.begin());
    for (const NumberItem& item : items) {
        sorted[places[(item.Key >> shift) % Digits]++] = item;
    }
}

// Sorts stably, digit by digit from the lowest; digits that are the same in all keys cost nothing.
void SortStably(std::vector<NumberItem>& items) {
    std::uint64_t differing = 0;
    for (const NumberItem& item : items) {
        differing |= item.Key ^ items.front().Key;
    }
    std::vector<NumberItem> sorted(items.size());
    for (unsigned shift = 0; shift < 64; shift += DigitBits) {
        if ((differing >> shift) % Digits != 0) {
            SortByDigit(items, sorted, shift);
            items.swap(sorted);
        }
    }
}

// Puts items, given in the order of their arrival, where a stable sort makes the order of OrderAsInserted of
// them: those that went to the tail come last, the others before them from the last to the first.
void ArrangeArrivals(std::vector<NumberItem>& items, SortOrder order) {
    if (order == SortOrder::Descending) {
        std::reverse(items.begin(), items.end());
        return;
    }
    std::vector<NumberItem> others;
    auto tail = items.begin(); // behind the last one that went to the tail, which is the largest so far
    for (const NumberItem& item : items) {
        if (tail == items.begin() || item.Key >= std::prev(tail)->Key) {
            *tail++ = item;
        } else {
            others.push_back(item);
        }
    }
    std::move_backward(items.begin(), tail, items.end());
    std::reverse_copy(others.begin(), others.end(), items.begin());
}

enum class Arrival { Equal, Rising, Mixed };

Arrival ArrivalOf(const std::vector<std::uint64_t>& keys) {
    const auto differ = std::ranges::adjacent_find(keys, std::not_equal_to());
    if (differ == keys.end()) {
        return Arrival::Equal;
    }
    return std::is_sorted(differ, keys.end()) ? Arrival::Rising : Arrival::Mixed;
}

// Keys that arrive in order, as those of most columns of plain files do, leave nothing to sort.
void OrderByNumber(std::vector<ContentNode*>& nodes, DetailsColumn column, SortOrder order) {
    const bool ascending = order == SortOrder::Ascending;
    std::vector<std::uint64_t> keys(nodes.size());
    std::transform(nodes.begin(), nodes.end(), keys.begin(),
                   [column](const ContentNode* node) { return NumberKey(*node, column); });
    const Arrival arrival = ArrivalOf(keys);
    if (arrival != Arrival::Mixed) {
        if (!ascending) {
            std::ranges::reverse(nodes);
        }
        return;
    }
    std::vector<NumberItem> items(nodes.size());
    std::transform(nodes.begin(), nodes.end(), keys.begin(), items.begin(),
                   [turn = ascending ? 0 : ~std::uint64_t{0}](ContentNode* node, std::uint64_t key) {
                       return NumberItem{key ^ turn, node};
                   });
    ArrangeArrivals(items, order);
    const auto before = [](const NumberItem& a, const NumberItem& b) { return a.Key < b.Key; };
    if (!std::is_sorted(items.begin(), items.end(), before)) {
        SortStably(items);
    }
    std::transform(items.begin(), items.end(), nodes.begin(),
                   [](const NumberItem& item) { return item.Node; });
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
    if (IsNumberColumn(column)) {
        OrderByNumber(nodes, column, order);
    } else {
        OrderByText(nodes, column, order);
    }
}

} // namespace solvane
