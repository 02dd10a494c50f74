// The threads that load pictures. They know wishes and blocks of pixels and nothing of what is on show.
// Private to this service.
#pragma once

#include "platform/intuition/WishedImages.h"

#include <QImage>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace intuition {

// Decoded pixels, shared by all wishes that come to the same file in the same state and size.
using ImageBlock = std::shared_ptr<const QImage>;

struct ImageJob {
    std::uint64_t Owner = 0; // who wishes
    std::size_t Slot = 0;
    std::string Key; // of the wish
    ImageWish Wish;
    double Density = 1; // pixels in a layout unit
};

struct FinishedJob {
    std::uint64_t Owner = 0;
    std::size_t Slot = 0;
    std::string Key;
    ImageBlock Block; // null when no step gave a picture
};

// The picture of the wish, on the calling thread.
[[nodiscard]] ImageBlock LoadBlock(const ImageWish& wish, double density);

enum class Urgency { Shown, Checked }; // Checked: shows something already, and waits for all others

// Queues the job, threads are started with the first one. notify is called from any of them when there is
// something to fetch, once until it is fetched.
void QueueImageJob(ImageJob job, Urgency urgency, const std::function<void()>& notify);
// Takes jobs of the owner out of the queue, those for which unwanted is true; returns their slots.
std::vector<std::size_t> DropImageJobs(std::uint64_t owner,
                                       const std::function<bool(std::size_t slot)>& unwanted);
[[nodiscard]] std::vector<FinishedJob> FetchImageJobs();
// Waits until the queue is empty and the threads are idle.
void AwaitImageJobs();
// Ends the threads with what they are at; the rest of the queue is dropped.
void EndImageWorkers();

} // namespace intuition
