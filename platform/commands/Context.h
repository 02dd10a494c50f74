// What a drawer command runs in: where its words go, how it is broken off, how it tells of failures. Nothing
// here knows whether a terminal, a file or a test stands behind the streams.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace dos {
class FileHandle;
}

namespace commands {

inline constexpr int ReturnOk = 0;
inline constexpr int ReturnWarn = 5;
inline constexpr int ReturnError = 10;
inline constexpr int ReturnFail = 20;

struct Context {
    // Takes all of the bytes; false with IoErr ends the command.
    std::function<bool(std::string_view bytes)> Output;
    // Where complaints go; not set: to Output.
    std::function<bool(std::string_view bytes)> ErrorOutput;
    // The next line of the input without its end, nothing at the end. Not set: there is no input.
    std::function<std::optional<std::string>()> Input;
    // For programs, which read for themselves: the stream behind Input, standing where Input would go on. Not
    // set: that of the process where HasOwnInput says so, else there is none.
    std::function<dos::FileHandle*()> InputFile{};
    bool HasOwnInput = false;
    // Puts a question to a person and gives the line of the answer, nothing at the end of the input and after
    // a break. Not set: nobody is there.
    std::function<std::optional<std::string>(std::string_view question)> Ask{};
    // Whether the command is to break off. Not set: never.
    std::function<bool()> Stop;
    // Waits that long, or until Stop; not set: waits are over at once.
    std::function<void(std::uint32_t milliseconds)> Pause;
    // Set while the outputs are those of the process, which programs then share: writes out what is waiting.
    std::function<bool()> FlushOwn;
    bool IsTerminal = false; // a terminal shows the output: control characters in names are not sent to it

    std::string Name{};       // of the running command
    long OutputError = 0;     // why the output does not take any more; 0 while it does
    int LastCode = 0;         // return code of the line before, $RC
    long LastError = 0;       // its error, $Result2
    unsigned ScriptDepth = 0; // scripts that run within each other
};

// Text to the output.
void Print(Context& context, std::string_view text);
void PrintLine(Context& context, std::string_view text);

// Whether the command is to end now, with IoErr: 304 after a break, else why the output takes no more.
// Commands ask before each object.
[[nodiscard]] bool IsStopped(Context& context);

// Tells of the failure in IoErr: "List: Work:x: object not found", or "***Break". Gives the return code for
// it, 10 or, when nothing more can be done, 20.
int Complain(Context& context, std::string_view about = {});
// The same with words of its own.
int ComplainWith(Context& context, std::string_view about, std::string_view text);

// Is it the reason of a failure that the disk is full, gone or not to be written? Then the next objects
// would fail likewise.
[[nodiscard]] bool ConcernsDisk(long error) noexcept;

// A name or path as it can be shown: control characters become "?" on a terminal.
[[nodiscard]] std::string Shown(const Context& context, std::string_view name);

// text filled up with blanks to so many characters; longer ones stay whole.
[[nodiscard]] std::string PadRight(std::string_view text, std::size_t characters);
[[nodiscard]] std::string PadLeft(std::string_view text, std::size_t characters);

} // namespace commands
