// Which entry of a host drawer is meant by a name that is not found as it stands: one that differs
// in case only, or an alias. What a drawer holds is remembered as long as its times stay the same,
// so a miss does not walk a large drawer again. Private to platform/dos; safe from any thread.
#pragma once

#include "platform/dos/Aliases.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

enum class NameMatch { AliasOnly, Folded };

// The real name of the entry of drawer (a descriptor, O_PATH will do) that name means; nothing when
// there is none or the drawer cannot be read. Of names that differ in case only the first in byte
// order is meant.
[[nodiscard]] std::optional<std::string> FindRealName(int drawer, std::string_view name, NameMatch match);

// The name under which an entry is shown: its alias where it needs one.
[[nodiscard]] std::string ShownName(int drawer, std::string_view hostName);

// Tell that this process has just made or removed an entry, so that what is remembered stays true.
void NoteCreated(int drawer, std::string_view hostName);
void NoteRemoved(int drawer, std::string_view hostName);

} // namespace dos
