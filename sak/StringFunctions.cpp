#include "sak/StringFunctions.h"

#include "platform/intuition/Label.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace solvane {

namespace {

constexpr std::string_view WhiteSpace = " \t\n\v\f\r";

// A place in a text. Case can change the length of a character, so a match need not be as long as
// what was looked for.
struct Match {
    std::size_t Offset = 0;
    std::size_t Length = 0;
};

// The whole characters of a text, in order.
std::vector<std::string_view> CharactersOf(std::string_view text) {
    std::vector<std::string_view> characters;
    for (std::size_t at = 0; at < text.size(); at += characters.back().size()) {
        characters.push_back(text.substr(at, utility::Decode(text, at).Length));
    }
    return characters;
}

std::string Concatenate(std::span<const std::string_view> characters) {
    std::string text;
    for (const std::string_view character : characters) {
        text += character;
    }
    return text;
}

// Appends a character in one case; an invalid byte stays as it is.
void AppendCased(std::string& out, std::string_view text, std::size_t at,
                 char32_t (*change)(char32_t) noexcept) {
    const utility::Character character = utility::Decode(text, at);
    if (character.Code >= utility::InvalidByteBase) {
        out += text.substr(at, character.Length);
    } else {
        utility::AppendUtf8(out, change(character.Code));
    }
}

// Length of the match of find at the start of text without regard to case; nothing when it differs.
std::optional<std::size_t> FoldedPrefix(std::string_view text, std::string_view find) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < find.size();) {
        if (at >= text.size()) {
            return std::nullopt;
        }
        const utility::Character wanted = utility::Decode(find, i);
        const utility::Character found = utility::Decode(text, at);
        if (wanted.Code != found.Code && utility::ToLower(wanted.Code) != utility::ToLower(found.Code)) {
            return std::nullopt;
        }
        i += wanted.Length;
        at += found.Length;
    }
    return at;
}

std::optional<Match> FindFrom(std::string_view text, std::size_t from, std::string_view find, FindMode mode) {
    if (mode == FindMode::KeepCase) {
        const std::size_t at = text.find(find, from);
        return at == NotFound ? std::nullopt : std::optional(Match{at, find.size()});
    }
    for (std::size_t at = from; at < text.size(); at += utility::Decode(text, at).Length) {
        if (const std::optional<std::size_t> length = FoldedPrefix(text.substr(at), find)) {
            return Match{at, *length};
        }
    }
    return std::nullopt;
}

std::string Without(std::string_view text, std::size_t at, std::size_t length) {
    std::string rest(text);
    if (at != NotFound && !text.empty()) {
        rest.erase(at, length);
    }
    return rest;
}

} // namespace

std::string SAK_StringToLower(std::string_view text) {
    return locale::ToLower(text);
}

std::string SAK_StringToUpper(std::string_view text) {
    return locale::ToUpper(text);
}

std::string SAK_ConvertToTitleCase(std::string_view text) {
    std::string out;
    bool behindSeparator = false;
    for (std::size_t at = 0; at < text.size(); at += utility::Decode(text, at).Length) {
        AppendCased(out, text, at, at == 0 || behindSeparator ? utility::ToUpper : utility::ToLower);
        behindSeparator = !behindSeparator && (text[at] == ' ' || text[at] == '.');
    }
    return out;
}

std::string SAK_ConvertToCamelCase(std::string_view text) {
    return SAK_RemoveAllOccurences(SAK_ConvertToTitleCase(text), " ");
}

std::size_t SAK_CountCharacters(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        at += utility::Decode(text, at).Length;
    }
    return count;
}

std::string SAK_swap(std::string_view text, std::size_t a, std::size_t b) {
    std::vector<std::string_view> characters = CharactersOf(text);
    if (a < characters.size() && b < characters.size()) {
        std::swap(characters[a], characters[b]);
    }
    return Concatenate(characters);
}

std::string SAK_ReverseString(std::string_view text) {
    std::vector<std::string_view> characters = CharactersOf(text);
    std::reverse(characters.begin(), characters.end());
    return Concatenate(characters);
}

