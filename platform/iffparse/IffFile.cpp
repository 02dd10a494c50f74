#include "platform/iffparse/IffFile.h"

#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/iffparse/IffReader.h"

namespace iffparse {

std::optional<std::string> ReadIff(std::string_view path, std::size_t limit) {
    std::optional<std::string> bytes = dos::ReadWhole(path, limit);
    if (bytes && IffReader(*bytes).Step() == nullptr) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
        return std::nullopt;
    }
    return bytes;
}

bool WriteIff(std::string_view path, IffWriter& writer) {
    const std::optional<std::string> bytes = writer.Finish();
    if (!bytes) {
        dos::SetIoErr(dos::ErrorObjectTooLarge);
        return false;
    }
    return dos::WriteWhole(path, *bytes);
}

} // namespace iffparse
