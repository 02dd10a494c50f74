#include "platform/icon/ByteReader.h"
#include "platform/icon/IconKinds.h"
#include "platform/icon/PictureKinds.h"
#include "platform/icon/PngChunks.h"

#include <bit>
#include <png.h>

namespace icon {
namespace {

// The stream with nothing but what makes the picture: texts and profiles of any size stay out of the
// decoder. Empty when it is too large or has no size.
std::string PicturePart(std::string_view stream) {
    std::string part(PngSignature);
    PngChunkReader reader(stream);
    bool hasSize = false;
    while (const auto chunk = reader.Next()) {
        if (chunk->Id == "IHDR") {
            ByteReader header(chunk->Data);
            const std::uint32_t width = header.Long();
            const std::uint32_t height = header.Long();
            if (header.Failed() || hasSize || !IsPictureSize(width, height))
                return {};
            hasSize = true;
        }
        if (chunk->Id == "IHDR" || chunk->Id == "PLTE" || chunk->Id == "tRNS" || chunk->Id == "IDAT" ||
            chunk->Id == LastChunk)
            part.append(chunk->Whole);
    }
    return hasSize ? part : std::string();
}

// Frees what the library holds for a picture.
struct PngImage {
    PngImage() { Image.version = PNG_IMAGE_VERSION; }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
    ~PngImage() { png_image_free(&Image); }

    png_image Image{};
};

} // namespace

std::array<std::string_view, 2> PngStreams(std::string_view file) {
    PngChunkReader reader(file);
    std::size_t size = PngSignature.size();
    while (const auto chunk = reader.Next()) {
        size += chunk->Whole.size();
        if (chunk->Id == LastChunk)
            return {file.substr(0, size), file.substr(size)};
    }
    return {file, {}};
}

std::optional<IconPicture> DecodePng(std::string_view stream) {
    const std::string part = PicturePart(stream);
    PngImage png;
    if (part.empty() || png_image_begin_read_from_memory(&png.Image, part.data(), part.size()) == 0)
        return std::nullopt;
    png.Image.format = std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
    IconPicture picture{png.Image.width, png.Image.height, {}};
    picture.Pixels.resize(std::size_t{picture.Width} * picture.Height);
    if (png_image_finish_read(&png.Image, nullptr, picture.Pixels.data(), 0, nullptr) == 0)
        return std::nullopt;
    return picture;
}

} // namespace icon
