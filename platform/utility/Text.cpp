#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace utility {
namespace {

// Upper-case characters First, First + Step ... Last, each with its lower-case form Distance above
// it.
struct CaseRange {
    char16_t First, Last;
    std::uint8_t Step;
    std::int16_t Distance;
};

// The dotted and dotless i of Turkish are left out: a mapping without the language would mix them
// up with i.
constexpr CaseRange CaseRanges[] = {
    {0x0041, 0x005A, 1, 32},  {0x00C0, 0x00D6, 1, 32},  {0x00D8, 0x00DE, 1, 32},  {0x0100, 0x012E, 2, 1},
    {0x0132, 0x0136, 2, 1},   {0x0139, 0x0147, 2, 1},   {0x014A, 0x0176, 2, 1},   {0x0178, 0x0178, 1, -121},
    {0x0179, 0x017D, 2, 1},   {0x0181, 0x0181, 1, 210}, {0x0182, 0x0184, 2, 1},   {0x0186, 0x0186, 1, 206},
    {0x0187, 0x0187, 1, 1},   {0x0189, 0x018A, 1, 205}, {0x018B, 0x018B, 1, 1},   {0x018E, 0x018E, 1, 79},
    {0x018F, 0x018F, 1, 202}, {0x0190, 0x0190, 1, 203}, {0x0191, 0x0191, 1, 1},   {0x0193, 0x0193, 1, 205},
    {0x0194, 0x0194, 1, 207}, {0x0196, 0x0196, 1, 211}, {0x0197, 0x0197, 1, 209}, {0x0198, 0x0198, 1, 1},
    {0x019C, 0x019C, 1, 211}, {0x019D, 0x019D, 1, 213}, {0x01A0, 0x01A4, 2, 1},   {0x01A7, 0x01A7, 1, 1},
    {0x01A9, 0x01A9, 1, 218}, {0x01AC, 0x01AC, 1, 1},   {0x01AE, 0x01AE, 1, 218}, {0x01AF, 0x01AF, 1, 1},
    {0x01B1, 0x01B2, 1, 217}, {0x01B3, 0x01B5, 2, 1},   {0x01B7, 0x01B7, 1, 219}, {0x01B8, 0x01B8, 1, 1},
    {0x01BC, 0x01BC, 1, 1},   {0x01C4, 0x01C4, 1, 2},   {0x01C7, 0x01C7, 1, 2},   {0x01CA, 0x01CA, 1, 2},
    {0x01CD, 0x01DB, 2, 1},   {0x01DE, 0x01EE, 2, 1},   {0x01F1, 0x01F1, 1, 2},   {0x01F4, 0x01F4, 1, 1},
    {0x01F8, 0x021E, 2, 1},   {0x0222, 0x0232, 2, 1},   {0x0246, 0x024E, 2, 1},   {0x0370, 0x0372, 2, 1},
    {0x0376, 0x0376, 1, 1},   {0x0386, 0x0386, 1, 38},  {0x0388, 0x038A, 1, 37},  {0x038C, 0x038C, 1, 64},
    {0x038E, 0x038F, 1, 63},  {0x0391, 0x03A1, 1, 32},  {0x03A3, 0x03AB, 1, 32},  {0x03CF, 0x03CF, 1, 8},
    {0x03D8, 0x03EE, 2, 1},   {0x03F7, 0x03F7, 1, 1},   {0x03FA, 0x03FA, 1, 1},   {0x0400, 0x040F, 1, 80},
    {0x0410, 0x042F, 1, 32},  {0x0460, 0x0480, 2, 1},   {0x048A, 0x04BE, 2, 1},   {0x04C0, 0x04C0, 1, 15},
    {0x04C1, 0x04CD, 2, 1},   {0x04D0, 0x052E, 2, 1},   {0x1E00, 0x1E94, 2, 1},   {0x1EA0, 0x1EFE, 2, 1},
};

struct CasePair {
    char16_t From, To;
};

// Forms whose way there and back are not the same: micro sign, long s, final sigma, title-case
// digraphs, capital sharp s.
constexpr CasePair OnlyToUpper[] = {{0x00B5, 0x039C}, {0x017F, 0x0053}, {0x03C2, 0x03A3}, {0x01C5, 0x01C4},
                                    {0x01C8, 0x01C7}, {0x01CB, 0x01CA}, {0x01F2, 0x01F1}};
constexpr CasePair OnlyToLower[] = {
    {0x01C5, 0x01C6}, {0x01C8, 0x01C9}, {0x01CB, 0x01CC}, {0x01F2, 0x01F3}, {0x1E9E, 0x00DF}};

constexpr char32_t LowEnd = 0x0530;    // Latin, Greek, Cyrillic
constexpr char32_t HighFirst = 0x1E00; // Latin Extended Additional
constexpr char32_t HighEnd = 0x1F00;

// A mapping of the two covered parts of the code space, every other character maps to itself.
struct CaseMap {
    std::array<char16_t, LowEnd + (HighEnd - HighFirst)> Targets{};

