// Pictures out of bytes and back: everything the window system's readers know, and the IFF pictures of the
// Amiga. Works from any thread and touches no file; bounded against headers that lie and bytes that swell.
#pragma once

#include "platform/datatypes/Bytes.h"
#include "platform/icon/IconPicture.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace datatypes {

// The record that icons have too: 0xAARRGGBB, colours not multiplied by alpha, row by row.
using Picture = icon::IconPicture;

inline constexpr std::uint64_t MostPixels = std::uint64_t{64} * 1024 * 1024;    // of a picture in memory
inline constexpr std::size_t MostPictureBytes = std::size_t{256} * 1024 * 1024; // of a file

// The size that a picture shall have at most, its shape kept; 0 is no limit.
struct PictureBox {
    std::uint32_t Width = 0, Height = 0;
    bool Enlarge = false; // small pictures grow to the box
};

enum class PictureFault : std::uint8_t {
    None,
    Unknown, // no reader knows the format
    Broken,  // a reader refused it, or it is larger than is safe to open
};

struct DecodedPicture {
    std::optional<Picture> Shown;
    PictureFault Fault = PictureFault::None;     // why there is none
    std::uint32_t FullWidth = 0, FullHeight = 0; // before the box, turned upright; 0 when there is none
};

// Decodes the first picture of the file, turned as its camera says, as large as the box has room. A format
// that can be decoded smaller is.
[[nodiscard]] DecodedPicture DecodePicture(Bytes file, const PictureBox& box = {});

// The picture as large as the box has room.
[[nodiscard]] Picture FitPicture(const Picture& picture, const PictureBox& box);

// Texts of a PNG file: keywords of 1 to 79 letters, values in UTF-8.
using PictureTexts = std::vector<std::pair<std::string, std::string>>;

// A PNG file; empty when there is no memory for it.
[[nodiscard]] std::string EncodePng(const Picture& picture, const PictureTexts& texts = {});

// A decoded PNG file with its texts, for who reads back what EncodePng made; nothing when it is none, or when
// one of its sides has more than mostSide pixels: it is not unpacked then.
struct TextedPicture {
    Picture Shown;
    PictureTexts Texts;
};
[[nodiscard]] std::optional<TextedPicture> DecodePng(Bytes file, std::uint32_t mostSide);

} // namespace datatypes
