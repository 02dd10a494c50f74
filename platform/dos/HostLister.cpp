#include "platform/dos/HostLister.h"

#include "platform/dos/Listing.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <fcntl.h>
#include <system_error>
#include <thread>

namespace dos {

namespace {

constexpr std::size_t LargeDrawer = 1024; // entries from which on help pays
constexpr unsigned MostHelpers = 2;       // threads
constexpr std::size_t SlicesPerCall = 16; // after which helpers are called again

// The threads that examine ahead, made when the first large drawer is listed.
class Helpers {
public:
    static Helpers& Get() {
        static Helpers helpers;
        return helpers;
    }
    ~Helpers();
    void Call(const std::shared_ptr<Listing>& listing);

private:
    Helpers();
    void Serve();

    std::mutex Guard;
    std::condition_variable Called;
    std::deque<std::shared_ptr<Listing>> Waiting;
    bool IsEnding = false;
    std::vector<std::thread> Threads;
};

Helpers::Helpers() {
    const unsigned wanted = std::clamp(std::thread::hardware_concurrency(), 1u, MostHelpers);
    try {
        while (Threads.size() < wanted)
            Threads.emplace_back([this] { Serve(); });
    } catch (const std::system_error&) {
        // The listing thread does what helpers do not.
    }
}

Helpers::~Helpers() {
    {
        const std::lock_guard hold(Guard);
        IsEnding = true;
        Waiting.clear();
    }
    Called.notify_all();
    for (std::thread& thread : Threads)
        thread.join();
}

void Helpers::Call(const std::shared_ptr<Listing>& listing) {
    {
        const std::lock_guard hold(Guard);
        if (Waiting.size() < Threads.size())
            Waiting.push_back(listing);
    }
    Called.notify_all();
}

// A helper's own current directory is the drawer, since attributes of entries are asked by path on
// older hosts. While idle it stands in the root, so that no disk is kept busy.
void Helpers::Serve() {
    const HostFd root(Host().Openat(AT_FDCWD, "/", O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    const bool hasOwnDirectory = root && Host().UnshareDirectory() == 0;
    while (true) {
        std::shared_ptr<Listing> listing;
        {
            std::unique_lock hold(Guard);
            Called.wait(hold, [this] { return IsEnding || !Waiting.empty(); });
            if (IsEnding)
                return;
            listing = std::move(Waiting.front());
            Waiting.pop_front();
        }
        const bool isThere = hasOwnDirectory && Host().Fchdir(listing->Drawer()) == 0;
        while (listing->WorkOnNext(isThere ? AT_FDCWD : listing->Drawer(), nullptr)) {
        }
        if (isThere)
            Host().Fchdir(root.Get());
    }
}

class HostLister final : public Lister {
public:
    HostLister(std::shared_ptr<Listing> source, std::string slowMount)
        : Source(std::move(source)), SlowMount(std::move(slowMount)) {}
    ~HostLister() override { Source->Cancel(); }

    bool Next(ExamineData& object) override;

private:
    bool BeginSlice();
    bool FinishSlice();

    std::shared_ptr<Listing> Source;
    std::string SlowMount;
    Slice* Current = nullptr;
    std::size_t NextSlice = 0;
    std::size_t Entry = 0; // in the current slice
};

bool HostLister::FinishSlice() {
    if (SlowMount.empty()) {
        if (Source->EntryCount() >= LargeDrawer && NextSlice % SlicesPerCall == 0)
            Helpers::Get().Call(Source);
        Source->Finish(NextSlice, nullptr);
        return true;
    }
    return AskWithLimit<bool>(SlowMount, [source = Source, slice = NextSlice](Progress& progress) {
        source->Finish(slice, &progress);
        return true;
    });
}

bool HostLister::BeginSlice() {
    if (Current)
        Source->Release(NextSlice - 1);
    Current = nullptr;
    if (NextSlice >= Source->SliceCount()) {
        const int error = Source->ReadError();
        SetIoErr(error ? ErrorFromErrno(error, Operation::Read) : ErrorNoMoreEntries);
        return false;
    }
    if (!FinishSlice())
        return false;
    Current = &Source->At(NextSlice++);
    Entry = 0;
    return true;
}

bool HostLister::Next(ExamineData& object) {
    while (true) {
        while (!Current || Entry == Current->Records.size())
            if (!BeginSlice())
                return false;
        const std::size_t at = Entry++;
        if (Current->Records[at].IsGone || Current->Records[at].IsSidecar ||
            Source->IsTemporaryAt(*Current, at))
            continue;
        Source->GiveShownName(*Current, at, object.Name);
        FillExamineData(std::move(Current->Records[at]), object);
        return true;
    }
}

using ListingRef = std::shared_ptr<Listing>;

ListingRef BeginListing(const HostLock& drawer, Progress* progress) {
    HostFd open = OpenForListing(drawer.Object.Get());
    if (!open) {
        SetIoErr(ErrorFromErrno(errno, errno == EACCES ? Operation::Read : Operation::Lookup));
        return nullptr;
    }
    auto listing = std::make_shared<Listing>(std::move(open), drawer.On->Info.Metadata);
    listing->ReadNames(progress);
    return listing;
}

} // namespace

std::unique_ptr<Lister> ListHostDrawer(const HostLockRef& drawer) {
    if (!IsMounted(*drawer))
        return nullptr;
    if (!IsDrawerMode(drawer->Facts.Mode)) {
        SetIoErr(ErrorObjectWrongType);
        return nullptr;
    }
    ListingRef listing = drawer->SlowMount.empty()
                             ? BeginListing(*drawer, nullptr)
                             : AskWithLimit<ListingRef>(drawer->SlowMount, [drawer](Progress& progress) {
                                   return BeginListing(*drawer, &progress);
                               });
    if (!listing)
        return nullptr;
    return std::make_unique<HostLister>(std::move(listing), drawer->SlowMount);
}

} // namespace dos
