// The lock behind an open clipboard unit: a file of the runtime directory that the host unlocks
// when its last holder goes, crashed or not. Private to platform/iffparse.
#pragma once

#include <cstdint>
#include <memory>

namespace iffparse {

class UnitLock {
public:
    explicit UnitLock(int descriptor) noexcept : Descriptor(descriptor) {}
    UnitLock(const UnitLock&) = delete;
    UnitLock& operator=(const UnitLock&) = delete;
    ~UnitLock();

private:
    int Descriptor; // locked while it is given out
};

// Null with IoErr; 202 when another one has it for longer than the patience (milliseconds).
[[nodiscard]] std::unique_ptr<UnitLock> LockUnit(std::uint32_t unit, std::uint32_t patience);

} // namespace iffparse
