#include "platform/dos/CopyMetadata.h"

#include "platform/dos/Dates.h"
#include "platform/dos/HostWatch.h"
#include "platform/dos/Metadata.h"
#include "platform/dos/MetadataWriting.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr std::size_t UsualAttribute = 512; // bytes; the host sets aside as much as it is offered
constexpr const char* AccessList = "system.posix_acl_access";
constexpr const char* DefaultAccessList = "system.posix_acl_default";

// Asks with little room first, then with all that can be needed.
template <typename Question>
long Ask(std::string& answer, const Question& question) {
    answer.resize(std::max(answer.size(), UsualAttribute));
    long length = question(answer.data(), UsualAttribute);
    if (length < 0 && errno == ERANGE) {
        answer.resize(LargestAttribute);
        length = question(answer.data(), LargestAttribute);
    }
    return length;
}

bool IsAccessList(std::string_view name) {
    return name == AccessList || name == DefaultAccessList;
}

bool IsWanted(std::string_view name, const CopyOptions& options) {
    if (name == ProtectionAttribute || IsAccessList(name))
        return options.Protection;
    return name != CommentAttribute || options.Comment;
}

unsigned LossOf(std::string_view name) {
    if (name == ProtectionAttribute)
        return LostProtection;
    if (name == CommentAttribute)
        return LostComment;
    if (IsAccessList(name))
        return LostAccess;
    // Those of the host itself are not for everybody to read or write, and mean nothing elsewhere.
    return name.starts_with("user.") || name.starts_with("system.") ? LostAttributes : 0;
}

timespec TimeOf(const struct statx_timestamp& time) {
    return {time.tv_sec, static_cast<long>(time.tv_nsec)};
}

std::array<timespec, 2> TimesOf(const struct statx& source) {
    return {TimeOf(source.stx_atime), TimeOf(source.stx_mtime)};
}

bool HasOwnerModesOf(const struct statx& copy, const struct statx& source) {
    return ((copy.stx_mode ^ source.stx_mode) & S_IRWXU) == 0;
}

// Owner and group where the host lets us; privileges that belonged to another's are dropped. Some
// disks take what they do not keep.
unsigned KeepMode(int to, const struct statx& copy, const struct statx& source) {
    unsigned mode = source.stx_mode & PermissionBits;
    const bool isOthers = source.stx_uid != copy.stx_uid || source.stx_gid != copy.stx_gid;
    if (!isOthers && (copy.stx_mode & PermissionBits) == mode)
        return 0;
    if (isOthers && Host().Fchown(to, source.stx_uid, source.stx_gid) != 0)
        mode &= ~PrivilegeBits;
    if (!IsAwaited() || Host().Fchmod(to, mode) != 0)
        return LostProtection;
    struct statx now {};
    const bool isKnown = Host().Statx(to, "", AT_EMPTY_PATH, STATX_MODE, &now) == 0;
    return isKnown && !HasOwnerModesOf(now, source) ? LostProtection : 0;
}

unsigned AllKept(const CopyOptions& options) {
    return (options.Protection ? LostProtection : 0) | (options.Comment ? LostComment : 0) |
           (options.Date ? LostDate : 0);
}

// The time of the copy, for a sidecar that is to tell it.
bool SetDateOfFile(const Spot& copy, SidecarFacts& facts) {
    struct statx now {};
    if (Host().Statx(copy.Drawer.Get(), copy.Name.c_str(), AT_SYMLINK_NOFOLLOW, STATX_MTIME, &now) != 0)
        return false;
    facts.Date = AmigaSecondsFromUnix(now.stx_mtime.tv_sec);
    facts.Hundredths = HundredthsOf(now.stx_mtime.tv_nsec);
    facts.Protection = *facts.Protection & ~ProtectArchive;
    return true;
}

} // namespace

