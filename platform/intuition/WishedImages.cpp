#include "platform/intuition/WishedImages.h"

#include "platform/intuition/ImageWorkers.h"
#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/Native.h"

#include <QGuiApplication>
#include <QMetaObject>

#include <list>
#include <unordered_map>
#include <utility>

namespace intuition {

namespace {

constexpr std::size_t MostKeptBytes = std::size_t{64} * 1024 * 1024;
constexpr std::size_t MostKeptWishes = 50'000;

// A wish that was fulfilled, or could not be: then the id is None.
struct Fulfilled {
    std::string Key;
    ImageBlock Block;
    ImageId Image = ImageId::None;
};
using FulfilledPtr = std::shared_ptr<const Fulfilled>;

// Ids of blocks, and of those that are kept the bytes. One id for all wishes with the same block.
class BlockIds {
public:
    ImageId Use(const ImageBlock& block) {
        if (block == nullptr)
            return ImageId::None;
        Row& row = Rows[block.get()];
        if (row.Uses++ == 0) {
            row.Id = KeepPicture(QPixmap::fromImage(*block));
            Bytes += static_cast<std::size_t>(block->sizeInBytes());
        }
        return row.Id;
    }
    void EndUse(const ImageBlock& block) {
        const auto known = Rows.find(block.get());
        if (known == Rows.end() || --known->second.Uses > 0)
            return;
        ReleaseImage(known->second.Id);
        Bytes -= static_cast<std::size_t>(block->sizeInBytes());
        Rows.erase(known);
    }
    [[nodiscard]] std::size_t KeptBytes() const { return Bytes; }

private:
    struct Row {
        ImageId Id = ImageId::None;
        std::size_t Uses = 0;
    };
    std::unordered_map<const QImage*, Row> Rows;
    std::size_t Bytes = 0;
};

// Wishes in the order in which they were drawn, the last one first.
class KeptWishes {
public:
    FulfilledPtr Find(const std::string& key) {
        const auto known = ByKey.find(key);
        if (known == ByKey.end())
            return nullptr;
        Order.splice(Order.begin(), Order, known->second);
        return Order.front();
    }
    void Touch(const FulfilledPtr& wish) { (void)Find(wish->Key); }
    FulfilledPtr Keep(std::string key, ImageBlock block) {
        if (const auto known = ByKey.find(key); known != ByKey.end()) {
            if ((*known->second)->Block == block)
                return *known->second;
            Drop(known->second);
        }
        const ImageId id = Ids.Use(block);
        Order.push_front(std::make_shared<const Fulfilled>(Fulfilled{key, std::move(block), id}));
        ByKey.emplace(std::move(key), Order.begin());
        while ((Ids.KeptBytes() > MostKeptBytes || Order.size() > MostKeptWishes) && Order.size() > 1)
            Drop(std::prev(Order.end()));
        return Order.front();
    }
    void Clear() {
        while (!Order.empty())
            Drop(Order.begin());
    }

private:
    using Place = std::list<FulfilledPtr>::iterator;
    void Drop(Place place) {
        Ids.EndUse((*place)->Block);
        ByKey.erase((*place)->Key);
        Order.erase(place);
    }

    std::list<FulfilledPtr> Order;
    std::unordered_map<std::string, Place> ByKey;
    BlockIds Ids;
};
KeptWishes Kept;

// Wishes can be made before there is a window system.
double DensityNow() {
    return qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
}

std::string KeyOf(const ImageWish& wish, double density) {
    std::string key =
        std::to_string(wish.Width) + 'x' + std::to_string(wish.Height) + '*' + std::to_string(density);
    for (const ImageStep& step : wish.Steps) {
        key += step.From == ImageStep::Source::File ? "\nF" : "\nT";
        key.append(step.Path).append("\n?").append(step.OnlyIf);
    }
    return key;
}

} // namespace

struct WishedImages::Slots {
    // A slot whose wish is no longer kept asks again when it is drawn.
    struct Slot {
        bool Asked = false;
        ImageId Fallback = ImageId::None;
        std::weak_ptr<const Fulfilled> Picture;
    };

