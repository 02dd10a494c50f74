// What a file is: the record of a type and the groups that types belong to. Finding out the type of
// a file is the work of DataTypes.h.
#pragma once

#include <cstdint>
#include <string_view>

namespace datatypes {

// The number whose bytes, highest first, are the four characters of the text.
[[nodiscard]] constexpr std::uint32_t FourCharacters(std::string_view text) noexcept {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = (value << 8) | (i < text.size() ? static_cast<unsigned char>(text[i]) : ' ');
    }
    return value;
}

enum class GroupId : std::uint32_t {
    System = FourCharacters("syst"),
    Text = FourCharacters("text"),
    Document = FourCharacters("docu"),
    Sound = FourCharacters("soun"),
    Instrument = FourCharacters("inst"),
    Music = FourCharacters("musi"),
    Picture = FourCharacters("pict"),
    Animation = FourCharacters("anim"),
    Movie = FourCharacters("movi"),
};

inline constexpr std::size_t NameSize = 24; // bytes of the longest type name

// A type exists once: equal types have equal addresses, and records and their texts live as long as
// the program.
struct DataType {
    std::string_view Name; // "JPEG": ASCII, no "/" or ":", at most NameSize bytes
    GroupId Group;
    std::string_view Id; // four characters, "jpeg"; not unique
};

// The type of a file that fits nothing else.
[[nodiscard]] const DataType& BinaryType() noexcept;
// Plain text without a more special type. Its name and group together read "ASCII Text".
[[nodiscard]] const DataType& AsciiType() noexcept;

// "System", "Text", "Document", "Sound", "Instrument", "Music", "Picture", "Animation" or "Movie".
[[nodiscard]] std::string_view GroupName(GroupId group) noexcept;

} // namespace datatypes
