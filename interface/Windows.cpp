#include "interface/Windows.h"

#include "interface/Tell.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/CommandLine.h"
#include "platform/dos/System.h"
#include "sak/Messages.h"

#include <string>

namespace solvane {

namespace {

constexpr std::size_t LongestLine = 2047; // bytes

} // namespace

bool HasFurtherWindows() {
    return CommodityInForce == 0;
}

bool OpenNewSolvaneWindow(std::string_view argument) {
    return StartInstance({std::string(argument)});
}

bool StartInstance(const std::vector<std::string>& arguments) {
    if (!HasFurtherWindows()) {
        return false;
    }
    std::string line = "\"" + dos::EscapeArgument(ProgramComplete.View()) + "\"";
    for (const std::string& argument : arguments) {
        line += " \"" + dos::EscapeArgument(argument) + "\"";
    }
    const bool fits = !ProgramComplete.Empty() && line.size() <= LongestLine;
    if (fits && dos::StartSystem(line) == 0) {
        return true;
    }
    Tell(MSG_NO_WINDOW, RequesterImage::Error);
    return false;
}

} // namespace solvane
