// The error numbers of dos, their texts, and the thread's last error. Host errors are translated
// here in one table; nothing in this module asks the host for anything.
#pragma once

#include <string>
#include <string_view>

namespace dos {

inline constexpr long ErrorNoFreeStore = 103;
inline constexpr long ErrorTaskTableFull = 105;
inline constexpr long ErrorBadTemplate = 114;
inline constexpr long ErrorBadNumber = 115;
inline constexpr long ErrorRequiredArgMissing = 116;
inline constexpr long ErrorKeyNeedsArg = 117;
inline constexpr long ErrorTooManyArgs = 118;
inline constexpr long ErrorUnmatchedQuotes = 119;
inline constexpr long ErrorLineTooLong = 120;
inline constexpr long ErrorFileNotObject = 121;
inline constexpr long ErrorInvalidResidentLibrary = 122;
inline constexpr long ErrorNoDefaultDir = 201;
inline constexpr long ErrorObjectInUse = 202;
inline constexpr long ErrorObjectExists = 203;
inline constexpr long ErrorDirNotFound = 204;
inline constexpr long ErrorObjectNotFound = 205;
inline constexpr long ErrorBadStreamName = 206;
inline constexpr long ErrorObjectTooLarge = 207;
inline constexpr long ErrorActionNotKnown = 209;
inline constexpr long ErrorInvalidComponentName = 210;
inline constexpr long ErrorInvalidLock = 211;
inline constexpr long ErrorObjectWrongType = 212;
inline constexpr long ErrorDiskNotValidated = 213;
inline constexpr long ErrorDiskWriteProtected = 214;
inline constexpr long ErrorRenameAcrossDevices = 215;
inline constexpr long ErrorDirectoryNotEmpty = 216;
inline constexpr long ErrorTooManyLevels = 217;
inline constexpr long ErrorDeviceNotMounted = 218;
inline constexpr long ErrorSeekError = 219;
inline constexpr long ErrorCommentTooBig = 220;
inline constexpr long ErrorDiskFull = 221;
inline constexpr long ErrorDeleteProtected = 222;
inline constexpr long ErrorWriteProtected = 223;
inline constexpr long ErrorReadProtected = 224;
inline constexpr long ErrorNotADosDisk = 225;
inline constexpr long ErrorNoDisk = 226;
inline constexpr long ErrorNoMoreEntries = 232;
inline constexpr long ErrorIsSoftLink = 233;
inline constexpr long ErrorObjectLinked = 234;
inline constexpr long ErrorBadHunk = 235;
inline constexpr long ErrorNotImplemented = 236;
inline constexpr long ErrorRecordNotLocked = 240;
inline constexpr long ErrorLockCollision = 241;
inline constexpr long ErrorLockTimeout = 242;
inline constexpr long ErrorUnlockError = 243;
inline constexpr long ErrorBufferOverflow = 303;
inline constexpr long ErrorBreak = 304;
inline constexpr long ErrorNotExecutable = 305;

// What was tried when the host refused: the same refusal has a number of its own for each.
enum class Operation {
    Lookup, // find, lock or examine a name, list a drawer
    Read,   // open for reading, read
    Write,  // open for writing, create, write, set metadata
    Delete,
    Rename,
    Seek,
};

// The reason of the last failure of a dos call of the calling thread, 0 when there was none yet.
[[nodiscard]] long IoErr() noexcept;
void SetIoErr(long code) noexcept;

// "header: text" of a code, the text alone without a header; empty for code 0, "Error code N" for
// an unknown one.
[[nodiscard]] std::string Fault(long code, std::string_view header = {});

// The dos error for an errno of the host; 0 for 0. What has no row of its own counts as 209, a
// failing disk as 225.
[[nodiscard]] long ErrorFromErrno(int hostError, Operation operation) noexcept;

} // namespace dos
