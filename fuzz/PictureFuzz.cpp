// Exercises the reader of IFF pictures, the looks that come before a reader of the window system may open a
// file, and those readers behind them.
#include "platform/datatypes/DecodePicture.h"
#include "platform/datatypes/IlbmPicture.h"
#include "platform/datatypes/SafePicture.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace {

constexpr std::uint64_t SmallPixels = 1U << 18; // larger ones only cost time here

void Require(bool isSo) {
    if (!isSo)
        std::abort();
}

void CheckPicture(const datatypes::Picture& picture, std::uint64_t mostPixels) {
    Require(picture.Width > 0 && picture.Height > 0);
    Require(picture.Pixels.size() == std::size_t{picture.Width} * picture.Height);
    Require(picture.Pixels.size() <= mostPixels);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const datatypes::Bytes file = std::as_bytes(std::span(data, size));
    if (datatypes::IsIlbm(file)) {
        if (const auto picture = datatypes::ParseIlbm(file, SmallPixels))
            CheckPicture(*picture, SmallPixels);
        return 0;
    }
    for (const char* format : {"jpeg", "svg"})
        (void)datatypes::IsSafePicture(file, format, SmallPixels);
    const datatypes::DecodedPicture decoded = datatypes::DecodePicture(file, {32, 16});
    Require(decoded.Shown.has_value() == (decoded.Fault == datatypes::PictureFault::None));
    if (decoded.Shown) {
        CheckPicture(*decoded.Shown, 32 * 16);
        Require(decoded.Shown->Width <= 32 && decoded.Shown->Height <= 16);
    }
    return 0;
}
