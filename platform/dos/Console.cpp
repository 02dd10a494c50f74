#include "platform/dos/Console.h"

#include "platform/dos/Children.h"
#include "platform/dos/CommandSearch.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Handler.h"
#include "platform/dos/System.h"
#include "platform/exec/Tasks.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace dos {

namespace {

constexpr std::string_view WindowProgram = "PROGDIR:Tools/conwindow";
// "Cursor on": it changes nothing, and its coming opens the window of an AUTO console.
constexpr std::string_view OpenSequence = "\x1B[1 p";
constexpr char ReadySign = 'R';

struct {
    std::mutex Lock;
    ConsoleTexts Texts;
} Said;

ConsoleTexts TextsToSay() {
    const std::lock_guard lock(Said.Lock);
    return Said.Texts;
}

bool Fail(long error) {
    SetIoErr(error);
    return false;
}

// One end of the terminal that a console window shows.
class ConsoleStream final : public Stream {
public:
    ConsoleStream(HostFd end, std::string name) : End(std::move(end)), Name(std::move(name)) {}

    std::int64_t Read(std::span<std::byte> buffer) override;
    std::int64_t Write(std::span<const std::byte> bytes) override;
    std::int64_t Seek(std::int64_t, SeekFrom) override { return Fail(ErrorActionNotKnown) ? 0 : -1; }
    std::int64_t SetSize(std::int64_t, SeekFrom) override { return Fail(ErrorActionNotKnown) ? 0 : -1; }
    bool Close() override { return true; }
    int ForChild() override {
        return Host().Openat(AT_FDCWD, Name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC, 0);
    }
    [[nodiscard]] std::string Terminal() const override { return Name; }

private:
    HostFd End;
    std::string Name;
};

// A window that was closed gives the end of the file.
std::int64_t ConsoleStream::Read(std::span<std::byte> buffer) {
    static_cast<void>(Write(std::as_bytes(std::span(OpenSequence))));
    while (true) {
        const long got = Host().Read(End.Get(), buffer.data(), buffer.size());
        if (got >= 0 || errno == EIO)
            return std::max(got, 0L);
        if (errno == EAGAIN && !AwaitDescriptor(End.Get(), Readiness::Read))
            return -1;
        if (errno != EAGAIN && errno != EINTR)
            return Fail(ErrorFromErrno(errno, Operation::Read)) ? 0 : -1;
    }
}

std::int64_t ConsoleStream::Write(std::span<const std::byte> bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const long gone = Host().Write(End.Get(), bytes.data() + done, bytes.size() - done);
        if (gone >= 0) {
            done += static_cast<std::size_t>(gone);
            continue;
        }
        const int error = errno;
        if (error == EAGAIN && !AwaitDescriptor(End.Get(), Readiness::Write))
            return -1;
        if (error != EAGAIN && error != EINTR)
            return Fail(error == EIO ? ErrorDeviceNotMounted : ErrorFromErrno(error, Operation::Write)) ? 0
                                                                                                        : -1;
    }
    return static_cast<std::int64_t>(bytes.size());
}

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += word + " ";
    return text;
}

// Starts the window over its end of the terminal and waits until it stands, or has said why not.
bool StartWindow(const ConsoleSpec& spec, HostFd master) {
    const std::optional<FoundProgram> program = FindProgram(WindowProgram);
    std::array<int, 2> ends = {NoDescriptor, NoDescriptor};
    if (!program || Host().Pipe(ends.data()) != 0)
        return program ? Fail(ErrorNoFreeStore) : Fail(ErrorDeviceNotMounted);
    const HostFd sign(ends[0]);
    ChildOrder order;
    order.Path = program->HostPath;
    ConsoleTexts texts = TextsToSay();
    order.Words = {program->Name,
                   spec.Left,
                   spec.Top,
                   spec.Width,
                   spec.Height,
                   spec.Title,
                   Join(spec.Options),
                   std::move(texts.Language),
                   std::move(texts.Input),
                   std::move(texts.Output),
                   std::move(texts.Ended)};
    order.Environment = ChildEnvironment();
    order.Input = std::move(master);
    order.Output = HostFd(ends[1]);
    order.ErrorOutput = HostFd(Host().Duplicate(STDERR_FILENO));
    order.Company = ChildCompany::Session;
    const auto child = Child::Start(std::move(order), {});
    if (!child)
        return Fail(ErrorDeviceNotMounted);
    char answer = 0;
    if (!AwaitDescriptor(sign.Get(), Readiness::Read)) {
        child->Break();
        return false;
    }
    return (Host().Read(sign.Get(), &answer, 1) == 1 && answer == ReadySign) || Fail(ErrorDeviceNotMounted);
}

