// Questions to the user. All go through one seam, so that tests and runs without a window can script the
// answers.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace intuition {

class Window;

enum class RequesterImage : std::uint16_t { None = 0, Information = 1, Warning = 2, Error = 3, Question = 4 };

struct EasyRequestSpec {
    std::string Title;
    std::string Text; // plain; newlines separate lines
    RequesterImage Image = RequesterImage::Information;
    std::vector<std::string> Gadgets; // "_" marks the key; none at all shows "_OK"
};

// Asks and waits; meanwhile the parent is blocked and everything is drawn. The result is 1, 2 ... in the
// order of the gadgets and 0 for the last one, which is also what Escape and the close gadget give; Return
// presses the first. -1: it could not be opened. Without a display the text goes to standard error and the
// answer is 0. A null parent stands for the active window.
[[nodiscard]] int EasyRequest(Window* parent, const EasyRequestSpec& spec);

using RequestHandler = std::function<int(const EasyRequestSpec&)>;
// Answers requesters in the user's place from now on; empty ends that. The old handler comes back.
RequestHandler SetRequestHandler(RequestHandler handler);

} // namespace intuition
