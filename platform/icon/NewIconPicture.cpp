#include "platform/icon/PictureKinds.h"

#include <algorithm>
#include <bit>
#include <span>

namespace icon {
namespace {

// Characters stand for values or for runs of zeros, 7 bits each.
constexpr std::uint8_t FirstLow = 0x20, LastLow = 0x6F;
constexpr std::uint8_t FirstHigh = 0xA1, LastHigh = 0xD0;
constexpr std::uint8_t HighValue = 0x50; // of FirstHigh
constexpr std::uint32_t MaxColours = 256;

struct Coded {
    std::uint8_t Value;
    std::uint32_t Count; // 0: no such character
};

Coded Decode(std::uint8_t c) {
    if (c >= FirstLow && c <= LastLow)
        return {static_cast<std::uint8_t>(c - FirstLow), 1};
    if (c >= FirstHigh && c <= LastHigh)
        return {static_cast<std::uint8_t>(c - FirstHigh + HighValue), 1};
    return {0, c > LastHigh ? c - std::uint32_t{LastHigh} : 0};
}

// Appends the values of one line, of so many bits each, until there are limit of them. Bits that make
// no whole value at its end are padding.
void AppendValues(std::string_view line, unsigned bits, std::size_t limit,
                  std::vector<std::uint8_t>& values) {
    std::uint32_t buffer = 0;
    unsigned held = 0;
    for (const char c : line) {
        const Coded coded = Decode(static_cast<std::uint8_t>(c));
        for (std::uint32_t i = 0; i < coded.Count; ++i) {
            buffer = buffer << 7 | coded.Value;
            held += 7;
            for (; held >= bits && values.size() < limit; held -= bits)
                values.push_back(static_cast<std::uint8_t>(buffer >> (held - bits) & ((1U << bits) - 1)));
            if (values.size() == limit)
                return;
        }
    }
}

// Takes values from the lines, each begun anew; false when they end first.
bool ReadValues(std::span<const std::string_view>& lines, unsigned bits, std::size_t count,
                std::vector<std::uint8_t>& values) {
    while (values.size() < count && !lines.empty()) {
        AppendValues(lines.front(), bits, count, values);
        lines = lines.subspan(1);
    }
    return values.size() == count;
}

struct Header {
    bool ColourZeroIsTransparent;
    std::uint32_t Width, Height, Colours;
};
constexpr std::size_t HeaderSize = 5;
constexpr std::uint32_t Base = 0x21; // the character for 0

std::optional<Header> ReadHeader(std::string_view line) {
    if (line.size() < HeaderSize)
        return std::nullopt;
    const auto number = [line](std::size_t at) { return static_cast<std::uint8_t>(line[at]) - Base; };
    const Header header{line[0] == 'B', number(1), number(2), (number(3) << 6) + number(4)};
    if (!IsPictureSize(header.Width, header.Height) || header.Colours > MaxColours)
        return std::nullopt;
    return header;
}

std::vector<std::string_view> LinesOf(const std::vector<std::string>& lines, std::string_view name) {
    std::vector<std::string_view> own;
    for (const std::string_view line : lines)
        if (line.starts_with(name))
            own.push_back(line.substr(name.size()));
    return own;
}

struct Palette {
    std::vector<std::uint8_t> Components; // red, green, blue of each colour
    [[nodiscard]] std::uint32_t Colour(std::size_t index) const {
        const std::size_t at = index * 3;
        if (at + 2 >= Components.size())
            return 0;
        return std::uint32_t{Components[at]} << 16 | std::uint32_t{Components[at + 1]} << 8 |
               Components[at + 2];
    }
};

// One picture; a palette without colours leaves the one that is given.
std::optional<IconPicture> DecodeLines(std::vector<std::string_view> lines, Palette& palette) {
    const std::optional<Header> header = lines.empty() ? std::nullopt : ReadHeader(lines.front());
    if (!header)
        return std::nullopt;
    lines.front().remove_prefix(HeaderSize);
    std::span<const std::string_view> left(lines);
    if (header->Colours == 0)
        left = left.subspan(1);
    else if (palette.Components.clear(); !ReadValues(left, 8, header->Colours * 3, palette.Components))
        return std::nullopt;
    const auto colours = static_cast<std::uint32_t>(palette.Components.size() / 3);
    const unsigned bits = std::max(static_cast<unsigned>(std::bit_width(std::max(colours, 1U) - 1)), 1U);
    std::vector<std::uint8_t> pens;
    if (colours == 0 || !ReadValues(left, bits, std::size_t{header->Width} * header->Height, pens))
        return std::nullopt;
    IconPicture picture{header->Width, header->Height, {}};
    picture.Pixels.reserve(pens.size());
    for (const std::uint8_t pen : pens)
        picture.Pixels.push_back(pen == 0 && header->ColourZeroIsTransparent ? 0
                                                                             : Opaque | palette.Colour(pen));
    return picture;
}

} // namespace

std::optional<IconPicture> DecodeNewIcon(const std::vector<std::string>& lines, IconState state) {
    Palette palette;
    std::optional<IconPicture> normal = DecodeLines(LinesOf(lines, "IM1="), palette);
    if (!normal || state == IconState::Normal)
        return normal;
    std::optional<IconPicture> selected = DecodeLines(LinesOf(lines, "IM2="), palette);
    const bool fits = selected && selected->Width == normal->Width && selected->Height == normal->Height;
    return fits ? selected : std::nullopt;
}

} // namespace icon
