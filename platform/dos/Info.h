// How full a volume is and whether it can be written to.
#pragma once

#include "platform/dos/Locks.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace dos {

enum class DiskState : std::uint32_t {
    WriteProtected = 80,
    Validating = 81,
    Validated = 82, // can be read and written
};

struct InfoData {
    DiskState State = DiskState::Validated;
    std::uint64_t Blocks = 0;
    // Free is what is left of Blocks for this user: what the host keeps back counts as used.
    std::uint64_t BlocksUsed = 0;
    std::uint64_t BytesPerBlock = 0;
    std::uint32_t Unit = 0;    // of the Exec device
    std::uint32_t DosType = 0; // for DosTypeText
    std::uint32_t Created = 0; // when the object was made, seconds since 1 January 1978; 0: not told
};

// The disk on which the object lies. Nothing with IoErr: 226 when it does not answer.
[[nodiscard]] std::optional<InfoData> Info(const FileLock& lock);
[[nodiscard]] std::optional<InfoData> Info(std::string_view path);

} // namespace dos
