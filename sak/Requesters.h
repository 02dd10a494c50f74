// Requesters and the blocking of windows, as the rest of the program asks for them. How they look,
// and who answers in a test, is intuition's matter.
#pragma once

#include "platform/dos/Locks.h"
#include "platform/intuition/Requesters.h"
#include "sak/Format.h"
#include "sak/Text.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

namespace intuition {
class Window;
}

namespace solvane {

using intuition::RequesterImage;

inline constexpr std::size_t RequesterTextLimit = 2047; // bytes of a requester's text, cut at a character

// --- State ---

extern Text<100> RequesterTitle; // "Solvane": title of every requester; written at start
extern std::uint16_t
    SAK_AutoLockWindow; // a requester blocks its window while it is up; set once windows work
extern long SAK_IOErr;  // the code that SAK_IOError shows; written by whoever failed

// --- Requesters ---

// Shows a text that is complete already; a "%" in it is data. gadgets: "_Yes|_No|_Cancel". The
// result is the number of the gadget from 1, 0 for the last one, -1 when the requester could not
// open. A null window stands for the active one.
int SAK_EasyRequest(intuition::Window* window, std::string_view title, RequesterImage image,
                    std::string_view text, std::string_view gadgets);

// The same with arguments for the conversions of the format.
int SAK_EasyRequestArgs(intuition::Window* window, std::string_view title, RequesterImage image,
                        std::string_view format, std::string_view gadgets,
                        std::span<const FormatArg> arguments);
template <class First, class... Rest>
int SAK_EasyRequest(intuition::Window* window, std::string_view title, RequesterImage image,
                    std::string_view format, std::string_view gadgets, const First& first,
                    const Rest&... rest) {
    const std::initializer_list<FormatArg> list{FormatArg(first), FormatArg(rest)...};
    return SAK_EasyRequestArgs(window, title, image, format, gadgets, {list.begin(), list.size()});
}

// The requester of a failed dos call, with an error image: text (may be empty), then label ("DOS
// error message:") and what SAK_IOErr means. Result as above.
int SAK_IOError(intuition::Window* window, std::string_view title, std::string_view text,
                std::string_view label, std::string_view gadgets);

// --- The system's own requesters ("Please insert volume ..."), of the calling thread ---

void DisableRequesters();
void EnableRequesters();

// From now on a path on a volume that is not there has the user of the calling thread asked for it, until
// the object is gone; other threads, and paths met while a question is up, go without.
class MissingVolumeRequests {
public:
    MissingVolumeRequests();
    MissingVolumeRequests(const MissingVolumeRequests&) = delete;
    MissingVolumeRequests& operator=(const MissingVolumeRequests&) = delete;
    ~MissingVolumeRequests();
};

// No such requester for the life of the object; what was in force before comes back.
class WithoutRequesters {
public:
    WithoutRequesters() : Before(dos::SetRequesters(false)) {}
    WithoutRequesters(const WithoutRequesters&) = delete;
    WithoutRequesters& operator=(const WithoutRequesters&) = delete;
    ~WithoutRequesters() { dos::SetRequesters(Before); }

private:
    bool Before;
};

// --- Windows ---

// 1 blocks the window's input, 0 ends one block, -1 ends all; blocks nest. Nothing for a null
// window.
void SAK_BlockWindow(intuition::Window* window, int depth);

} // namespace solvane
