// The ARexx port of a program: receives commands from other processes, finds them in the program's table,
// reads their arguments by template and sends the answers. It also sends commands to other ports. What the
// commands do is the table's business.
#pragma once

#include "platform/dos/ReadArgs.h"
#include "platform/exec/PublicPorts.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace rexx {

// Return codes.
inline constexpr int ReturnOk = 0;
inline constexpr int ReturnWarn = 5;
inline constexpr int ReturnError = 10;
inline constexpr int ReturnFail = 20;

inline constexpr std::size_t MaxWaitingCalls = 64; // commands sent whose replies are still to come

// One execution of a command: what its handler is given and fills.
struct CommandCall {
    const dos::ArgResults& Arguments;
    int Rc = ReturnOk;
    std::string Result{};
};

// A row of a program's table.
struct Command {
    std::string_view Name; // compares without case
    int Number;
    void (*Run)(CommandCall& call);
    std::string_view Template; // as ReadArgs takes it; empty: no arguments
    std::uint32_t Flags;       // none are defined
};

// The answer to a command that was sent.
struct Reply {
    int Rc; // ReturnFail with an empty result when the receiver ended without an answer
    std::string Result;
};
using ReplyHook = std::function<void(const Reply& reply)>;

// The outcome of a command line by a table. A name that is not in it gives ReturnFail with the result "1"
// (program not found), arguments that do not fit the template ReturnError with the number of the dos error.
[[nodiscard]] Reply RunCommandLine(std::span<const Command> commands, std::string_view line);

// The port. It belongs to the task that makes it.
class Port {
    struct State;

public:
    // Claims the host name. The table must outlive the port. Null when the name is taken or the host lacks
    // something.
    [[nodiscard]] static std::unique_ptr<Port> Create(std::string_view host,
                                                      std::span<const Command> commands, ReplyHook hook);
    explicit Port(std::unique_ptr<State> state) noexcept; // for Create
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    // Gives the name free. Commands not yet run are answered with ReturnFail, replies still to come are lost.
    ~Port();

    // Set while commands or replies wait.
    [[nodiscard]] exec::SignalMask Mask() const noexcept;

    // Runs the commands that wait, in the order of their arrival, and the hook for the replies. Ends after a
    // command when mayGoOn says no, and after some dozens, so that other sources have their turn; the signal
    // is then set again.
    void HandleMessages(const std::function<bool()>& mayGoOn);

    // Sends a command to the port of that name, which may be this one; the hook gets the reply, from
    // HandleMessages. False when there is no such port, it does not take the command within a second, or
    // MaxWaitingCalls are under way.
    [[nodiscard]] bool Execute(std::string_view host, std::string_view command);

private:
    std::unique_ptr<State> Own;
};

} // namespace rexx