std::size_t SAK_CountChars(std::string_view text, std::string_view character) {
    if (character.empty()) {
        return 0;
    }
    const char32_t wanted = utility::Decode(character, 0).Code;
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size();) {
        const utility::Character found = utility::Decode(text, at);
        count += found.Code == wanted ? 1 : 0;
        at += found.Length;
    }
    return count;
}

std::size_t SAK_strrchr(std::string_view text, char c) {
    return c == '\0' ? text.size() : text.rfind(c);
}

std::size_t SAK_strcasestr(std::string_view text, std::string_view find) {
    if (find.empty()) {
        return 0;
    }
    const std::optional<Match> match = FindFrom(text, 0, find, FindMode::FoldCase);
    return match ? match->Offset : NotFound;
}

std::size_t SAK_strrstr(std::string_view text, std::string_view find) {
    return text.rfind(find);
}

std::ptrdiff_t SAK_Find(std::string_view text, std::size_t length, std::string_view find, FindMode mode) {
    if (text.empty() || find.empty() || find.size() > length) {
        return -1;
    }
    const std::optional<Match> match = FindFrom(text.substr(0, length), 0, find, mode);
    return match ? static_cast<std::ptrdiff_t>(match->Offset) : -1;
}

Replaced SAK_FindAndReplace(std::string_view text, std::string_view find, std::string_view replace,
                            FindMode mode, ReplaceScope scope) {
    Replaced done;
    std::size_t from = 0;
    while (!find.empty() && find.size() <= text.size() && (done.Count == 0 || scope == ReplaceScope::All)) {
        const std::optional<Match> match = FindFrom(text, from, find, mode);
        if (!match) {
            break;
        }
        done.Result.append(text, from, match->Offset - from).append(replace);
        from = match->Offset + match->Length;
        ++done.Count;
    }
    done.Result.append(text, from);
    if (done.Count > 0) {
        done.Result.resize(utility::CutLength(done.Result, ReplaceLimit));
    }
    return done;
}

std::string SAK_RemoveAllOccurences(std::string_view text, std::string_view find) {
    std::string rest;
    std::size_t from = 0;
    while (!find.empty()) {
        const std::size_t at = text.find(find, from);
        if (at == NotFound) {
            break;
        }
        rest.append(text, from, at - from);
        from = at + find.size();
    }
    return rest.append(text, from);
}

std::string SAK_RemoveFirstOccurence(std::string_view text, std::string_view find) {
    return Without(text, text.find(find), find.size());
}

std::string SAK_RemoveLastOccurence(std::string_view text, std::string_view find) {
    return Without(text, text.rfind(find), find.size());
}

std::string SAK_strins(std::string_view text, std::string_view insert) {
    return std::string(insert).append(text);
}

std::string_view SAK_TrimWhitespace(std::string_view text, TrimSide side) {
    if (side != TrimSide::Right) {
        text.remove_prefix(std::min(text.find_first_not_of(WhiteSpace), text.size()));
    }
    if (side != TrimSide::Left) {
        text = text.substr(0, text.find_last_not_of(WhiteSpace) + 1);
    }
    return text;
}

std::size_t SAK_GadToolsStrlen(std::string_view label) {
    return SAK_CountCharacters(label) - SAK_CountChars(label, "_");
}

std::size_t SAK_GadToolsLongestString(std::span<const std::string_view> labels) {
    std::size_t longest = 0;
    for (const std::string_view label : labels) {
        longest = std::max(longest, SAK_GadToolsStrlen(label));
    }
    return longest;
}

int SAK_StrLenPixels(std::string_view text) {
    return intuition::TextWidth(text);
}

int SAK_LongestStrLenPixels(std::span<const std::string_view> texts) {
    int longest = 0;
    for (const std::string_view text : texts) {
        longest = std::max(longest, SAK_StrLenPixels(text));
    }
    return longest;
}

std::size_t SAK_LongestStrLenCharacters(std::span<const std::string_view> texts) {
    std::size_t longest = 0;
    for (const std::string_view text : texts) {
        longest = std::max(longest, SAK_CountCharacters(text));
    }
    return longest;
}

} // namespace solvane
