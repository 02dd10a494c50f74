#include "interface/Processes.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

namespace solvane {

std::unique_ptr<exec::MsgPort> ReplyPort;
std::unique_ptr<exec::MsgPort> ResultPort;
exec::MsgPort* SMSPort = nullptr;
exec::MsgPort* STSPort = nullptr;
exec::MsgPort* GVPort = nullptr;

namespace {

constexpr std::int32_t CommandStart = -2, CommandEnd = -1, CommandWork = 1;
constexpr std::int32_t CouldNotStart = -2; // Result

struct HelperMessage : exec::Message {
    exec::MsgPort* HelperPort = nullptr; // filled in by the helper when it starts
    std::int32_t Command = CommandStart;
    std::int32_t Result = 0;
    WindowState State; // of CommandWork
};

struct ResultMessage : exec::Message {
    HelperResult Found;
};

using Work = HelperResult (*)(const WindowState& state);

// The reply comes before the work: the sender goes on at once, and the work runs beside it. What it finds is
// sent when it is done.
bool ServeCommands(exec::MsgPort& port, Work work) {
    bool goesOn = true;
    while (auto message = exec::GetMsg(port)) {
        const auto& command = dynamic_cast<HelperMessage&>(*message);
        const std::int32_t order = command.Command;
        const WindowState state = command.State;
        exec::ReplyMsg(std::move(message));
        if (order == CommandEnd) {
            goesOn = false;
        } else if (order == CommandWork && work != nullptr) {
            auto result = std::make_unique<ResultMessage>();
            result->Found = work(state);
            exec::PutMsg(*ResultPort, std::move(result));
        }
    }
    return goesOn;
}

// The life of a helper, on its own task.
void RunHelper(Work work) {
    exec::MsgPort& first = exec::ProcessPort(exec::FindTask());
    exec::WaitPort(first);
    auto message = exec::GetMsg(first);
    auto& start = dynamic_cast<HelperMessage&>(*message);
    exec::MsgPort port;
    start.HelperPort = port.IsOpen() ? &port : nullptr;
    start.Result = port.IsOpen() ? 0 : CouldNotStart;
    const bool started = port.IsOpen();
    exec::ReplyMsg(std::move(message));
    while (started && ServeCommands(port, work)) {
        exec::WaitPort(port);
    }
}

void Send(exec::MsgPort& port, std::int32_t command, const WindowState& state) {
    auto message = std::make_unique<HelperMessage>();
    message->ReplyPort = ReplyPort.get();
    message->Command = command;
    message->State = state;
    exec::PutMsg(port, std::move(message));
}

// The helper port that the reply to that command names; replies to earlier commands are passed over.
exec::MsgPort* AwaitReply(std::int32_t command) {
    for (;;) {
        exec::WaitPort(*ReplyPort);
        const auto reply = exec::GetMsg(*ReplyPort);
        const auto* message = dynamic_cast<const HelperMessage*>(reply.get());
        if (message != nullptr && message->Command == command) {
            return message->HelperPort;
        }
    }
}

struct Helper {
    std::string_view Name;
    Work Run; // null: it idles until its end
    exec::MsgPort** Port;
    std::unique_ptr<exec::ChildTask> Task = nullptr;
};

// In the order in which they start and end.
Helper Helpers[] = {
    {"menu state",
     [](const WindowState& state) { return HelperResult{.Menu = DoSetMenuState(state), .Toolbar = {}}; },
     &SMSPort},
    {"toolbar state",
     [](const WindowState& state) { return HelperResult{.Menu = {}, .Toolbar = DoSetToolbarState(state)}; },
     &STSPort},
    {"versions", nullptr, &GVPort},
};

bool Start(Helper& helper) {
    helper.Task = exec::CreateTask(helper.Name, [work = helper.Run] { RunHelper(work); });
    if (!helper.Task) {
        return false;
    }
    Send(exec::ProcessPort(*helper.Task), CommandStart, {});
    *helper.Port = AwaitReply(CommandStart);
    return *helper.Port != nullptr;
}

} // namespace

bool SetUpProcesses() {
    ReplyPort = std::make_unique<exec::MsgPort>();
    ResultPort = std::make_unique<exec::MsgPort>();
    if (!ReplyPort->IsOpen() || !ResultPort->IsOpen()) {
        return false;
    }
    for (Helper& helper : Helpers) {
        if (!Start(helper)) {
            return false;
        }
    }
    return true;
}

void ShutDownProcesses() {
    for (Helper& helper : Helpers) {
        if (*helper.Port != nullptr) {
            Send(**helper.Port, CommandEnd, {});
            static_cast<void>(AwaitReply(CommandEnd));
        }
        *helper.Port = nullptr;
        helper.Task.reset(); // waits for the end
    }
    ResultPort.reset();
    ReplyPort.reset();
}

void TellHelper(exec::MsgPort* port, const WindowState& state) {
    if (port == nullptr) {
        return;
    }
    while (exec::GetMsg(*ReplyPort)) {
        // The reply to an earlier command. To wait for the one to this command would let the window draw in
        // the middle of what its caller does.
    }
    Send(*port, CommandWork, state);
}

std::optional<HelperResult> TakeHelperResult() {
    const auto message = ResultPort ? exec::GetMsg(*ResultPort) : nullptr;
    const auto* result = dynamic_cast<const ResultMessage*>(message.get());
    return result != nullptr ? std::optional(result->Found) : std::nullopt;
}

} // namespace solvane
