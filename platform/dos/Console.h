// "CON:left/top/width/height/title/options": a window of its own process in which a command's text stands and
// a person answers. Private to platform/dos and its tests.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

// What stands behind "CON:". An empty number is for the window to choose.
struct ConsoleSpec {
    std::string Left{}, Top{}, Width{}, Height{}; // decimal digits, pixels
    std::string Title{};
    std::vector<std::string> Options{}; // upper case, each known: AUTO, WAIT, INACTIVE, CLOSE, NOCLOSE
};

// Options that only mean something on an Amiga's screens are passed over. Nothing with IoErr 206 for a number
// that is none or too large, or for an option that nobody knows.
[[nodiscard]] std::optional<ConsoleSpec> ParseConsoleSpec(std::string_view text);

// Sleeps until a descriptor can be read (or written); the window of the calling task lives on. False with
// IoErr 304 on BreakControlC, which stays set.
enum class Readiness { Read, Write };
[[nodiscard]] bool AwaitDescriptor(int descriptor, Readiness readiness);

} // namespace dos
