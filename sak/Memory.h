// The one memory pool of the process: cleared memory for the records of generic lists, freed as a
// whole at the end. It knows nothing of what it holds.
#pragma once

#include <cstddef>

namespace solvane {

// Requests above the threshold get memory of their own; a puddle is what the pool grows by. Both in
// bytes.
inline constexpr std::size_t SAK_ThresholdSize = 3720;
inline constexpr std::size_t SAK_PuddleSize = 93000;

inline constexpr std::size_t SAK_PoolAlignment = 8; // bytes, of what SAK_AllocVecPooled gives

// Something that keeps C++ objects in pool memory: generic lists. It is told before the pool goes,
// and may live on, empty, into the time of another pool. Made and destroyed on any thread.
class PoolResident {
public:
    PoolResident(const PoolResident&) = delete;
    PoolResident& operator=(const PoolResident&) = delete;

protected:
    PoolResident() noexcept;
    ~PoolResident();

private:
    friend class ResidentRing;
    virtual void LeavePool() noexcept = 0;

    PoolResident* NextResident = nullptr;
    PoolResident* PreviousResident = nullptr;
};

// Makes the pool; true when there is one afterwards. A second call leaves the first pool as it is.
[[nodiscard]] bool SAK_MemorySetup(std::size_t threshold, std::size_t puddle);

// Lets all residents end what they keep in the pool, then frees the pool. Nothing that was
// allocated may be used afterwards. The end of the process calls it too, for those who forgot.
void SAK_MemoryCleanup() noexcept;

// True between set-up and cleanup.
[[nodiscard]] bool SAK_MemoryReady() noexcept;

// Cleared memory, null without a pool, for a size of 0, or when there is none. Safe from any
// thread.
[[nodiscard]] void* SAK_AllocVecPooled(std::size_t size);

// Gives memory of SAK_AllocVecPooled back. Nothing happens for null or without a pool.
void SAK_FreeVecPooled(void* pointer) noexcept;

} // namespace solvane
