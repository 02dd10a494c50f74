// Reads big-endian numbers and texts of an icon file, never past its end. Private to platform/icon.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace icon {

// A read that does not fit gives 0 or an empty text and leaves the reader failed, at the same
// place.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : Bytes(bytes) {}
    explicit ByteReader(std::string_view bytes) : Bytes(std::as_bytes(std::span(bytes))) {}

    [[nodiscard]] bool Failed() const { return HasFailed; }
    [[nodiscard]] std::size_t Position() const { return At; }
    [[nodiscard]] std::size_t Left() const { return Bytes.size() - At; }

    [[nodiscard]] std::uint8_t Peek() const { return std::to_integer<std::uint8_t>(Bytes[At]); }
    void Fail() { HasFailed = true; }
    void Skip(std::size_t count) { Take(count); }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Number(1)); }
    std::uint16_t Word() { return static_cast<std::uint16_t>(Number(2)); }
    std::uint32_t Long() { return Number(4); }
    std::int16_t SignedWord() { return static_cast<std::int16_t>(Word()); }
    std::int32_t SignedLong() { return static_cast<std::int32_t>(Long()); }

    // The next bytes, as they are.
    std::string_view Raw(std::size_t count) {
        const std::span<const std::byte> taken = Take(count);
        return {reinterpret_cast<const char*>(taken.data()), taken.size()};
    }
    // Up to a NUL, which is passed over; failed when there is none.
    std::string_view UntilNul() {
        const std::string_view rest = {reinterpret_cast<const char*>(Bytes.data()) + At, Left()};
        const std::size_t end = rest.find('\0');
        if (end == std::string_view::npos) {
            HasFailed = true;
            return {};
        }
        At += end + 1;
        return rest.substr(0, end);
    }

private:
    std::span<const std::byte> Take(std::size_t count) {
        if (HasFailed || count > Left()) {
            HasFailed = true;
            return {};
        }
        const auto taken = Bytes.subspan(At, count);
        At += count;
        return taken;
    }
    std::uint32_t Number(std::size_t size) {
        std::uint32_t number = 0;
        for (const std::byte byte : Take(size))
            number = number << 8 | std::to_integer<std::uint32_t>(byte);
        return number;
    }

    std::span<const std::byte> Bytes;
    std::size_t At = 0;
    bool HasFailed = false;
};

} // namespace icon
