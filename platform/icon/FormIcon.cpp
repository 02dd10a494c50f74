#include "platform/icon/FormIcon.h"

#include "platform/icon/ByteReader.h"

#include <algorithm>

namespace icon {
namespace {

void ReadFace(std::string_view chunk, FormIcon& form) {
    ByteReader reader(chunk);
    const std::uint32_t width = reader.Byte() + 1U;
    const std::uint32_t height = reader.Byte() + 1U;
    reader.Skip(1); // flags
    const std::uint8_t aspect = reader.Byte();
    if (reader.Failed())
        return;
    form.Width = width;
    form.Height = height;
    form.AspectX = static_cast<std::uint8_t>(aspect >> 4);
    form.AspectY = static_cast<std::uint8_t>(aspect & 0xF);
}

void Keep(std::string_view chunk, ChunkPair& pair) {
    std::string_view& place = pair[0].empty() ? pair[0] : pair[1];
    if (place.empty())
        place = chunk;
}

void ReadChunk(std::string_view id, std::string_view chunk, FormIcon& form) {
    if (id == "FACE" && form.Width == 0)
        ReadFace(chunk, form);
    else if (id == "IMAG")
        Keep(chunk, form.Colour);
    else if (id == "ARGB")
        Keep(chunk, form.Argb);
    else if (id == "png ")
        Keep(chunk, form.Png);
}

} // namespace

FormIcon FindFormIcon(std::string_view rest) {
    FormIcon form;
    std::size_t start = rest.find("FORM");
    while (start != std::string_view::npos && rest.substr(std::min(start + 8, rest.size()), 4) != "ICON")
        start = rest.find("FORM", start + 1);
    if (start == std::string_view::npos)
        return form;
    ByteReader reader(rest.substr(start + 12));
    while (reader.Left() >= 8) {
        const std::string_view id = reader.Raw(4);
        const std::size_t size = reader.Long();
        ReadChunk(id, reader.Raw(std::min(size, reader.Left())), form);
        reader.Skip(std::min(size % 2, reader.Left()));
    }
    return form;
}

} // namespace icon
