// How full volumes are, asked on threads of its own: a disk that does not answer holds nobody up.
#pragma once

#include "platform/dos/Info.h"
#include "platform/exec/Tasks.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dos {

struct VolumeQuestion {
    std::string Device;
    std::string Volume = {}; // what is in it now, as the asker calls it; comes back with the answer
};

struct VolumeAnswer {
    std::string Device, Volume;   // as they were asked for
    std::optional<InfoData> Info; // nothing: the volume does not answer, or is not there
};

// Belongs to one task. When it goes, answers under way concern nobody any more.
class VolumeQuestions {
public:
    VolumeQuestions();
    VolumeQuestions(const VolumeQuestions&) = delete;
    VolumeQuestions& operator=(const VolumeQuestions&) = delete;
    ~VolumeQuestions();

    // From now on answers that come after Ask has returned set these signals of the task. Null: nobody is
    // told.
    void SetListener(exec::Task* task, exec::SignalMask signals);

    // Asks all of them at once, waits for them at most so long, and gives the answers there are. A device
    // whose last question still hangs is not asked again, nor waited for.
    [[nodiscard]] std::vector<VolumeAnswer> Ask(const std::vector<VolumeQuestion>& questions,
                                                std::chrono::milliseconds limit);
    // The answers that have come since.
    [[nodiscard]] std::vector<VolumeAnswer> Take();

private:
    struct Board;
    std::shared_ptr<Board> Shared;
};

} // namespace dos
