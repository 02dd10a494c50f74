#include "platform/icon/ClassicParts.h"
#include "platform/icon/PictureKinds.h"

#include <algorithm>
#include <array>
#include <span>

namespace icon {
namespace {

// The first pens of a Workbench, the last ones of a screen with eight colours or more, and those that
// icons for eight fixed pens count on in between.
constexpr std::array<std::uint32_t, 4> FirstPens = {0xAAAAAA, 0x000000, 0xFFFFFF, 0x6688BB};
constexpr std::array<std::uint32_t, 4> LastPens = {0xEE4444, 0x55DD55, 0x0044DD, 0xEE9900};
constexpr std::array<std::uint32_t, 4> MiddlePens = {0x7B7B7B, 0xAFAFAF, 0xAA907C, 0xFFA997};

std::uint32_t PenColour(std::uint32_t pen, std::uint32_t pens) {
    if (pen < FirstPens.size())
        return FirstPens[pen];
    if (pen + LastPens.size() >= pens)
        return LastPens[pen + LastPens.size() - pens];
    if (pen < 8)
        return MiddlePens[pen - 4];
    return pen * 255 / (pens - 1) * 0x010101; // nothing is known of these: a row of greys
}

struct Planes {
    ImageHeader Header;
    std::string_view Data;
    std::size_t RowBytes;
};

std::optional<Planes> FindPlanes(std::string_view image) {
    ByteReader reader(image);
    Planes planes{ReadImageHeader(reader), {}, 0};
    const ImageHeader& header = planes.Header;
    if (reader.Failed() || !header.HasData || !IsPictureSize(header.Width, header.Height) ||
        header.Depth < 1 || header.Depth > MaxPlanes)
        return std::nullopt;
    planes.RowBytes = PlaneRowBytes(header.Width);
    planes.Data = reader.Raw(planes.RowBytes * static_cast<std::size_t>(header.Height * header.Depth));
    if (reader.Failed())
        return std::nullopt;
    return planes;
}

void AddRow(std::string_view row, std::uint8_t bit, std::span<std::uint8_t> pens) {
    for (std::size_t x = 0; x < pens.size(); ++x)
        if ((static_cast<std::uint8_t>(row[x / 8]) << (x % 8) & 0x80) != 0)
            pens[x] = static_cast<std::uint8_t>(pens[x] | bit);
}

// The planes of the screen that the picture is made for: all that the stored ones go to, as far as they are
// picked.
int ScreenPlanes(const ImageHeader& header) {
    int planes = header.Depth;
    int stored = 0;
    for (int plane = 0; plane < MaxPlanes && stored < header.Depth; ++plane)
        if ((header.PlanePick >> plane & 1) != 0) {
            ++stored;
            planes = std::max(planes, plane + 1);
        }
    return planes;
}

// The pens of all pixels. A plane of the screen that is not picked has the same bit everywhere.
std::vector<std::uint8_t> ReadPens(const Planes& planes) {
    const auto width = static_cast<std::size_t>(planes.Header.Width);
    const auto height = static_cast<std::size_t>(planes.Header.Height);
    std::vector<std::uint8_t> pens(width * height);
    std::size_t stored = 0;
    for (int plane = 0; plane < ScreenPlanes(planes.Header); ++plane) {
        const auto bit = static_cast<std::uint8_t>(1 << plane);
        if ((planes.Header.PlanePick & bit) == 0) {
            if ((planes.Header.PlaneOnOff & bit) != 0)
                std::ranges::for_each(pens, [bit](auto& pen) { pen = static_cast<std::uint8_t>(pen | bit); });
            continue;
        }
        for (std::size_t y = 0; y < height; ++y)
            AddRow(planes.Data.substr((stored * height + y) * planes.RowBytes), bit,
                   std::span(pens).subspan(y * width, width));
        ++stored;
    }
    return pens;
}

// Which pixels of colour 0 reach the edge over others of that colour.
std::vector<bool> FindGround(const std::vector<std::uint8_t>& pens, std::size_t width) {
    std::vector<bool> ground(pens.size());
    std::vector<std::size_t> open;
    const auto visit = [&](std::size_t at) {
        if (pens[at] == 0 && !ground[at]) {
            ground[at] = true;
            open.push_back(at);
        }
    };
    const std::size_t height = pens.size() / width;
    for (std::size_t at = 0; at < pens.size(); ++at)
        if (at % width == 0 || at % width == width - 1 || at / width == 0 || at / width == height - 1)
            visit(at);
    while (!open.empty()) {
        const std::size_t at = open.back();
        open.pop_back();
        if (at % width > 0)
            visit(at - 1);
        if (at % width < width - 1)
            visit(at + 1);
        if (at >= width)
            visit(at - width);
        if (at + width < pens.size())
            visit(at + width);
    }
    return ground;
}

void Invert(std::vector<std::uint8_t>& pens, std::size_t width, std::uint8_t lastPen, Inversion inversion) {
    const std::vector<bool> ground =
        inversion == Inversion::Backfill ? FindGround(pens, width) : std::vector<bool>(pens.size());
    for (std::size_t i = 0; i < pens.size(); ++i)
        if (!ground[i])
            pens[i] ^= lastPen;
}

} // namespace

std::optional<IconPicture> DecodePlanar(std::string_view image, Inversion inversion) {
    const std::optional<Planes> planes = FindPlanes(image);
    if (!planes)
        return std::nullopt;
    IconPicture picture;
    picture.Width = static_cast<std::uint32_t>(planes->Header.Width);
    picture.Height = static_cast<std::uint32_t>(planes->Header.Height);
    const std::uint32_t colours = 1U << ScreenPlanes(planes->Header);
    std::vector<std::uint8_t> pens = ReadPens(*planes);
    if (inversion != Inversion::None)
        Invert(pens, picture.Width, static_cast<std::uint8_t>(colours - 1), inversion);
    std::array<std::uint32_t, 256> palette{};
    for (std::uint32_t pen = 1; pen < colours; ++pen)
        palette[pen] = Opaque | PenColour(pen, colours);
    picture.Pixels.resize(pens.size());
    std::ranges::transform(pens, picture.Pixels.begin(), [&](std::uint8_t pen) { return palette[pen]; });
    return picture;
}

} // namespace icon
