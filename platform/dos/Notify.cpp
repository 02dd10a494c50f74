#include "platform/dos/Notify.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/NotifyTarget.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <poll.h>
#include <sys/inotify.h>
#include <system_error>
#include <thread>
#include <utility>

namespace dos {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto QuietTime = std::chrono::milliseconds(200); // ends a burst
constexpr auto LongestBurst = std::chrono::seconds(1);
constexpr auto PollTime = std::chrono::seconds(1); // between two looks where there are no notices
constexpr int NoWatch = -1;
constexpr std::uint32_t EntryEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr std::uint32_t ContentEvents = IN_CLOSE_WRITE | IN_ATTRIB;
constexpr std::uint32_t EndEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr std::uint32_t WatchedEvents =
    EntryEvents | ContentEvents | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

} // namespace

// One running notification; all but the first four fields are under the service's guard.
struct Watch {
    std::string Path;
    FileLock From; // where a path without a device begins
    exec::Task* Task = nullptr;
    exec::SignalMask Signals = 0;

    bool IsActive = true;
    NotifyTarget Target;
    int SelfWatch = NoWatch;   // on the drawer itself
    int DrawerWatch = NoWatch; // on the drawer in which the object lies
    bool IsPolled = false;
    bool IsResting = false;
    bool WasSignalled = false; // since the owner last asked
    Clock::time_point NextLook;

    bool IsPending = false;  // a burst is under way
    bool HasChanged = false; // it is to be signalled
    bool IsDoubtful = false; // the path may lead elsewhere now
    Clock::time_point FirstChange;
    Clock::time_point LastChange;

    [[nodiscard]] bool IsLooking() const { return IsPolled && !IsResting; }
    [[nodiscard]] Clock::time_point Due() const {
        return std::min(LastChange + QuietTime, FirstChange + LongestBurst);
    }
    void Note(bool changed, bool doubtful, Clock::time_point now) {
        if (!IsPending)
            FirstChange = now;
        IsPending = true;
        LastChange = now;
        HasChanged = HasChanged || changed;
        IsDoubtful = IsDoubtful || doubtful;
    }
};

namespace {

using WatchRef = std::shared_ptr<Watch>;

class NotifyService {
public:
    static NotifyService& Get() {
        static NotifyService service;
        return service;
    }
    ~NotifyService();

    bool Add(const WatchRef& watch);
    void Remove(const WatchRef& watch);
    bool TakeChange(Watch& watch);
    void SetResting(Watch& watch, bool resting);

private:
    NotifyService();
    void Serve();
    void Arm(Watch& watch, NotifyTarget target);
    void Disarm(Watch& watch);
    int Acquire(const std::string& drawer);
    void LetGo(int& hostWatch);
    void ReadEvents();
    void Dispatch(int hostWatch, std::uint32_t events, std::string_view name);
    void TakeSelfEvent(Watch& watch, std::uint32_t events, bool hasName);
    void TakeDrawerEvent(Watch& watch, std::uint32_t events, std::string_view name);
    [[nodiscard]] int TimeToSleep();
    [[nodiscard]] WatchRef NextDue();
    void Attend(const WatchRef& watch);
    void Wake();

