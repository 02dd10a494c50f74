#include "platform/dos/DiskEvents.h"

#include "platform/dos/Errors.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"
#include "platform/dos/Volumes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <poll.h>
#include <system_error>
#include <thread>

namespace dos {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto QuietTime = std::chrono::milliseconds(200); // ends a burst
constexpr auto LongestBurst = std::chrono::seconds(1);

// What a person sees of the volumes; of two equal ones nothing has happened.
using VolumePicture = std::vector<std::string>;

VolumePicture PictureOfVolumes() {
    VolumePicture picture;
    for (const VolumeInfo& volume : Volumes())
        picture.push_back(volume.Device + ":" + volume.Volume + (volume.WriteProtected ? ":-" : ":+") +
                          volume.HostRoot);
    std::ranges::sort(picture);
    return picture;
}

} // namespace

// One running notification; Guard is for what its thread and End both touch.
struct DiskWatch {
    std::mutex Guard;
    exec::Task* Task = nullptr;
    exec::SignalMask Signals = 0;
    bool IsActive = true;
    HostFd List;
    HostFd Waker;
    VolumePicture Known; // the thread's own
    std::thread Thread;

    void Serve();
    void Tell();
    [[nodiscard]] bool Goes();
};

namespace {

struct RunningWatches {
    std::mutex Guard;
    std::vector<DiskWatch*> All;
};

RunningWatches& Watches() {
    static RunningWatches watches;
    return watches;
}

void Wake(const DiskWatch& watch) {
    const std::uint64_t one = 1;
    Host().Write(watch.Waker.Get(), &one, sizeof(one));
}

// Takes the calls of Wake back; true when there was one.
bool WasWoken(const DiskWatch& watch, short events) {
    std::uint64_t count = 0;
    return (events & POLLIN) != 0 && Host().Read(watch.Waker.Get(), &count, sizeof(count)) > 0;
}

} // namespace

void TellDiskWatches() {
    const std::lock_guard hold(Watches().Guard);
    for (const DiskWatch* watch : Watches().All)
        Wake(*watch);
}

bool DiskWatch::Goes() {
    const std::lock_guard hold(Guard);
    return IsActive;
}

void DiskWatch::Tell() {
    VolumePicture now = PictureOfVolumes();
    if (now == Known)
        return;
    Known = std::move(now);
    const std::lock_guard hold(Guard);
    if (IsActive)
        exec::Signal(Task, Signals);
}

void DiskWatch::Serve() {
    bool isPending = false;
    Clock::time_point first;
    Clock::time_point due;
    while (Goes()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - Clock::now()).count();
        std::array<struct pollfd, 2> sources = {{{List.Get(), POLLPRI, 0}, {Waker.Get(), POLLIN, 0}}};
        const int ready = Host().Poll(sources.data(), sources.size(),
                                      isPending ? static_cast<int>(std::max<long>(left, 0)) : -1);
        if (ready < 0 && errno != EINTR)
            return;
        const bool isWoken = ready > 0 && WasWoken(*this, sources[1].revents);
        if (isWoken || (ready > 0 && (sources[0].revents & (POLLPRI | POLLERR)) != 0)) {
            const auto now = Clock::now();
            first = isPending ? first : now;
            due = std::min(now + QuietTime, first + LongestBurst);
            isPending = true;
        }
        if (isPending && Clock::now() >= due) {
            isPending = false;
            Tell();
        }
    }
}

DiskNotification::DiskNotification() = default;

DiskNotification::~DiskNotification() {
    End();
}

bool DiskNotification::Start(exec::Task* task, int signal) {
    End();
    if (!task || signal < 0 || signal > 31) {
        SetIoErr(ErrorRequiredArgMissing);
        return false;
    }
    auto watch = std::make_unique<DiskWatch>();
    watch->Task = task;
    watch->Signals = exec::SignalMask{1} << signal;
    watch->List = OpenMountList(); // before the first look, so that no change falls in between
    watch->Waker = HostFd(watch->List ? Host().Eventfd() : NoDescriptor);
    if (!watch->List || !watch->Waker) {
        SetIoErr(ErrorFromErrno(errno, Operation::Lookup));
        return false;
    }
    watch->Known = PictureOfVolumes();
    try {
        watch->Thread = std::thread([served = watch.get()] { served->Serve(); });
    } catch (const std::system_error&) {
        SetIoErr(ErrorTaskTableFull);
        return false;
    }
    Running = std::move(watch);
    // Without it names that other processes give are seen at the next start.
    if (const std::string file = LabelFile(); !file.empty())
        static_cast<void>(Names.Start(FromHostPath(file), task, signal));
    const std::lock_guard hold(Watches().Guard);
    Watches().All.push_back(Running.get());
    return true;
}

void DiskNotification::End() {
    Names.End();
    if (!Running)
        return;
    {
        const std::lock_guard hold(Running->Guard);
        Running->IsActive = false;
    }
    {
        const std::lock_guard hold(Watches().Guard);
        std::erase(Watches().All, Running.get());
    }
    Wake(*Running);
    Running->Thread.join();
    Running.reset();
}

} // namespace dos
