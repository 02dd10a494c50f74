#include "platform/iffparse/Clipboard.h"

#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/iffparse/UnitLock.h"

#include <utility>

namespace iffparse {

std::string ClipboardPath(std::uint32_t unit) {
    return std::string(ClipboardDrawer) + '/' + std::to_string(unit);
}

Clipboard::Clipboard(std::uint32_t unit, std::unique_ptr<UnitLock> lock) noexcept
    : Unit(unit), Held(std::move(lock)) {}
Clipboard::Clipboard(Clipboard&&) noexcept = default;
Clipboard& Clipboard::operator=(Clipboard&&) noexcept = default;
Clipboard::~Clipboard() = default;

std::optional<std::string> Clipboard::Read() const {
    return dos::ReadWhole(ClipboardPath(Unit), MaxClip);
}

bool Clipboard::Write(std::string_view bytes) const {
    if (bytes.size() > MaxClip) {
        dos::SetIoErr(dos::ErrorObjectTooLarge);
        return false;
    }
    return dos::CreateDirs(ClipboardDrawer) && dos::WriteWhole(ClipboardPath(Unit), bytes);
}

std::optional<Clipboard> OpenClipboard(std::uint32_t unit, std::uint32_t patience) {
    if (unit > MaxClipboardUnit) {
        dos::SetIoErr(dos::ErrorObjectNotFound);
        return std::nullopt;
    }
    std::unique_ptr<UnitLock> lock = LockUnit(unit, patience);
    return lock == nullptr ? std::nullopt : std::optional<Clipboard>(std::in_place, unit, std::move(lock));
}

} // namespace iffparse
