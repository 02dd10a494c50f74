#include "platform/icon/IconText.h"

#include "platform/utility/Text.h"

namespace icon {

std::optional<std::string> ClassicText(std::string_view utf8) {
    std::string latin1;
    latin1.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const utility::Character character = utility::Decode(utf8, at);
        if (character.Code == 0 || character.Code > 0xFF)
            return std::nullopt;
        latin1 += static_cast<char>(character.Code);
        at += character.Length;
    }
    return latin1;
}

std::optional<std::string> PngText(std::string_view utf8) {
    if (!utility::IsValidUtf8(utf8) || utf8.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::optional<std::string> latin1 = ClassicText(utf8);
    if (latin1 && Utf8FromPngText(*latin1) == utf8)
        return latin1;
    return std::string(utf8);
}

std::string Utf8FromPngText(std::string_view bytes) {
    return utility::IsValidUtf8(bytes) ? std::string(bytes) : utility::Utf8FromLatin1(bytes);
}

} // namespace icon
