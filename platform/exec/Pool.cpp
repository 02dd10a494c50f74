#include "platform/exec/Pool.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

namespace exec {

namespace {

constexpr std::size_t Step = alignof(std::max_align_t); // block sizes are multiples of it
constexpr std::size_t FirstBlocks = 4;                  // blocks in the first puddle of a size

static_assert((Step & (Step - 1)) == 0 && Step >= 2 * sizeof(void*));

// `size` is small enough not to wrap around.
std::size_t RoundUp(std::size_t size) {
    return (size + Step - 1) & ~(Step - 1);
}

HostMemory TakeFromHost(std::size_t size) {
    return HostMemory(static_cast<std::byte*>(std::malloc(size)));
}

} // namespace

// What a block holds while it is free.
struct Pool::FreeBlock {
    FreeBlock* Next;
};

struct Pool::Puddle {
    HostMemory Memory;
    std::size_t Size;              // bytes
    std::size_t Fresh = 0;         // offset of the part that no block was taken from yet
    std::size_t Used = 0;          // blocks
    FreeBlock* Returned = nullptr; // blocks that came back
    Puddle* NextOpen = nullptr;    // in the list of those with room
    Puddle* PreviousOpen = nullptr;

    [[nodiscard]] const std::byte* Start() const { return Memory.get(); }
    [[nodiscard]] bool HasRoom(std::size_t blockSize) const {
        return Returned != nullptr || Size - Fresh >= blockSize;
    }
    [[nodiscard]] std::byte* Take(std::size_t blockSize);
    void Return(std::byte* block);
    void Link(Puddle*& head);
    void Unlink(Puddle*& head);
};

std::byte* Pool::Puddle::Take(std::size_t blockSize) {
    ++Used;
    if (FreeBlock* const block = Returned) {
        Returned = block->Next;
        return reinterpret_cast<std::byte*>(block);
    }
    std::byte* const block = Memory.get() + Fresh;
    Fresh += blockSize;
    return block;
}

void Pool::Puddle::Return(std::byte* block) {
    --Used;
    Returned = std::construct_at(reinterpret_cast<FreeBlock*>(block), FreeBlock{Returned});
}

void Pool::Puddle::Link(Puddle*& head) {
    PreviousOpen = nullptr;
    NextOpen = head;
    if (head != nullptr) {
        head->PreviousOpen = this;
    }
    head = this;
}

void Pool::Puddle::Unlink(Puddle*& head) {
    (PreviousOpen != nullptr ? PreviousOpen->NextOpen : head) = NextOpen;
    if (NextOpen != nullptr) {
        NextOpen->PreviousOpen = PreviousOpen;
    }
}

Pool::Pool(std::size_t puddle, std::size_t threshold)
    : PuddleSize(puddle), Threshold(RoundUp(std::min(threshold, puddle))), Classes(Threshold / Step) {}

Pool::~Pool() = default;

void* Pool::Allocate(std::size_t size) noexcept {
    if (size == 0 || size > MaxBlockSize) {
        return nullptr;
    }
    try {
        void* const block = size > Threshold ? AllocateLarge(size) : AllocateSmall(RoundUp(size));
        return block != nullptr ? std::memset(block, 0, size) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* Pool::AllocateSmall(std::size_t blockSize) {
    SizeClass& sizes = Classes[blockSize / Step - 1];
    Puddle* const puddle = sizes.Open != nullptr ? sizes.Open : AddPuddle(sizes, blockSize);
    if (puddle == nullptr) {
        return nullptr;
    }
    if (puddle == Spare) {
        Spare = nullptr;
    }
    std::byte* const block = puddle->Take(blockSize);
    if (!puddle->HasRoom(blockSize)) {
        puddle->Unlink(sizes.Open);
    }
    return block;
}

// Each puddle of a size is twice as large as the one before, up to the full size.
Pool::Puddle* Pool::AddPuddle(SizeClass& sizes, std::size_t blockSize) {
    const std::size_t most = std::max<std::size_t>(PuddleSize / blockSize, 1);
    const std::size_t doublings = std::min<std::size_t>(sizes.Puddles.size(), 24);
    const std::size_t size = std::min(FirstBlocks << doublings, most) * blockSize;
    auto puddle = std::make_unique<Puddle>();
    puddle->Memory = TakeFromHost(size);
    puddle->Size = size;
    if (puddle->Memory == nullptr) {
        return nullptr;
    }
    const auto place = std::ranges::upper_bound(sizes.Puddles, puddle->Start(), std::less<>(),
                                                [](const auto& one) { return one->Start(); });
    Puddle* const added = sizes.Puddles.insert(place, std::move(puddle))->get();
    added->Link(sizes.Open);
    Held += size;
    return added;
}

void* Pool::AllocateLarge(std::size_t size) {
    HostMemory memory = TakeFromHost(size);
    if (memory == nullptr) {
        return nullptr;
    }
    std::byte* const block = memory.get();
    Large.emplace(block, LargeBlock{std::move(memory), size});
    Held += size;
    return block;
}

void Pool::Free(void* block, std::size_t size) noexcept {
    if (block == nullptr || size == 0) {
        return;
    }
    if (size > Threshold) {
        FreeLarge(static_cast<std::byte*>(block));
    } else {
        FreeSmall(static_cast<std::byte*>(block), RoundUp(size));
    }
}

void Pool::FreeLarge(std::byte* block) noexcept {
    const auto found = Large.find(block);
    if (found != Large.end()) {
        Held -= found->second.Size;
        Large.erase(found);
    }
}

void Pool::FreeSmall(std::byte* block, std::size_t blockSize) noexcept {
    SizeClass& sizes = Classes[blockSize / Step - 1];
    const auto behind = std::ranges::upper_bound(sizes.Puddles, block, std::less<>(),
                                                 [](const auto& one) { return one->Start(); });
    if (behind == sizes.Puddles.begin()) {
        return;
    }
    Puddle& puddle = **std::prev(behind);
    const auto offset = static_cast<std::size_t>(block - puddle.Start());
    if (offset >= puddle.Fresh || offset % blockSize != 0 || puddle.Used == 0) {
        return;
    }
    const bool wasFull = !puddle.HasRoom(blockSize);
    puddle.Return(block);
    if (wasFull) {
        puddle.Link(sizes.Open);
    }
    if (puddle.Used == 0) {
        KeepAsSpare(puddle, blockSize);
    }
}

// One empty puddle is kept, so that a block taken and freed in turns does not go to the host.
void Pool::KeepAsSpare(Puddle& puddle, std::size_t blockSize) noexcept {
    Puddle* const before = std::exchange(Spare, &puddle);
    const std::size_t sizeBefore = std::exchange(SpareBlockSize, blockSize);
    if (before != nullptr) {
        GiveBack(*before, sizeBefore);
    }
}

void Pool::GiveBack(Puddle& puddle, std::size_t blockSize) noexcept {
    SizeClass& sizes = Classes[blockSize / Step - 1];
    puddle.Unlink(sizes.Open);
    Held -= puddle.Size;
    const auto place = std::ranges::lower_bound(sizes.Puddles, puddle.Start(), std::less<>(),
                                                [](const auto& one) { return one->Start(); });
    sizes.Puddles.erase(place);
}

} // namespace exec
