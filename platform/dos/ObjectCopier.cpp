#include "platform/dos/ObjectCopier.h"

#include "platform/dos/HostWatch.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/Metadata.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/dos/TemporaryNames.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr unsigned StatusWanted = STATX_BASIC_STATS;

CopyResult Ends(CopyEnd end, long error) {
    SetIoErr(error);
    return {end, 0};
}

CopyResult Fails(CopyEnd end, Operation operation) {
    return Ends(end, ErrorFromErrno(errno, operation));
}

CopyResult ResultOf(ContentsEnd end) {
    switch (end) {
    case ContentsEnd::Done:
        return {CopyEnd::Done, 0};
    case ContentsEnd::ReadFailed:
        return Fails(CopyEnd::ContentsFailed, Operation::Read);
    case ContentsEnd::WriteFailed:
        return Fails(CopyEnd::ContentsFailed, Operation::Write);
    case ContentsEnd::Changed:
        return Ends(CopyEnd::SourceChanged, ErrorObjectInUse);
    case ContentsEnd::Stopped:
        return Ends(CopyEnd::Cancelled, ErrorBreak);
    }
    return {};
}

bool StatusOf(int object, struct statx& about) {
    return Host().Statx(object, "", AT_EMPTY_PATH, StatusWanted, &about) == 0;
}

unsigned ModeToMakeWith(const struct statx& source, const CopyOptions& options, bool replaces) {
    if (options.Protection)
        return (source.stx_mode & ACCESSPERMS) | S_IRUSR | S_IWUSR;
    return replaces ? ModeOfReplacement : ModeOfNewFile;
}

