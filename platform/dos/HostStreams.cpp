#include "platform/dos/CopyContents.h"
#include "platform/dos/HostFiles.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/MetadataWriting.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dos {

namespace {

constexpr std::size_t LargestQuestion = 1u << 18; // bytes read at once from a disk that may hang
constexpr std::uint64_t BlockUnit = 512;          // bytes, of statx

// Everything of an open file; shared with a question that hangs.
struct OpenFile {
    HostFd Source; // the old contents; empty for a new file
    Spot Target;   // Object is the old file; Drawer and Name are there from the first change on
    std::unique_ptr<Temporary> Fresh;
    long Failure = 0; // the error of the first change that failed

    [[nodiscard]] int Current() const { return Fresh ? Fresh->File() : Source.Get(); }
};

// False with errno, EBUSY when somebody changes the file meanwhile.
bool CopyAll(int from, int to) {
    struct statx about {};
    if (Host().Statx(from, "", AT_EMPTY_PATH, STATX_SIZE | STATX_BLOCKS, &about) != 0 ||
        Host().Lseek(from, 0, SEEK_SET) < 0)
        return false;
    const ContentsEnd end = ContentsCopier({}).Run(from, to, about.stx_size, about.stx_blocks * BlockUnit);
    if (end == ContentsEnd::Changed)
        errno = EBUSY;
    return end == ContentsEnd::Done;
}

bool RefuseProtected(long error) {
    SetIoErr(error);
    return false;
}

bool MakeFresh(OpenFile& open, const WalkMode& mode) {
    auto fresh = std::make_unique<Temporary>();
    if (!mode.Commit())
        return Refuse(ENOMEDIUM, Operation::Write);
    if (!fresh->Make(open.Target.Drawer.Get(), open.Target.Object ? ModeOfReplacement : ModeOfNewFile))
        return Refuse(errno, Operation::Write);
    open.Fresh = std::move(fresh);
    return true;
}

// The first change of an old file: its contents go over to a temporary one.
bool BeginChange(OpenFile& open, const WalkMode& mode) {
    StoredMetadata stored;
    if (!CompleteSpot(open.Target) || !ReadStored(open.Target, stored))
        return Refuse(errno, Operation::Write);
    if ((stored.Bits & ProtectWrite) != 0)
        return RefuseProtected(ErrorWriteProtected);
    const std::int64_t position = Host().Lseek(open.Source.Get(), 0, SEEK_CUR);
    if (position < 0)
        return Refuse(errno, Operation::Write);
    if (!MakeFresh(open, mode))
        return false;
    const int fresh = open.Fresh->File();
    if (CopyAll(open.Source.Get(), fresh) && Host().Lseek(fresh, position, SEEK_SET) == position)
        return true;
    const int error = errno;
    open.Fresh.reset();
    if (Host().Lseek(open.Source.Get(), position, SEEK_SET) < 0)
        Host().Lseek(open.Source.Get(), position, SEEK_SET);
    return Refuse(error, Operation::Write);
}

bool MayChange(OpenFile& open, const WalkMode& mode) {
    if (open.Failure != 0)
        return RefuseProtected(open.Failure);
    return open.Fresh || BeginChange(open, mode);
}

// Keeps the first failure, so that half of the contents never gets the name.
std::int64_t FailChange(OpenFile& open) {
    if (open.Failure == 0)
        open.Failure = IoErr();
    return -1;
}

bool CloseNow(OpenFile& open) {
    if (open.Failure != 0)
        return RefuseProtected(open.Failure);
    if (!open.Fresh)
        return true;
    const Spot& target = open.Target;
    const bool isOld = static_cast<bool>(target.Object);
    const int file = open.Fresh->File();
    const bool isSafe =
        isOld ? Inherit(target.Object.Get(), file) && Host().Fsync(file) == 0 : IsWellClosed(file);
    SidecarFile sidecar;
    if (!isSafe || !FindSidecar(target.Drawer.Get(), target.Name, sidecar) ||
        !open.Fresh->TakePlace(target.Name, isOld ? Existing::Replaced : Existing::Kept))
        return Refuse(errno, Operation::Write);
    if (isOld)
        SyncDrawer(target.Drawer.Get());
    return FinishSidecar(target, sidecar) || Refuse(errno, Operation::Write);
}

std::int64_t ReadNow(int file, std::span<std::byte> buffer) {
    long got = -1;
    do
        got = Host().Read(file, buffer.data(), buffer.size());
    while (got < 0 && errno == EINTR);
    if (got < 0)
        Refuse(errno, Operation::Read);
    return got;
}

// Where an offset leads within a file; -1 with 219 outside of limit.
std::int64_t PlaceOf(int file, std::int64_t offset, SeekFrom from, std::int64_t& end) {
    const std::int64_t current = Host().Lseek(file, 0, SEEK_CUR);
    end = current < 0 ? -1 : Host().Lseek(file, 0, SEEK_END);
    if (end < 0 || Host().Lseek(file, current, SEEK_SET) < 0) {
        SetIoErr(ErrorSeekError);
        return -1;
    }
    const std::int64_t base = from == SeekFrom::Beginning ? 0 : from == SeekFrom::Current ? current : end;
    std::int64_t place = 0;
    if (!__builtin_add_overflow(base, offset, &place) && place >= 0)
        return place;
    SetIoErr(ErrorSeekError);
    return -1;
}

std::int64_t SeekNow(int file, std::int64_t offset, SeekFrom from) {
    // A mere question moves nothing: a child may be reading from this place.
    if (offset == 0 && from == SeekFrom::Current)
        if (const std::int64_t current = Host().Lseek(file, 0, SEEK_CUR); current >= 0)
            return current;
    std::int64_t end = 0;
    const std::int64_t place = PlaceOf(file, offset, from, end);
    if (place >= 0 && place <= end && Host().Lseek(file, place, SEEK_SET) == place)
        return place;
    SetIoErr(ErrorSeekError);
    return -1;
}

class HostStream final : public Stream {
public:
    HostStream(std::shared_ptr<OpenFile> file, std::string slowMount)
        : File(std::move(file)), SlowMount(std::move(slowMount)) {}
    ~HostStream() override;

