// The standard streams of the process and its interrupt key for a command. Private to platform/commands.
#pragma once

#include "platform/commands/Context.h"

namespace commands {

// A context over the standard streams; the input only where it is no terminal's. From here on the host's
// interrupt breaks the command and does not end the process. Once per process.
[[nodiscard]] Context HostContext();

// Writes out what the context has taken. False when the standard output took no more, after telling why on
// the error output.
[[nodiscard]] bool FlushHost(Context& context);

} // namespace commands
