#include "platform/iffparse/Chunks.h"

namespace iffparse {
namespace {

bool IsPrintable(unsigned char c) {
    return c >= ' ' && c <= '~';
}

} // namespace

std::string_view ErrorText(IffError error) noexcept {
    switch (error) {
    case IffError::NotIff:
        return "no IFF file";
    case IffError::Truncated:
        return "the file ends too early";
    case IffError::Mangled:
        return "a chunk is damaged";
    case IffError::Syntax:
        return "a chunk stands in the wrong place";
    case IffError::TooDeep:
        return "too many levels";
    case IffError::None:
        break;
    }
    return {};
}

bool IsChunkId(ChunkId id) noexcept {
    bool onlyBlanksBehind = true;
    for (int shift = 0; shift < 32; shift += 8) { // from the last character to the first
        const auto c = static_cast<unsigned char>(id >> shift);
        if (!IsPrintable(c) || (c == ' ' && !onlyBlanksBehind))
            return false;
        onlyBlanksBehind = onlyBlanksBehind && c == ' ';
    }
    return true;
}

bool IsGroupId(ChunkId id) noexcept {
    return id == IdForm || id == IdList || id == IdCat || id == IdProp;
}

std::string IdText(ChunkId id) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto c = static_cast<unsigned char>(id >> shift);
        text += IsPrintable(c) ? static_cast<char>(c) : '?';
    }
    return text;
}

} // namespace iffparse
