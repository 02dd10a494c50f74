#include "platform/dos/Limits.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

namespace dos {

namespace {

struct Question {
    std::mutex Guard;
    std::condition_variable Ended;
    bool Done = false;
    Progress Beats;
};

// Keys with a question that was given up and still hangs. It outlives main for threads that come
// back late.
struct HungKeys {
    std::mutex Guard;
    std::multiset<std::string> Keys;
};

const std::shared_ptr<HungKeys>& Hung() {
    static const auto keys = std::make_shared<HungKeys>();
    return keys;
}

bool IsHung(const std::string& key) {
    const std::lock_guard hold(Hung()->Guard);
    return Hung()->Keys.contains(key);
}

// Waits as long as the work makes progress; true when it has ended.
bool WaitForEnd(Question& question) {
    std::unique_lock hold(question.Guard);
    unsigned seen = question.Beats.Count();
    while (!question.Ended.wait_for(hold, std::chrono::milliseconds(AnswerLimitMilliseconds),
                                    [&] { return question.Done; })) {
        if (question.Beats.Count() == seen && question.Beats.GiveUp())
            return false;
        seen = question.Beats.Count();
    }
    return true;
}

// True when the work has ended within the limit.
bool Run(const std::string& key, std::function<void(Progress&)> work) {
    auto question = std::make_shared<Question>();
    auto givenUp = std::make_shared<bool>(false); // under question->Guard
    try {
        std::thread([question, givenUp, key, hung = Hung(), job = std::move(work)] {
            job(question->Beats);
            const std::lock_guard hold(question->Guard);
            question->Done = true;
            question->Ended.notify_all();
            if (*givenUp) {
                const std::lock_guard holdKeys(hung->Guard);
                hung->Keys.erase(hung->Keys.find(key));
            }
        }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    if (WaitForEnd(*question))
        return true;
    const std::lock_guard hold(question->Guard);
    if (question->Done)
        return true;
    *givenUp = true;
    const std::lock_guard holdKeys(Hung()->Guard);
    Hung()->Keys.insert(key);
    return false;
}

} // namespace

bool RunWithLimit(const std::string& key, std::function<void(Progress&)> work) {
    return !IsHung(key) && Run(key, std::move(work));
}

void EndWithLimit(const std::string& key, std::function<void(Progress&)> work) {
    if (!IsHung(key)) {
        static_cast<void>(Run(key, std::move(work)));
        return;
    }
    try {
        std::thread([job = std::move(work)] {
            Progress unseen;
            job(unseen);
        }).detach();
    } catch (const std::system_error&) {
        // The process is at its end anyway when it cannot have another thread.
    }
}

} // namespace dos
