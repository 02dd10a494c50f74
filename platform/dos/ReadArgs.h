// Command line arguments by template, as the Shell's commands read them:
// "FILE/A,ALL/S,BUF=BUFFER/K/N". A pure text parser; it never prompts for missing words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

inline constexpr std::size_t MaxTemplateItems = 100;
inline constexpr std::size_t MaxArgumentLine =
    std::size_t{1024} * 1024; // bytes; a longer line is refused with 120

enum class ItemKind { Error, Nothing, Equal, Unquoted, Quoted };

// Reads the word of line that begins at or behind position into word, quotes removed and escapes
// resolved, and moves position behind it and the one separator that ended it. Nothing: the line is
// at its end. Equal: a "=" that stands by itself. Error: a closing quote is missing (IoErr 120).
[[nodiscard]] ItemKind ReadItem(std::string_view line, std::size_t& position, std::string& word);

// The values of one parsed line, asked for by an item's name or any of its aliases (without regard
// to case). A name that is not in the template has no value.
class ArgResults {
public:
    // True when the item was given, whatever its kind; the value of a /S item.
    [[nodiscard]] bool Flag(std::string_view name) const;
    // The value of a /T item: preset, or its opposite when the item was given.
    [[nodiscard]] bool Toggle(std::string_view name, bool preset) const;
    // The text of an item; nothing when it was not given.
    [[nodiscard]] std::optional<std::string> Text(std::string_view name) const;
    // The value of a /N item.
    [[nodiscard]] std::optional<long> Number(std::string_view name) const;
    // The words of a /M item in their order; empty when it took none.
    [[nodiscard]] std::vector<std::string> Multi(std::string_view name) const;
    // The values of a /N/M item.
    [[nodiscard]] std::vector<long> Numbers(std::string_view name) const;

private:
    friend class ArgParser;
    struct Item {
        std::vector<std::string> Names; // name and aliases
        bool Switch = false, Toggle = false, Numeric = false, Required = false;
        bool Keyword = false, Multiple = false, Rest = false;
        bool Given = false;
        std::vector<std::string> Words; // what it was given; at most one without /M
        std::vector<long> Values;       // of a /N item, one per word
    };
    [[nodiscard]] const Item* Find(std::string_view name) const;
    std::vector<Item> Items;
};

// Parses line by argTemplate. Nothing on failure, the reason is in IoErr: 114 bad template or a
// stray "=", 115 bad number, 116 required argument missing, 117 keyword without value, 118 too many
// words or a required keyword missing, 120 closing quote missing or line too long. A /T switch
// counts from off.
[[nodiscard]] std::optional<ArgResults> ReadArgs(std::string_view argTemplate, std::string_view line);

// text as one quoted word that ReadArgs reads back unchanged, whatever bytes it holds but NUL.
[[nodiscard]] std::string QuoteArgument(std::string_view text);

} // namespace dos
