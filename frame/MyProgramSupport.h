// What start-up sets up before the arguments are read, and what the end takes down, each in a fixed order.
#pragma once

namespace solvane {

// Runs the set-up steps. False after the message of the first step that fails.
[[nodiscard]] bool MPS_SetUp();

// Takes everything down, whatever was set up: each step finds out whether its object exists.
void MPS_ShutDown();

// "PROGDIR:" by volume into ProgramDir, and ProgramComplete from it.
void GetPROGDIR();
// The device of "SYS:" into SYSDevice.
void GetSYSDevice();
// Keeps the program's drawer in the saved variable "AppPaths/<name>" for other programs.
void SetAmiUpdateENVVariable(const char* name);
// How the user's Shell opens, from its icon.
void GetShellTooltypes();

} // namespace solvane
