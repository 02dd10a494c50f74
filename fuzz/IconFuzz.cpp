// Exercises the readers of icon files, classic and PNG, and the look-up of tool types in what they give.
#include "platform/icon/Icon.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto object = icon::ParseDiskObject(std::as_bytes(std::span(data, size)));
    if (!object)
        return 0;
    if (object->Type > icon::IconType::AppIcon || object->StackSize < icon::MinStackSize)
        std::abort();
    for (const std::string& text : object->ToolTypes) {
        const std::string name = text.substr(0, text.find('='));
        if (!icon::FindToolType(*object, name))
            std::abort();
        (void)icon::MatchToolValue(text, name);
    }
    return 0;
}
