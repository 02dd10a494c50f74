// Command lines as a Shell takes them, run in child processes without any shell of the host. Built-in
// commands run in this process; what the line means is decided by CommandLine.h, which program it is by
// CommandSearch.h.
//
// A command of ours gets its words as they were typed, a program of the host its words with a device name in
// front as host paths. Children begin in the current drawer, with the environment of this process, fresh
// signals and no descriptors but their streams.
#pragma once

#include "platform/dos/CommandLine.h"
#include "platform/dos/Files.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

// Takes what a command writes, piece by piece, on a thread of its own and never two at a time; after false
// the command finds its output closed.
using OutputSink = std::function<bool(std::string_view bytes)>;

// One stream of a command; the first that is set counts. None: "NIL:", and for an output the console that the
// input is.
struct SystemStream {
    bool Own = false;             // that of this process
    FileHandle* Handle = nullptr; // stays open with System, is taken over and closed by StartSystem
    OutputSink Sink{};            // of an output
    std::string Name{};           // opened for the command: a file, "NIL:", "CON:..."
    bool Append = false;          // the file called Name is added to
};

// What the program behind "CON:" windows says; English before it is told.
struct ConsoleTexts {
    std::string Language = "english";               // of the menus of its fields, by its English name
    std::string Input = "Input", Output = "Output"; // names of its parts, for screen readers
    std::string Ended = "(ended)";                  // behind the title when nobody uses the console any more
};
// For the windows that open from now on. Any task.
void SetConsoleTexts(ConsoleTexts texts);

struct SystemOptions {
    SystemStream Input{};
    SystemStream Output{};
    std::optional<SystemStream> ErrorOutput{}; // nothing: where the output goes
    // Asked about ten times a second while System waits; true breaks the command.
    std::function<bool()> Stop{};
    // Where inserted texts come from; nothing: ShellSources().
    std::optional<CommandLineSources> Sources{};
    // "NAME=value" each: variables of the host that the command has beyond those of this process.
    std::vector<std::string> Environment{};
    // For StartSystem: called once when the command has ended, on a thread of its own, if it was started.
    std::function<void(long code)> Ended{};
};

// Runs a line and waits for its end; the window of the calling task lives on meanwhile. The result is
// the return code: that of the command; 0 for an empty line; 10 with a message on the output for a command
// that is not found or cannot be run, for a line or stream that is wrong, and for an output that does not
// take what a built-in command writes, with IoErr; 20 with IoErr 304
// for a command that was broken by Stop or by BreakControlC of the calling task (which stays set), 20 with
// IoErr 0 for one that a signal of the host ended; -1 with IoErr when no process could be made.
[[nodiscard]] long System(std::string_view line, const SystemOptions& options = {});

// A command that was started and may run on; a copy stands for the same command.
class SystemJob {
public:
    [[nodiscard]] bool HasEnded() const;
    // Its return code once it has ended.
    [[nodiscard]] long ReturnCode() const;
    // Asks the command and what it has started to end; three seconds later, or at the second call, they are
    // ended by force.
    void Break();

private:
    friend struct Launch;
    std::shared_ptr<class Child> Process; // null: it was a built-in command
    long Code = 0;
};

// Starts a line and returns at once: 0, or the code with which System would fail at its start; the handles
// are closed then too. Programs survive this process.
[[nodiscard]] long StartSystem(std::string_view line, const SystemOptions& options = {},
                               SystemJob* job = nullptr);

// What a line writes, with at most limit bytes of it. Nothing with IoErr: 120 when there is more, else as
// System for a code that is not the command's own.
[[nodiscard]] std::optional<std::string> CommandOutput(std::string_view line, std::size_t limit);

// Variables from ENV: (or else the host's environment) and output of commands, as every line here has them.
[[nodiscard]] CommandLineSources ShellSources();

// Starts a program of the host with these words, the first its name or absolute host path. Nothing in them is
// read as anything but data. False with IoErr: 205 no such program, 305 it cannot be run.
[[nodiscard]] bool StartHostProgram(const std::vector<std::string>& words);

// A command that the process runs itself, found before all programs. It runs on the calling task, gets the
// arguments with quotes and escapes untouched, and gives its code and what it writes.
struct BuiltInResult {
    long Code = 0;
    std::string Output{};
};
using BuiltIn = std::function<BuiltInResult(std::string_view arguments)>;
// An empty function takes the command away. "Run" is there from the start.
void SetBuiltIn(std::string_view name, BuiltIn command);

} // namespace dos
