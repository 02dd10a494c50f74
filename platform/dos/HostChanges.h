// Changes to entries of host drawers. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"

#include <string_view>

namespace dos {

// As the entries of the handler record.
[[nodiscard]] bool DeleteHostEntry(const LockRef& start, std::string_view rest);
[[nodiscard]] bool RenameHostEntry(const LockRef& start, std::string_view rest, const LockRef& toStart,
                                   std::string_view toRest);
[[nodiscard]] bool MakeHostSoftLink(const LockRef& start, std::string_view rest, const SoftTarget& target);
[[nodiscard]] bool MakeHostHardLink(const LockRef& start, std::string_view rest, const LockRef& target);
[[nodiscard]] bool ChangeHostEntry(const LockRef& start, std::string_view rest, const MetadataChange& change);
[[nodiscard]] bool InfoOfHost(const LockRef& lock, InfoData& info);

} // namespace dos
