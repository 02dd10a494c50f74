#include "platform/intuition/ImageWorkers.h"

#include "platform/datatypes/LoadPicture.h"
#include "platform/datatypes/Thumbnails.h"
#include "platform/dos/Locks.h"
#include "platform/exec/Tasks.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <unordered_map>

namespace intuition {

namespace {

constexpr unsigned MostThreads = 8;
constexpr std::string_view DensePictures = ".png"; // kind of those that have a twin for dense screens
constexpr std::size_t MostToStore = 64;            // thumbnails that wait for an idle thread

// Blocks that are in use somewhere, by file, state and size.
class KnownBlocks {
public:
    ImageBlock Find(const std::string& key) {
        const std::lock_guard guard(Lock);
        const auto known = Blocks.find(key);
        return known == Blocks.end() ? nullptr : known->second.lock();
    }
    void Keep(const std::string& key, const ImageBlock& block) {
        const std::lock_guard guard(Lock);
        if (Blocks.size() >= CleanAt) {
            std::erase_if(Blocks, [](const auto& row) { return row.second.expired(); });
            CleanAt = std::max<std::size_t>(1024, Blocks.size() * 2);
        }
        Blocks.insert_or_assign(key, block);
    }

private:
    std::mutex Lock;
    std::unordered_map<std::string, std::weak_ptr<const QImage>> Blocks;
    std::size_t CleanAt = 1024;
};
KnownBlocks Known;

struct Workshop {
    // A program that ends without closing its display still ends the threads.
    ~Workshop() {
        {
            const std::lock_guard guard(Lock);
            Ending = true;
        }
        Changed.notify_all();
        Threads.clear();
    }

    std::mutex Lock;
    std::condition_variable Changed;
    std::vector<ImageJob> Shown; // the newest is the last
    std::deque<ImageJob> Checked;
    std::deque<datatypes::NewThumbnail> ToStore;
    std::vector<FinishedJob> Finished;
    std::function<void()> Notify;
    bool Notified = false, Ending = false;
    unsigned Busy = 0;
    std::vector<std::unique_ptr<exec::ChildTask>> Threads;
};
Workshop Shop;

std::uint32_t Pixels(int units, double density) {
    return static_cast<std::uint32_t>(std::clamp(std::lround(units * density), 1L, 4096L));
}

ImageBlock MakeBlock(const datatypes::Picture& picture, double density) {
    const QImage plain(reinterpret_cast<const uchar*>(picture.Pixels.data()), static_cast<int>(picture.Width),
                       static_cast<int>(picture.Height), QImage::Format_ARGB32);
    QImage image = plain.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return nullptr;
    image.setDevicePixelRatio(density);
    return std::make_shared<const QImage>(std::move(image));
}

void KeepForStore(datatypes::NewThumbnail thumbnail) {
    const std::lock_guard guard(Shop.Lock);
    if (Shop.ToStore.size() < MostToStore && !Shop.Threads.empty())
        Shop.ToStore.push_back(std::move(thumbnail));
}

std::optional<datatypes::Picture> Load(const ImageStep& step, const datatypes::PictureBox& box) {
    if (step.From == ImageStep::Source::File)
        return datatypes::LoadImageFile(step.Path, box);
    datatypes::Thumbnail thumbnail = datatypes::LoadThumbnail(step.Path, box);
    if (thumbnail.ToStore)
        KeepForStore(std::move(*thumbnail.ToStore));
    return std::move(thumbnail.Shown);
}

// On a dense screen the picture that was made for such beside the one that is asked for.
ImageStep DenseStep(const ImageStep& step, double density) {
    const std::size_t suffix = step.Path.size() - std::min(step.Path.size(), DensePictures.size());
    if (density <= 1 || step.From != ImageStep::Source::File || step.Path.substr(suffix) != DensePictures)
        return step;
    ImageStep dense = step;
    dense.Path.insert(suffix, "@2x");
    return datatypes::StateOfFile(dense.Path).empty() ? step : dense;
}

ImageBlock LoadStep(const ImageStep& asked, const ImageWish& wish, double density) {
    if (asked.Path.empty() || (!asked.OnlyIf.empty() && datatypes::StateOfFile(asked.OnlyIf).empty()))
        return nullptr;
    const ImageStep step = DenseStep(asked, density);
    const std::string state = datatypes::StateOfFile(step.Path);
    if (state.empty())
        return nullptr;
    const datatypes::PictureBox box{Pixels(wish.Width, density), Pixels(wish.Height, density)};
    const std::string key = step.Path + '\n' + state + '\n' + std::to_string(box.Width) + 'x' +
                            std::to_string(box.Height) + '\n' + std::to_string(density);
    if (ImageBlock known = Known.Find(key))
        return known;
    const std::optional<datatypes::Picture> picture = Load(step, box);
    ImageBlock block = picture ? MakeBlock(*picture, density) : nullptr;
    if (block)
        Known.Keep(key, block);
    return block;
}

void Finish(FinishedJob finished) {
    const std::lock_guard guard(Shop.Lock);
    Shop.Finished.push_back(std::move(finished));
    if (!Shop.Notified && !Shop.Ending) {
        Shop.Notified = true;
        Shop.Notify();
    }
}

bool HasWork() {
    return Shop.Ending || !Shop.Shown.empty() || !Shop.Checked.empty() || !Shop.ToStore.empty();
}

std::optional<ImageJob> TakeJob() {
    std::optional<ImageJob> job;
    if (!Shop.Shown.empty()) {
        job = std::move(Shop.Shown.back());
        Shop.Shown.pop_back();
    } else if (!Shop.Checked.empty()) {
        job = std::move(Shop.Checked.front());
        Shop.Checked.pop_front();
    }
    return job;
}

// Does one thing, without the lock; what people wait for comes first.
void DoNext(std::unique_lock<std::mutex>& guard) {
    std::optional<ImageJob> job = TakeJob();
    std::optional<datatypes::NewThumbnail> toStore;
    if (!job && !Shop.ToStore.empty()) {
        toStore = std::move(Shop.ToStore.front());
        Shop.ToStore.pop_front();
    }
    ++Shop.Busy;
    guard.unlock();
    if (job)
        Finish({job->Owner, job->Slot, std::move(job->Key), LoadBlock(job->Wish, job->Density)});
    if (toStore)
        (void)datatypes::StoreThumbnail(
            *toStore); // a cache that cannot be written is none of the user's worries
    guard.lock();
    --Shop.Busy;
    Shop.Changed.notify_all();
}

void Work() {
    dos::SetRequesters(false);
    std::unique_lock guard(Shop.Lock);
    while (!Shop.Ending) {
        Shop.Changed.wait(guard, HasWork);
        if (!Shop.Ending)
            DoNext(guard);
    }
}

void StartThreads() {
    const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, MostThreads);
    while (Shop.Threads.size() < count) {
        std::unique_ptr<exec::ChildTask> thread = exec::CreateTask("pictures", Work);
        if (thread == nullptr)
            return; // those that are there do it all
        Shop.Threads.push_back(std::move(thread));
    }
}

} // namespace

