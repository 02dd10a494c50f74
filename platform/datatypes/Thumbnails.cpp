#include "platform/datatypes/Thumbnails.h"

#include "platform/datatypes/PictureFile.h"
#include "platform/datatypes/ThumbnailFiles.h"
#include "platform/dos/Errors.h"

#include <algorithm>

namespace datatypes {

namespace {

// Decoded for the cache's size, so that the next program finds it; pictures that are no larger than the
// cache's are quicker to decode than to look up.
Thumbnail Decode(const HostPlace& place, NewThumbnail fresh, const PictureBox& box) {
    const std::optional<std::string> bytes = ReadPictureFile(place);
    if (!bytes)
        return {};
    DecodedPicture decoded = DecodeFile(*bytes, {fresh.Side, fresh.Side});
    if (!decoded.Shown) {
        if (decoded.Fault != PictureFault::Broken)
            return {};
        return {std::nullopt, std::move(fresh)};
    }
    Thumbnail thumbnail{FitPicture(*decoded.Shown, box), std::nullopt};
    if (std::max(decoded.FullWidth, decoded.FullHeight) > fresh.Side) {
        fresh.Shown = std::move(decoded.Shown);
        thumbnail.ToStore = std::move(fresh);
    }
    return thumbnail;
}

Thumbnail DecodeAlone(const HostPlace& place, const PictureBox& box) {
    const std::optional<std::string> bytes = ReadPictureFile(place);
    return {bytes ? DecodeFile(*bytes, box).Shown : std::nullopt, std::nullopt};
}

} // namespace

Thumbnail LoadThumbnail(std::string_view path, const PictureBox& box) {
    const std::optional<HostPlace> place = FindObject(path);
    const std::optional<FileFacts> facts = place ? FactsOf(*place) : std::nullopt;
    if (!facts)
        return {};
    const std::uint32_t side = SideFor(box);
    if (side == 0 || IsInCache(place->Path))
        return DecodeAlone(*place, box);
    NewThumbnail fresh{UriOf(place->Path), facts->Modified, facts->Size, std::nullopt, side};
    if (const auto found = FindThumbnail(fresh.Uri, facts->Modified, side))
        return {FitPicture(*found, box), std::nullopt};
    if (IsKnownBroken(fresh.Uri, facts->Modified)) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
        return {};
    }
    return Decode(*place, std::move(fresh), box);
}

} // namespace datatypes
