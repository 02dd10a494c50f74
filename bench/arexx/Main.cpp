// ARexx commands a second, one connection each: of a running window, and of a port that only echoes.
//   solvane_arexx [PORT [COMMAND [COUNT]]]
#include "platform/exec/PublicPorts.h"
#include "platform/exec/Tasks.h"
#include "platform/rexx/ARexxPort.h"

#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <string>

namespace {

constexpr std::string_view EchoPort = "SOLVANE_BENCH";

// Seconds that so many commands take; below 0 when one of them fails.
double Measure(const std::string& port, const std::string& command, int count) {
    const auto start = std::chrono::steady_clock::now();
    for (int sent = 0; sent < count; ++sent) {
        const auto reply = exec::SendCommand(port, command, exec::WaitWithoutLimit);
        if (!reply || reply->Rc != 0) {
            return -1;
        }
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Tell(const std::string& port, int count, double seconds) {
    if (seconds < 0) {
        std::printf("%-16s no answer, or a return code other than 0\n", port.c_str());
    } else {
        std::printf("%-16s %d commands in %.3f s, %.0f a second\n", port.c_str(), count, seconds,
                    count / seconds);
    }
}

void Echo(rexx::CommandCall& call) {
    call.Result = "echo";
}

// The yardstick: the same way there and back with nothing behind it.
double MeasureEcho(int count) {
    static constexpr std::array<rexx::Command, 1> Table = {rexx::Command{"ECHO", 0, Echo, "", 0}};
    const auto port = rexx::Port::Create(EchoPort, Table, {});
    if (!port) {
        return -1;
    }
    std::atomic<bool> isOver = false;
    double seconds = -1;
    exec::Task* const owner = exec::FindTask();
    const exec::SignalMask mask = port->Mask();
    const auto client = exec::CreateTask("client", [&] {
        seconds = Measure(std::string(EchoPort), "ECHO", count);
        isOver = true;
        exec::Signal(owner, mask);
    });
    while (!isOver) {
        static_cast<void>(exec::Wait(mask));
        port->HandleMessages([] { return true; });
    }
    return seconds;
}

} // namespace

int main(int argc, char** argv) {
    const std::string port = argc > 1 ? argv[1] : "SOLVANE.1";
    const std::string command = argc > 2 ? argv[2] : "GETCURRENTPATH";
    int count = 5000;
    if (argc > 3) {
        const std::string_view text = argv[3];
        std::from_chars(text.data(), text.data() + text.size(), count);
    }
    Tell(port, count, Measure(port, command, count));
    Tell("(echo)", count, MeasureEcho(count));
    return 0;
}
