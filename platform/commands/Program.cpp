#include "platform/commands/Program.h"

#include "platform/application/Start.h"
#include "platform/commands/Command.h"
#include "platform/commands/HostStreams.h"
#include "platform/commands/Shell.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "platform/dos/ProgramArguments.h"
#include "platform/dos/Volumes.h"

#include <algorithm>

namespace commands {

namespace {

constexpr std::size_t NameWidth = 12; // characters

void PrintCommands(Context& context) {
    PrintLine(context, OwnVersion());
    PrintLine(context, "Usage: amiga 'COMMAND ARGUMENTS'; 'COMMAND ?' shows the template of a command.");
    for (const Command& command : Commands())
        PrintLine(context, PadRight(command.Name, NameWidth) + std::string(command.Purpose));
}

// False after a complaint.
bool SetUp(Context& context, const application::ProgramPlaces& places, const std::string& drawer) {
    if (!dos::SetUpSystem({.SystemSkeleton = places.SystemSkeleton, .ProgramDrawer = places.ProgramDrawer})) {
        ComplainWith(context, "", dos::SetUpProblem());
        return false;
    }
    if (const std::string problem = dos::SetUpProblem(); !problem.empty())
        ComplainWith(context, "", problem); // the rest works
    // Without a current drawer of the host the root of SYS: stays.
    if (!drawer.empty())
        dos::CurrentDir(dos::Lock(dos::FromHostPath(drawer)));
    dos::SetRequesters(false);
    return true;
}

int Run(Context& context, int argc, char** argv, const Command* only) {
    const application::ProgramPlaces places = application::FindProgram(argc > 0 ? argv[0] : nullptr);
    const application::StartMessage start = application::ReadStartMessage(argc, argv);
    const std::string words = dos::ProgramArguments(argc, argv);
    const Command* command = only != nullptr ? only : FindCommand(places.ProgramName);
    context.Name = places.ProgramName;
    if (!SetUp(context, places, start.CurrentDirectory))
        return ReturnFail;
    if (command != nullptr)
        return RunCommand(*command, words, context);
    context.Name.clear();
    if (start.Arguments.empty()) {
        PrintCommands(context);
        return ReturnOk;
    }
    const bool isLine = start.Arguments.size() == 1;
    return RunLine(context, isLine ? start.Arguments[0] : words);
}

} // namespace

int RunProgram(int argc, char** argv, const Command* only) {
    application::SecureStandardStreams();
    Context context = HostContext();
    const int code = Run(context, argc, argv, only);
    if (context.Name.empty())
        context.Name = "amiga";
    return FlushHost(context) ? code : std::max(code, ReturnFail);
}

} // namespace commands
