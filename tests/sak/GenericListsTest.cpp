#include "sak/GenericLists.h"

#include "sak/SortGenericLists.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <random>
#include <thread>

namespace solvane {
namespace {

struct Record : ListNode {
    std::uint16_t Selected;
    std::uint32_t Number;
    Text<40> Name;
    std::shared_ptr<int> Owned;
};

constexpr auto NoWhere = static_cast<ListPosition>(17);

class GenericLists : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize));
        List = SAK_CreateGenericList<Record>();
        ASSERT_TRUE(List);
    }
    void TearDown() override {
        SAK_DeleteGenericList(List);
        SAK_MemoryCleanup();
    }

    Record* Add(std::uint32_t number, ListPosition position = ListPosition::Tail) {
        NodePointer<Record> node = SAK_CreateGenericListNode<Record>();
        node->Number = number;
        return SAK_AddGenericListNode(*List, std::move(node), position);
    }
    std::vector<std::uint32_t> Numbers() const {
        std::vector<std::uint32_t> numbers;
        std::transform(List->begin(), List->end(), std::back_inserter(numbers),
                       [](const Record& node) { return node.Number; });
        return numbers;
    }

    std::unique_ptr<GenericList<Record>> List;
};

using Order = std::vector<std::uint32_t>;

// The list as a plain model: an order of numbers, the place of the cursor, and nodes that hang nowhere.
struct Model {
    Order Chain;
    Order Strays;
    std::optional<std::uint32_t> Cursor;

    [[nodiscard]] std::optional<std::size_t> Place() const {
        const auto at = Cursor ? std::find(Chain.begin(), Chain.end(), *Cursor) : Chain.end();
        return at == Chain.end() ? std::nullopt : std::optional<std::size_t>(at - Chain.begin());
    }

    void Add(std::uint32_t number, std::uint32_t position) {
        const std::optional<std::size_t> place = Place();
        std::size_t at = Chain.size();
        if (position == 0 || (position == 1 && !place))
            at = 0;
        else if (place && (position == 1 || position == 2))
            at = *place + (position == 2 ? 1 : 0);
        if (position > 3)
            Strays.push_back(number);
        else
            Chain.insert(Chain.begin() + static_cast<std::ptrdiff_t>(at), number);
        Cursor = number;
    }

    std::optional<std::uint32_t> MoveTo(std::ptrdiff_t place) {
        if (place < 0 || place >= static_cast<std::ptrdiff_t>(Chain.size()))
            return std::nullopt;
        return Cursor = Chain[static_cast<std::size_t>(place)];
    }
    // A step from a node that hangs nowhere leads nowhere.
    std::optional<std::uint32_t> Step(int direction) {
        const auto last = static_cast<std::ptrdiff_t>(Chain.size()) - 1;
        if (!Cursor)
            return MoveTo(direction > 0 ? 0 : last);
        const std::optional<std::size_t> place = Place();
        return place ? MoveTo(static_cast<std::ptrdiff_t>(*place) + direction) : std::nullopt;
    }

    void Delete(std::uint32_t number) {
        const bool current = Cursor == number;
        const auto at = std::find(Chain.begin(), Chain.end(), number);
        if (at == Chain.end()) {
            std::erase(Strays, number);
            Cursor = current ? std::nullopt : Cursor;
            return;
        }
        const auto after = Chain.erase(at);
        if (current) {
            Cursor = after != Chain.end() ? std::optional(*after)
                     : !Chain.empty()     ? std::optional(Chain.back())
                                          : std::nullopt;
        }
    }
};

std::optional<std::uint32_t> NumberOf(const Record* node) {
    return node ? std::optional(node->Number) : std::nullopt;
}

