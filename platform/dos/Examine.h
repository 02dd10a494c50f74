// What an object is: type, name, size, comment, date, protection, for one object or for all of a
// drawer. Follows no link of a listed drawer and sorts nothing: the order is the file system's.
#pragma once

#include "platform/dos/Locks.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

class Lister;

inline constexpr std::uint32_t TypeFile = 1;
inline constexpr std::uint32_t TypeDrawer = 2;
inline constexpr std::uint32_t TypePipe = 3;
inline constexpr std::uint32_t TypeSocket = 4;
inline constexpr std::uint32_t TypeDevice = 5;
// Set for a link; the low byte is then the kind of link. Hard links are plain files on a host.
inline constexpr std::uint32_t TypeLinkFlag = 0x100;
inline constexpr std::uint32_t LinkSoft = 0;
inline constexpr std::uint32_t LinkHardFile = 1;
inline constexpr std::uint32_t LinkHardDrawer = 2;

// Bits 0 to 3 are set when the thing is NOT allowed, all others when it is so.
inline constexpr std::uint32_t ProtectDelete = 1u << 0;
inline constexpr std::uint32_t ProtectExecute = 1u << 1;
inline constexpr std::uint32_t ProtectWrite = 1u << 2;
inline constexpr std::uint32_t ProtectRead = 1u << 3;
inline constexpr std::uint32_t ProtectArchive = 1u << 4;
inline constexpr std::uint32_t ProtectPure = 1u << 5;
inline constexpr std::uint32_t ProtectScript = 1u << 6;
inline constexpr std::uint32_t ProtectHold = 1u << 7;
inline constexpr std::uint32_t ProtectOwnBits = 0xFF; // h to d: without those of group and others
inline constexpr unsigned ProtectGroupShift = 8;      // delete, execute, write, read of the group
inline constexpr unsigned ProtectOtherShift = 12;     // the same of all others

struct ExamineData {
    std::uint32_t Type = 0;
    std::string Name;             // under which the object is found here; an alias where need be
    std::uint64_t Size = 0;       // bytes of a file, 0 for all else
    std::string Comment;          // UTF-8 where valid
    std::string LinkTarget;       // of a soft link, as an AmigaDOS path
    std::uint32_t Date = 0;       // seconds since 1 January 1978, local
    std::uint32_t Protection = 0; // bits 8 to 15 mirror the host's modes for group and others
};

// The object a path or lock leads to, soft links followed. The name of a root is that of its
// volume. Nothing with IoErr when there is none.
[[nodiscard]] std::optional<ExamineData> ExamineObject(std::string_view path);
[[nodiscard]] std::optional<ExamineData> ExamineObject(const FileLock& lock);

// A walk over one drawer, false when it could not be begun (IoErr). Belongs to one thread at a
// time.
class DirContext {
public:
    DirContext();
    explicit DirContext(std::unique_ptr<Lister> source);
    DirContext(DirContext&&) noexcept;
    DirContext& operator=(DirContext&&) noexcept;
    ~DirContext();

    explicit operator bool() const noexcept { return Source != nullptr; }

private:
    friend const ExamineData* ExamineDir(DirContext& context);

    std::unique_ptr<Lister> Source;
    ExamineData Object;
};

[[nodiscard]] DirContext ObtainDirContext(const FileLock& drawer);
[[nodiscard]] DirContext ObtainDirContext(std::string_view path);

// The next object, valid until the next call. Null at the end with IoErr 232, or with the error
// that ended the walk early. Objects that vanish during the walk are passed over; ".uaem" sidecars
// of files that are there are not given.
[[nodiscard]] const ExamineData* ExamineDir(DirContext& context);

} // namespace dos
