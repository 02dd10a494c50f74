// The one checked formatter for printf-like texts. Arguments carry their types, a format is checked
// against them as it runs, and nothing beyond them is ever read; it knows nothing of catalogs or
// locales.
//
// Conversions: %s (text), %d %i %u %ld %lu %lld %llu (any integer, its own value whatever the
// length letters say), %x %X (hexadecimal), %c %lc (a character), %%. Flags "-" and "0", a width
// and a precision are taken (texts are cut and padded by whole characters). "%2$s" takes the second
// argument; a format that uses this form uses it throughout.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace solvane {

// The widest field and the longest precision that a format may ask for.
inline constexpr std::size_t MaximumFieldWidth = 1023;

// One argument: a text, an integer or a character. It views its text, so it lives only as long as
// the call.
class FormatArg {
public:
    enum class Kind : std::uint8_t { Text, Signed, Unsigned, Character };

    template <class T>
    requires std::convertible_to<const T&, std::string_view> FormatArg(const T& text)
    noexcept // NOLINT(google-explicit-constructor)
        : What(Kind::Text), AsText(text) {}
    template <std::signed_integral T>
    FormatArg(T value) noexcept // NOLINT(google-explicit-constructor)
        : What(Kind::Signed), Number(static_cast<std::uint64_t>(std::int64_t{value})) {}
    template <std::unsigned_integral T>
    requires(!std::same_as<T, bool>) FormatArg(T value)
    noexcept // NOLINT(google-explicit-constructor)
        : What(Kind::Unsigned), Number(value) {}
    FormatArg(char character) noexcept // NOLINT(google-explicit-constructor)
        : What(Kind::Character), Number(static_cast<unsigned char>(character)) {}
    FormatArg(char32_t character) noexcept // NOLINT(google-explicit-constructor)
        : What(Kind::Character), Number(character) {}

    Kind What;
    std::string_view AsText;
    std::uint64_t Number = 0; // two's complement when signed
};

// The formatted text; nothing when the format is malformed, asks for an argument that is not there,
// or for one of another type.
[[nodiscard]] std::optional<std::string> TryFormat(std::string_view format,
                                                   std::span<const FormatArg> arguments);

// The formatted text, with any conversion that cannot be served standing as it is written.
[[nodiscard]] std::string FormatPlain(std::string_view format, std::span<const FormatArg> arguments);

// For the program's own formats.
template <class... Arguments>
[[nodiscard]] std::string FormatText(std::string_view format, const Arguments&... arguments) {
    const std::initializer_list<FormatArg> list{FormatArg(arguments)...};
    return FormatPlain(format, {list.begin(), list.size()});
}

// For formats of a catalog, which translators may have broken: the built-in one serves when the
// catalog's does not fit the arguments.
template <class... Arguments>
[[nodiscard]] std::string FormatCatalogText(std::string_view catalogFormat, std::string_view builtInFormat,
                                            const Arguments&... arguments) {
    const std::initializer_list<FormatArg> list{FormatArg(arguments)...};
    const std::span<const FormatArg> all(list.begin(), list.size());
    std::optional<std::string> text = TryFormat(catalogFormat, all);
    return text ? *std::move(text) : FormatPlain(builtInFormat, all);
}

} // namespace solvane
