// From a path to the places where it may lead on: the device, volume or drawer before the colon,
// one after another for a multi-assign. Private to platform/dos.
#pragma once

#include "platform/dos/Errors.h"
#include "platform/dos/Handler.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

class DeviceWalk {
public:
    // The text of path must outlive the walk.
    explicit DeviceWalk(std::string_view path);

    // Goes to the first place, then to the next. False with IoErr: 232 behind the last one, 218
    // when nobody knows the device. A target that is not there
    // (205) is passed over, any other error of one ends the walk.
    [[nodiscard]] bool Next();

    [[nodiscard]] const LockRef& Start() const noexcept { return Place; }
    [[nodiscard]] const Handler& Owner() const noexcept { return *Place->Owner; }
    [[nodiscard]] std::string_view Rest() const noexcept { return RestText; }
    // Is it one of the places of an assign of that name?
    [[nodiscard]] bool IsOfAssign(std::string_view name) const;

private:
    bool Begin();
    bool BeginAtCurrent(bool atRoot);
    bool BeginAtDevice();
    bool NextTarget();

    std::string_view Device; // without colon
    std::string_view RestText;
    bool HasColon = false;
    bool HasBegun = false;
    LockRef Place;
    std::optional<std::vector<AssignTarget>> Targets;
    std::size_t NextIndex = 0;
};

// Tries a deed at each place of the path until it succeeds or fails with another error than 205.
// deed(walk) gives something that is false on failure. On failure IoErr is that of the last try.
template <typename Deed>
auto AtEachPlace(std::string_view path, Deed deed) {
    const MountLook look;
    DeviceWalk walk(path);
    decltype(deed(walk)) result{};
    long error = 0;
    while (walk.Next()) {
        result = deed(walk);
        if (result)
            return result;
        error = IoErr();
        if (error != ErrorObjectNotFound)
            return result;
    }
    if (IoErr() == ErrorNoMoreEntries)                      // else a target ended the walk
        SetIoErr(error != 0 ? error : ErrorObjectNotFound); // 0: none of the targets is there
    return result;
}

inline constexpr std::size_t LongestPath = 1023; // bytes, what programs have room for

// The same for a deed that changes something. A path that does not fit is refused (120): some
// caller could have cut it, and the deed would hit another object.
template <typename Deed>
auto AtEachPlaceToChange(std::string_view path, Deed deed) {
    if (path.size() <= LongestPath)
        return AtEachPlace(path, deed);
    SetIoErr(ErrorLineTooLong);
    return decltype(AtEachPlace(path, deed)){};
}

// "The handler cannot do that."
inline void RefuseAction() {
    SetIoErr(ErrorActionNotKnown);
}

} // namespace dos
