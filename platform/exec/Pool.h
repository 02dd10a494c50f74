// A pool of cleared memory for many records of few sizes, which are freed one by one or all at once
// with the pool. It does no locking: thread safety is the caller's.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <unordered_map>
#include <vector>

namespace exec {

inline constexpr std::size_t MaxBlockSize = std::size_t{1} << 32; // bytes; more is a mistake

struct HostMemoryRelease {
    void operator()(std::byte* memory) const noexcept { std::free(memory); }
};
using HostMemory = std::unique_ptr<std::byte, HostMemoryRelease>; // from malloc

class Pool {
public:
    // `puddle` is the most that is taken from the host at once for blocks of up to `threshold`
    // bytes; larger blocks are taken and given back singly. A puddle holds blocks of one size (in
    // steps of 16 bytes); the first ones of a size are small, so a rare size costs little.
    Pool(std::size_t puddle, std::size_t threshold);
    ~Pool();
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    // A block that reads as zeros, aligned for any type; null when `size` is 0 or above
    // MaxBlockSize, or memory is short.
    [[nodiscard]] void* Allocate(std::size_t size) noexcept;
    // Takes a block back, with the size it was asked for. Null, and what is not of this pool, is
    // left alone.
    void Free(void* block, std::size_t size) noexcept;

    // Bytes taken from the host for blocks at present. An emptied puddle is given back, but the
    // last emptied one is kept for the next block of its size.
    [[nodiscard]] std::size_t HeldBytes() const noexcept { return Held; }

private:
    struct FreeBlock;
    struct Puddle;
    // The puddles of one block size.
    struct SizeClass {
        std::vector<std::unique_ptr<Puddle>> Puddles; // by address
        Puddle* Open = nullptr;                       // list of those with room
    };

    [[nodiscard]] void* AllocateSmall(std::size_t blockSize);
    [[nodiscard]] void* AllocateLarge(std::size_t size);
    [[nodiscard]] Puddle* AddPuddle(SizeClass& sizes, std::size_t blockSize);
    void FreeSmall(std::byte* block, std::size_t blockSize) noexcept;
    void FreeLarge(std::byte* block) noexcept;
    void KeepAsSpare(Puddle& puddle, std::size_t blockSize) noexcept;
    void GiveBack(Puddle& puddle, std::size_t blockSize) noexcept;

    // A block that is larger than the threshold.
    struct LargeBlock {
        HostMemory Memory;
        std::size_t Size;
    };

    std::size_t PuddleSize;
    std::size_t Threshold; // a multiple of 16
    std::size_t Held = 0;
    std::vector<SizeClass> Classes; // by block size / 16 - 1
    std::unordered_map<const std::byte*, LargeBlock> Large;
    Puddle* Spare = nullptr; // the one empty puddle that is kept
    std::size_t SpareBlockSize = 0;
};

} // namespace exec
