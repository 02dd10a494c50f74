#include "platform/icon/IconPicture.h"

#include "platform/icon/ClassicParts.h"
#include "platform/icon/IconKinds.h"
#include "platform/icon/PictureKinds.h"
#include "platform/icon/ScalePicture.h"

#include <algorithm>

namespace icon {
namespace {

// Everything in a file that may hold a picture.
struct PictureSource {
    explicit PictureSource(const DiskObject& object) : Lines(object.ImageToolTypes) {
        if (!object.File)
            return;
        Png = PngStreams(IsPng(*object.File) ? std::string_view(*object.File) : std::string_view());
        Parts = SplitClassicIcon(*object.File).value_or(ClassicParts{});
        Form = FindFormIcon(Parts.Rest);
    }

    const std::vector<std::string>& Lines;
    ChunkPair Png;
    ClassicParts Parts;
    FormIcon Form;
};

std::optional<IconPicture> Decode(IconFormat format, const PictureSource& source, IconState state) {
    const bool selected = state == IconState::Selected;
    switch (format) {
    case IconFormat::Png:
        return DecodePng(source.Png[selected ? 1 : 0]);
    case IconFormat::Argb:
        return DecodeArgb(source.Form, state);
    case IconFormat::Colour:
        return DecodeColour(source.Form, state);
    case IconFormat::NewIcon:
        return DecodeNewIcon(source.Lines, state);
    case IconFormat::Planar:
        return DecodePlanar(selected ? source.Parts.SecondImage : source.Parts.Image, Inversion::None);
    }
    return std::nullopt;
}

// Two thirds of the light, the same shape.
std::uint32_t Darken(std::uint32_t pixel) {
    const auto dark = [pixel](unsigned shift) { return (pixel >> shift & 0xFF) * 2 / 3 << shift; };
    return (pixel & Opaque) | dark(16) | dark(8) | dark(0);
}

// The selected picture of a kind that has only one.
std::optional<IconPicture> MakeSelected(IconFormat format, const PictureSource& source) {
    if (format == IconFormat::Planar) {
        const std::string_view record = source.Parts.Record;
        const bool whole = !record.empty() && (WordAt(record, RecordGadgetFlags) & HighlightMask) == 0;
        return DecodePlanar(source.Parts.Image, whole ? Inversion::Whole : Inversion::Backfill);
    }
    std::optional<IconPicture> picture = Decode(format, source, IconState::Normal);
    if (picture)
        std::ranges::transform(picture->Pixels, picture->Pixels.begin(), Darken);
    return picture;
}

struct Decoded {
    IconFormat Format;
    IconPicture Picture;
};

std::optional<Decoded> DecodeBest(const PictureSource& source, IconState state) {
    for (const IconFormat format :
         {IconFormat::Png, IconFormat::Argb, IconFormat::Colour, IconFormat::NewIcon, IconFormat::Planar}) {
        std::optional<IconPicture> picture = Decode(format, source, state);
        if (!picture && state == IconState::Selected)
            picture = MakeSelected(format, source);
        if (picture)
            return Decoded{format, std::move(*picture)};
    }
    return std::nullopt;
}

// Old icons were drawn for pixels twice as high as wide; the revision is only a hint, so that one which
// would become a tower stays as it is. The form of colour icons tells.
void SquarePixels(const DiskObject& object, const FormIcon& form, Decoded& decoded) {
    IconPicture& picture = decoded.Picture;
    const bool inForm = decoded.Format == IconFormat::Colour || decoded.Format == IconFormat::Argb;
    const bool looksFlat =
        decoded.Format == IconFormat::Planar && object.Revision == 0 && picture.Width >= picture.Height * 2;
    const bool aspectKnown = inForm && form.AspectX != 0 && form.AspectY != 0;
    if (looksFlat || (aspectKnown && form.AspectY >= form.AspectX * 2))
        picture = RepeatPixels(picture, 1, 2);
    else if (aspectKnown && form.AspectX >= form.AspectY * 2)
        picture = RepeatPixels(picture, 2, 1);
}

IconPicture Fit(const IconPicture& picture, IconFormat format, std::uint32_t width, std::uint32_t height) {
    const std::uint32_t whole = std::min(width / picture.Width, height / picture.Height);
    if (format == IconFormat::Planar && whole > 0)
        return RepeatPixels(picture, whole, whole);
    const std::uint32_t widthAtHeight = std::max(picture.Width * height / picture.Height, 1U);
    if (widthAtHeight <= width)
        return ScalePicture(picture, widthAtHeight, height);
    return ScalePicture(picture, width, std::max(picture.Height * width / picture.Width, 1U));
}

} // namespace

std::optional<IconPicture> GetIconPicture(const DiskObject& object, IconState state) {
    std::optional<Decoded> decoded = DecodeBest(PictureSource(object), state);
    if (!decoded)
        return std::nullopt;
    return std::move(decoded->Picture);
}

std::optional<IconPicture> DrawIcon(const DiskObject& object, std::uint32_t width, std::uint32_t height,
                                    IconState state) {
    const PictureSource source(object);
    std::optional<Decoded> decoded = DecodeBest(source, state);
    if (!decoded)
        return std::nullopt;
    SquarePixels(object, source.Form, *decoded);
    return Fit(decoded->Picture, decoded->Format, std::clamp(width, 1U, MaxPictureSide),
               std::clamp(height, 1U, MaxPictureSide));
}

} // namespace icon
