#include "platform/exec/Pool.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <span>
#include <vector>

namespace {

constexpr std::size_t Puddle = 93000;
constexpr std::size_t Threshold = 3720;

struct Block {
    std::byte* Start;
    std::size_t Size;
    std::byte Mark;

    [[nodiscard]] std::span<std::byte> Bytes() const { return {Start, Size}; }
    [[nodiscard]] bool IsFilledWith(std::byte value) const {
        return std::ranges::all_of(Bytes(), [value](std::byte byte) { return byte == value; });
    }
};

Block Take(exec::Pool& pool, std::size_t size, int mark) {
    const Block block{static_cast<std::byte*>(pool.Allocate(size)), size, std::byte(mark)};
    EXPECT_NE(block.Start, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.Start) % alignof(std::max_align_t), 0U);
    EXPECT_TRUE(block.IsFilledWith(std::byte(0)));
    std::ranges::fill(block.Bytes(), block.Mark);
    return block;
}

TEST(Pool, BlocksOfAllSizesAreClearedAlignedAndApartThroughAnyOrderOfFrees) {
    exec::Pool pool(Puddle, Threshold);
    std::mt19937 random(1);
    std::vector<Block> blocks;
    const std::size_t sizes[] = {1, 16, 17, 400, Threshold - 1, Threshold, Threshold + 9, 200000};
    for (int step = 0; step < 20000; ++step) {
        if (blocks.size() > 300 || (!blocks.empty() && random() % 3 == 0)) {
            std::swap(blocks[random() % blocks.size()], blocks.back());
            ASSERT_TRUE(blocks.back().IsFilledWith(blocks.back().Mark));
            pool.Free(blocks.back().Start, blocks.back().Size);
            blocks.pop_back();
        } else {
            blocks.push_back(Take(pool, sizes[random() % std::size(sizes)], 1 + step % 255));
        }
    }
}

TEST(Pool, ManyRecordsWasteLittle) {
    constexpr std::size_t count = 100000;
    exec::Pool pool(Puddle, Threshold);
    for (std::size_t i = 0; i < count; ++i)
        ASSERT_NE(pool.Allocate(400), nullptr);
    EXPECT_LT(pool.HeldBytes(), count * 400 * 102 / 100);
}

TEST(Pool, FreedBlocksServeAgain) {
    exec::Pool pool(Puddle, Threshold);
    std::vector<Block> blocks;
    for (int i = 0; i < 5000; ++i)
        blocks.push_back(Take(pool, 400, 1));
    const std::size_t held = pool.HeldBytes();
    std::set<std::byte*> freed;
    for (std::size_t i = 0; i < blocks.size(); i += 2) {
        pool.Free(blocks[i].Start, blocks[i].Size);
        freed.insert(blocks[i].Start);
    }
    for (std::size_t i = 0; i < blocks.size(); i += 2)
        EXPECT_EQ(freed.erase(Take(pool, 400, 2).Start), 1U);
    EXPECT_EQ(pool.HeldBytes(), held);
}

TEST(Pool, EmptiedPuddlesAreGivenBackButOne) {
    exec::Pool pool(Puddle, Threshold);
    std::vector<Block> blocks;
    for (const std::size_t size : {Threshold, std::size_t{64}, std::size_t{100000}}) {
        for (int i = 0; i < 3000; ++i) {
            blocks.push_back(Take(pool, size, 1));
            if (size > Puddle)
                break;
        }
    }
    std::ranges::shuffle(blocks, std::mt19937(2));
    for (const Block& block : blocks)
        pool.Free(block.Start, block.Size);
    EXPECT_LE(pool.HeldBytes(), Puddle);
    const std::size_t held = pool.HeldBytes();
    for (int i = 0; i < 10; ++i) {
        const Block block = Take(pool, blocks.back().Size, 1);
        pool.Free(block.Start, block.Size);
    }
    EXPECT_LE(pool.HeldBytes(), std::max(held, Puddle));
}

TEST(Pool, RefusesWhatCannotBeAndIgnoresWhatIsNotItsOwn) {
    exec::Pool pool(Puddle, Threshold);
    EXPECT_EQ(pool.Allocate(0), nullptr);
    EXPECT_EQ(pool.Allocate(SIZE_MAX), nullptr);
    EXPECT_EQ(pool.Allocate(SIZE_MAX - 7), nullptr);
    int foreign = 0;
    const Block own = Take(pool, 400, 1);
    pool.Free(nullptr, 400);
    pool.Free(&foreign, 400);
    pool.Free(&foreign, 40000);
    pool.Free(own.Start + 16, 400); // inside a block
    EXPECT_TRUE(own.IsFilledWith(own.Mark));
    EXPECT_NE(Take(pool, 400, 2).Start, own.Start);
}

} // namespace
