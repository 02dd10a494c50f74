#include "platform/dos/Children.h"

#include "platform/dos/ProgramArguments.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <span>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace dos {

namespace {

constexpr std::size_t Step = 65536;      // bytes moved at once
constexpr int TickMilliseconds = 100;    // between ticks, and between looks without an end sign
constexpr std::int64_t GraceTime = 3000; // milliseconds from the wish to end to the end
constexpr long CodeOfSignal = 20;
constexpr int MostRounds = 16; // steps that hold what the largest pipe holds

std::int64_t Now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

int SpawnChild(ChildOrder& order) {
    const std::vector<char*> words = Pointers(order.Words);
    const std::vector<char*> environment = Pointers(order.Environment);
    return Host().Spawn({.Path = order.Path.c_str(),
                         .Words = words.data(),
                         .Environment = environment.data(),
                         .Drawer = order.Drawer.Get(),
                         .Input = order.Input.Get(),
                         .Output = order.Output.Get(),
                         .ErrorOutput = order.ErrorOutput.Get(),
                         .Terminal = order.Terminal.empty() ? nullptr : order.Terminal.c_str(),
                         .Company = order.Company});
}

long CodeOf(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : CodeOfSignal;
}

// A reaped child cannot be told from another process, so a host that reaps by itself is told not to.
void KeepChildrenForUs() {
    struct sigaction now {};
    if (::sigaction(SIGCHLD, nullptr, &now) == 0 && now.sa_handler == SIG_IGN)
        std::signal(SIGCHLD, SIG_DFL);
}

void BlockSignals() {
    sigset_t all{};
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

bool SetNonBlocking(int descriptor) {
    const int flags = ::fcntl(descriptor, F_GETFL);
    return flags >= 0 && ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) == 0;
}

void Wake(int sign) {
    const std::uint64_t one = 1;
    Host().Write(sign, &one, sizeof(one));
}

} // namespace

InputReader::InputReader(std::shared_ptr<FileHandle> from, int wakeSign)
    : From(std::move(from)), WakeSign(wakeSign), Worker(exec::CreateTask("input", [this] { Work(); })) {}

InputReader::~InputReader() {
    static_cast<void>(End());
}

std::size_t InputReader::End() {
    {
        const std::lock_guard hold(Guard);
        IsOver = true;
        Changed.notify_all();
    }
    if (Worker)
        exec::Signal(Worker->GetTask(), exec::BreakControlC);
    Worker.reset();
    return Block.size();
}

void InputReader::Ask() {
    const std::lock_guard hold(Guard);
    IsAsked = true;
    Changed.notify_all();
}

bool InputReader::Take(std::string& bytes) {
    const std::lock_guard hold(Guard);
    bytes = std::exchange(Block, {});
    return !bytes.empty() || !IsAtEnd;
}

void InputReader::Work() {
    BlockSignals();
    std::vector<std::byte> buffer(Step);
    std::unique_lock hold(Guard);
    while (!IsAtEnd) {
        Changed.wait(hold, [this] { return IsAsked || IsOver; });
        if (IsOver)
            return;
        IsAsked = false;
        hold.unlock();
        const std::int64_t got = Read(*From, buffer);
        hold.lock();
        IsAtEnd = got <= 0;
        if (got > 0)
            Block.assign(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(got));
        Wake(WakeSign);
    }
}

std::vector<std::string> ChildEnvironment() {
    const std::string own = std::string(CommandLineVariable) + "=";
    std::vector<std::string> environment;
    for (char** at = ::environ; at && *at; ++at) {
        const std::string_view variable = *at;
        if (!variable.starts_with(own) && !variable.starts_with("PWD="))
            environment.emplace_back(variable);
    }
    return environment;
}

