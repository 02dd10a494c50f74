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

bool CanHaveFurtherWindows() {
    return CommodityInForce == 0;
}

bool OpenNewSolvaneWindow(std::string_view argument) {
    return StartInstance({std::string(argument)});
}

bool OpenWantedWindow(std::string_view argument) {
    if (OpenNewSolvaneWindow(argument)) {
        return true;
    }
    if (!CanHaveFurtherWindows()) {
        Tell(MSG_NO_WINDOW, RequesterImage::Error);
        dos::SetIoErr(dos::ErrorTaskTableFull);
    }
    return false;
}

bool StartInstance(const std::vector<std::string>& arguments) {
    if (!CanHaveFurtherWindows()) {
        dos::SetIoErr(dos::ErrorTaskTableFull);
        return false;
    }
    std::string line = "\"" + dos::EscapeArgument(ProgramComplete.View()) + "\"";
    for (const std::string& argument : arguments) {
        line += " \"" + dos::EscapeArgument(argument) + "\"";
    }
    dos::SetIoErr(dos::ErrorLineTooLong);
    const bool fits = !ProgramComplete.Empty() && line.size() <= LongestLine;
    if (fits && dos::StartSystem(line) == 0) {
        return true;
    }
    const long error = dos::IoErr();
    Tell(MSG_NO_WINDOW, RequesterImage::Error);
    dos::SetIoErr(error);
    return false;
}

} // namespace solvane
