// Changes to entries of host drawers. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"
#include "platform/dos/HostFd.h"

#include <string_view>

namespace dos {

// As the entries of the handler record.
[[nodiscard]] bool DeleteHostEntry(const LockRef& start, std::string_view rest);
// Deletes the entry if it still is that object; else 205, and what has the name by now stays.
[[nodiscard]] bool DeleteHostObject(const LockRef& start, std::string_view rest, const ObjectId& object);
[[nodiscard]] bool RenameHostEntry(const LockRef& start, std::string_view rest, const LockRef& toStart,
                                   std::string_view toRest);
[[nodiscard]] bool MakeHostSoftLink(const LockRef& start, std::string_view rest, const SoftTarget& target);
[[nodiscard]] bool MakeHostHardLink(const LockRef& start, std::string_view rest, const LockRef& target);
[[nodiscard]] bool ChangeHostEntry(const LockRef& start, std::string_view rest, const MetadataChange& change);
[[nodiscard]] bool InfoOfHost(const LockRef& lock, InfoData& info);

} // namespace dos
