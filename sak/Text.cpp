#include "sak/Text.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <memory>

namespace solvane {

static_assert(sizeof(Text<1024>) == 8);

namespace {

std::string_view UpToTerminator(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

} // namespace

// Blocks are counted in units of their own header, so that one allocator serves all sizes.
TextBase::Block* TextBase::Make(std::string_view head, std::string_view tail) {
    const std::size_t size = head.size() + tail.size();
    Block* block = std::allocator<Block>().allocate(2 + size / sizeof(Block));
    std::construct_at(block, static_cast<std::uint32_t>(size));
    char* bytes = reinterpret_cast<char*>(block + 1);
    *std::copy(tail.begin(), tail.end(), std::copy(head.begin(), head.end(), bytes)) = '\0';
    return block;
}

void TextBase::Free(Block* block) noexcept {
    const std::size_t units = 2 + block->Size / sizeof(Block);
    std::destroy_at(block);
    std::allocator<Block>().deallocate(block, units);
}

int TextBase::Compare(std::string_view a, std::string_view b) noexcept {
    return utility::Stricmp(a, b);
}

void TextBase::Set(std::string_view text, std::size_t limit) {
    text = UpToTerminator(text);
    if (text.size() > limit) {
        text = text.substr(0, utility::CutLength(text, limit));
    }
    if (text == View()) {
        return;
    }
    Block* fresh = text.empty() ? nullptr : Make(text, {});
    Release(std::exchange(Shared, fresh));
}

void TextBase::SetFrom(const TextBase& other, std::size_t limit) {
    if (other.Size() <= limit) {
        TextBase::operator=(other);
    } else {
        Set(other.View(), limit);
    }
}

void TextBase::Add(std::string_view text, std::size_t limit) {
    text = UpToTerminator(text);
    if (text.empty()) {
        return;
    }
    Block* whole = Make(View(), text);
    Release(std::exchange(Shared, whole));
    if (whole->Size > limit) {
        Set(View(), limit);
    }
}

} // namespace solvane
