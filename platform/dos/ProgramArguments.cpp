#include "platform/dos/ProgramArguments.h"

#include "platform/dos/CommandLine.h"
#include "platform/dos/ReadArgs.h"

#include <cstdlib>
#include <vector>

namespace dos {

namespace {

// A bare word ends at blanks and "=", a comment begins at ";", and a quote would open a quoted word.
constexpr std::string_view NeedsQuotes = " \t\r\n\"=;";

} // namespace

std::string JoinWords(std::span<const std::string> words) {
    std::string line;
    for (const std::string& word : words) {
        if (!line.empty())
            line += ' ';
        const bool isBare = !word.empty() && word.find_first_of(NeedsQuotes) == std::string::npos;
        line += isBare ? word : QuoteArgument(word);
    }
    return line;
}

std::string ProgramArguments(int argc, char** argv) {
    const std::vector<std::string> words =
        argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
    if (const char* typed = std::getenv(CommandLineVariable)) {
        std::string line = typed;
        ::unsetenv(CommandLineVariable);
        // A script of the host hands on the line that was typed for itself.
        if (SplitWords(line) == words)
            return line;
    }
    return JoinWords(words);
}

} // namespace dos
