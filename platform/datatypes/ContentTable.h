// The formats that are recognised by their own bytes: one row per mark. The rows stand in
// AmigaFormats, MediaFormats and GeneralFormats; the first that fits decides.
#pragma once

#include "platform/datatypes/Bytes.h"
#include "platform/datatypes/DataType.h"

#include <string_view>

namespace datatypes {

// What is known of a file when its type is asked.
struct Specimen {
    Bytes Head;
    std::string_view Name;      // as it stands
    std::string_view Extension; // lower-case ASCII, without the dot; empty when there is none
    std::uint64_t Size;         // of the whole file
};

// Formats that hold others: where the content is such a container, a name may tell what is inside.
enum class Container : std::uint8_t { None, Zip, Gzip, Xml, Ole, Tiff };
inline constexpr std::size_t ContainerCount = 6;

struct Mark {
    std::size_t Offset = 0;
    std::string_view Value; // empty: always there
};

using Matcher = bool (*)(const Specimen&);

// A printable mark that stands alone, without a second one or a matcher, does not count in a text.
struct ContentRow {
    DataType Type;
    Mark First;
    Mark Second = {};
    Matcher Match = nullptr; // asked when both marks are there
    Container Holds = Container::None;
};

struct ContentMatch {
    const DataType* Type = nullptr; // null: no row fits
    Container Holds = Container::None;
};

// The row that the specimen fits.
[[nodiscard]] ContentMatch MatchContent(const Specimen& specimen);

[[nodiscard]] std::span<const ContentRow> AmigaFormats() noexcept;
[[nodiscard]] std::span<const ContentRow> MediaFormats() noexcept;
[[nodiscard]] std::span<const ContentRow> GeneralFormats() noexcept;

} // namespace datatypes
