#include "interface/Windows.h"

#include "model/Program.h"
#include "platform/dos/CommandLine.h"
#include "platform/dos/System.h"

#include <string>

namespace solvane {

namespace {

constexpr std::size_t LongestLine = 2047; // bytes

} // namespace

void OpenNewSolvaneWindow(std::string_view argument) {
    const std::string line =
        "\"" + dos::EscapeArgument(ProgramComplete.View()) + "\" \"" + dos::EscapeArgument(argument) + "\"";
    if (!ProgramComplete.View().empty() && line.size() <= LongestLine)
        static_cast<void>(dos::StartSystem(line));
}

} // namespace solvane
