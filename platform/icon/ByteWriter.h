// Appends and replaces big-endian numbers in the bytes of an icon file. Private to platform/icon.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace icon {

// Replaces size bytes at offset, which must be there.
inline void PutNumber(std::string& bytes, std::size_t offset, std::uint32_t value, std::size_t size) {
    for (std::size_t i = size; i-- > 0; value >>= 8)
        bytes[offset + i] = static_cast<char>(value & 0xFF);
}
inline void PutLong(std::string& bytes, std::size_t offset, std::uint32_t value) {
    PutNumber(bytes, offset, value, 4);
}
inline void PutWord(std::string& bytes, std::size_t offset, std::uint16_t value) {
    PutNumber(bytes, offset, value, 2);
}

inline void AppendLong(std::string& bytes, std::uint32_t value) {
    bytes.append(4, '\0');
    PutLong(bytes, bytes.size() - 4, value);
}
inline void AppendWord(std::string& bytes, std::uint16_t value) {
    bytes.append(2, '\0');
    PutWord(bytes, bytes.size() - 2, value);
}

} // namespace icon