ImageBlock LoadBlock(const ImageWish& wish, double density) {
    try {
        for (const ImageStep& step : wish.Steps)
            if (ImageBlock block = LoadStep(step, wish, density))
                return block;
    } catch (const std::bad_alloc&) {
        // No memory for this picture: the fallback shows.
    }
    return nullptr;
}

void QueueImageJob(ImageJob job, Urgency urgency, const std::function<void()>& notify) {
    const std::lock_guard guard(Shop.Lock);
    Shop.Notify = notify;
    StartThreads();
    if (urgency == Urgency::Shown)
        Shop.Shown.push_back(std::move(job));
    else
        Shop.Checked.push_back(std::move(job));
    Shop.Changed.notify_one();
}

std::vector<std::size_t> DropImageJobs(std::uint64_t owner,
                                       const std::function<bool(std::size_t slot)>& unwanted) {
    const std::lock_guard guard(Shop.Lock);
    std::vector<std::size_t> dropped;
    const auto drops = [&](const ImageJob& job) {
        if (job.Owner != owner || !unwanted(job.Slot))
            return false;
        dropped.push_back(job.Slot);
        return true;
    };
    std::erase_if(Shop.Shown, drops);
    std::erase_if(Shop.Checked, drops);
    return dropped;
}

std::vector<FinishedJob> FetchImageJobs() {
    const std::lock_guard guard(Shop.Lock);
    Shop.Notified = false;
    return std::exchange(Shop.Finished, {});
}

void AwaitImageJobs() {
    std::unique_lock guard(Shop.Lock);
    Shop.Changed.wait(guard, [] {
        const bool idle =
            Shop.Shown.empty() && Shop.Checked.empty() && Shop.ToStore.empty() && Shop.Busy == 0;
        return Shop.Threads.empty() || idle;
    });
}

void EndImageWorkers() {
    std::vector<std::unique_ptr<exec::ChildTask>> threads;
    {
        const std::lock_guard guard(Shop.Lock);
        Shop.Ending = true;
        threads.swap(Shop.Threads);
        Shop.Changed.notify_all();
    }
    threads.clear(); // waits for each
    const std::lock_guard guard(Shop.Lock);
    Shop.Shown.clear();
    Shop.Checked.clear();
    Shop.ToStore.clear();
    Shop.Finished.clear();
    Shop.Notified = Shop.Ending = false;
}

} // namespace intuition
