#include "platform/dos/HostFiles.h"

#include "platform/dos/HostDirectory.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/Metadata.h"
#include "platform/dos/NameIndex.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dos {

namespace {

constexpr std::size_t LargestQuestion = 1u << 18; // bytes read at once from a disk that may hang
constexpr std::size_t LargestAttribute = 65536;   // bytes of a value or of all names
constexpr int MostTemporaryNames = 100;           // tries
constexpr unsigned PermissionBits = 07777;

bool Refuse(int hostError, Operation operation) {
    SetIoErr(ErrorFromErrno(hostError, operation));
    return false;
}

class HostStream final : public Stream {
public:
    HostStream(HostFd file, std::string slowMount)
        : File(std::make_shared<const HostFd>(std::move(file))), SlowMount(std::move(slowMount)) {}

    std::int64_t Read(std::span<std::byte> buffer) override {
        return SlowMount.empty() ? ReadNow(File->Get(), buffer) : ReadWithLimit(buffer);
    }
    std::int64_t Seek(std::int64_t offset, int origin) override {
        const std::int64_t position = Host().Lseek(File->Get(), offset, origin);
        if (position < 0)
            SetIoErr(ErrorSeekError);
        return position;
    }

private:
    static std::int64_t ReadNow(int file, std::span<std::byte> buffer) {
        long got = -1;
        do
            got = Host().Read(file, buffer.data(), buffer.size());
        while (got < 0 && errno == EINTR);
        if (got < 0)
            Refuse(errno, Operation::Read);
        return got;
    }
    std::int64_t ReadWithLimit(std::span<std::byte> buffer);

