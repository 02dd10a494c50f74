// Notices on the user's desktop, and his pick of one. Without a session bus, or with nobody on it who shows
// notices, nothing happens.
#pragma once

#include "platform/exec/Tasks.h"

#include <memory>
#include <string>

namespace application {

struct Notice {
    std::string Title{};
    std::string Text{};         // data: no markup in it counts
    std::string Image{};        // host path of a picture; may be empty
    bool BringsToFront = false; // a pick of the notice sets the signal
};

// The way to the desktop. It takes a signal of the task that makes it, and must go before the display is
// closed.
class NoticeBoard {
public:
    // program: the name under which notices appear, and that of the desktop entry.
    NoticeBoard(const std::string& program, const std::string& desktopEntry);
    ~NoticeBoard();
    NoticeBoard(const NoticeBoard&) = delete;
    NoticeBoard& operator=(const NoticeBoard&) = delete;

    // Returns at once, whatever the bus does. Of many notices that the desktop does not take in time some are
    // dropped.
    void Post(const Notice& notice);

    // Set when the user has picked a notice that brings to front; 0 when no signal was free.
    [[nodiscard]] exec::SignalMask Mask() const { return Signal >= 0 ? exec::SignalMask{1} << Signal : 0; }

private:
    class Clerk; // does the talking on a thread of its own

    int Signal;
    std::unique_ptr<Clerk> Behind;
};

} // namespace application