TEST_F(GenericLists, BehavesAsThePlainModelOverRandomOperations) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Model model;
        std::vector<Record*> nodes; // by number, null when deleted
        SAK_ClearGenericList(*List);
        for (int step = 0; step < 400; ++step) {
            const auto pick = static_cast<std::uint32_t>(random() % (nodes.size() + 1));
            Record* picked = pick < nodes.size() ? nodes[pick] : nullptr;
            const auto operation = random() % 20;
            if (operation < 7) {
                const auto position = static_cast<std::uint32_t>(random() % 20 == 0 ? 9 : random() % 4);
                const auto number = static_cast<std::uint32_t>(nodes.size());
                nodes.push_back(Add(number, static_cast<ListPosition>(position)));
                model.Add(number, position);
            } else if (operation < 9) {
                ASSERT_EQ(NumberOf(SAK_NextGenericListNode(*List)), model.Step(1));
            } else if (operation < 11) {
                ASSERT_EQ(NumberOf(SAK_PrevGenericListNode(*List)), model.Step(-1));
            } else if (operation < 12) {
                ASSERT_EQ(NumberOf(SAK_FirstGenericListNode(*List)), model.MoveTo(0));
            } else if (operation < 13) {
                ASSERT_EQ(NumberOf(SAK_LastGenericListNode(*List)),
                          model.MoveTo(static_cast<std::ptrdiff_t>(model.Chain.size()) - 1));
            } else if (operation < 14) {
                const auto wanted = model.MoveTo(pick);
                if (!wanted)
                    model.MoveTo(static_cast<std::ptrdiff_t>(model.Chain.size()) - 1);
                ASSERT_EQ(NumberOf(SAK_GetGenericListNode(*List, pick)), wanted);
            } else if (operation < 15 && picked) {
                model.Cursor = model.Chain.empty() ? model.Cursor : model.Chain.back();
                const auto at = std::find(model.Chain.begin(), model.Chain.end(), pick);
                const bool found = at != model.Chain.end();
                model.Cursor = found ? pick : model.Cursor;
                ASSERT_EQ(SAK_GetGenericNodeOffset(*List, picked),
                          found ? static_cast<std::uint32_t>(at - model.Chain.begin()) : 0U);
            } else if (operation < 18 && picked) {
                nodes[pick] = nullptr;
                model.Delete(pick);
                SAK_DeleteGenericListNode(*List, picked);
            } else if (operation == 18 && model.Cursor) {
                nodes[*model.Cursor] = nullptr;
                model.Delete(*model.Cursor);
                SAK_DeleteGenericListNode(*List);
            } else if (operation == 19 && random() % 10 == 0) {
                std::fill(nodes.begin(), nodes.end(), nullptr);
                model = {};
                SAK_ClearGenericList(*List);
            }
            ASSERT_TRUE(List->Core.IsConsistent());
            ASSERT_EQ(Numbers(), model.Chain);
            ASSERT_EQ(NumberOf(List->Current()), model.Cursor);
            ASSERT_EQ(SAK_GenericListCount(*List), model.Chain.size() + model.Strays.size());
        }
    }
}

TEST_F(GenericLists, AFreshRecordReadsAsZeros) {
    const NodePointer<Record> node = SAK_CreateGenericListNode<Record>("name");
    EXPECT_EQ(node->Number, 0U);
    EXPECT_EQ(node->Selected, 0U);
    EXPECT_TRUE(node->Name.Empty());
    EXPECT_EQ(node->NodeName.View(), "name");
    EXPECT_EQ(SAK_CreateGenericListNode<Record>(std::string(200, 'n'))->NodeName.Size(), 127U);
}

TEST_F(GenericLists, RecordsEndWithTheirListHoweverItGoes) {
    auto owned = std::make_shared<int>(0);
    const auto fill = [&] {
        for (const ListPosition position : {ListPosition::Tail, NoWhere, ListPosition::Head})
            Add(1, position)->Owned = owned;
        EXPECT_EQ(owned.use_count(), 4);
    };
    fill();
    SAK_DeleteGenericListNode(*List);
    EXPECT_EQ(owned.use_count(), 3);
    SAK_ClearGenericList(*List);
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_EQ(SAK_NextGenericListNode(*List), nullptr);
    fill();
    SAK_DeleteGenericList(List);
    EXPECT_EQ(owned.use_count(), 1);
    SAK_DeleteGenericList(List);
    List = SAK_CreateGenericList<Record>();
    fill();
    SAK_MemoryCleanup();
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_EQ(SAK_GenericListCount(*List), 0U);
    EXPECT_EQ(SAK_CreateGenericList<Record>(), nullptr);
    EXPECT_EQ(SAK_CreateGenericListNode<Record>(), nullptr);
    ASSERT_TRUE(SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize));
    fill();
    SAK_MemoryCleanup();
    EXPECT_EQ(owned.use_count(), 1) << "a list that outlives one pool is known to the next";
}

TEST_F(GenericLists, RemovingGivesTheNodeBack) {
    Add(1);
    Record* middle = Add(2);
    Add(3);
    SAK_GetGenericListNode(*List, 1);
    NodePointer<Record> taken = SAK_RemoveGenericListNode(*List, middle);
    EXPECT_EQ(taken.get(), middle);
    EXPECT_EQ(List->Current()->Number, 3U);
    EXPECT_EQ(SAK_RemoveGenericListNode(*List, middle), nullptr) << "it stands in no list now";
    SAK_AddGenericListNode(*List, std::move(taken), ListPosition::Head);
    EXPECT_EQ(Numbers(), (Order{2, 1, 3}));
}

TEST_F(GenericLists, ReorderingTakesOnlyAWholeOrder) {
    std::vector<Record*> nodes = {Add(0), Add(1), Add(2), Add(3)};
    const std::vector<Record*> sound = {nodes[2], nodes[0], nodes[3], nodes[1]};
    EXPECT_TRUE(SAK_ReorderGenericList(*List, sound));
    const NodePointer<Record> foreign = SAK_CreateGenericListNode<Record>();
    auto other = SAK_CreateGenericList<Record>();
    SAK_AddGenericListNode(*other, SAK_CreateGenericListNode<Record>());
    Record* others = SAK_AddGenericListNode(*other, SAK_CreateGenericListNode<Record>());
    const std::vector<std::vector<Record*>> broken = {
        {},
        {nodes[0], nodes[1], nodes[2]},
        {nodes[0], nodes[1], nodes[2], nodes[2]},
        {nodes[0], nodes[1], nodes[2], nullptr},
        {nodes[0], nodes[1], nodes[2], foreign.get()},
        {nodes[0], nodes[1], nodes[2], nodes[3], foreign.get()},
        {nodes[0], nodes[1], nodes[2], others},
    };
    for (const std::vector<Record*>& order : broken) {
        EXPECT_FALSE(SAK_ReorderGenericList(*List, order));
        EXPECT_TRUE(List->Core.IsConsistent());
        EXPECT_TRUE(other->Core.IsConsistent());
        EXPECT_EQ(Numbers(), (Order{2, 0, 3, 1}));
    }
}

