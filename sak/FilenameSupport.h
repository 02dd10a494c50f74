// Path texts, names from locks, and small questions about one file. It looks things up and changes
// nothing.
//
// A path is "device:drawer/drawer/file"; it may end in ":" or "/" or in a name. Texts that are
// filled are cut at their own size, at a whole character; only SAK_JoinFilename and the names of
// locks, whose results are acted on, refuse what does not fit. Outputs may be the very text that is
// the input.
#pragma once

#include "platform/dos/Locks.h"
#include "sak/Text.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// --- Pure text ---

// "Work:a/b" gives "Work:a" and "b"; "Work:a" gives "Work:" and "a"; "Work:" gives "Work:" and
// nothing; "a" gives nothing and "a".
void SAK_SplitFilename(std::string_view path, Text<1024>& drawer, Text<128>& file);

// drawer with file behind it, one "/" between unless drawer is empty or ends in ":" or "/". False
// when the whole does not fit: out is empty then and IoErr is 120.
[[nodiscard]] bool SAK_JoinFilename(Text<1024>& out, std::string_view drawer, std::string_view file);

// True when the last character is ":".
[[nodiscard]] constexpr bool SAK_IsDeviceRoot(std::string_view path) {
    return path.ends_with(':');
}

// The path up to and with its first ":". False, and out is the whole path, when there is none.
bool SAK_GetDeviceRoot(std::string_view path, Text<1024>& out);

// What follows the first ":". False, and out is empty, when nothing does.
bool SAK_RemoveDeviceRoot(std::string_view path, Text<128>& out);

// Takes one trailing "/" off path itself; out is its drawer: "Work:a" of "Work:a/b/", "Work:" of
// "Work:a" and of "Work:".
void SAK_GetParent(Text<1024>& path, Text<1024>& out);

// The name from its last "." on, the dot included; empty without a dot.
[[nodiscard]] std::string_view ExtensionOf(std::string_view name);

// True for names with the extension ".info", in any case.
[[nodiscard]] bool SAK_IsInfoFile(std::string_view name);

// out takes the extension with its dot; false, and out is empty, without a dot.
bool SAK_GetFileExtension(std::string_view name, Text<128>& out);

// out takes the name up to its last ".", all of it without one; true when a dot was there.
bool SAK_GetFileNoExtension(std::string_view name, Text<128>& out);

// --- Names from locks; on failure false and the reason in IoErr ---

// The volume-based name of path with one final ":": "DH0:" gives "Workbench:". At most 127 bytes.
[[nodiscard]] bool SAK_GetNameFromLock(std::string_view path, Text<128>& out);

// The volume-based name of the lock; where another volume has the same name and the text would lead
// there, the path by device (VolumeFromDevice) or the device alone (DeviceFromVolume). False with
// IoErr 120, and out is empty, when the name does not fit.
[[nodiscard]] bool SAK_SaferNameFromLockVolumeFromDevice(const dos::FileLock& lock, Text<1024>& out);
[[nodiscard]] bool SAK_SaferNameFromLockDeviceFromVolume(const dos::FileLock& lock, Text<1024>& out);

// True when the roots of both paths are the same object, and also when one cannot be locked.
[[nodiscard]] bool SAK_SaferSameVolume(std::string_view path1, std::string_view path2);

// --- File tests: links count as what they lead to ---

[[nodiscard]] bool SAK_FileExists(std::string_view path);   // false for a drawer or nothing
[[nodiscard]] bool SAK_DrawerExists(std::string_view path); // false for a file or nothing

// True for a file; false for a drawer and for nothing: tells the two apart where something is known
// to exist.
[[nodiscard]] bool SAK_IsFileOrDrawer(std::string_view path);

// Bytes of a file, -1 for a drawer, 0 for nothing and anything else.
[[nodiscard]] std::int64_t SAK_GetFileSize(std::string_view path);

// The change date of a file in Amiga seconds, and its text by the FormatDate codes of format. A
// drawer gives 0 and an empty text; nothing gives 0 and leaves the text as it was.
std::uint32_t SAK_GetFileDate(std::string_view path, std::string_view format, Text<35>& text);
// The same with the day of the year as text ("%-j").
std::uint32_t SAK_GetFileDateJulian(std::string_view path, Text<35>& text);

} // namespace solvane
