// Watches the user's language variable. Its signal wakes the loop and leads to nothing further.
#pragma once

#include "platform/exec/Tasks.h"

namespace solvane {

// Reads "LanguageName" into LanguageName and starts watching it.
void SetUpLanguageChangeCheck();
void ShutDownNotifyVar();

// The signal of a change; 0 while nothing is watched.
[[nodiscard]] exec::SignalMask NotifyVarSignal();

} // namespace solvane
