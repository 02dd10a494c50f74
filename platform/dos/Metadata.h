// What an object of the host is, told in AmigaDOS terms: the one place where modes, attributes and
// sidecars become types, bits, dates and comments. Private to platform/dos.
#pragma once

#include "platform/dos/Examine.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/Volumes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace dos {

inline constexpr const char* CommentAttribute = "user.xdg.comment";
inline constexpr const char* ProtectionAttribute = "user.amiga.protection";
inline constexpr std::size_t LargestAttribute = 65536; // bytes of a value or of all names, the kernel's limit
inline constexpr std::int64_t LargestTimeError = 2;    // seconds, what FAT rounds to

// The texts of an object; most have none.
struct ObjectTexts {
    std::string Comment;
    std::string LinkTarget;
};

// One object as a listing keeps it until it is asked for.
struct ObjectRecord {
    std::uint64_t Size = 0;
    std::uint32_t Date = 0;
    std::uint32_t Protection = 0;
    std::uint16_t Type = 0;
    bool IsGone = false;    // vanished before it could be looked at
    bool IsSidecar = false; // of another entry
    std::unique_ptr<ObjectTexts> Texts;
};

enum class Attributes { Asked, None }; // whether the file system can have attributes at all

// How entries of a drawer are to be read.
struct ExamineRule {
    Attributes Kept = Attributes::Asked;
    MetadataRule Names = MetadataRule::Xattr; // of the volume; for the text of links
};

// Examines an entry without following a link. drawer may be AT_FDCWD for the thread's own
// directory; an empty name means the O_PATH descriptor itself. hint is the type that the drawer
// told (DT_*), used when the entry may not be looked at.
void ExamineEntry(int drawer, const char* name, std::uint8_t hint, ExamineRule rule, ObjectRecord& record);

// Can objects of the file system of an open drawer have the attributes that we read?
[[nodiscard]] Attributes AttributesOf(int drawer);

// Reads the sidecar of a file into its record: all eight bits, the date, and the comment where it
// has one. Without one, or with one that is no such text, the record stays.
void ApplySidecar(int drawer, std::string_view fileName, ObjectRecord& record);

// Moves the record into the form that callers get; the name stays to be set.
void FillExamineData(ObjectRecord&& record, ExamineData& object);

} // namespace dos
