// Changes to objects as such: removed, renamed, linked, protected, noted, dated. Contents are the
// work of Files.h. Each call leaves all as it was when it fails, unless it says otherwise, and
// gives the reason by IoErr: 205 nothing there, 214 a disk that cannot be written, 221 a full one,
// 226 one that does not answer, 120 for a path of more than 1,023 bytes.
//
// A ".uaem" file beside an object belongs to it. It is told apart by its text: what is only called
// so is a file like any other.
#pragma once

#include "platform/dos/Locks.h"

#include <cstdint>
#include <string_view>

namespace dos {

// Removes a file, an empty drawer or a link itself, never what a link leads to; the sidecar goes
// with it. False with IoErr: 222 protected from deletion, 216 a drawer with something in it, 202
// the root of a volume or an object in use. When only the sidecar cannot be removed, the object is
// gone, the result false, and the sidecar a file of its own.
[[nodiscard]] bool Delete(std::string_view path);

// Renames or moves within a disk; the sidecar follows and nothing else does. Never replaces: 203
// when another object has the name. Where names fold, a change of case is one; the same name again
// is no failure. An object that is shown under an alias keeps its real name while the new name is
// that alias. A link itself is renamed. False with IoErr: 215 across disks, 202 for a root and for
// a drawer into itself, 212 when the way leads through a file.
[[nodiscard]] bool Rename(std::string_view from, std::string_view to);

// A soft link to a path: kept as a link relative to its drawer when the path has no colon. What it
// leads to need not be there, but its drawer must where the path has a colon. False with IoErr: 203
// when the name is taken, 209 where the file system has no links.
[[nodiscard]] bool MakeLink(std::string_view name, std::string_view target);
// A further name for a file: 212 for what is no file, 215 on another disk. It has the attributes of
// the file and a copy of its sidecar.
[[nodiscard]] bool MakeLink(std::string_view name, const FileLock& target);

// The next three follow a soft link. They write to the sidecar of an object that has one and for
// every object of a volume whose metadata rule is uaem (203 where another file has its name); the
// host's own modes and time then follow as far as the host lets them. Else bits r, w, e are the
// owner's modes, the others and the comment attributes, the date the time of the last change; 209
// where the file system cannot keep it, 223 where the host refuses.

// Bits as in Examine.h. Those of group and others are applied when one of them is set.
[[nodiscard]] bool SetProtection(std::string_view path, std::uint32_t bits);
// Sets and clears single bits of h to d; what stands in neither stays, also where a listing may not see it:
// the host hides the attribute of a file that its owner may not read.
[[nodiscard]] bool ChangeProtection(std::string_view path, std::uint32_t set, std::uint32_t clear);
// An empty text removes the comment; a NUL ends it. 220 when it is too long: above 79 characters in
// a sidecar, above what the file system takes elsewhere.
[[nodiscard]] bool SetComment(std::string_view path, std::string_view comment);
// Seconds since 1 January 1978 on the local clock.
[[nodiscard]] bool SetDate(std::string_view path, std::uint32_t amigaSeconds);

} // namespace dos
