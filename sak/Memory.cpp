#include "sak/Memory.h"

#include "platform/exec/Pool.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <new>

namespace solvane {

// Two rings of all residents: those to be told and those that have been. Its state has no
// destructor, so that lists with process lifetime may come and go in any order with it.
class ResidentRing {
public:
    static void Enter(PoolResident& resident) noexcept {
        const std::lock_guard guard(Semaphore);
        Push(Living, resident);
    }

    static void Leave(PoolResident& resident) noexcept {
        const std::lock_guard guard(Semaphore);
        Pull(resident);
    }

    // Each is told without the lock held: what it ends may own residents of its own, which leave
    // meanwhile.
    static void TellAll() noexcept {
        while (PoolResident* resident = MoveFirst(Living, Told)) {
            resident->LeavePool();
        }
        while (MoveFirst(Told, Living)) {
        }
    }

private:
    static void Push(PoolResident*& ring, PoolResident& resident) noexcept {
        resident.PreviousResident = nullptr;
        resident.NextResident = ring;
        if (ring) {
            ring->PreviousResident = &resident;
        }
        ring = &resident;
    }

    static void Pull(PoolResident& resident) noexcept {
        PoolResident* before = resident.PreviousResident;
        PoolResident* after = resident.NextResident;
        if (before) {
            before->NextResident = after;
        } else {
            (Living == &resident ? Living : Told) = after;
        }
        if (after) {
            after->PreviousResident = before;
        }
    }

    static PoolResident* MoveFirst(PoolResident*& from, PoolResident*& to) noexcept {
        const std::lock_guard guard(Semaphore);
        PoolResident* resident = from;
        if (resident) {
            Pull(*resident);
            Push(to, *resident);
        }
        return resident;
    }

    static constinit std::mutex Semaphore;
    static constinit PoolResident* Living;
    static constinit PoolResident* Told;
};

constinit std::mutex ResidentRing::Semaphore;
constinit PoolResident* ResidentRing::Living = nullptr;
constinit PoolResident* ResidentRing::Told = nullptr;

namespace {

// What stands in front of each allocation, so that it can be freed by its address alone.
struct AllocationHeader {
    std::uint64_t Size; // bytes, header included
};
static_assert(sizeof(AllocationHeader) == SAK_PoolAlignment);

constinit std::mutex MemorySemaphore;
constinit exec::Pool* MemoryPool = nullptr; // null: there is none

// Owns the pool, and cleans up at the end of the process when nobody has.
struct PoolOwner {
    std::unique_ptr<exec::Pool> Pool;
    ~PoolOwner() { SAK_MemoryCleanup(); }
} Owner;

} // namespace

PoolResident::PoolResident() noexcept {
    ResidentRing::Enter(*this);
}

PoolResident::~PoolResident() {
    ResidentRing::Leave(*this);
}

bool SAK_MemorySetup(std::size_t threshold, std::size_t puddle) {
    const std::lock_guard guard(MemorySemaphore);
    if (!MemoryPool && threshold <= puddle) {
        Owner.Pool = std::make_unique<exec::Pool>(puddle, threshold);
        MemoryPool = Owner.Pool.get();
    }
    return MemoryPool != nullptr;
}

void SAK_MemoryCleanup() noexcept {
    if (SAK_MemoryReady()) {
        ResidentRing::TellAll();
        const std::lock_guard guard(MemorySemaphore);
        MemoryPool = nullptr;
        Owner.Pool.reset();
    }
}

bool SAK_MemoryReady() noexcept {
    const std::lock_guard guard(MemorySemaphore);
    return MemoryPool != nullptr;
}

void* SAK_AllocVecPooled(std::size_t size) {
    if (size == 0 || size > SIZE_MAX - sizeof(AllocationHeader)) {
        return nullptr;
    }
    const std::size_t whole = size + sizeof(AllocationHeader);
    const std::lock_guard guard(MemorySemaphore);
    void* memory = MemoryPool ? MemoryPool->Allocate(whole) : nullptr;
    if (!memory) {
        return nullptr;
    }
    return std::construct_at(static_cast<AllocationHeader*>(memory), AllocationHeader{whole}) + 1;
}

void SAK_FreeVecPooled(void* pointer) noexcept {
    const std::lock_guard guard(MemorySemaphore);
    if (pointer && MemoryPool) {
        AllocationHeader* header = static_cast<AllocationHeader*>(pointer) - 1;
        MemoryPool->Free(header, header->Size);
    }
}

} // namespace solvane