    std::int64_t Read(std::span<std::byte> buffer) override {
        return SlowMount.empty() ? ReadNow(File->Current(), buffer) : ReadWithLimit(buffer);
    }
    std::int64_t Write(std::span<const std::byte> bytes) override;
    std::int64_t Seek(std::int64_t offset, SeekFrom from) override;
    std::int64_t SetSize(std::int64_t offset, SeekFrom from) override;
    int ForReader() override {
        return SlowMount.empty() && !File->Fresh ? Host().Duplicate(File->Source.Get()) : NoDescriptor;
    }
    bool Close() override {
        return Change([](OpenFile& file, WalkMode&) -> std::int64_t { return CloseNow(file) ? 0 : -1; }) == 0;
    }

private:
    // Runs a deed that changes something. On a disk that may not answer it begins only when the
    // disk does, and then its end is awaited: what the caller lent it stays there.
    std::int64_t Change(std::function<std::int64_t(OpenFile&, WalkMode&)> deed);
    std::int64_t ReadWithLimit(std::span<std::byte> buffer);

    std::shared_ptr<OpenFile> File;
    std::string SlowMount;
};

// A disk is told of the end of reading, too, and may not answer.
HostStream::~HostStream() {
    if (SlowMount.empty())
        return;
    EndWithLimit(SlowMount, [file = std::move(File)](Progress&) {
        file->Fresh.reset();
        file->Source = HostFd();
    });
}

std::int64_t HostStream::Change(std::function<std::int64_t(OpenFile&, WalkMode&)> deed) {
    WalkMode mode;
    if (SlowMount.empty())
        return deed(*File, mode);
    using Answer = std::optional<std::int64_t>;
    return AskWithLimit<Answer>(SlowMount,
                                [file = File, deed = std::move(deed)](Progress& progress) -> Answer {
                                    WalkMode patient{.MayWait = true, .WantsLimit = {}, .Asked = &progress};
                                    if (patient.Commit())
                                        return deed(*file, patient);
                                    SetIoErr(ErrorNoDisk);
                                    return {};
                                })
        .value_or(-1);
}

std::int64_t HostStream::ReadWithLimit(std::span<std::byte> buffer) {
    using Answer = std::optional<std::vector<std::byte>>;
    const std::size_t wanted = std::min(buffer.size(), LargestQuestion);
    const Answer answer = AskWithLimit<Answer>(SlowMount, [file = File, wanted](Progress&) -> Answer {
        std::vector<std::byte> bytes(wanted);
        const std::int64_t got = ReadNow(file->Current(), bytes);
        bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return got < 0 ? std::nullopt : Answer(std::move(bytes));
    });
    if (!answer)
        return -1;
    std::ranges::copy(*answer, buffer.begin());
    return static_cast<std::int64_t>(answer->size());
}

std::int64_t HostStream::Write(std::span<const std::byte> bytes) {
    return Change([bytes](OpenFile& file, WalkMode& mode) -> std::int64_t {
        if (!MayChange(file, mode))
            return FailChange(file);
        if (WriteAll(file.Current(), {reinterpret_cast<const char*>(bytes.data()), bytes.size()}))
            return static_cast<std::int64_t>(bytes.size());
        Refuse(errno, Operation::Write);
        return FailChange(file);
    });
}

std::int64_t HostStream::Seek(std::int64_t offset, SeekFrom from) {
    if (SlowMount.empty())
        return SeekNow(File->Current(), offset, from);
    using Answer = std::optional<std::int64_t>;
    return AskWithLimit<Answer>(SlowMount,
                                [file = File, offset, from](Progress&) -> Answer {
                                    return SeekNow(file->Current(), offset, from);
                                })
        .value_or(-1);
}

std::int64_t HostStream::SetSize(std::int64_t offset, SeekFrom from) {
    return Change([offset, from](OpenFile& file, WalkMode& mode) -> std::int64_t {
        std::int64_t end = 0;
        if (!MayChange(file, mode))
            return FailChange(file);
        const std::int64_t size = PlaceOf(file.Current(), offset, from, end);
        if (size < 0)
            return -1; // nothing was tried
        const std::int64_t position = Host().Lseek(file.Current(), 0, SEEK_CUR);
        if (position >= 0 && Host().Ftruncate(file.Current(), size) == 0 &&
            (position <= size || Host().Lseek(file.Current(), size, SEEK_SET) == size))
            return size;
        Refuse(errno, Operation::Write);
        return FailChange(file);
    });
}

using StreamRef = std::unique_ptr<Stream>;

StreamRef OpenExisting(Spot&& spot) {
    if (!IsFileMode(spot.Facts.Mode)) {
        SetIoErr(ErrorObjectWrongType);
        return nullptr;
    }
    if (!LetsRead(spot.Object))
        return nullptr;
    auto file = std::make_shared<OpenFile>();
    // By its descriptor it is the very object that was looked at, whatever has its name now.
    file->Source = HostFd(Host().Openat(AT_FDCWD, DescriptorPath(spot.Object.Get()).c_str(),
                                        O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0));
    if (!file->Source) {
        Refuse(errno, Operation::Read);
        return nullptr;
    }
    file->Target = std::move(spot);
    return std::make_unique<HostStream>(file, file->Target.SlowMount);
}

StreamRef OpenOldNow(const HostLockRef& from, const std::string& rest, WalkMode& mode) {
    const HostLockRef object = FindObject(from, rest, LastLink::Follow, mode);
    if (!object)
        return nullptr;
    Spot spot;
    spot.Object = DuplicateFd(object->Object);
    spot.Facts = object->Facts;
    spot.On = object->On;
    spot.SlowMount = object->SlowMount;
    if (spot.Object)
        return OpenExisting(std::move(spot));
    Refuse(errno, Operation::Read);
    return nullptr;
}

StreamRef OpenFreshNow(Spot&& spot, WalkMode& mode) {
    auto file = std::make_shared<OpenFile>();
    file->Target = std::move(spot);
    if (file->Target.Object && !IsReplaceable(file->Target))
        return nullptr;
    if (!MakeFresh(*file, mode))
        return nullptr;
    return std::make_unique<HostStream>(file, file->Target.SlowMount);
}

StreamRef OpenNow(const HostLockRef& from, const std::string& rest, OpenMode openMode, WalkMode& mode) {
    if (openMode == OpenMode::Old)
        return OpenOldNow(from, rest, mode);
    Spot spot;
    if (!FindSpot(*from, rest, LastLink::Follow, mode, spot))
        return nullptr;
    if (spot.Object && openMode == OpenMode::ReadWrite)
        return OpenExisting(std::move(spot));
    return OpenFreshNow(std::move(spot), mode);
}

} // namespace

bool IsReplaceable(Spot& spot) {
    if (!IsFileMode(spot.Facts.Mode)) {
        SetIoErr(ErrorObjectWrongType);
        return false;
    }
    StoredMetadata stored;
    if (!CompleteSpot(spot) || !ReadStored(spot, stored))
        return Refuse(errno, Operation::Write);
    if ((stored.Bits & ProtectDelete) != 0)
        return RefuseProtected(ErrorDeleteProtected);
    return (stored.Bits & ProtectWrite) == 0 || RefuseProtected(ErrorWriteProtected);
}

std::unique_ptr<Stream> OpenHostFile(const LockRef& start, std::string_view rest, OpenMode openMode) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<StreamRef>(from, [from, rest = std::string(rest), openMode](WalkMode& mode) {
        return OpenNow(from, rest, openMode, mode);
    });
}

} // namespace dos
