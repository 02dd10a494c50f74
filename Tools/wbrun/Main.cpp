// "WBRun" outside of the file manager. It is a program of its own, so that the other drawer commands load
// nothing of the window system.
#include "platform/commands/Command.h"
#include "platform/commands/Program.h"
#include "platform/dos/Errors.h"
#include "platform/utility/Text.h"
#include "platform/workbench/Workbench.h"

#include <algorithm>

namespace {

using commands::Context;

// Where nobody can be asked the answer is no.
workbench::LaunchAnswer AskToStart(const Context& context, const std::string& path) {
    const std::string question =
        "\"" + commands::Shown(context, path) + "\" is a program. Do you want to start it? (y/N) ";
    const std::string answer = context.Ask ? context.Ask(question).value_or("") : "";
    const bool isYes = utility::Stricmp(answer, "y") == 0 || utility::Stricmp(answer, "yes") == 0;
    return isYes ? workbench::LaunchAnswer::Start : workbench::LaunchAnswer::Refuse;
}

int OpenObject(Context& context, const std::string& path) {
    if (workbench::WBRun(path))
        return commands::ReturnOk;
    if (dos::IoErr() == dos::ErrorBreak)
        return commands::ComplainWith(context, path, "not started");
    return commands::Complain(context, path);
}

int RunWBRun(Context& context, const dos::ArgResults& arguments) {
    workbench::SetHooks(
        {.MayStart = [&context](const std::string& path) { return AskToStart(context, path); }});
    int code = commands::ReturnOk;
    for (const std::string& path : arguments.Multi("FILE")) {
        if (commands::IsStopped(context))
            return commands::Complain(context);
        code = std::max(code, OpenObject(context, path));
    }
    return commands::IsStopped(context) ? commands::Complain(context) : code;
}

constexpr commands::Command WBRun = {"WBRun", "FILE/M/A,SHOW/K", "Opens what a double click would", RunWBRun};

} // namespace

int main(int argc, char** argv) {
    return commands::RunProgram(argc, argv, &WBRun);
}
