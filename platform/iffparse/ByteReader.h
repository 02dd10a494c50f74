// Reads the big-endian numbers and texts of a chunk's data, never past their end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace iffparse {

// A read that does not fit gives 0 or an empty text and leaves the reader failed, at the same
// place; so one question at the end covers a whole record.
class ByteReader {
public:
    explicit ByteReader(std::string_view bytes) noexcept : Bytes(bytes) {}

    [[nodiscard]] bool Failed() const noexcept { return HasFailed; }
    [[nodiscard]] std::size_t Left() const noexcept { return Bytes.size(); }

    std::uint8_t Byte() noexcept { return static_cast<std::uint8_t>(Number(1)); }
    std::uint16_t Word() noexcept { return static_cast<std::uint16_t>(Number(2)); }
    std::uint32_t Long() noexcept { return static_cast<std::uint32_t>(Number(4)); }
    std::uint64_t Quad() noexcept { return Number(8); }

    // The next bytes, as they are.
    std::string_view Raw(std::size_t count) noexcept {
        if (HasFailed || count > Bytes.size()) {
            HasFailed = true;
            return {};
        }
        const std::string_view taken = Bytes.substr(0, count);
        Bytes.remove_prefix(count);
        return taken;
    }
    // A text field of `size` bytes: what stands before its first NUL.
    std::string_view Field(std::size_t size) noexcept {
        const std::string_view field = Raw(size);
        return field.substr(0, field.find('\0'));
    }

private:
    std::uint64_t Number(std::size_t size) noexcept {
        std::uint64_t number = 0;
        for (const char c : Raw(size))
            number = number << 8 | static_cast<unsigned char>(c);
        return number;
    }

    std::string_view Bytes; // what is left
    bool HasFailed = false;
};

} // namespace iffparse
