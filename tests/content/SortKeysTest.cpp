#include "content/SortKeys.h"

#include "platform/utility/Text.h"
#include "sak/Numbers.h"

#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <list>
#include <memory>
#include <random>
#include <string>

namespace solvane {
namespace {

// By name, the order prefix is the first character of the text.
std::string KeyOf(const ContentNode& node, DetailsColumn column) {
    const std::string prefix(column == DetailsColumn::Name ? 1 : 0, node.SortPrefix);
    return prefix + std::string(TextKey(node, column));
}

int CompareText(const ContentNode& a, const ContentNode& b, DetailsColumn column) {
    return utility::Stricmp(KeyOf(a, column), KeyOf(b, column));
}

int Compare(const ContentNode& a, const ContentNode& b, DetailsColumn column) {
    const auto compare32 = [](std::uint32_t x, std::uint32_t y) {
        return SAK_CompareValues32(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
    };
    switch (column) {
    case DetailsColumn::Size:
        return SAK_CompareValues64(static_cast<std::int64_t>(a.EntrySize),
                                   static_cast<std::int64_t>(b.EntrySize));
    case DetailsColumn::Date:
        return compare32(a.DateSeconds, b.DateSeconds);
    case DetailsColumn::Time:
        return compare32(TagsOf(a).TagTimeSeconds, TagsOf(b).TagTimeSeconds);
    case DetailsColumn::BitRate:
        return compare32(TagsOf(a).TagBitRate, TagsOf(b).TagBitRate);
    case DetailsColumn::SampleRate:
        return compare32(TagsOf(a).TagSampleRate, TagsOf(b).TagSampleRate);
    case DetailsColumn::Version:
        return static_cast<int>(SAK_CompareValuesFloat(a.VersionNumber, b.VersionNumber));
    default:
        return CompareText(a, b, column);
    }
}

std::vector<ContentNode*> Inserted(const std::vector<ContentNode*>& arrivals, DetailsColumn column,
                                   SortOrder order) {
    std::list<ContentNode*> sorted;
    const auto insertBefore = [&](ContentNode* node, auto fits) {
        sorted.insert(std::find_if(sorted.begin(), sorted.end(), fits), node);
    };
    for (ContentNode* node : arrivals) {
        const auto toOther = [&](const ContentNode* other) { return Compare(*node, *other, column); };
        if (sorted.empty()) {
            sorted.push_front(node);
        } else if (order == SortOrder::Ascending) {
            if (toOther(sorted.back()) >= 0) {
                sorted.push_back(node);
            } else {
                insertBefore(node, [&](const ContentNode* other) { return toOther(other) <= 0; });
            }
        } else if (toOther(sorted.front()) >= 0) {
            sorted.push_front(node);
        } else {
            insertBefore(node, [&](const ContentNode* other) { return toOther(other) >= 0; });
        }
    }
    return {sorted.begin(), sorted.end()};
}

// Gives each column's field the number or the text for that column.
template <typename Numbers, typename Texts>
void FillColumns(ContentNode& node, Numbers number, Texts text) {
    node.Tags = std::make_unique<AudioTags>();
    AudioTags& tags = *node.Tags;
    node.EntryName = text(DetailsColumn::Name);
    node.EntrySize = number(DetailsColumn::Size);
    node.DateSeconds = static_cast<std::uint32_t>(number(DetailsColumn::Date));
    node.DatatypeName = text(DetailsColumn::Type);
    node.ProtectionText = text(DetailsColumn::Protection);
    node.Comment = text(DetailsColumn::Filenote);
    node.Dimensions = text(DetailsColumn::Dimensions);
    tags.TagTitle = text(DetailsColumn::Title);
    tags.TagTimeSeconds = static_cast<std::uint32_t>(number(DetailsColumn::Time));
    tags.TagArtist = text(DetailsColumn::Artist);
    tags.TagAlbumArtist = text(DetailsColumn::AlbumArtist);
    tags.TagAlbum = text(DetailsColumn::Album);
    tags.TagTrack = text(DetailsColumn::Track);
    tags.TagDisc = text(DetailsColumn::Disc);
    tags.TagYear = text(DetailsColumn::Year);
    tags.TagGenre = text(DetailsColumn::Genre);
    tags.TagComment = text(DetailsColumn::Comment);
    tags.TagComposer = text(DetailsColumn::Composer);
    tags.TagBitRate = static_cast<std::uint32_t>(number(DetailsColumn::BitRate));
    tags.TagSampleRate = static_cast<std::uint32_t>(number(DetailsColumn::SampleRate));
    tags.TagEncoder = text(DetailsColumn::Encoder);
    tags.TagMode = text(DetailsColumn::Mode);
    tags.TagCodec = text(DetailsColumn::Codec);
    node.VersionNumber = static_cast<float>(number(DetailsColumn::Version));
}

// Drawers full of ties: few values in every column, some equal but for case or for more than a short key
// holds.
class Entries {
public:
    Entries(std::uint32_t seed, std::size_t count) : Random(seed) {
        for (std::size_t at = 0; at < count; ++at) {
            Nodes.push_back(std::make_unique<ContentNode>());
            Fill(*Nodes.back());
        }
    }

    [[nodiscard]] std::vector<ContentNode*> Arrivals() const {
        std::vector<ContentNode*> arrivals;
        for (const auto& node : Nodes)
            arrivals.push_back(node.get());
        return arrivals;
    }

private:
    std::uint32_t Pick(std::uint32_t below) { return static_cast<std::uint32_t>(Random()) % below; }

    std::string Word() {
        static const std::vector<std::string> Words = {
            "",      "a",          "A",          "ab",         "aB",         "readme", "README", "z",
            "Größe", "größe",      "longer na1", "longer na2", "Longer NA1", "~",      "_",      "0",
            "10",    "readme.txt", "Readme.TXT", "9",          "\xff\xfe",   "Ωmega",  "ωMEGA",  "GRÖSSE"};
        return Words[Pick(static_cast<std::uint32_t>(Words.size()))];
    }

    void Fill(ContentNode& node) {
        const auto number = [this](DetailsColumn column) {
            const std::uint64_t large = column == DetailsColumn::Size ? 1ULL << 40 : 0x80000000U;
            return Pick(4) ? Pick(3) * 64ULL : large + Pick(2);
        };
        FillColumns(node, number, [this](DetailsColumn) { return Word(); });
        node.SortPrefix = Pick(2) ? '0' : '1';
        node.VersionNumber = static_cast<float>(Pick(4)) / 2.0F - 1.0F;
        if (Pick(2) != 0)
            node.Tags.reset();
    }

    std::mt19937 Random;
    std::deque<std::unique_ptr<ContentNode>> Nodes;
};

class EveryColumn : public testing::TestWithParam<std::int32_t> {
protected:
    void ExpectInsertionOrder(std::vector<ContentNode*> arrivals) const {
        const auto column = static_cast<DetailsColumn>(GetParam());
        for (const SortOrder order : {SortOrder::Ascending, SortOrder::Descending}) {
            std::vector<ContentNode*> nodes = arrivals;
            OrderByKey(nodes, column, order);
            ASSERT_EQ(nodes, Inserted(arrivals, column, order))
                << (order == SortOrder::Ascending ? "ascending" : "descending");
        }
    }
};

TEST_P(EveryColumn, EndsInTheOrderOfTheInsertionTiesIncluded) {
    for (std::uint32_t seed = 1; seed <= 40; ++seed)
        ExpectInsertionOrder(Entries(seed, seed * 3 % 97).Arrivals());
}

TEST_P(EveryColumn, KeepsTheOrderOfTheInsertionForSortedAndReversedArrivals) {
    const Entries entries(7, 120);
    std::vector<ContentNode*> arrivals = entries.Arrivals();
    OrderByKey(arrivals, static_cast<DetailsColumn>(GetParam()), SortOrder::Ascending);
    ExpectInsertionOrder(arrivals);
    std::reverse(arrivals.begin(), arrivals.end());
    ExpectInsertionOrder(arrivals);
}

// Gives a node the larger value in the field of one column and the smaller in all others.
void FillApart(ContentNode& node, DetailsColumn column, bool larger) {
    const auto number = [&](DetailsColumn own) { return (own == column) == larger ? 2U : 1U; };
    FillColumns(node, number, [&](DetailsColumn own) { return number(own) == 2U ? "b" : "a"; });
}

TEST_P(EveryColumn, SortsByItsOwnField) {
    const auto column = static_cast<DetailsColumn>(GetParam());
    ContentNode large, small;
    FillApart(large, column, true);
    FillApart(small, column, false);
    std::vector<ContentNode*> nodes = {&large, &small};
    OrderByKey(nodes, column, SortOrder::Ascending);
    EXPECT_EQ(nodes.front(), &small);
    OrderByKey(nodes, column, SortOrder::Descending);
    EXPECT_EQ(nodes.front(), &large);
}

TEST(SortKeys, OrderPrefixCountsInTheNameColumnOnly) {
    ContentNode first, second;
    first.SortPrefix = '0';
    first.EntryName = first.DatatypeName = "z";
    second.SortPrefix = '1';
    second.EntryName = second.DatatypeName = "a";
    std::vector<ContentNode*> nodes = {&second, &first};
    OrderByKey(nodes, DetailsColumn::Name, SortOrder::Ascending);
    EXPECT_EQ(nodes.front(), &first);
    OrderByKey(nodes, DetailsColumn::Type, SortOrder::Ascending);
    EXPECT_EQ(nodes.front(), &second);
}

INSTANTIATE_TEST_SUITE_P(Columns, EveryColumn, testing::Range(1, DetailsColumnCount));

} // namespace
} // namespace solvane
