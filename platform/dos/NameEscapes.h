// Names on a disk that an emulator shares: what hosts do not allow in a name stands there as "%xx",
// so "file1*" is the entry "file1%2a". Pure text; which entry of a drawer is meant by a name is the
// work of NameIndex. Private to platform/dos.
#pragma once

#include "platform/dos/Volumes.h"

#include <optional>
#include <string>
#include <string_view>

namespace dos {

// Does the entry have another name on the host, where names are escaped?
[[nodiscard]] bool NeedsEscape(std::string_view name) noexcept;
// The host's name for a name; the same where it needs no escape.
[[nodiscard]] std::string EscapedName(std::string_view name);
// The name for which the host's one stands. One that EscapedName would not write that way stands
// for itself: it comes from somebody who knows nothing of escapes.
[[nodiscard]] std::string UnescapedName(std::string_view hostName);
// Does the host's name stand for another one?
[[nodiscard]] bool IsEscape(std::string_view hostName);

// Both ways as a volume does it: names are escaped where sidecars are written.
[[nodiscard]] std::string HostNameFor(MetadataRule rule, std::string_view name);
[[nodiscard]] std::string OwnNameOf(MetadataRule rule, std::string_view hostName);

// The rules that comments of sidecars share. A character that is never written as it stands:
[[nodiscard]] bool IsAlwaysEscaped(unsigned char c) noexcept;
// One whose last character is written as an escape:
[[nodiscard]] bool HidesLast(std::string_view text) noexcept;
// One whose third character is: it begins with a device word of another system.
[[nodiscard]] bool HidesThird(std::string_view text) noexcept;
void AppendEscape(std::string& text, unsigned char c);
// The value of a hexadecimal digit; -1 for another character.
[[nodiscard]] int HexDigitValue(char c) noexcept;

// The text with each "%" and its two hexadecimal digits as the byte that they stand for; nothing where an
// escape is incomplete. The bytes may be any, NUL too.
[[nodiscard]] std::optional<std::string> DecodePercents(std::string_view text);

} // namespace dos
