#include "platform/commands/HostStreams.h"

#include "platform/dos/Errors.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

namespace commands {

namespace {

constexpr std::size_t OutputBlock = 65536; // bytes kept before they are written

volatile std::sig_atomic_t WasInterrupted = 0;
bool IsReaderGone = false; // of the standard output

void NoteInterrupt(int) {
    WasInterrupted = 1;
}

// Bytes on their way to a descriptor. A terminal gets them line by line.
class Writer {
public:
    Writer(int descriptor, bool byLine) : Descriptor(descriptor), ByLine(byLine) {}

    bool Put(std::string_view bytes) {
        Waiting.append(bytes);
        const bool isDue = Waiting.size() >= OutputBlock || (ByLine && bytes.ends_with('\n'));
        return !isDue || Flush();
    }

    bool Flush() {
        std::size_t done = 0;
        while (done < Waiting.size()) {
            const auto written = ::write(Descriptor, Waiting.data() + done, Waiting.size() - done);
            if (written > 0) {
                done += static_cast<std::size_t>(written);
            } else if (errno != EINTR || WasInterrupted != 0) {
                const int error = errno;
                Waiting.clear();
                IsReaderGone = IsReaderGone || error == EPIPE;
                dos::SetIoErr(error == EINTR ? dos::ErrorBreak
                                             : dos::ErrorFromErrno(error, dos::Operation::Write));
                return false;
            }
        }
        Waiting.clear();
        return true;
    }

private:
    int Descriptor;
    bool ByLine;
    std::string Waiting;
};

Writer& StandardOutput() {
    static Writer writer(STDOUT_FILENO, ::isatty(STDOUT_FILENO) == 1);
    return writer;
}

void CatchInterrupt() {
    struct sigaction action {};
    action.sa_handler = NoteInterrupt; // without SA_RESTART: a call that waits is broken off
    ::sigaction(SIGINT, &action, nullptr);
}

// Waits with the interrupt let through only while it waits, so that none is missed in between.
void Pause(std::uint32_t milliseconds) {
    sigset_t interrupt;
    sigset_t before;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_BLOCK, &interrupt, &before);
    const timespec limit{milliseconds / 1000, static_cast<long>(milliseconds % 1000) * 1000000L};
    if (WasInterrupted == 0)
        ::ppoll(nullptr, 0, &limit, &before);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

std::optional<std::string> ReadHostLine() {
    std::string line;
    if (!std::getline(std::cin, line))
        return {};
    return line;
}

// On the terminal, also where the output goes elsewhere.
std::optional<std::string> AskOnTerminal(std::string_view question) {
    Writer terminal(STDERR_FILENO, false);
    if (!StandardOutput().Flush() || !terminal.Put(question) || !terminal.Flush())
        return {};
    return ReadHostLine();
}

} // namespace

Context HostContext() {
    CatchInterrupt();
    Context context;
    context.Output = [](std::string_view bytes) { return StandardOutput().Put(bytes); };
    context.FlushOwn = [] { return StandardOutput().Flush(); };
    context.Stop = [] { return WasInterrupted != 0; };
    context.Pause = Pause;
    context.HasOwnInput = true;
    std::setvbuf(stdin, nullptr, _IONBF, 0); // what follows a line is left to the programs that read on
    context.IsTerminal = ::isatty(STDOUT_FILENO) == 1;
    if (::isatty(STDIN_FILENO) != 1)
        context.Input = ReadHostLine;
    else if (::isatty(STDERR_FILENO) == 1)
        context.Ask = AskOnTerminal;
    return context;
}

bool FlushHost(Context& context) {
    if (context.OutputError == 0 && !StandardOutput().Flush())
        context.OutputError = dos::IoErr();
    // A reader that has had enough is no trouble to tell of, and nobody hears where this fails too.
    if (context.OutputError != 0 && !IsReaderGone) {
        Writer errors(STDERR_FILENO, false);
        static_cast<void>(errors.Put(dos::Fault(context.OutputError, context.Name) + "\n") && errors.Flush());
    }
    return context.OutputError == 0;
}

} // namespace commands