std::shared_ptr<Child> Child::Start(ChildOrder order, EndFunction ended, TickFunction tick) {
    KeepChildrenForUs();
    auto child = std::make_shared<Child>();
    child->WakeSign = HostFd(Host().Eventfd());
    for (const ChildOutput& output : order.Outputs)
        if (!SetNonBlocking(output.From.Get()))
            return nullptr;
    for (const ChildInput& input : order.Inputs)
        if (!SetNonBlocking(input.To.Get()))
            return nullptr;
    if (!child->WakeSign)
        return nullptr;
    if (!order.Inputs.empty()) {
        child->Reader = std::make_unique<InputReader>(order.Inputs.front().From, child->WakeSign.Get());
        if (!child->Reader->IsRunning()) {
            errno = EAGAIN;
            return nullptr;
        }
    }
    child->LeadsGroup = order.Company != ChildCompany::Caller;
    child->Outputs = std::move(order.Outputs);
    child->Inputs = std::move(order.Inputs);
    child->Ended = std::move(ended);
    child->Tick = std::move(tick);
    child->Process = SpawnChild(order);
    if (child->Process < 0) {
        const int error = errno;
        child = nullptr; // closing what both hold may end with other errors
        order = ChildOrder();
        errno = error;
        return nullptr;
    }
    if (child->Reader)
        child->Reader->Ask();
    child->EndSign = HostFd(Host().OpenProcess(child->Process));
    try {
        // The pipes' other ends go with the order, before the keeper waits for their end.
        order = ChildOrder();
        std::thread([child] { child->Keep(); }).detach();
    } catch (const std::system_error&) {
        child->Send(SIGKILL);
        int status = 0;
        while (Host().ReapChild(child->Process, &status) == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        errno = EAGAIN;
        return nullptr;
    }
    return child;
}

void Child::Break() noexcept {
    ++BreakRequests;
    Wake(WakeSign.Get());
}

void Child::Send(int number) const noexcept {
    Host().SendSignal(LeadsGroup ? -Process : Process, number);
}

// On the keeper's thread, which alone reaps: the id is still that of the child.
void Child::ServeBreak() {
    const int requests = BreakRequests;
    if (requests > BreaksServed && BreaksServed == 0) {
        Send(SIGINT);
        Send(SIGCONT);
        KillTime = Now() + GraceTime;
    }
    const bool isImpatient = requests > 1 && requests > BreaksServed;
    BreaksServed = requests;
    if (KillTime != 0 && (isImpatient || Now() >= KillTime)) {
        Send(SIGKILL);
        KillTime = Now() + GraceTime;
    }
}

int Child::TimeOut() const noexcept {
    if (Tick || !EndSign)
        return TickMilliseconds;
    return KillTime == 0 ? -1 : static_cast<int>(std::clamp<std::int64_t>(KillTime - Now(), 0, GraceTime));
}

// False when nothing more is to come from this pipe.
bool Child::Drain(ChildOutput& output) {
    std::string bytes(Step, '\0');
    const long got = Host().Read(output.From.Get(), bytes.data(), bytes.size());
    if (got < 0)
        return errno == EAGAIN || errno == EINTR;
    return got > 0 && output.To(std::string_view(bytes).substr(0, static_cast<std::size_t>(got)));
}

// What was read for the child and not taken by it is there for whoever reads on, where the stream can go
// back.
void Child::GoBack(FileHandle& from, int pipe, std::size_t kept) {
    int inPipe = 0;
    if (Host().BytesWaiting(pipe, &inPipe) != 0)
        inPipe = 0;
    const auto untaken = static_cast<std::int64_t>(kept) + inPipe;
    if (untaken != 0)
        static_cast<void>(Seek(from, -untaken, SeekFrom::Current));
}

void Child::EndInput() {
    const ChildInput input = std::move(Inputs.front());
    Inputs.clear();
    GoBack(*input.From, input.To.Get(), Reader->End() + Unfed.size());
    Unfed.clear();
    Reader.reset();
}

// The child hears of the end; what the pipe holds is still its to read.
void Child::CloseInput() {
    ChildInput input = std::move(Inputs.front());
    Inputs.clear();
    Reader.reset();
    Unread.To = HostFd(Host().Openat(AT_FDCWD, DescriptorPath(input.To.Get()).c_str(),
                                     O_RDONLY | O_NONBLOCK | O_CLOEXEC, 0));
    Unread.From = std::move(input.From);
}

// Gives the child what there is to read, as far as it takes it. A child that closes its input, and the end of
// the stream, end this.
void Child::Feed(short ready) {
    const bool isClosed = (ready & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    const bool isAtEnd = !isClosed && Unfed.empty() && !Reader->Take(Unfed);
    if (isClosed)
        return EndInput();
    if (isAtEnd)
        return CloseInput();
    if (Unfed.empty() || (ready & POLLOUT) == 0)
        return;
    const long gone = Host().Write(Inputs.front().To.Get(), Unfed.data(), Unfed.size());
    if (gone > 0)
        Unfed.erase(0, static_cast<std::size_t>(gone));
    if (Unfed.empty())
        Reader->Ask();
}

void Child::MoveBytes(short inputReady) {
    if (!Inputs.empty())
        Feed(inputReady);
    std::erase_if(Outputs, [this](ChildOutput& output) { return !Drain(output); });
}

// What stands in the pipes when the child has ended. What others that hold them write later has no reader.
void Child::DrainRest() {
    for (ChildOutput& output : Outputs) {
        std::string bytes(Step, '\0');
        long got = 1;
        for (int round = 0; got > 0 && round < MostRounds; ++round) {
            got = Host().Read(output.From.Get(), bytes.data(), bytes.size());
            if (got > 0 && !output.To(std::string_view(bytes).substr(0, static_cast<std::size_t>(got))))
                break;
        }
    }
    Outputs.clear();
    if (!Inputs.empty())
        EndInput();
    if (Unread.To)
        GoBack(*Unread.From, Unread.To.Get(), 0);
    Unread = ChildInput();
}

// One sleep, until bytes can be moved, the child has ended, or a break or tick is due.
void Child::Watch() {
    std::vector<pollfd> waits = {{WakeSign.Get(), POLLIN, 0}, {EndSign.Get(), POLLIN, 0}};
    for (const ChildOutput& output : Outputs)
        waits.push_back({output.From.Get(), POLLIN, 0});
    for (const ChildInput& input : Inputs)
        waits.push_back({input.To.Get(), Unfed.empty() ? short{0} : short{POLLOUT}, 0});
    if (Host().Poll(waits.data(), waits.size(), TimeOut()) < 0)
        return;
    if (waits.front().revents != 0) {
        std::uint64_t count = 0;
        Host().Read(WakeSign.Get(), &count, sizeof(count));
    }
    ServeBreak();
    MoveBytes(Inputs.empty() ? short{0} : waits.back().revents);
}

void Child::Keep() {
    BlockSignals();
    int status = 0;
    int reaped = 0;
    while ((reaped = Host().ReapChild(Process, &status)) == 0 || (reaped < 0 && errno == EINTR)) {
        Watch();
        if (Tick)
            Tick();
    }
    DrainRest();
    Result = reaped < 0 ? CodeOfSignal : CodeOf(status);
    Finished = true;
    const EndFunction ended = std::exchange(Ended, {});
    Tick = {};
    if (ended)
        ended(Result);
}

} // namespace dos
