#include "platform/icon/ScalePicture.h"

#include <algorithm>
#include <array>

namespace icon {
namespace {

// The pixels of one axis that make up a new one, and their shares. The shares of every new pixel have
// the same sum, so that whole numbers do.
struct Taps {
    std::uint32_t First;
    std::vector<std::uint32_t> Shares;
};
struct Axis {
    std::vector<Taps> Pixels;
    std::uint32_t Sum;
};

// Each new pixel covers from/to old ones; shares are counted in 1/to of an old one.
Axis ShrinkAxis(std::uint32_t from, std::uint32_t to) {
    Axis axis{{}, from};
    for (std::uint32_t i = 0; i < to; ++i) {
        const std::uint32_t start = i * from, end = start + from;
        Taps taps{start / to, {}};
        for (std::uint32_t old = taps.First; old * to < end; ++old)
            taps.Shares.push_back(std::min(end, (old + 1) * to) - std::max(start, old * to));
        axis.Pixels.push_back(std::move(taps));
    }
    return axis;
}

// The centre of each new pixel lies between those of two old ones; shares are counted in 1/(2 * to).
Axis GrowAxis(std::uint32_t from, std::uint32_t to) {
    Axis axis{{}, to * 2};
    for (std::uint32_t i = 0; i < to; ++i) {
        const std::uint32_t centre = (i * 2 + 1) * from;
        const std::uint32_t place = centre > to ? centre - to : 0; // of the centre, from the first one's
        const std::uint32_t first = place / axis.Sum;
        const std::uint32_t second = place % axis.Sum;
        if (first + 1 >= from || second == 0)
            axis.Pixels.push_back({first, {axis.Sum}});
        else
            axis.Pixels.push_back({first, {axis.Sum - second, second}});
    }
    return axis;
}

Axis MakeAxis(std::uint32_t from, std::uint32_t to) {
    return to < from ? ShrinkAxis(from, to) : GrowAxis(from, to);
}

// Alpha, and the colours multiplied by it.
using Light = std::array<std::uint64_t, 4>;

void AddPixel(Light& light, std::uint32_t pixel, std::uint32_t share) {
    const std::uint32_t weight = (pixel >> 24) * share;
    light[0] += weight;
    light[1] += std::uint64_t{weight} * (pixel >> 16 & 0xFF);
    light[2] += std::uint64_t{weight} * (pixel >> 8 & 0xFF);
    light[3] += std::uint64_t{weight} * (pixel & 0xFF);
}

std::uint32_t PixelOf(const Light& light, std::uint64_t sum) {
    if (light[0] == 0)
        return 0;
    auto pixel = static_cast<std::uint32_t>((light[0] + sum / 2) / sum);
    for (std::size_t i = 1; i < light.size(); ++i)
        pixel = pixel << 8 | static_cast<std::uint32_t>((light[i] + light[0] / 2) / light[0]);
    return pixel;
}

// One old row in the new width.
void ScaleRow(const std::uint32_t* row, const Axis& axis, std::vector<Light>& scaled) {
    for (std::size_t x = 0; x < axis.Pixels.size(); ++x) {
        const Taps& taps = axis.Pixels[x];
        scaled[x] = {};
        for (std::size_t i = 0; i < taps.Shares.size(); ++i)
            AddPixel(scaled[x], row[taps.First + i], taps.Shares[i]);
    }
}

void AddRow(const std::vector<Light>& row, std::uint32_t share, std::vector<Light>& sums) {
    for (std::size_t x = 0; x < row.size(); ++x)
        for (std::size_t i = 0; i < row[x].size(); ++i)
            sums[x][i] += row[x][i] * share;
}

} // namespace

IconPicture RepeatPixels(const IconPicture& picture, std::uint32_t across, std::uint32_t down) {
    IconPicture repeated{picture.Width * across, picture.Height * down, {}};
    repeated.Pixels.reserve(std::size_t{repeated.Width} * repeated.Height);
    for (std::uint32_t y = 0; y < repeated.Height; ++y) {
        const std::size_t row = std::size_t{y / down} * picture.Width;
        for (std::uint32_t x = 0; x < picture.Width; ++x)
            repeated.Pixels.insert(repeated.Pixels.end(), across, picture.Pixels[row + x]);
    }
    return repeated;
}

IconPicture ScalePicture(const IconPicture& picture, std::uint32_t width, std::uint32_t height) {
    if (width == picture.Width && height == picture.Height)
        return picture;
    const Axis across = MakeAxis(picture.Width, width);
    const Axis down = MakeAxis(picture.Height, height);
    const std::uint64_t sum = std::uint64_t{across.Sum} * down.Sum;
    IconPicture scaled{width, height, {}};
    scaled.Pixels.reserve(std::size_t{width} * height);
    std::vector<Light> row(width), sums(width);
    for (const Taps& taps : down.Pixels) {
        std::ranges::fill(sums, Light{});
        for (std::size_t i = 0; i < taps.Shares.size(); ++i) {
            ScaleRow(&picture.Pixels[std::size_t{taps.First + i} * picture.Width], across, row);
            AddRow(row, taps.Shares[i], sums);
        }
        for (const Light& light : sums)
            scaled.Pixels.push_back(PixelOf(light, sum));
    }
    return scaled;
}

} // namespace icon
