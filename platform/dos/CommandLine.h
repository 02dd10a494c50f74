// One line as it is typed into a Shell: taken apart into the command, its arguments and its redirections, and
// put together from texts that are data. Nothing is looked up, opened or started here.
#pragma once

#include "platform/dos/ReadArgs.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

struct ParsedCommand {
    std::string Command; // the first word, quotes removed; empty for a blank line or a comment
    std::string
        Arguments; // what follows, quotes and escapes untouched, redirections removed; ends in a newline
    std::optional<std::string> Input;       // < name
    std::optional<std::string> Output;      // > name, >> name
    std::optional<std::string> ErrorOutput; // *> name, *>> name
    bool Append = false;                    // Output is added to
    bool ErrorAppend = false;               // ErrorOutput is added to
    bool OneStream = false;                 // <> name: Input and Output are one and the same stream
};

// Where inserted texts come from. What they give is inserted as it is (newlines as blanks, those at the end
// dropped) and never read as redirection, comment or another insertion.
struct CommandLineSources {
    // The value of $name or ${name}. Nothing, or no such function: the text stays as it stands.
    std::function<std::optional<std::string>(std::string_view name)> Variable;
    // The output of the command between backticks. Nothing: the line fails, with the IoErr of this function.
    std::function<std::optional<std::string>(std::string_view command)> Output;
};

// Reads one line. Outside of quotes "<", ">", ">>", "<>", "*>" and "*>>" (these two where a word begins) take
// the next word as a file name and ";" begins a comment; a word is quoted when it begins with a quote.
// Nothing on failure, the reason is in IoErr: 114 the command is a "=", 117 a redirection without name, 118
// the same direction twice, 120 a quote, backtick or brace is not closed, a redirection stands before the
// command, there is a NUL or a second line, or the line is longer than MaxArgumentLine before or after
// insertion; 236 backticks where Output is missing.
[[nodiscard]] std::optional<ParsedCommand> ParseCommandLine(std::string_view line,
                                                            const CommandLineSources& sources = {});

// The command and its arguments of a line that holds neither redirection nor insertion. Nothing with IoErr
// 114 or 120.
[[nodiscard]] std::optional<ParsedCommand> SplitCommand(std::string_view line);

// The words of arguments as a program of the host gets them: parted by blanks alone, quotes and escapes
// removed. A quote opens a quoted part where a word begins and behind a "=", and its end ends the word.
// Nothing with IoErr 120 when a quote is not closed.
[[nodiscard]] std::optional<std::vector<std::string>> SplitWords(std::string_view arguments);

// text as it goes between the quotes of a command line that already has them: "C:Search \"%s\"". Neither a
// Shell nor ReadArgs sees anything but data in it, whatever bytes it holds but NUL. QuoteArgument gives the
// same with the quotes around it.
[[nodiscard]] std::string EscapeArgument(std::string_view text);

} // namespace dos
