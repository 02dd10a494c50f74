// Output of a command that a TO argument leads into a file. Private to platform/commands.
#pragma once

#include "platform/commands/Context.h"
#include "platform/dos/Files.h"

#include <memory>
#include <optional>
#include <string>

namespace commands {

// A stream of dos as the output of a context.
[[nodiscard]] std::function<bool(std::string_view)> OutputTo(std::shared_ptr<dos::FileHandle> file);

// While it lives, what the context prints goes to the file; complaints keep their way. Without a name
// nothing changes.
class TextOutput {
public:
    TextOutput(Context& context, std::optional<std::string> path);
    TextOutput(const TextOutput&) = delete;
    TextOutput& operator=(const TextOutput&) = delete;
    ~TextOutput();

    // Whether the file could be opened; IoErr says why not.
    [[nodiscard]] bool IsOpen() const noexcept;
    // Puts the file under its name; the return code for it, after a complaint where it failed. A file whose
    // output broke off is not kept.
    [[nodiscard]] int Finish();

private:
    void Restore();

    Context& Where;
    std::string Name;
    bool IsFile;
    std::shared_ptr<dos::FileHandle> File;
    Context Before; // the streams to return to
};

} // namespace commands
