// The other windows of the program, which are instances of their own: how they are found, sent away and
// placed on the screen. They are told by ARexx commands and act in their own time; nothing here waits for an
// answer.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace solvane {

enum class Arrangement : std::uint16_t { Cascade, Vertical, Horizontal, FourCorners };

// A part of the work area's width and height; what it is parted into is rounded first.
struct ScreenPart {
    int Parts, Of;
};

// The number of the instance whose ARexx port that is; nothing when it is not one.
[[nodiscard]] std::optional<std::uint32_t> InstanceOfPort(std::string_view port);

// What a round of ending does. Each other instance is told once, for it may ask its user, who is not to be
// asked again. Instance 1 is not waited for.
struct QuitRound {
    std::vector<std::string> ToTell{}; // ports
    bool SomeAreAwaited = false;
};
// The round for the ports that there are; notes in told whom it tells.
[[nodiscard]] QuitRound NextQuitRound(const std::vector<std::string>& ports, std::set<std::string>& told);

// Ends all other instances; their preferences are not saved. Those that still run after five seconds are left
// to themselves.
void CloseAllButThisWindow();

// Which box the window of that place in the row, from 0, is given.
[[nodiscard]] intuition::Box TileOf(Arrangement how, const intuition::Box& workArea, std::size_t place);
[[nodiscard]] intuition::Box CascadeBox(const intuition::Box& own, int rank);
[[nodiscard]] intuition::Box CentredBox(const intuition::Box& workArea, int width, int height);
[[nodiscard]] intuition::Box BoxOfPart(const intuition::Box& workArea, ScreenPart part);

// Places the windows of all instances and brings them to the front. A cascade starts from this window, which
// stays.
void ArrangeWindows(Arrangement how);

// For this window; nothing while it is closed.
void CenterWindow();
void SizeToPartOfScreen(ScreenPart part);
// Fills the screen, or goes back to the box that the window had. The stored box stands still meanwhile.
void FullScreen();

} // namespace solvane
