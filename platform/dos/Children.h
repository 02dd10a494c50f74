// Child processes and the thread that keeps each: it moves what a child writes and reads, takes its end and
// breaks it off when asked to. Private to platform/dos.
#pragma once

#include "platform/dos/Files.h"
#include "platform/dos/HostFd.h"
#include "platform/exec/Tasks.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace dos {

// Takes what a child has written; false when it wants no more, which closes the pipe.
using ByteSink = std::function<bool(std::string_view bytes)>;

struct ChildOutput {
    HostFd From; // read end of a pipe
    ByteSink To;
};

// What a child reads from a stream that is no host file.
struct ChildInput {
    HostFd To; // write end of a pipe
    std::shared_ptr<FileHandle> From;
};

// Reads such a stream on a task of its own, since it may take its time: a block whenever one is asked for.
// At its end a Read under way is broken off.
class InputReader {
public:
    // wakeSign is written to whenever a block is there; it must live on as long as this.
    InputReader(std::shared_ptr<FileHandle> from, int wakeSign);
    ~InputReader();
    InputReader(const InputReader&) = delete;
    InputReader& operator=(const InputReader&) = delete;

    // False when the host has no thread for it.
    [[nodiscard]] bool IsRunning() const noexcept { return Worker != nullptr; }
    void Ask();
    // Moves the block out, when it has come; false at the end of the stream.
    [[nodiscard]] bool Take(std::string& bytes);
    // Asks no more; how many bytes have come that nobody took.
    [[nodiscard]] std::size_t End();

private:
    void Work();

    std::shared_ptr<FileHandle> From;
    int WakeSign;
    std::mutex Guard;
    std::condition_variable Changed;
    std::string Block;
    bool IsAsked = false;
    bool IsAtEnd = false;
    bool IsOver = false; // whoever asks is gone
    std::unique_ptr<exec::ChildTask> Worker;
};

struct ChildOrder {
    std::string Path; // of the host
    std::vector<std::string> Words;
    std::vector<std::string> Environment; // "NAME=value"
    HostFd Drawer;
    HostFd Input, Output, ErrorOutput;
    std::string Terminal; // see SpawnOrder
    ChildCompany Company = ChildCompany::Group;
    std::vector<ChildOutput> Outputs; // pipes that are drained while it runs
    std::vector<ChildInput> Inputs;   // at most one
};

// This process's environment without what is meant for one process alone.
[[nodiscard]] std::vector<std::string> ChildEnvironment();

class Child {
public:
    // Starts it. Called on the keeper's thread: Tick about ten times a second when it is there, Ended once,
    // as the last deed. Null with errno when no process could be made or the program is refused.
    using TickFunction = std::function<void()>;
    using EndFunction = std::function<void(long code)>;
    [[nodiscard]] static std::shared_ptr<Child> Start(ChildOrder order, EndFunction ended,
                                                      TickFunction tick = {});

    // Asks the child and what it has started to end; after three seconds, or when asked again, they are
    // ended.
    void Break() noexcept;
    [[nodiscard]] bool HasEnded() const noexcept { return Finished; }
    // Whether Break was called before it ended.
    [[nodiscard]] bool WasBroken() const noexcept { return BreakRequests != 0; }
    // The return code of an ended child: its own, 20 when a signal of the host ended it.
    [[nodiscard]] long Code() const noexcept { return Result; }

private:
    void Keep();
    void Watch();
    void ServeBreak();
    void MoveBytes(short inputReady);
    bool Drain(ChildOutput& output);
    void Feed(short ready);
    void EndInput();
    void CloseInput();
    static void GoBack(FileHandle& from, int pipe, std::size_t kept);
    void DrainRest();
    void Send(int number) const noexcept;
    [[nodiscard]] int TimeOut() const noexcept;

    int Process = 0;
    bool LeadsGroup = true;
    HostFd EndSign, WakeSign;
    std::vector<ChildOutput> Outputs;
    std::vector<ChildInput> Inputs;
    std::unique_ptr<InputReader> Reader; // of the input, if there is one
    ChildInput Unread;                   // after the end of the stream: the pipe, to see what is left in it
    std::string Unfed;                   // read from the input and not yet written to the child
    EndFunction Ended;
    TickFunction Tick;
    std::atomic<int> BreakRequests = 0;
    int BreaksServed = 0;
    std::int64_t KillTime = 0; // milliseconds of the steady clock; 0: not broken
    std::atomic<long> Result = 0;
    std::atomic<bool> Finished = false;
};

} // namespace dos