unsigned AttributeCopier::Run(int from, int to, const CopyOptions& options) {
    const long size =
        Ask(Names, [from](char* into, std::size_t room) { return Host().Flistxattr(from, into, room); });
    if (size < 0)
        return errno == ENOTSUP || errno == ENOSYS ? 0 : LostAttributes;
    unsigned lost = 0;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
        const char* name = Names.data() + at;
        at += std::strlen(name) + 1;
        if (IsWanted(name, options))
            lost |= CopyOne(from, to, name);
    }
    return lost;
}

unsigned AttributeCopier::KeepComment(int old, int to) {
    Value.resize(LargestAttribute);
    const long length = Host().Getxattr(old, "", CommentAttribute, Value.data(), Value.size());
    if (length < 0)
        return errno == ENODATA || errno == ENOTSUP || errno == ENOSYS ? 0 : LostComment;
    const auto size = static_cast<std::size_t>(length);
    return Host().Fsetxattr(to, CommentAttribute, Value.data(), size) == 0 ? 0 : LostComment;
}

unsigned AttributeCopier::CopyOne(int from, int to, const char* name) {
    const long length = Ask(Value, [from, name](char* into, std::size_t room) {
        return Host().Fgetxattr(from, name, into, room);
    });
    if (length < 0)
        return errno == ENODATA ? 0 : LossOf(name);
    const bool isKept =
        IsAwaited() && Host().Fsetxattr(to, name, Value.data(), static_cast<std::size_t>(length)) == 0;
    return isKept ? 0 : LossOf(name);
}

bool HandsDownAccess(int drawer) {
    std::array<char, 1> none{};
    return Host().Getxattr(drawer, "", DefaultAccessList, none.data(), 0) > 0;
}

void DropAccessHandedDown(int object) {
    Host().RemoveAttribute(object, AccessList);
    Host().RemoveAttribute(object, DefaultAccessList);
}

bool KeepTimes(int to, const struct statx& source) {
    return Host().SetTimes(to, "", TimesOf(source).data()) == 0;
}

unsigned KeepStatus(int to, const struct statx& copy, const struct statx& source,
                    const CopyOptions& options) {
    unsigned lost = options.Protection ? KeepMode(to, copy, source) : 0;
    // Some disks take a time that they do not keep.
    if (options.Date && std::abs(copy.stx_mtime.tv_sec - source.stx_mtime.tv_sec) > LargestTimeError)
        lost |= LostDate;
    return lost;
}

unsigned KeepTimesOfLink(int drawer, const std::string& name, const struct statx& source) {
    return Host().SetTimes(drawer, name.c_str(), TimesOf(source).data()) == 0 ? 0 : LostDate;
}

SidecarOutcome CopySidecar(const Spot& source, const Spot& copy, const CopyOptions& options) {
    SidecarFacts told;
    SidecarFile ofSource;
    SidecarFacts facts;
    SidecarFile old;
    if (!TellAll(source, told, ofSource) || !TellAll(copy, facts, old))
        return {AllKept(options), 0};
    const bool isWanted =
        copy.On->Info.Metadata == MetadataRule::Uaem && AllKept(options) != 0 && !old.HasNoRoom;
    if (ofSource.State != SidecarState::Ours && old.State != SidecarState::Ours && !isWanted)
        return {};
    if (old.State == SidecarState::Foreign) // something else has its name
        return {AllKept(options), 0};
    if (!SetDateOfFile(copy, facts))
        return {LostDate, 0};
    if (options.Protection)
        facts.Protection = told.Protection;
    if (options.Comment)
        facts.Comment = told.Comment;
    if (options.Date) {
        facts.Date = told.Date;
        facts.Hundredths = told.Hundredths;
    }
    if (!WriteSidecar(copy.Drawer.Get(), copy.Name, old, facts, Flush::Later))
        return {AllKept(options), 0};
    // A comment that is too long for the line is not in it.
    return {0, told.Comment.empty() ? AllKept(options) & ~LostComment : AllKept(options)};
}

} // namespace dos
