#include "platform/dos/Metadata.h"

#include "platform/dos/Dates.h"
#include "platform/dos/LinkText.h"
#include "platform/dos/Sidecar.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr std::size_t NamesSize = 1024; // bytes; attribute names of nearly every file fit
constexpr std::uint32_t BitsFromModes = ProtectRead | ProtectWrite | ProtectExecute;

std::uint16_t TypeOfMode(unsigned mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return TypeFile;
    case S_IFDIR:
        return TypeDrawer;
    case S_IFLNK:
        return TypeLinkFlag | LinkSoft;
    case S_IFIFO:
        return TypePipe;
    case S_IFSOCK:
        return TypeSocket;
    default:
        return TypeDevice;
    }
}

unsigned ModeOfHint(std::uint8_t hint) {
    return static_cast<unsigned>(DTTOIF(hint == DT_UNKNOWN ? std::uint8_t{DT_REG} : hint));
}

// Bits of one class of users that mean "allowed when set": d stays clear, the host has none.
std::uint32_t AllowedBits(unsigned mode) {
    return (mode & S_IROTH ? ProtectRead : 0u) | (mode & S_IWOTH ? ProtectWrite : 0u) |
           (mode & S_IXOTH ? ProtectExecute : 0u);
}

std::uint32_t ProtectionOfMode(unsigned mode) {
    return (AllowedBits(mode >> 6) ^ BitsFromModes) | (AllowedBits(mode >> 3) << ProtectGroupShift) |
           (AllowedBits(mode) << ProtectOtherShift);
}

bool ListsAttribute(std::string_view names, std::string_view wanted) {
    while (!names.empty()) {
        const std::size_t end = std::min(names.find('\0'), names.size());
        if (names.substr(0, end) == wanted)
            return true;
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return false;
}

ObjectTexts& TextsOf(ObjectRecord& record) {
    if (!record.Texts)
        record.Texts = std::make_unique<ObjectTexts>();
    return *record.Texts;
}

void ReadComment(int drawer, const char* name, ObjectRecord& record) {
    std::string text(256, '\0');
    long length = Host().Getxattr(drawer, name, CommentAttribute, text.data(), text.size());
    if (length < 0 && errno == ERANGE) {
        text.resize(LargestAttribute);
        length = Host().Getxattr(drawer, name, CommentAttribute, text.data(), text.size());
    }
    if (length <= 0)
        return;
    text.resize(static_cast<std::size_t>(length));
    text.resize(std::min(text.find('\0'), text.size())); // some writers store the final NUL
    if (!text.empty())
        TextsOf(record).Comment = std::move(text);
}

void ReadProtection(int drawer, const char* name, ObjectRecord& record) {
    std::array<char, 9> letters{}; // a final NUL may be stored too
    const long length = Host().Getxattr(drawer, name, ProtectionAttribute, letters.data(), letters.size());
    if (length < 8)
        return;
    if (const auto bits = ProtectionFromLetters(std::string_view(letters.data(), 8)))
        record.Protection |= *bits & ~BitsFromModes;
}

void ReadAttributes(int drawer, const char* name, ObjectRecord& record) {
    std::array<char, NamesSize> names;
    const long length = Host().Listxattr(drawer, name, names.data(), names.size());
    const bool isTooLong = length < 0 && errno == ERANGE;
    const std::string_view list(names.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    if (isTooLong || ListsAttribute(list, ProtectionAttribute))
        ReadProtection(drawer, name, record);
    if (isTooLong || ListsAttribute(list, CommentAttribute))
        ReadComment(drawer, name, record);
}

} // namespace

void ExamineEntry(int drawer, const char* name, std::uint8_t hint, ExamineRule rule, ObjectRecord& record) {
    struct statx raw;
    const int flags =
        AT_STATX_DONT_SYNC | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*name == '\0' ? AT_EMPTY_PATH : 0);
    if (Host().Statx(drawer, name, flags, STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME, &raw) != 0) {
        record.IsGone = errno == ENOENT;
        record.Type = TypeOfMode(ModeOfHint(hint));
        record.Protection = BitsFromModes;
        return;
    }
    record.Type = TypeOfMode(raw.stx_mode);
    record.Date = AmigaSecondsFromUnix(raw.stx_mtime.tv_sec);
    record.Protection = ProtectionOfMode(raw.stx_mode);
    if (record.Type == TypeFile)
        record.Size = raw.stx_size;
    if (record.Type == TypeFile || record.Type == TypeDrawer) {
        if (rule.Kept == Attributes::Asked)
            ReadAttributes(drawer, name, record);
    } else if (S_ISLNK(raw.stx_mode)) {
        const std::string target = ReadLinkText(drawer, name);
        if (!target.empty())
            TextsOf(record).LinkTarget = AmigaLinkTarget(drawer, target, rule.Names);
    }
}

Attributes AttributesOf(int drawer) {
    std::array<char, 16> value;
    const long length = Host().Fgetxattr(drawer, ProtectionAttribute, value.data(), value.size());
    return length < 0 && (errno == EOPNOTSUPP || errno == ENOSYS) ? Attributes::None : Attributes::Asked;
}

void ApplySidecar(int drawer, std::string_view fileName, ObjectRecord& record) {
    const std::string name = std::string(fileName).append(SidecarSuffix);
    const HostFd file(
        Host().Openat(drawer, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0));
    ObjectFacts about;
    std::string text;
    if (!file || !FactsOf(file.Get(), about) || !IsFileMode(about.Mode) ||
        !ReadToEnd(file.Get(), text, LargestSidecar))
        return;
    SidecarFacts facts = ParseSidecar(text);
    if (!facts.Protection)
        return;
    record.Protection = (record.Protection & ~ProtectOwnBits) | *facts.Protection;
    record.Date = facts.Date.value_or(record.Date);
    if (!facts.Comment.empty())
        TextsOf(record).Comment = std::move(facts.Comment);
}

void FillExamineData(ObjectRecord&& record, ExamineData& object) {
    object.Type = record.Type;
    object.Size = record.Size;
    object.Date = record.Date;
    object.Protection = record.Protection;
    if (record.Texts) {
        object.Comment = std::move(record.Texts->Comment);
        object.LinkTarget = std::move(record.Texts->LinkTarget);
    } else {
        object.Comment.clear();
        object.LinkTarget.clear();
    }
}

} // namespace dos
