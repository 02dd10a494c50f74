// Answers of slow questions, kept for all threads within a bound: when they become too many, those
// that were given longest ago are forgotten together. What is asked and how is the caller's.
#pragma once

#include <mutex>
#include <optional>
#include <shared_mutex>
#include <unordered_map>
#include <utility>

namespace datatypes {

// A generation holds so many answers, and two of them are kept: enough to find a whole large drawer again.
inline constexpr std::size_t AnswersPerGeneration = 16384;

template <typename Key, typename Value, typename Hash = std::hash<Key>>
class RecentAnswers {
public:
    // Anything that the hash takes and that compares with a Key may be asked for.
    template <typename Question>
    [[nodiscard]] std::optional<Value> Find(const Question& question) const {
        const std::shared_lock guard(Lock);
        for (const Generation* generation : {&Young, &Old}) {
            if (const auto place = generation->find(question); place != generation->end()) {
                return place->second;
            }
        }
        return std::nullopt;
    }

    void Keep(Key key, Value value) {
        const std::unique_lock guard(Lock);
        if (Young.size() >= AnswersPerGeneration) {
            Old = std::exchange(Young, {});
        }
        Young.insert_or_assign(std::move(key), std::move(value));
    }

private:
    using Generation = std::unordered_map<Key, Value, Hash, std::equal_to<>>;
    Generation Young;
    Generation Old;
    mutable std::shared_mutex Lock;
};

} // namespace datatypes
