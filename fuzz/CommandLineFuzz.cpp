// Exercises the parser of command lines. Any text between quotes stays data, the arguments of a parsed line
// can be read as arguments wherever its quotes are in order, and an insertion adds no redirection.
#include "platform/dos/CommandLine.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void Expect(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string line(input);
    const auto give = [&line](std::string_view) { return line; };
    if (const auto parsed = dos::ParseCommandLine(line, {give, give})) {
        Expect(parsed->Arguments.ends_with('\n') &&
               parsed->Arguments.find('\n') + 1 == parsed->Arguments.size());
        Expect(!parsed->OneStream || parsed->Input == parsed->Output);
    }
    if (const auto inserted = dos::ParseCommandLine("Echo $x", {give, {}}))
        Expect(inserted->Command == "Echo" && !inserted->Input && !inserted->Output &&
               !inserted->ErrorOutput);
    if (line.find('\0') != std::string::npos)
        return 0;
    const auto quoted = dos::ParseCommandLine(
        "Echo \"" + dos::EscapeArgument(line) + "\" >\"" + dos::EscapeArgument("T:" + line) + '"', {});
    Expect(quoted && quoted->Command == "Echo" && quoted->Output == "T:" + line && !quoted->Input);
    const auto words = dos::ReadArgs("TEXT/A", quoted->Arguments);
    Expect(words && words->Text("TEXT") == line);
    return 0;
}
