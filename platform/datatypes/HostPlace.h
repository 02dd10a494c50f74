// Questions about files by AmigaDOS path that are answered by host path, with a limit where the disk may
// never answer. Private to platform/datatypes.
#pragma once

#include "platform/dos/Limits.h"
#include "platform/dos/Locks.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace datatypes {

// While many files are looked at nobody is asked for missing volumes: the question would come from a helper
// thread, and once per file.
class NoRequesters {
public:
    NoRequesters() : Before(dos::SetRequesters(false)) {}
    NoRequesters(const NoRequesters&) = delete;
    NoRequesters& operator=(const NoRequesters&) = delete;
    ~NoRequesters() { dos::SetRequesters(Before); }

private:
    bool Before;
};

// Where an object lies and whether it may be asked without a limit.
struct HostPlace {
    std::string Path;
    std::string SlowMount; // empty: on a disk that answers
};

// The place of what the path leads to; nothing with IoErr.
[[nodiscard]] std::optional<HostPlace> FindObject(std::string_view path);
// The same for a host path, as it stands.
[[nodiscard]] HostPlace PlaceOf(std::string hostPath);

// Asks at that place; an empty result with IoErr 226 when the disk does not answer in time. The question may
// be left behind hanging, so it holds only what it owns.
template <typename Result>
Result AskAt(const HostPlace& place,
             const std::function<Result(const std::string& hostPath, dos::Progress& progress)>& ask) {
    if (place.SlowMount.empty()) {
        dos::Progress nobodyWaits;
        return ask(place.Path, nobodyWaits);
    }
    return dos::AskWithLimit<Result>(
        place.SlowMount, [ask, path = place.Path](dos::Progress& progress) { return ask(path, progress); });
}

} // namespace datatypes
