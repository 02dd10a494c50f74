// Where the commands of a script go.
#include "platform/dos/CommandSearch.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Locks.h"
#include "platform/dos/System.h"
#include "platform/exec/PublicPorts.h"
#include "platform/exec/Tasks.h"
#include "platform/rexx/ARexxPort.h"
#include "platform/rexx/Scripts.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

namespace rexx {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view Blanks = " \t";
constexpr auto LongestWaitForPort = 10s;
constexpr auto PauseForPort = 100ms;
constexpr int DeepestMacro = 20; // scripts that call each other as commands

std::string_view WithoutBlanks(std::string_view text) {
    const std::size_t start = std::min(text.find_first_not_of(Blanks), text.size());
    return text.substr(start, text.find_last_not_of(Blanks) + 1 - start);
}

// "name rest" in two.
std::pair<std::string, std::string> SplitFirst(std::string_view text) {
    text = WithoutBlanks(text);
    const std::size_t end = std::min(text.find_first_of(Blanks), text.size());
    return {std::string(text.substr(0, end)), std::string(WithoutBlanks(text.substr(end)))};
}

// "WaitForPort NAME": waits until there is such a port, 5 when it does not come.
dos::BuiltInResult WaitForPort(std::string_view arguments) {
    const auto read = dos::ReadArgs("NAME/A", arguments);
    if (!read) {
        return {ReturnFail, {}};
    }
    const std::string name = read->Text("NAME").value_or("");
    const auto end = std::chrono::steady_clock::now() + LongestWaitForPort;
    while (!exec::FindPort(name)) {
        if (std::chrono::steady_clock::now() >= end) {
            return {ReturnWarn, {}};
        }
        std::this_thread::sleep_for(PauseForPort);
    }
    return {};
}

HostAnswer RunLine(const std::string& line) {
    static const bool isReady = [] {
        dos::SetBuiltIn("WaitForPort", WaitForPort);
        return true;
    }();
    static_cast<void>(isReady);
    std::fflush(stdout); // what SAY has written stands before what the command writes
    const dos::SystemOptions options{.Input = {.Own = true}, .Output = {.Own = true}};
    const long code = dos::System(line, options);
    return {code < 0 ? ReturnFail : static_cast<int>(code)};
}

HostAnswer RunMacro(const std::string& command) {
    static int depth = 0;
    const auto words = SplitFirst(command);
    const auto path = FindScript(words.first);
    const auto source = path ? ReadScript(*path) : std::nullopt;
    if (!source || depth >= DeepestMacro) {
        return {ReturnError};
    }
    int code = ReturnFail;
    ++depth;
    { // A task of its own: an error in the inner script would end the outer one too.
        const dos::FileLock drawer = dos::CurrentDirLock();
        const auto runner = exec::CreateTask("ARexx macro", [&] {
            dos::CurrentDir(drawer);
            dos::SetRequesters(false);
            code = RunScript({*path, *source, words.second});
        });
    }
    --depth;
    return {code};
}

HostAnswer StartMacro(const std::string& command) {
    const auto [name, arguments] = SplitFirst(command);
    const auto program = dos::FindProgram("rx");
    if (!program || !FindScript(name) ||
        !dos::StartHostProgram({program->HostPath, *FindScript(name), arguments})) {
        return {ReturnError};
    }
    return {};
}

// A port may never answer: meanwhile the host's interrupt ends the process, which else only halts the script
// between two of its clauses.
std::optional<exec::RemoteReply> SendToPort(std::string_view port, const std::string& command) {
    const auto before = std::signal(SIGINT, SIG_DFL);
    auto reply = exec::SendCommand(port, command, exec::WaitWithoutLimit);
    std::signal(SIGINT, before);
    return reply;
}

struct OwnHost {
    std::string_view Name;
    HostAnswer (*Run)(const std::string& command);
};
constexpr std::array OwnHosts = {
    OwnHost{"AREXX", StartMacro}, OwnHost{"COMMAND", RunLine}, OwnHost{"DOS", RunLine},
    OwnHost{"REXX", RunMacro},    OwnHost{"SYSTEM", RunLine},
};

} // namespace

HostAnswer SendToHost(std::string_view host, const std::string& command) {
    for (const OwnHost& own : OwnHosts) {
        if (utility::Stricmp(own.Name, host) == 0) {
            return own.Run(command);
        }
    }
    auto reply = SendToPort(host, command);
    if (!reply) {
        return {ReturnFail};
    }
    HostAnswer answer{reply->Rc};
    if (reply->Rc == ReturnOk) { // else it is the number of an error, which scripts do not see
        answer.Result = std::move(reply->Result);
    }
    return answer;
}

} // namespace rexx