TEST_F(GenericLists, SortingLinksEveryRecordAndLeavesStraysAlone) {
    const auto byTens = [](const Record& a, const Record& b) {
        return static_cast<int>(a.Number / 10) - static_cast<int>(b.Number / 10);
    };
    const struct {
        Order Arrivals, Ascending, Descending;
    } rows[] = {{{}, {}, {}},
                {{7}, {7}, {7}},
                {{21, 11, 12}, {12, 11, 21}, {21, 12, 11}},
                {{11, 12, 21, 10, 22}, {10, 11, 12, 21, 22}, {22, 21, 10, 12, 11}},
                {{31, 21, 11, 1}, {1, 11, 21, 31}, {31, 21, 11, 1}}};
    for (const auto& row : rows) {
        for (const bool ascending : {true, false}) {
            SAK_ClearGenericList(*List);
            Add(99, NoWhere);
            for (const std::uint32_t number : row.Arrivals)
                Add(number);
            SAK_SortGenericList(*List, ascending ? SortOrder::Ascending : SortOrder::Descending, byTens);
            EXPECT_EQ(Numbers(), ascending ? row.Ascending : row.Descending);
            EXPECT_TRUE(List->Core.IsConsistent());
        }
    }
}

TEST_F(GenericLists, SwappedListsKeepTheirCursors) {
    Add(1);
    Add(2);
    SAK_FirstGenericListNode(*List);
    auto other = SAK_CreateGenericList<Record>();
    SAK_SwapGenericLists(*List, *other);
    EXPECT_TRUE(Numbers().empty());
    EXPECT_EQ(List->Current(), nullptr);
    EXPECT_EQ(SAK_NextGenericListNode(*other)->Number, 2U);
    EXPECT_TRUE(List->Core.IsConsistent() && other->Core.IsConsistent());
}

TEST_F(GenericLists, FindingMovesTheCursorToWhatItFinds) {
    for (const char* name : {"Readme", "README", "other"})
        Add(SAK_GenericListCount(*List))->Name = name;
    const auto find = [&](std::string_view name) {
        return NumberOf(FindNodeByText(*List, &Record::Name, name));
    };
    EXPECT_EQ(find("README"), 1U) << "the exact name wins over an earlier one in other case";
    EXPECT_EQ(List->Current()->Number, 1U);
    EXPECT_EQ(find("readme"), 0U);
    EXPECT_EQ(List->Current()->Number, 0U);
    EXPECT_EQ(find("absent"), std::nullopt);
    EXPECT_EQ(List->Current()->Number, 2U) << "a walk to the end leaves the cursor on the last node";
    EXPECT_EQ(FindFirstSelected(*List), nullptr);
    SAK_GetGenericListNode(*List, 1)->Selected = 1;
    EXPECT_EQ(FindFirstSelected(*List)->Number, 1U);
    EXPECT_EQ(
        FindNodeByText(*List, &Record::Name, "readme", [](const Record& node) { return node.Selected != 0; })
            ->Number,
        1U);
}

TEST_F(GenericLists, SingleOperationsAreSafeFromAnyThread) {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([this] {
            for (std::uint32_t i = 0; i < 2000; ++i) {
                Add(i, static_cast<ListPosition>(i % 4));
                SAK_NextGenericListNode(*List);
                if (i % 3 == 0)
                    SAK_DeleteGenericListNode(*List);
            }
        });
    }
    threads.clear();
    EXPECT_TRUE(List->Core.IsConsistent());
    EXPECT_EQ(SAK_GenericListCount(*List), 4 * (2000U - 667U));
}

TEST_F(GenericLists, PoolMemoryComesClearedAndIsReused) {
    EXPECT_EQ(SAK_AllocVecPooled(0), nullptr);
    for (const std::size_t size : {std::size_t{1}, std::size_t{100}, SAK_ThresholdSize, SAK_PuddleSize + 1}) {
        for (int round = 0; round < 3; ++round) {
            auto* bytes = static_cast<unsigned char*>(SAK_AllocVecPooled(size));
            ASSERT_NE(bytes, nullptr);
            EXPECT_TRUE(std::all_of(bytes, bytes + size, [](unsigned char byte) { return byte == 0; }));
            std::fill(bytes, bytes + size, static_cast<unsigned char>(0xA5));
            SAK_FreeVecPooled(bytes);
        }
    }
}

} // namespace
} // namespace solvane