    explicit Slots(Hooks hooks) : View(std::move(hooks)), Number(++LastNumber) {
        Living.emplace(Number, this);
    }
    Slots(const Slots&) = delete;
    Slots& operator=(const Slots&) = delete;
    ~Slots() {
        Living.erase(Number);
        DropAll();
    }
    void DropAll() const {
        (void)DropImageJobs(Number, [](std::size_t) { return true; });
    }
    void Ask(std::size_t slot, ImageWish wish, std::string key, double density, Urgency urgency) {
        for (const std::size_t gone :
             DropImageJobs(Number, [this](std::size_t other) { return !View.IsOnScreen(other); }))
            ByNumber[gone].Asked = false;
        QueueImageJob({Number, slot, std::move(key), std::move(wish), density}, urgency, NotifyHere);
    }
    void Receive(std::size_t slot, const FulfilledPtr& picture) {
        const auto known = ByNumber.find(slot);
        if (known == ByNumber.end())
            return; // forgotten meanwhile
        known->second.Asked = false;
        if (std::exchange(known->second.Picture, picture).lock() != picture)
            View.Redraw(slot);
    }
    static void NotifyHere() { QMetaObject::invokeMethod(qGuiApp, Deliver, Qt::QueuedConnection); }
    static void Deliver() {
        for (FinishedJob& job : FetchImageJobs()) {
            const FulfilledPtr picture = Kept.Keep(std::move(job.Key), std::move(job.Block));
            if (const auto owner = Living.find(job.Owner); owner != Living.end())
                owner->second->Receive(job.Slot, picture);
        }
    }

    Hooks View;
    std::uint64_t Number; // never used again, so that late answers find nobody
    std::unordered_map<std::size_t, Slot> ByNumber;

    static inline std::uint64_t LastNumber = 0;
    static inline std::unordered_map<std::uint64_t, Slots*> Living;
};

WishedImages::WishedImages(Hooks hooks) : Own(std::make_unique<Slots>(std::move(hooks))) {}

WishedImages::WishedImages(ListBrowser& rows)
    : WishedImages({[&rows](std::size_t row) { rows.RefreshRow(row); },
                    [&rows](std::size_t row) {
                        const std::size_t top = rows.Top();
                        return row >= top && row <= top + rows.VisibleRows() + 1;
                    }}) {}

WishedImages::~WishedImages() = default;

ImageId WishedImages::Image(std::size_t slot, const std::function<ImageWish()>& wish) {
    const auto known = Own->ByNumber.find(slot);
    if (known != Own->ByNumber.end()) {
        if (const FulfilledPtr picture = known->second.Picture.lock()) {
            Kept.Touch(picture);
            return picture->Image != ImageId::None ? picture->Image : known->second.Fallback;
        }
        if (known->second.Asked)
            return known->second.Fallback;
    }
    ImageWish wanted = wish();
    const ImageId fallback = wanted.Fallback;
    if (!Own->View.IsOnScreen(slot) || wanted.Steps.empty())
        return fallback;
    const double density = DensityNow();
    std::string key = KeyOf(wanted, density);
    const FulfilledPtr kept = Kept.Find(key);
    Own->ByNumber.insert_or_assign(slot, Slots::Slot{true, fallback, kept});
    Own->Ask(slot, std::move(wanted), std::move(key), density, kept ? Urgency::Checked : Urgency::Shown);
    return kept && kept->Image != ImageId::None ? kept->Image : fallback;
}

void WishedImages::Forget(std::size_t slot) {
    Own->ByNumber.erase(slot);
    (void)DropImageJobs(Own->Number, [slot](std::size_t other) { return other == slot; });
}

void WishedImages::Clear() {
    Own->ByNumber.clear();
    Own->DropAll();
}

ImageId LoadImage(const ImageWish& wish) {
    if (const ImageBlock block = LoadBlock(wish, DensityNow()))
        return KeepPicture(QPixmap::fromImage(*block));
    RetainImage(wish.Fallback);
    return wish.Fallback;
}

void FinishWishedImages() {
    AwaitImageJobs();
    WishedImages::Slots::Deliver();
}

void ForgetWishedImages() {
    EndImageWorkers();
    Kept.Clear();
}

} // namespace intuition
