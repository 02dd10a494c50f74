// Exercises the parser of argument lines: the first line of the input is a template, the rest the line. What
// a successful parse gives must read back from its quoted form.
#include "platform/dos/ReadArgs.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = input.find('\n');
    const std::string_view argTemplate = input.substr(0, split);
    const std::string_view line = split == std::string_view::npos ? "" : input.substr(split + 1);
    (void)dos::ReadArgs(argTemplate, line);
    const auto echo = dos::ReadArgs("TEXT/A", dos::QuoteArgument(line));
    if (!echo || echo->Text("TEXT") != line)
        std::abort();
    const auto list = dos::ReadArgs("WORDS/M", line);
    if (!list)
        return 0;
    std::string quoted;
    for (const std::string& word : list->Multi("WORDS"))
        quoted += dos::QuoteArgument(word) + ' ';
    const auto again = dos::ReadArgs("WORDS/M", quoted);
    if (!again || again->Multi("WORDS") != list->Multi("WORDS"))
        std::abort();
    return 0;
}