    std::mutex Guard;
    HostFd Inotify;
    HostFd Waker;
    std::vector<WatchRef> Watches;
    std::map<int, int> Users; // of each host watch
    bool IsEnding = false;
    std::thread Thread;
};

NotifyService::NotifyService() : Inotify(Host().InotifyInit()), Waker(Host().Eventfd()) {
    try {
        Thread = std::thread([this] { Serve(); });
    } catch (const std::system_error&) {
        // Add reports it.
    }
}

NotifyService::~NotifyService() {
    {
        const std::lock_guard hold(Guard);
        IsEnding = true;
    }
    Wake();
    if (Thread.joinable())
        Thread.join();
}

void NotifyService::Wake() {
    const std::uint64_t one = 1;
    if (Waker)
        Host().Write(Waker.Get(), &one, sizeof(one));
}

bool NotifyService::Add(const WatchRef& watch) {
    NotifyTarget target = FindNotifyTarget(watch->Path);
    const std::lock_guard hold(Guard);
    if (!Thread.joinable()) {
        SetIoErr(ErrorTaskTableFull);
        return false;
    }
    Arm(*watch, std::move(target));
    Watches.push_back(watch);
    Wake();
    return true;
}

void NotifyService::Remove(const WatchRef& watch) {
    const std::lock_guard hold(Guard);
    watch->IsActive = false;
    Disarm(*watch);
    std::erase(Watches, watch);
}

bool NotifyService::TakeChange(Watch& watch) {
    const std::lock_guard hold(Guard);
    return std::exchange(watch.WasSignalled, false);
}

void NotifyService::SetResting(Watch& watch, bool resting) {
    const std::lock_guard hold(Guard);
    watch.IsResting = resting;
    Wake();
}

int NotifyService::Acquire(const std::string& drawer) {
    if (!Inotify || drawer.empty())
        return NoWatch;
    const int hostWatch = Host().InotifyAddWatch(Inotify.Get(), drawer.c_str(), WatchedEvents);
    if (hostWatch >= 0)
        ++Users[hostWatch];
    return std::max(hostWatch, NoWatch);
}

void NotifyService::LetGo(int& hostWatch) {
    const auto users = Users.find(hostWatch);
    if (users != Users.end() && --users->second == 0) {
        Users.erase(users);
        Host().InotifyRemoveWatch(Inotify.Get(), hostWatch);
    }
    hostWatch = NoWatch;
}

void NotifyService::Disarm(Watch& watch) {
    LetGo(watch.SelfWatch);
    LetGo(watch.DrawerWatch);
}

void NotifyService::Arm(Watch& watch, NotifyTarget target) {
    Watch old;
    std::swap(old.SelfWatch, watch.SelfWatch);
    std::swap(old.DrawerWatch, watch.DrawerWatch);
    watch.Target = std::move(target);
    if (!watch.Target.IsSlow) {
        watch.SelfWatch = watch.Target.IsDrawer ? Acquire(watch.Target.SelfPath) : NoWatch;
        watch.DrawerWatch = Acquire(watch.Target.DrawerPath);
    }
    Disarm(old); // last, so that a watch that stays in use is never taken off
    watch.IsPolled = watch.Target.IsDrawer && watch.Target.Stamp.IsThere ? watch.SelfWatch == NoWatch
                                                                         : watch.DrawerWatch == NoWatch;
    watch.NextLook = Clock::now() + PollTime;
}

void NotifyService::TakeSelfEvent(Watch& watch, std::uint32_t events, bool hasName) {
    if (events & IN_IGNORED)
        watch.SelfWatch = NoWatch;
    if (events & EndEvents)
        watch.Note(true, true, Clock::now());
    else if (hasName) // without one it is the drawer's own bits or note
        watch.Note(true, false, Clock::now());
}

void NotifyService::TakeDrawerEvent(Watch& watch, std::uint32_t events, std::string_view name) {
    if (events & IN_IGNORED)
        watch.DrawerWatch = NoWatch;
    if (events & EndEvents || !watch.Target.Stamp.IsThere) {
        watch.Note(false, true, Clock::now());
    } else if (name == watch.Target.Leaf) {
        if (events & EntryEvents)
            watch.Note(true, true, Clock::now());
        else if (!watch.Target.IsDrawer)
            watch.Note(true, false, Clock::now());
    }
}

void NotifyService::Dispatch(int hostWatch, std::uint32_t events, std::string_view name) {
    if (events & IN_IGNORED)
        Users.erase(hostWatch);
    for (const WatchRef& watch : Watches) {
        if (events & IN_Q_OVERFLOW) { // what happened is lost: everything may have changed
            watch->Note(true, true, Clock::now());
            continue;
        }
        if (watch->SelfWatch == hostWatch)
            TakeSelfEvent(*watch, events, !name.empty());
        if (watch->DrawerWatch == hostWatch)
            TakeDrawerEvent(*watch, events, name);
    }
}

void NotifyService::ReadEvents() {
    alignas(struct inotify_event) std::array<char, 16384> buffer;
    const std::lock_guard hold(Guard);
    long got = 0;
    while ((got = Host().Read(Inotify.Get(), buffer.data(), buffer.size())) > 0) {
        for (std::size_t at = 0; at + sizeof(inotify_event) <= static_cast<std::size_t>(got);) {
            struct inotify_event event;
            std::memcpy(&event, buffer.data() + at, sizeof(event));
            const char* name = buffer.data() + at + sizeof(event);
            Dispatch(event.wd, event.mask, std::string_view(name, ::strnlen(name, event.len)));
            at += sizeof(event) + event.len;
        }
    }
}

int NotifyService::TimeToSleep() {
    const std::lock_guard hold(Guard);
    const auto now = Clock::now();
    auto wake = Clock::time_point::max();
    for (const WatchRef& watch : Watches) {
        if (watch->IsPending)
            wake = std::min(wake, watch->Due());
        if (watch->IsLooking())
            wake = std::min(wake, watch->NextLook);
    }
    if (wake == Clock::time_point::max())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(wake - now).count();
    return static_cast<int>(std::max<long>(left, 0));
}

WatchRef NotifyService::NextDue() {
    const std::lock_guard hold(Guard);
    const auto now = Clock::now();
    for (const WatchRef& watch : Watches)
        if ((watch->IsPending && watch->Due() <= now) || (watch->IsLooking() && watch->NextLook <= now))
            return watch;
    return nullptr;
}

// Looks again where that is needed and sends the signal. The look is taken without the guard, since
// the disk may be slow to answer and End must not wait for it.
void NotifyService::Attend(const WatchRef& watch) {
    std::unique_lock hold(Guard);
    const bool mustLook = watch->IsPolled || watch->IsDoubtful;
    bool changed = std::exchange(watch->HasChanged, false);
    watch->IsPending = watch->IsDoubtful = false;
    if (mustLook) {
        hold.unlock();
        FileLock own = CurrentDir(watch->From);
        NotifyTarget target = FindNotifyTarget(watch->Path);
        CurrentDir(std::move(own));
        hold.lock();
        if (!watch->IsActive)
            return;
        const TargetStamp& old = watch->Target.Stamp;
        changed = changed || old.IsThere != target.Stamp.IsThere || old.Id != target.Stamp.Id ||
                  (watch->IsPolled && old != target.Stamp);
        Arm(*watch, std::move(target));
    }
    if (changed && watch->IsActive) {
        watch->WasSignalled = true;
        exec::Signal(watch->Task, watch->Signals);
    }
}

void NotifyService::Serve() {
    while (true) {
        std::array<struct pollfd, 2> sources = {{{Inotify.Get(), POLLIN, 0}, {Waker.Get(), POLLIN, 0}}};
        Host().Poll(sources.data(), sources.size(), TimeToSleep());
        std::uint64_t count = 0;
        if (sources[1].revents & POLLIN)
            Host().Read(Waker.Get(), &count, sizeof(count));
        {
            const std::lock_guard hold(Guard);
            if (IsEnding)
                return;
        }
        if (sources[0].revents & POLLIN)
            ReadEvents();
        while (const WatchRef watch = NextDue())
            Attend(watch);
    }
}

bool IsKnownPath(std::string_view path) {
    const std::size_t colon = path.find(':');
    if (colon == 0 || colon == std::string_view::npos || IsKnownDevice(path.substr(0, colon)))
        return true;
    SetIoErr(ErrorDeviceNotMounted);
    return false;
}

} // namespace

Notification::Notification() = default;

Notification::~Notification() {
    End();
}

bool Notification::Start(std::string_view path, exec::Task* task, int signal) {
    End();
    if (!task || signal < 0 || signal > 31 || !IsKnownPath(path))
        return false;
    auto watch = std::make_shared<Watch>();
    watch->Path = path;
    watch->From = CurrentDirLock();
    watch->Task = task;
    watch->Signals = exec::SignalMask{1} << signal;
    if (!NotifyService::Get().Add(watch))
        return false;
    Running = std::move(watch);
    return true;
}

bool Notification::TakeChange() {
    return Running && NotifyService::Get().TakeChange(*Running);
}

void Notification::SetResting(bool resting) {
    if (Running)
        NotifyService::Get().SetResting(*Running, resting);
}

void Notification::End() {
    if (Running)
        NotifyService::Get().Remove(Running);
    Running.reset();
}

} // namespace dos
