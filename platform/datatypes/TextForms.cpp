#include "platform/datatypes/TextForms.h"

#include "platform/datatypes/Recognise.h"
#include "platform/datatypes/TypeRegistry.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace datatypes {

namespace {

constexpr std::uint8_t NoText = 1, High = 2;

// Control codes of texts are bell to carriage return and escape.
constexpr std::array<std::uint8_t, 256> Classes = [] {
    std::array<std::uint8_t, 256> classes = {};
    for (std::size_t c = 0; c < 256; ++c) {
        const bool control = (c < 0x20 && !(c >= 0x07 && c <= 0x0D) && c != 0x1B) || c == 0x7F;
        classes[c] = c >= 0x80 ? High : control ? NoText : 0;
    }
    return classes;
}();

bool IsUtf16Text(Bytes head) {
    const bool little = HasMark(head, 0, "\xFF\xFE");
    if (!little && !HasMark(head, 0, "\xFE\xFF")) {
        return false;
    }
    for (std::size_t at = 2; at + 1 < head.size(); at += 2) {
        const std::uint32_t unit = little ? Le16(head, at) : Be16(head, at);
        if (unit >= 0xFFFE || (unit < 0x80 && Classes[unit] == NoText)) {
            return false;
        }
    }
    return head.size() >= 4;
}

// All classes that occur; stops soon after the first byte that is not of a text.
std::uint8_t ClassesOf(Bytes head) {
    constexpr std::size_t step = 64;
    std::uint8_t all = 0;
    for (std::size_t at = 0; at < head.size() && (all & NoText) == 0; at += step) {
        for (const std::byte b : head.subspan(at, std::min(step, head.size() - at))) {
            all = static_cast<std::uint8_t>(all | Classes[std::to_integer<std::size_t>(b)]);
        }
    }
    return all;
}

// The head of a longer file may end inside a character.
bool IsUtf8(Bytes head) {
    std::string_view text = AsText(head);
    for (std::size_t cut = 0; cut < 4 && cut < text.size(); ++cut) {
        if (utility::IsValidUtf8(text.substr(0, text.size() - cut))) {
            return true;
        }
        if (head.size() < HeadSize) {
            return false;
        }
    }
    return false;
}

// Without any control code, longer bytes are hardly anything else than text in some character set;
// short ones should look like words.
bool IsLikely8Bit(Bytes head) {
    constexpr std::size_t longEnough = 128;
    const auto high = static_cast<std::size_t>(
        std::ranges::count_if(head, [](std::byte b) { return b >= std::byte{0x80}; }));
    return head.size() >= longEnough || high * 3 <= head.size();
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// start is lower-case.
bool StartsWithWord(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && std::ranges::equal(text.substr(0, start.size()), start,
                                                             [](char a, char b) { return Lower(a) == b; });
}
bool HoldsWord(std::string_view text, std::string_view word) {
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [](char a, char b) { return Lower(a) == b; }) != text.end();
}

// The text without a byte order mark and the white space at its start.
std::string_view Beginning(Bytes head) {
    std::string_view text = AsText(head);
    if (text.starts_with("\xEF\xBB\xBF")) {
        text.remove_prefix(3);
    }
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text;
}

struct FormRow {
    std::string_view Start; // lower-case
    std::string_view Type;
};

constexpr std::array<FormRow, 26> Forms = {{
    {"@database", "AmigaGuide"},
    {"<!doctype html", "HTML"},
    {"<html", "HTML"},
    {"<svg", "SVG"},
    {"%!ps-adobefont", "Type 1"},
    {"%!fonttype1", "Type 1"},
    {"%!ps", "PostScript"},
    {"{\\rtf", "RTF"},
    {"/* xpm */", "XPM"},
    {"#?radiance", "Radiance"},
    {"#?rgbe", "Radiance"},
    {"#extm3u", "M3U"},
    {"begin 644 ", "UUEncoded"},
    {"begin 664 ", "UUEncoded"},
    {"begin 600 ", "UUEncoded"},
    {"begin 666 ", "UUEncoded"},
    {"begin 777 ", "UUEncoded"},
    {"begin 755 ", "UUEncoded"},
    {"begin:vcard", "vCard"},
    {"begin:vcalendar", "iCalendar"},
    {"-----begin pgp ", "PGP"},
    {"-----begin certificate", "PEM"},
    {"-----begin private key", "PEM"},
    {"-----begin rsa private key", "PEM"},
    {"-----begin public key", "PEM"},
    {"## version $ver: ", "Catalog Translation"},
}};

struct WordRow {
    std::string_view Word;
    std::string_view Type;
};

// Interpreters by a part of their names; every other one runs scripts.
constexpr std::array<WordRow, 7> Interpreters = {{
    {"python", "Python"},
    {"perl", "Perl"},
    {"ruby", "Ruby"},
    {"lua", "Lua"},
    {"php", "PHP"},
    {"rexx", "ARexx"},
    {"regina", "ARexx"},
}};

const DataType* InterpreterType(std::string_view text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    const auto row =
        std::ranges::find_if(Interpreters, [line](const WordRow& r) { return HoldsWord(line, r.Word); });
    return FindType(row == Interpreters.end() ? "Script" : row->Type);
}

// An ARexx program must begin with a comment, as many a C source does.
bool IsLikelyRexx(std::string_view text) {
    constexpr std::array<std::string_view, 7> words = {"options results", "rexxsupport.library", "parse arg",
                                                       "parse pull",      "call addlib",         "signal on ",
                                                       "address command"};
    return text.starts_with("/*") &&
           std::ranges::any_of(words, [text](std::string_view word) { return HoldsWord(text, word); });
}

// Scripts of the Shell that take arguments begin with dot commands.
bool IsLikelyScript(std::string_view text) {
    constexpr std::array<std::string_view, 5> commands = {".key ", ".k ", ".bra ", ".ket ", ".def "};
    return std::ranges::any_of(commands,
                               [text](std::string_view command) { return StartsWithWord(text, command); });
}

} // namespace

bool IsText(Bytes head) noexcept {
    if (head.empty()) {
        return false;
    }
    const std::uint8_t classes = ClassesOf(head);
    if ((classes & NoText) != 0) {
        return IsUtf16Text(head);
    }
    return (classes & High) == 0 || IsUtf8(head) || IsLikely8Bit(head);
}

ContentMatch MatchText(const Specimen& specimen) {
    const std::string_view text = Beginning(specimen.Head);
    if (StartsWithWord(text, "<?xml")) {
        if (HoldsWord(text, "<svg")) {
            return {FindType("SVG")};
        }
        return HoldsWord(text, "<html") ? ContentMatch{FindType("HTML")}
                                        : ContentMatch{FindType("XML"), Container::Xml};
    }
    const auto row =
        std::ranges::find_if(Forms, [text](const FormRow& r) { return StartsWithWord(text, r.Start); });
    return row == Forms.end() ? ContentMatch{} : ContentMatch{FindType(row->Type)};
}

const DataType* GuessText(const Specimen& specimen) {
    const std::string_view text = Beginning(specimen.Head);
    if (text.starts_with("#!")) {
        return InterpreterType(text);
    }
    if (IsLikelyRexx(text)) {
        return FindType("ARexx");
    }
    return IsLikelyScript(text) ? FindType("Script") : nullptr;
}

} // namespace datatypes
