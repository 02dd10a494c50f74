// The requester for a file. It goes through a seam of its own, as the other requesters do.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace intuition {

class Window;

struct FileRequestSpec {
    std::string Title;
    std::string Drawer{}; // where the user begins to look, an AmigaDOS path
};

// Lets the user choose a file that is there and waits, with the parent blocked; null stands for the active
// window. Its AmigaDOS path; nothing when he chooses none, and without a display.
[[nodiscard]] std::optional<std::string> RequestFile(Window* parent, const FileRequestSpec& spec);

using FileRequestHandler = std::function<std::optional<std::string>(const FileRequestSpec&)>;
// Chooses in the user's place from now on; empty ends that. The old handler comes back.
FileRequestHandler SetFileRequestHandler(FileRequestHandler handler);

} // namespace intuition
