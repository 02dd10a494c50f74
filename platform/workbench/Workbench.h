// Opens objects as a double click on the Workbench does: drawers in a window, projects in their program,
// programs after a question.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace workbench {

enum class LaunchAnswer { Start, Refuse };

// What the program puts behind this module. Called on the task of WBRun.
struct Hooks {
    // Shows a drawer, "Work:Games". None: a new instance of the program is started.
    std::function<bool(const std::string& drawer)> OpenDrawer{};
    // Asks whether a program or script may be started; once per program and process when the answer is Start.
    // None: the requester of the system.
    std::function<LaunchAnswer(const std::string& path)> MayStart{};
};
void SetHooks(Hooks hooks);

// Opens the object. A drawer goes to its hook. A program or script is started, with its own drawer as the
// current one, when the question is answered so. Any other file is opened by the default tool of its icon, a
// program of ours or of the host after the same question, and else by the host's default application for its
// type. False with IoErr: 205 nothing there or no program for it, 304 the answer was no, 305 it cannot be
// run.
[[nodiscard]] bool WBRun(std::string_view path);

// The command "WBRun FILE/M/A,SHOW/K" for this process: a built-in of dos::System from now on. The code is 10
// when one of the objects could not be opened.
void AddWBRunCommand();

} // namespace workbench