    static constexpr std::size_t Slot(char32_t c) { return c < LowEnd ? c : LowEnd + (c - HighFirst); }
    static constexpr bool Covers(char32_t c) { return c < LowEnd || (c >= HighFirst && c < HighEnd); }
    constexpr CaseMap() {
        for (std::size_t c = 0; c < LowEnd; ++c)
            Targets[c] = static_cast<char16_t>(c);
        for (char32_t c = HighFirst; c < HighEnd; ++c)
            Targets[Slot(c)] = static_cast<char16_t>(c);
    }
    constexpr char32_t operator()(char32_t c) const { return Covers(c) ? Targets[Slot(c)] : c; }
};

constexpr CaseMap MakeLowerMap() {
    CaseMap map;
    for (const CaseRange& range : CaseRanges)
        for (char32_t c = range.First; c <= range.Last; c += range.Step)
            map.Targets[CaseMap::Slot(c)] =
                static_cast<char16_t>(static_cast<std::int32_t>(c) + range.Distance);
    for (const CasePair& pair : OnlyToLower)
        map.Targets[CaseMap::Slot(pair.From)] = pair.To;
    return map;
}

constexpr CaseMap MakeUpperMap() {
    CaseMap map;
    for (const CaseRange& range : CaseRanges)
        for (char32_t c = range.First; c <= range.Last; c += range.Step)
            map.Targets[CaseMap::Slot(static_cast<char32_t>(static_cast<std::int32_t>(c) + range.Distance))] =
                static_cast<char16_t>(c);
    for (const CasePair& pair : OnlyToUpper)
        map.Targets[CaseMap::Slot(pair.From)] = pair.To;
    return map;
}

constexpr CaseMap LowerMap = MakeLowerMap();
constexpr CaseMap UpperMap = MakeUpperMap();

// Over upper to lower case, so that forms which share only their capital (the sigmas) fold to one.
constexpr CaseMap MakeFoldMap() {
    CaseMap map;
    for (char16_t& target : map.Targets)
        target = static_cast<char16_t>(LowerMap(UpperMap(target)));
    return map;
}

constexpr CaseMap FoldMap = MakeFoldMap();

constexpr std::uint64_t EveryByte(std::uint8_t byte) {
    return 0x0101010101010101ULL * byte;
}
constexpr std::uint64_t HighBits = EveryByte(0x80);

// Eight bytes of a text, the first one on top, so that numbers order like the bytes.
std::uint64_t LoadEight(const char* bytes) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::little)
        word = __builtin_bswap64(word);
    return word;
}

// Eight ASCII bytes in lower case: a byte from "A" to "Z" gets its bit 0x20 set.
std::uint64_t LowerEight(std::uint64_t word) noexcept {
    const std::uint64_t fromA = word + EveryByte(0x80 - 'A');
    const std::uint64_t aboveZ = word + EveryByte(0x80 - 'Z' - 1);
    return word | (((fromA & ~aboveZ) & HighBits) >> 2);
}

// A place in a text from which characters are taken in their folded form.
struct FoldReader {
    std::string_view Text;
    std::size_t At = 0;

    [[nodiscard]] bool AtEnd() const noexcept { return At >= Text.size(); }
    // The next eight bytes; only while there are so many left.
    [[nodiscard]] std::uint64_t Eight() const noexcept { return LoadEight(Text.data() + At); }
    char32_t Next() noexcept {
        const auto byte = static_cast<unsigned char>(Text[At]);
        if (byte < 0x80) {
            ++At;
            return FoldMap.Targets[byte];
        }
        const Character c = Decode(Text, At);
        At += c.Length;
        return FoldMap(c.Code);
    }
};

// Compares eight bytes of ASCII at a time and stops in front of others. Gives the order, 0 while all was
// equal.
int CompareAscii(FoldReader& left, FoldReader& right) noexcept {
    const std::size_t common = std::min(left.Text.size(), right.Text.size());
    while (common - left.At >= 8) {
        const std::uint64_t a = left.Eight();
        const std::uint64_t b = right.Eight();
        if (((a | b) & HighBits) != 0)
            return 0;
        if (a != b && LowerEight(a) != LowerEight(b))
            return LowerEight(a) < LowerEight(b) ? -1 : 1;
        left.At = right.At += 8;
    }
    return 0;
}