    std::shared_ptr<const HostFd> File; // shared with a question that hangs
    std::string SlowMount;
};

std::int64_t HostStream::ReadWithLimit(std::span<std::byte> buffer) {
    using Answer = std::optional<std::vector<std::byte>>;
    const std::size_t wanted = std::min(buffer.size(), LargestQuestion);
    const Answer answer = AskWithLimit<Answer>(SlowMount, [file = File, wanted](Progress&) -> Answer {
        std::vector<std::byte> bytes(wanted);
        const std::int64_t got = ReadNow(file->Get(), bytes);
        bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return got < 0 ? std::nullopt : Answer(std::move(bytes));
    });
    if (!answer)
        return -1;
    std::ranges::copy(*answer, buffer.begin());
    return static_cast<std::int64_t>(answer->size());
}

using StreamRef = std::unique_ptr<Stream>;

StreamRef OpenNow(const HostLockRef& from, const std::string& rest, WalkMode& mode) {
    const HostLockRef object = FindObject(from, rest, LastLink::Follow, mode);
    if (!object)
        return nullptr;
    if (!IsFileMode(object->Facts.Mode)) {
        SetIoErr(ErrorObjectWrongType);
        return nullptr;
    }
    // By its descriptor it is the very object that was looked at, whatever has its name now.
    HostFd file(Host().Openat(AT_FDCWD, DescriptorPath(object->Object.Get()).c_str(),
                              O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0));
    if (!file) {
        Refuse(errno, Operation::Read);
        return nullptr;
    }
    return std::make_unique<HostStream>(std::move(file), object->SlowMount);
}

bool IsProtectedFromWriting(const Spot& spot) {
    ObjectRecord record;
    ExamineEntry(spot.Object.Get(), "", DT_UNKNOWN, Attributes::None, record);
    ApplySidecar(spot.Drawer.Get(), spot.Name, record);
    return (record.Protection & ProtectWrite) != 0;
}

// A temporary file beside the target, with a name that no one else has.
HostFd MakeTemporary(int drawer, std::string& name) {
    static std::atomic<unsigned> counter{0};
    HostFd file;
    for (int i = 0; !file && i < MostTemporaryNames; ++i) {
        name = ".solvane-" + std::to_string(::getpid()) + "-" + std::to_string(++counter) + ".tmp";
        file = HostFd(
            Host().Openat(drawer, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        if (!file && errno != EEXIST)
            break;
    }
    return file;
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const long put = Host().Write(file, bytes.data(), std::min<std::size_t>(bytes.size(), 1u << 20));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            errno = put == 0 ? ENOSPC : errno;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

// Attributes are the user's, some not ours: they go over as they are. What the file system refuses
// is left.
void CopyAttributes(int from, int to) {
    std::string names(LargestAttribute, '\0');
    const long size = Host().Listxattr(from, "", names.data(), names.size());
    names.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    std::string value(LargestAttribute, '\0');
    for (std::size_t at = 0; at < names.size();) {
        const char* name = names.data() + at;
        const long length = Host().Getxattr(from, "", name, value.data(), value.size());
        if (length >= 0)
            Host().Fsetxattr(to, name, value.data(), static_cast<std::size_t>(length));
        at += std::strlen(name) + 1;
    }
}

// Gives the new file what the old one has besides its contents.
bool Inherit(const Spot& old, int file) {
    struct statx from {};
    struct statx own {};
    constexpr unsigned Wanted = STATX_MODE | STATX_UID | STATX_GID;
    if (Host().Statx(old.Object.Get(), "", AT_EMPTY_PATH, Wanted, &from) != 0 ||
        Host().Statx(file, "", AT_EMPTY_PATH, Wanted, &own) != 0)
        return false;
    CopyAttributes(old.Object.Get(), file);
    const bool isOthers = from.stx_uid != own.stx_uid || from.stx_gid != own.stx_gid;
    // Another's file that we may write keeps its owner where the host lets us.
    if (isOthers && Host().Fchown(file, from.stx_uid, from.stx_gid) != 0 && errno != EPERM)
        return false;
    return Host().Fchmod(file, from.stx_mode & PermissionBits) == 0;
}

void SyncDrawer(int drawer) {
    const HostFd open = OpenForListing(drawer);
    if (open)
        Host().Fsync(open.Get());
}

bool ReplaceFile(const Spot& spot, std::string_view bytes, const WalkMode& mode) {
    std::string temporary;
    const HostFd file = MakeTemporary(spot.Drawer.Get(), temporary);
    if (!file)
        return Refuse(errno, Operation::Write);
    const bool isWritten =
        WriteAll(file.Get(), bytes) && (!spot.Object || Inherit(spot, file.Get())) &&
        Host().Fsync(file.Get()) == 0 && mode.Commit() &&
        Host().Renameat2(spot.Drawer.Get(), temporary.c_str(), spot.Drawer.Get(), spot.Name.c_str(), 0) == 0;
    if (!isWritten) {
        const int error = errno;
        Host().Unlinkat(spot.Drawer.Get(), temporary.c_str(), 0);
        return Refuse(error, Operation::Write);
    }
    SyncDrawer(spot.Drawer.Get());
    if (!spot.Object)
        NoteCreated(spot.Drawer.Get(), spot.Name);
    return true;
}

bool WriteNow(const HostLock& from, const std::string& rest, std::string_view bytes, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(from, rest, LastLink::Follow, mode, spot))
        return false;
    if (!spot.Drawer || (spot.Object && !IsFileMode(spot.Facts.Mode))) {
        SetIoErr(ErrorObjectWrongType);
        return false;
    }
    if (spot.Object && IsProtectedFromWriting(spot)) {
        SetIoErr(ErrorWriteProtected);
        return false;
    }
    return ReplaceFile(spot, bytes, mode);
}

bool CreateNow(const HostLock& from, const std::string& rest, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(from, rest, LastLink::Keep, mode, spot))
        return false;
    if (spot.Object) {
        SetIoErr(ErrorObjectExists);
        return false;
    }
    if (!mode.Commit())
        return Refuse(ENOMEDIUM, Operation::Write);
    if (Host().Mkdirat(spot.Drawer.Get(), spot.Name.c_str(), 0777) != 0)
        return Refuse(errno, Operation::Write);
    NoteCreated(spot.Drawer.Get(), spot.Name);
    return true;
}

} // namespace

std::unique_ptr<Stream> OpenHostFile(const LockRef& start, std::string_view rest) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<StreamRef>(
        from, [from, rest = std::string(rest)](WalkMode& mode) { return OpenNow(from, rest, mode); });
}

bool CreateHostDrawer(const LockRef& start, std::string_view rest) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(
        from, [from, rest = std::string(rest)](WalkMode& mode) { return CreateNow(*from, rest, mode); });
}

bool WriteHostFile(const LockRef& start, std::string_view rest, std::string_view bytes) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(from, [from, rest = std::string(rest), bytes = std::string(bytes)](WalkMode& mode) {
        return WriteNow(*from, rest, bytes, mode);
    });
}

} // namespace dos
