// Pictures by file path, shared by all gadgets and cells that show them. A file is read when it is drawn for
// the first time, at the resolution of the screen; where "name@2x.png" stands beside "name.png", dense
// screens take it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace intuition {

enum class ImageId : std::uint32_t { None = 0 };

struct ImageSize {
    int Width, Height; // in layout units, not in pixels of a dense screen
};

// The picture of a file (a volume path, or a host path that begins with "/"). The same path gives the same
// id, and each ObtainImage asks for one ReleaseImage. Nothing is read yet: a missing or broken file shows as
// nothing and has size 0.
[[nodiscard]] ImageId ObtainImage(std::string_view path);

// A picture of the program's own: width times height pixels, each 0xAARRGGBB, rows from the top. None when
// the span is too short or a side is not 1 to 16384.
[[nodiscard]] ImageId CreateImage(int width, int height, std::span<const std::uint32_t> pixels);

// One more use of a picture that is there, for one more ReleaseImage. None is allowed.
void RetainImage(ImageId image);

// Gives one use back; the picture is freed with the last one. None is allowed.
void ReleaseImage(ImageId image);

// One use of a picture that its owner gives back by going. Takes a use over, or is None.
class HeldImage {
public:
    HeldImage() = default;
    explicit HeldImage(ImageId image) : Image(image) {}
    HeldImage(HeldImage&& other) noexcept : Image(std::exchange(other.Image, ImageId::None)) {}
    HeldImage& operator=(HeldImage&& other) noexcept {
        std::swap(Image, other.Image);
        return *this;
    }
    ~HeldImage() { ReleaseImage(Image); }
    [[nodiscard]] ImageId Get() const { return Image; }

private:
    ImageId Image = ImageId::None;
};

// Reads the file if that has not happened yet.
[[nodiscard]] ImageSize SizeOfImage(ImageId image);

} // namespace intuition