HostFd OpenPlain(int drawer, const std::string& name) {
    return HostFd(Host().Openat(drawer, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
}

// A link under a temporary name first, where one is to be replaced.
bool PutLink(const std::string& text, const CopyPlace& place) {
    if (place.Old == NoDescriptor)
        return Host().Symlinkat(text.c_str(), place.Drawer, place.Name.c_str()) == 0;
    const std::string between = NextTemporaryName();
    if (Host().Symlinkat(text.c_str(), place.Drawer, between.c_str()) != 0)
        return false;
    if (IsAwaited() &&
        Host().Renameat2(place.Drawer, between.c_str(), place.Drawer, place.Name.c_str(), 0) == 0)
        return true;
    const int error = errno;
    if (Host().Unlinkat(place.Drawer, between.c_str(), 0) != 0)
        Host().Unlinkat(place.Drawer, between.c_str(), 0);
    errno = error;
    return false;
}

} // namespace

ObjectCopier::ObjectCopier(const CopyOptions& options, CopyProgress progress)
    : Options(options), Contents(std::move(progress)) {}

CopyResult ObjectCopier::FillFile(const CopySource& source, const CopyPlace& place, const struct statx& about,
                                  int file) {
    if (place.Old != NoDescriptor && !Options.Protection && !Inherit(place.Old, file))
        return Fails(CopyEnd::TargetRefused, Operation::Write);
    // The note of the source counts, also when it has none.
    if (place.Old != NoDescriptor && !Options.Protection && Options.Comment)
        Host().RemoveAttribute(file, CommentAttribute);
    if (place.HandsDownAccess && Options.Protection)
        DropAccessHandedDown(file);
    const std::uint64_t kept = about.stx_blocks * 512;
    CopyResult result = ResultOf(Contents.Run(source.Object, file, about.stx_size, kept));
    if (!result)
        return result;
    const FlushScope flush;
    result.Lost = Attributes.Run(source.Object, file, Options);
    if (place.Old != NoDescriptor && Options.Protection && !Options.Comment)
        result.Lost |= Attributes.KeepComment(place.Old, file);
    if (Options.Date && !KeepTimes(file, about))
        result.Lost |= LostDate;
    struct statx made {};
    if (!StatusOf(file, made))
        return Fails(CopyEnd::ContentsFailed, Operation::Write);
    if (made.stx_size != about.stx_size && about.stx_size != 0)
        return Ends(CopyEnd::ContentsFailed, ErrorFromErrno(EIO, Operation::Write));
    result.Lost |= KeepStatus(file, made, about, Options);
    // Before the source of a move goes, the disk itself has the copy.
    if (Options.Moves ? Host().Fsync(file) != 0 : !IsWellClosed(file))
        return Fails(CopyEnd::ContentsFailed, Operation::Write);
    return result;
}

CopyResult ObjectCopier::CopyFile(const CopySource& source, const CopyPlace& place) {
    struct statx about {};
    if (!StatusOf(source.Object, about))
        return Fails(CopyEnd::SourceRefused, Operation::Read);
    if (!S_ISREG(about.stx_mode)) // it was one when its name was read
        return Ends(CopyEnd::SourceRefused, ErrorObjectWrongType);
    const bool replaces = place.Old != NoDescriptor;
    Temporary file;
    if (!file.Make(place.Drawer, ModeToMakeWith(about, Options, replaces), ModeOfReplacement))
        return Fails(CopyEnd::TargetRefused, Operation::Write);
    CopyResult result = FillFile(source, place, about, file.File());
    if (!result)
        return result;
    if (!Contents.GoesOn()) // it may have taken long
        return Ends(CopyEnd::Cancelled, ErrorBreak);
    // A disk that stores the drawer is busy, not dead.
    std::optional<FlushScope> flush;
    if (Options.Moves)
        flush.emplace();
    if (!file.TakePlace(place.Name, replaces ? Existing::Replaced : Existing::Kept))
        return Fails(CopyEnd::TargetRefused, Operation::Write);
    result.Lost = KeepSidecar(source, place, file.File()).After(result.Lost);
    if (Options.Moves)
        SyncDrawer(place.Drawer);
    return result;
}

CopyResult ObjectCopier::CopyLink(const CopySource& source, const CopyPlace& place) {
    struct statx about {};
    const std::string text = ReadLinkText(source.Object, "");
    if (text.empty() || !StatusOf(source.Object, about))
        return Fails(CopyEnd::SourceRefused, Operation::Read);
    const OwnChange change(place.Drawer);
    if (!Contents.GoesOn()) // the disk may have taken long to answer
        return Ends(CopyEnd::Cancelled, ErrorBreak);
    if (!PutLink(text, place)) {
        errno = errno == EPERM ? ENOTSUP : errno;
        return Fails(CopyEnd::TargetRefused, Operation::Write);
    }
    change.End({}, place.Name);
    CopyResult result{CopyEnd::Done, 0};
    if (Options.Date && IsAwaited())
        result.Lost = KeepTimesOfLink(place.Drawer, place.Name, about);
    if (const HostFd made = OpenPlain(place.Drawer, place.Name))
        result.Lost = KeepSidecar(source, place, made.Get()).After(result.Lost);
    return result;
}

CopyResult ObjectCopier::MakeDrawer(const CopyPlace& place, HostFd& made) {
    const OwnChange change(place.Drawer);
    if (!Contents.GoesOn())
        return Ends(CopyEnd::Cancelled, ErrorBreak);
    if (Host().Mkdirat(place.Drawer, place.Name.c_str(), Options.Protection ? 0700 : 0777) != 0)
        return Fails(CopyEnd::TargetRefused, Operation::Write);
    made = HostFd(
        Host().Openat(place.Drawer, place.Name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!made) {
        const CopyResult failure = Fails(CopyEnd::TargetRefused, Operation::Write);
        Host().Unlinkat(place.Drawer, place.Name.c_str(), AT_REMOVEDIR);
        return failure;
    }
    change.End({}, place.Name);
    if (place.HandsDownAccess && Options.Protection)
        DropAccessHandedDown(made.Get());
    return {CopyEnd::Done, 0};
}

unsigned ObjectCopier::FinishDrawer(const CopySource& source, int made) {
    struct statx about {};
    struct statx now {};
    unsigned lost = Attributes.Run(source.Object, made, Options);
    if (!StatusOf(source.Object, about) || !IsAwaited())
        return lost | LostProtection | LostDate;
    if (Options.Date && !KeepTimes(made, about))
        lost |= LostDate;
    if (!StatusOf(made, now) || !IsAwaited())
        return lost | LostProtection | LostDate;
    return lost | KeepStatus(made, now, about, Options);
}

SidecarOutcome ObjectCopier::KeepSidecar(const CopySource& source, const CopyPlace& place, int copy) {
    const bool wants = place.On->Info.Metadata == MetadataRule::Uaem;
    if (!wants && !source.MayHaveSidecar && !place.MayHaveSidecar)
        return {};
    SidecarFile old;
    if (!wants && !source.MayHaveSidecar && FindSidecar(place.Drawer, place.Name, old) &&
        old.State != SidecarState::Ours)
        return {};
    const auto spotOf = [](int object, int drawer, const std::string& name, const VolumeRef& on, Spot& spot) {
        spot.Object = HostFd(Host().Duplicate(object));
        if (drawer != NoDescriptor)
            spot.Drawer = HostFd(Host().Duplicate(drawer));
        spot.Name = name;
        spot.On = on;
        return spot.Object && (spot.Drawer || drawer == NoDescriptor) && FactsOf(object, spot.Facts);
    };
    Spot from;
    Spot to;
    if (!spotOf(source.Object, source.Drawer, source.Name, source.On, from) ||
        !spotOf(copy, place.Drawer, place.Name, place.On, to))
        return {LostProtection | LostComment | LostDate, 0};
    return CopySidecar(from, to, Options);
}

} // namespace dos