// The folded form of one character; an invalid byte stands behind 0xFF, which is above all of
// UTF-8.
void AppendFolded(std::string& text, char32_t code) {
    if (code < InvalidByteBase) {
        AppendUtf8(text, FoldMap(code));
        return;
    }
    text += '\xFF';
    text += static_cast<char>(code - InvalidByteBase);
}

bool IsTail(std::string_view text, std::size_t at, unsigned char low, unsigned char high) noexcept {
    if (at >= text.size())
        return false;
    const auto byte = static_cast<unsigned char>(text[at]);
    return byte >= low && byte <= high;
}

char32_t TailBits(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]) & 0x3FU;
}

} // namespace

Character Decode(std::string_view text, std::size_t at) noexcept {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80)
        return {lead, 1};
    const Character invalid{InvalidByteBase + lead, 1};
    if (lead < 0xC2 || lead > 0xF4)
        return invalid;
    // The byte behind these leads is limited further: no overlong forms, surrogates or values above
    // 0x10FFFF.
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (!IsTail(text, at + 1, low, high))
        return invalid;
    if (lead < 0xE0)
        return {(lead & 0x1FU) << 6 | TailBits(text, at + 1), 2};
    if (!IsTail(text, at + 2, 0x80, 0xBF))
        return invalid;
    const char32_t three = TailBits(text, at + 1) << 6 | TailBits(text, at + 2);
    if (lead < 0xF0)
        return {(lead & 0x0FU) << 12 | three, 3};
    if (!IsTail(text, at + 3, 0x80, 0xBF))
        return invalid;
    return {(lead & 0x07U) << 18 | three << 6 | TailBits(text, at + 3), 4};
}

void AppendUtf8(std::string& text, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
        c = ReplacementCharacter;
    const auto tail = [&text, c](int shift) { text += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | c >> 6);
        tail(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | c >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | c >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

char32_t ToUpper(char32_t c) noexcept {
    return UpperMap(c);
}

char32_t ToLower(char32_t c) noexcept {
    return LowerMap(c);
}

int Stricmp(std::string_view a, std::string_view b) noexcept {
    FoldReader left{a};
    FoldReader right{b};
    if (const int order = CompareAscii(left, right); order != 0)
        return order;
    while (!left.AtEnd() && !right.AtEnd()) {
        const char32_t fromLeft = left.Next();
        const char32_t fromRight = right.Next();
        if (fromLeft != fromRight)
            return fromLeft < fromRight ? -1 : 1;
    }
    if (!left.AtEnd())
        return 1;
    return right.AtEnd() ? 0 : -1;
}

int Strnicmp(std::string_view a, std::string_view b, std::size_t bytes) noexcept {
    return Stricmp(a.substr(0, bytes), b.substr(0, bytes));
}

std::string Fold(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Character c = Decode(text, at);
        AppendFolded(folded, c.Code);
        at += c.Length;
    }
    return folded;
}

std::uint64_t FoldPrefix(std::string_view text) noexcept {
    std::array<char, 8> bytes{};
    std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
    const std::uint64_t word = LoadEight(bytes.data());
    if ((word & HighBits) == 0)
        return LowerEight(word);
    std::string folded; // short enough to need no heap: at most 7 bytes and one character
    for (std::size_t at = 0; at < text.size() && folded.size() < bytes.size();) {
        const Character c = Decode(text, at);
        AppendFolded(folded, c.Code);
        at += c.Length;
    }
    folded.resize(bytes.size());
    return LoadEight(folded.data());
}

std::size_t CutLength(std::string_view text, std::size_t maxBytes) noexcept {
    if (text.size() <= maxBytes)
        return text.size();
    const std::size_t first = maxBytes > 3 ? maxBytes - 3 : 0;
    for (std::size_t lead = first; lead < maxBytes; ++lead)
        if (lead + Decode(text, lead).Length > maxBytes)
            return lead;
    return maxBytes;
}

bool IsValidUtf8(std::string_view text) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        const Character c = Decode(text, at);
        if (c.Code >= InvalidByteBase)
            return false;
        at += c.Length;
    }
    return true;
}

std::string ReplaceInvalidUtf8(std::string_view text) {
    if (IsValidUtf8(text))
        return std::string(text);
    std::string valid;
    for (std::size_t at = 0; at < text.size();) {
        const Character c = Decode(text, at);
        AppendUtf8(valid, c.Code);
        at += c.Length;
    }
    return valid;
}

std::string Utf8FromLatin1(std::string_view latin1) {
    std::string text;
    text.reserve(latin1.size());
    for (const char byte : latin1)
        AppendUtf8(text, static_cast<unsigned char>(byte));
    return text;
}

} // namespace utility
