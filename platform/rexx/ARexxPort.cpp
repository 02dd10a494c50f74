#include "platform/rexx/ARexxPort.h"

#include "platform/dos/Errors.h"
#include "platform/exec/Ports.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <atomic>
#include <list>
#include <utility>

namespace rexx {

namespace {

constexpr int CommandsPerRound = 64;
constexpr std::string_view Blanks = " \t";
constexpr std::string_view ProgramNotFound = "1";

// The reply to a sent command, on its way from the task that waited for it.
struct ReplyMessage : exec::Message {
    std::optional<exec::RemoteReply> Outcome;
};

// A command that was sent, and the task that waits for its reply.
struct SentCall {
    SentCall(std::unique_ptr<exec::RemoteCall> call, exec::MsgPort& replies)
        : Call(std::move(call)), Waiter(exec::CreateTask("ARexx reply", [this, &replies] {
              auto message = std::make_unique<ReplyMessage>();
              message->Outcome = Call->Wait();
              IsOver = true;
              exec::PutMsg(replies, std::move(message));
          })) {}
    ~SentCall() { Call->GiveUp(); }

    std::unique_ptr<exec::RemoteCall> Call;
    std::atomic<bool> IsOver = false;
    std::unique_ptr<exec::ChildTask> Waiter; // dies first, which waits for its end
};

const Command* FindCommand(std::span<const Command> commands, std::string_view name) {
    const auto found = std::find_if(commands.begin(), commands.end(), [name](const Command& command) {
        return utility::Stricmp(command.Name, name) == 0;
    });
    return found != commands.end() ? &*found : nullptr;
}

} // namespace

Reply RunCommandLine(std::span<const Command> commands, std::string_view line) {
    const std::size_t start = std::min(line.find_first_not_of(Blanks), line.size());
    const std::size_t end = std::min(line.find_first_of(Blanks, start), line.size());
    const Command* command = FindCommand(commands, line.substr(start, end - start));
    if (command == nullptr) {
        return {ReturnFail, std::string(ProgramNotFound)};
    }
    const auto arguments = dos::ReadArgs(command->Template, line.substr(end));
    if (!arguments) {
        return {ReturnError, std::to_string(dos::IoErr())};
    }
    CommandCall call{*arguments};
    command->Run(call);
    return {call.Rc, std::move(call.Result)};
}

struct Port::State {
    std::span<const Command> Commands;
    ReplyHook Hook;
    std::unique_ptr<exec::PublicPort> Public;
    exec::MsgPort Replies;
    std::list<SentCall> Sent; // ends before Replies, to which it sends

    void HandleReplies();
};

void Port::State::HandleReplies() {
    while (const auto message = exec::GetMsg(Replies)) {
        const auto* reply = dynamic_cast<const ReplyMessage*>(message.get());
        if (reply != nullptr && Hook) {
            Hook(reply->Outcome ? Reply{reply->Outcome->Rc, reply->Outcome->Result} : Reply{ReturnFail, {}});
        }
    }
    Sent.remove_if([](const SentCall& call) { return call.IsOver.load(); });
}

Port::Port(std::unique_ptr<State> state) noexcept : Own(std::move(state)) {}

Port::~Port() {
    for (SentCall& call : Own->Sent) {
        call.Call->GiveUp(); // all at once, so that none is waited for
    }
}

std::unique_ptr<Port> Port::Create(std::string_view host, std::span<const Command> commands, ReplyHook hook) {
    auto state = std::make_unique<State>();
    state->Commands = commands;
    state->Hook = std::move(hook);
    state->Public = exec::PublicPort::Create(host);
    return state->Public && state->Replies.IsOpen() ? std::make_unique<Port>(std::move(state)) : nullptr;
}

exec::SignalMask Port::Mask() const noexcept {
    return Own->Public->Mask() | Own->Replies.Mask();
}

void Port::HandleMessages(const std::function<bool()>& mayGoOn) {
    Own->HandleReplies();
    for (int handled = 0; handled < CommandsPerRound; ++handled) {
        const auto message = Own->Public->Get();
        if (!message) {
            return;
        }
        const Reply answer = RunCommandLine(Own->Commands, message->Command());
        message->Reply(answer.Rc, answer.Result);
        if (!mayGoOn()) {
            break;
        }
    }
    exec::Signal(exec::FindTask(), Own->Public->Mask());
}

bool Port::Execute(std::string_view host, std::string_view command) {
    Own->Sent.remove_if([](const SentCall& call) { return call.IsOver.load(); });
    if (Own->Sent.size() >= MaxWaitingCalls) {
        return false;
    }
    auto call = exec::RemoteCall::Start(host, command);
    if (!call) {
        return false;
    }
    Own->Sent.emplace_back(std::move(call), Own->Replies);
    if (!Own->Sent.back().Waiter) {
        Own->Sent.pop_back();
        return false;
    }
    return true;
}

} // namespace rexx
