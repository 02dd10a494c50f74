#include "platform/dos/Copy.h"

#include "platform/dos/Changes.h"
#include "platform/dos/DeviceWalk.h"

#include <array>

namespace dos {

namespace {

constexpr std::size_t BlockSize = 16384; // bytes

CopyResult Ends(CopyEnd end, long error) {
    SetIoErr(error);
    return {end, 0};
}

// The reason is in IoErr already.
CopyResult FailsBy(CopyEnd end) {
    return {end, 0};
}

CopyResult CopyBytes(Stream& from, Stream& to, const CopyProgress& progress) {
    std::array<std::byte, BlockSize> block;
    while (true) {
        const std::int64_t got = from.Read(block);
        if (got < 0)
            return FailsBy(CopyEnd::ContentsFailed);
        if (got == 0)
            return {CopyEnd::Done, 0};
        const auto count = static_cast<std::size_t>(got);
        if (to.Write(std::span(block).first(count)) < 0)
            return FailsBy(CopyEnd::ContentsFailed);
        if (progress && !progress(count))
            return Ends(CopyEnd::Cancelled, ErrorBreak);
    }
}

bool Sets(const DeviceWalk& place, const MetadataChange& change) {
    return place.Owner().Change && place.Owner().Change(place.Start(), place.Rest(), change);
}

// What a device that is no disk has no room for is no loss: nobody would look for it there.
unsigned CopyFacts(const DeviceWalk& from, const DeviceWalk& to, const CopyOptions& options) {
    if (!from.Owner().Locate || !from.Owner().Examine || !to.Owner().Change)
        return 0;
    const LockRef lock = from.Owner().Locate(from.Start(), from.Rest(), LastLink::Follow);
    ExamineData object;
    if (!lock || !from.Owner().Examine(lock, object))
        return 0;
    unsigned lost = 0;
    if (options.Comment && !object.Comment.empty() && !Sets(to, {.Comment = object.Comment}))
        lost |= LostComment;
    if (options.Date && !Sets(to, {.Date = object.Date}))
        lost |= LostDate;
    if (options.Protection && !Sets(to, {.Protection = object.Protection}))
        lost |= LostProtection;
    return lost;
}

bool IsThere(const DeviceWalk& place) {
    return place.Owner().Examine && place.Owner().Locate &&
           place.Owner().Locate(place.Start(), place.Rest(), LastLink::Follow);
}

CopyResult CopyByStreams(const DeviceWalk& from, const DeviceWalk& to, const CopyOptions& options,
                         const CopyProgress& progress) {
    // What such a device makes of the bytes cannot be looked at, so nothing is deleted for it.
    if (options.Moves)
        return Ends(CopyEnd::TargetRefused, ErrorActionNotKnown);
    if (!from.Owner().Open || !to.Owner().Open)
        return Ends(from.Owner().Open ? CopyEnd::TargetRefused : CopyEnd::SourceRefused, ErrorActionNotKnown);
    const auto source = from.Owner().Open(from.Start(), from.Rest(), OpenMode::Old);
    if (!source)
        return FailsBy(CopyEnd::SourceRefused);
    if (!options.Replaces && IsThere(to))
        return Ends(CopyEnd::TargetRefused, ErrorObjectExists);
    const auto target = to.Owner().Open(to.Start(), to.Rest(), OpenMode::New);
    if (!target)
        return FailsBy(CopyEnd::TargetRefused);
    CopyResult result = CopyBytes(*source, *target, progress);
    if (!result)
        return result;
    if (!target->Close())
        return FailsBy(CopyEnd::ContentsFailed);
    result.Lost = CopyFacts(from, to, options);
    return result;
}

// Whether a move is over after the try to rename: done, or refused for good.
bool IsOverByRename(const DeviceWalk& from, const DeviceWalk& to, const CopyOptions& options,
                    CopyResult& result) {
    if (&from.Owner() != &to.Owner() || !from.Owner().Rename)
        return false;
    if (from.Owner().Rename(from.Start(), from.Rest(), to.Start(), to.Rest())) {
        result = {CopyEnd::Done, 0};
        return true;
    }
    const long error = IoErr();
    if (error == ErrorRenameAcrossDevices || (error == ErrorObjectExists && options.Replaces))
        return false;
    result = FailsBy(error == ErrorObjectNotFound ? CopyEnd::SourceRefused : CopyEnd::TargetRefused);
    return true;
}

CopyResult CopyBetween(const DeviceWalk& from, const DeviceWalk& to, const CopyOptions& options,
                       const CopyProgress& progress) {
    CopyResult result;
    if (options.Moves && IsOverByRename(from, to, options, result))
        return result;
    if (&from.Owner() == &to.Owner() && from.Owner().Copy)
        return from.Owner().Copy(from.Start(), from.Rest(), to.Start(), to.Rest(), options, progress);
    return CopyByStreams(from, to, options, progress);
}

} // namespace

CopyResult Copy(std::string_view from, std::string_view to, const CopyOptions& options,
                const CopyProgress& progress) {
    if (options.Moves && options.FollowsLink) // what is to go, the link or what it leads to?
        return Ends(CopyEnd::SourceRefused, ErrorActionNotKnown);
    return AtEachPlaceToChange(from, [&](const DeviceWalk& source) {
        return AtEachPlaceToChange(
            to, [&](const DeviceWalk& target) { return CopyBetween(source, target, options, progress); });
    });
}

} // namespace dos
