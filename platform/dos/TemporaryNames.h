// The names of temporary files: ".solvane-", a mark of this start of this machine, process, number,
// ".tmp". They are never listed, and those of processes that are gone are removed where they are
// come upon. Private to platform/dos.
#pragma once

#include <string>
#include <string_view>

namespace dos {

// A name that no other process uses.
[[nodiscard]] std::string NextTemporaryName();
[[nodiscard]] bool IsTemporaryName(std::string_view name) noexcept;

// Removes a file of such a name when its process is gone. One of another machine, or of this one
// before it was last started, goes when it is a day old. Others' files stay.
void RemoveIfStale(int drawer, const std::string& name);
// The same for all in a drawer.
void RemoveStale(int drawer);

} // namespace dos