std::unique_ptr<Stream> OpenConsole(const LockRef&, std::string_view rest, OpenMode) {
    const std::optional<ConsoleSpec> spec = ParseConsoleSpec(rest);
    if (!spec)
        return nullptr;
    std::string name;
    HostFd master(Host().OpenTerminal(name));
    HostFd end(master ? Host().Openat(AT_FDCWD, name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK, 0)
                      : NoDescriptor);
    if (!end) {
        static_cast<void>(Fail(ErrorNoFreeStore));
        return nullptr;
    }
    if (!StartWindow(*spec, std::move(master)))
        return nullptr;
    return std::make_unique<ConsoleStream>(std::move(end), std::move(name));
}

struct ConsolePlace final : LockBody {
    ConsolePlace() : LockBody(ConsoleHandler) {}
};

} // namespace

void SetConsoleTexts(ConsoleTexts texts) {
    const std::lock_guard lock(Said.Lock);
    Said.Texts = std::move(texts);
}

bool AwaitDescriptor(int descriptor, Readiness readiness) {
    const short events = readiness == Readiness::Read ? POLLIN : POLLOUT;
    std::array<pollfd, 2> waits = {{{descriptor, events, 0}, {NoDescriptor, POLLIN, 0}}};
    const HostFd stop(Host().Eventfd());
    const int number = stop ? exec::AllocSignal() : -1;
    if (number < 0) // no window can live on, but the answer comes
        return Host().Poll(waits.data(), 1, -1) >= 0 || errno == EINTR;
    waits[1].fd = stop.Get();
    const exec::SignalMask mask = exec::SignalMask{1} << number;
    exec::SignalMask got = 0;
    try {
        std::thread watcher([&waits, mask, task = exec::FindTask()] {
            while (Host().Poll(waits.data(), waits.size(), -1) < 0 && errno == EINTR)
                continue;
            exec::Signal(task, mask);
        });
        got = exec::Wait(mask | exec::BreakControlC);
        const std::uint64_t one = 1;
        Host().Write(stop.Get(), &one, sizeof(one));
        watcher.join();
    } catch (const std::system_error&) {
        got = Host().Poll(waits.data(), 1, -1) >= 0 ? mask : 0;
    }
    exec::FreeSignal(number);
    exec::SetSignal(got & exec::BreakControlC, got & exec::BreakControlC);
    return (got & exec::BreakControlC) == 0 || Fail(ErrorBreak);
}

const Handler ConsoleHandler{
    .Name = "console window",
    .Knows = [](std::string_view device) { return utility::Stricmp(device, "CON") == 0; },
    .Root = [](std::string_view) -> LockRef { return std::make_shared<const ConsolePlace>(); },
    .RootOf = nullptr,
    .Locate = [](const LockRef&, std::string_view, LastLink) -> LockRef {
        SetIoErr(ErrorObjectWrongType);
        return nullptr;
    },
    .Parent = nullptr,
    .Same = nullptr,
    .NameOf = nullptr,
    .Examine = nullptr,
    .List = nullptr,
    .Open = OpenConsole,
    .CreateDrawer = nullptr,
    .WriteWhole = nullptr,
    .Delete = nullptr,
    .Rename = nullptr,
    .Copy = nullptr,
    .MakeSoftLink = nullptr,
    .MakeHardLink = nullptr,
    .Change = nullptr,
    .Info = nullptr,
    .HostName = nullptr,
};

} // namespace dos
