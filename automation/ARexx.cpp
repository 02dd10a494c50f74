#include "automation/ARexx.h"

#include "automation/ARexxCommands.h"
#include "interface/Tell.h"
#include "model/Program.h"
#include "platform/exec/Forbid.h"
#include "platform/exec/PublicPorts.h"
#include "platform/rexx/ARexxPort.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <charconv>
#include <memory>

namespace solvane {

exec::SignalMask ARexxSignal = 0;
Text<1024> ARexxReply;
std::int16_t ARexxError = 0;

namespace {

std::unique_ptr<rexx::Port> arexxPort;

// The second result as a number; a text that is none counts as 0.
long NumberOf(const std::string& result) {
    long number = 0;
    std::from_chars(result.data(), result.data() + result.size(), number);
    return number;
}

void ARexxReplyHookFunc(const rexx::Reply& reply) {
    ARexxError = reply.Rc != 0 ? 1 : 0;
    ARexxReply = FormatText("%ld", NumberOf(reply.Result));
}

bool IsPortThere(std::string_view name) {
    const exec::ForbidScope forbidden;
    return exec::FindPort(name);
}

} // namespace

bool SetUpARexx() {
    arexxPort = rexx::Port::Create(ARexxPortBuffer.View(), ARexxCommands(), ARexxReplyHookFunc);
    ARexxSignal = arexxPort ? arexxPort->Mask() : 0;
    return arexxPort != nullptr;
}

void ShutDownARexx() {
    arexxPort.reset();
    ARexxSignal = 0;
}

void HandleARexx() {
    if (arexxPort) {
        arexxPort->HandleMessages([] { return JumpToARexxCmd == NoJump && done == 0; });
    }
}

bool SendARexxMessage(std::string_view port, std::string_view command, int quiet) {
    if (arexxPort && IsPortThere(port) && arexxPort->Execute(port, command)) {
        return true;
    }
    if (quiet == 0) {
        Tell(FormatMessage(MSG_NO_AREXX_PORT, port));
    }
    return false;
}

} // namespace solvane
