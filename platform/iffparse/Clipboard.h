// The clipboard units: numbered stores of one IFF stream each, which all instances of this user
// share. The stream of a unit is the file "RAM:Clipboards/<unit>", so that it outlives the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace iffparse {

class UnitLock;

inline constexpr std::uint32_t MaxClipboardUnit = 255;
inline constexpr std::size_t MaxClip = std::size_t{512} * 1024 * 1024; // bytes that a unit may hold
inline constexpr std::uint32_t ClipboardPatience = 2000;               // milliseconds that an opener waits
inline constexpr std::string_view ClipboardDrawer = "RAM:Clipboards";

// The file behind a unit.
[[nodiscard]] std::string ClipboardPath(std::uint32_t unit);

// A unit that is open: nobody else has it, in no task of no process, until the object goes or its
// process ends in whatever way. Keep it for one reading or writing, not longer.
class Clipboard {
public:
    Clipboard(std::uint32_t unit, std::unique_ptr<UnitLock> lock) noexcept; // for OpenClipboard
    Clipboard(Clipboard&&) noexcept;
    Clipboard& operator=(Clipboard&&) noexcept;
    ~Clipboard();

    // The unit's stream, for IffReader. Nothing with IoErr: 205 when the unit is empty.
    [[nodiscard]] std::optional<std::string> Read() const;
    // Replaces it, as a whole or not at all; the drawer is made when it is missing. False with
    // IoErr: 207 beyond MaxClip.
    [[nodiscard]] bool Write(std::string_view bytes) const;

private:
    std::uint32_t Unit;
    std::unique_ptr<UnitLock> Held;
};

// Waits while another one has the unit open. Nothing with IoErr: 202 when the patience
// (milliseconds) is over, 205 for a number that is no unit, 218 without a runtime directory to be
// trusted.
[[nodiscard]] std::optional<Clipboard> OpenClipboard(std::uint32_t unit,
                                                     std::uint32_t patience = ClipboardPatience);

} // namespace iffparse
