// AmigaDOS patterns: "#?.info", "(a|b)#?", "~(#?.c)", "[a-z]??". Parses and matches texts only; drawers are
// not walked here, and "/" and ":" are ordinary characters.
//
// Where systems differ, here: a pattern in parentheses counts as one with wildcards, "(abc)" and "()" too;
// "'" before a character that is not special stands for itself and both match ("Don't"); "]" that comes first
// in a class is a member of it; a class that ends downwards ("[c-a]") has no members. Special, and so quoted
// by "'", are  # ? ~ ( ) | [ ] % * '  and in a class also  -
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

inline constexpr std::size_t MaxPatternLength = 4096; // bytes of a pattern; a longer one is refused
inline constexpr std::size_t MaxPatternDepth = 128;   // nested groups, "#" and "~"

enum class PatternCase { Respect, Ignore };
enum class PatternStar { Ordinary, Anything }; // what an unquoted "*" means; Anything: the same as "#?"

// A pattern that is parsed once and matched often. Copies are cheap and share what was parsed; one pattern
// may be matched by many threads at a time. An empty Pattern matches nothing.
//
// Matching takes at most pattern times text. A "~" inside of a pattern, as in "a~(b)c", mostly costs parsing
// some milliseconds and matching nothing; in a pattern of more than 64 letters or with very many different
// ways on, it makes matching pattern times text times (text / 64), one within another "~" the text once more.
// A "~" before the whole is free.
class Pattern {
public:
    Pattern() = default;
    // Nothing when the pattern is bad or nests too deep (IoErr 114) or is too long (IoErr 303).
    [[nodiscard]] static std::optional<Pattern> Parse(std::string_view source, PatternCase rule,
                                                      PatternStar star = PatternStar::Ordinary);
    // False when only one text matches, the one that is left when quotes are resolved.
    [[nodiscard]] bool HasWildcards() const noexcept;
    // Whether the whole text matches. Characters are those of UTF-8, each invalid byte is one of its own.
    // A text so long that the match would not end within about a second does not match and sets IoErr to 303,
    // which is left alone otherwise. That can be from about 1 KiB on with "~" within "~", from tens of KiB on
    // with "~" inside or more than 63 characters in the pattern; never with other patterns or up to 255
    // bytes.
    [[nodiscard]] bool Matches(std::string_view text) const;

private:
    friend class PatternParser;
    struct Program;
    std::shared_ptr<const Program> Code;
};

// A buffer of this size holds the tokens of any pattern of that length and their final NUL.
[[nodiscard]] constexpr std::size_t PatternBufferSize(std::size_t length) noexcept {
    return 2 * length + 2;
}

// Parses source into tokens for MatchPattern. 1: it has wildcards, 0: it has none, -1: it is bad (IoErr 114),
// longer than MaxPatternLength, or its tokens and their NUL do not fit into size bytes (IoErr 303); tokens
// are empty then.
[[nodiscard]] int ParsePattern(std::string_view source, std::string& tokens, std::size_t size,
                               PatternStar star = PatternStar::Ordinary);
// The same for MatchPatternNoCase. These tokens are upper case: MatchPattern finds no lower-case letter by
// them.
[[nodiscard]] int ParsePatternNoCase(std::string_view source, std::string& tokens, std::size_t size,
                                     PatternStar star = PatternStar::Ordinary);

// Whether the whole text matches the tokens. They are read again when they differ from those of the thread's
// last call: whoever matches by several patterns in turn uses Pattern. False with IoErr 114 for tokens that
// ParsePattern did not make.
[[nodiscard]] bool MatchPattern(std::string_view tokens, std::string_view text);
[[nodiscard]] bool MatchPatternNoCase(std::string_view tokens, std::string_view text);

} // namespace dos
