#include "platform/dos/System.h"

#include "platform/dos/CommandSearch.h"
#include "platform/dos/CommandStreams.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/ProgramArguments.h"
#include "platform/dos/Variables.h"
#include "platform/exec/Tasks.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <map>
#include <mutex>
#include <utility>

namespace dos {

namespace {

constexpr long CodeError = 10;
constexpr long CodeFail = 20;
constexpr long CodeNoProcess = -1;
// The host takes 131,072 bytes for one word or variable.
constexpr std::size_t LongestArguments = 131072 - 64;

struct NoCase {
    bool operator()(const std::string& a, const std::string& b) const { return utility::Stricmp(a, b) < 0; }
};

struct BuiltIns {
    std::mutex Guard;
    std::map<std::string, BuiltIn, NoCase> Commands;
};

BuiltIns& OwnCommands() {
    static BuiltIns commands;
    return commands;
}

BuiltIn FindBuiltIn(const std::string& name) {
    const std::lock_guard hold(OwnCommands().Guard);
    const auto found = OwnCommands().Commands.find(name);
    return found != OwnCommands().Commands.end() ? found->second : BuiltIn();
}

// "Run [QUIET] command": what is behind, to be started without waiting for it. Behind Run may stand another
// one, any number of times.
std::optional<ParsedCommand> BehindRun(std::string_view arguments) {
    while (!arguments.empty() && arguments.back() == '\n')
        arguments.remove_suffix(1);
    while (true) {
        std::size_t position = 0;
        std::string word;
        ItemKind kind = ReadItem(arguments, position, word);
        if (kind == ItemKind::Unquoted && utility::Stricmp(word, "QUIET") == 0) {
            arguments.remove_prefix(position);
            kind = ReadItem(arguments, position = 0, word);
        }
        const bool isWord = kind == ItemKind::Unquoted || kind == ItemKind::Quoted;
        if (!isWord || utility::Stricmp(word, "Run") != 0)
            return SplitCommand(arguments);
        arguments.remove_prefix(position);
    }
}

// A word as a program of the host can use it.
std::string AsHostWord(std::string word) {
    const std::size_t colon = word.find(':');
    if (colon == std::string::npos)
        return word;
    const std::string_view device = std::string_view(word).substr(0, colon);
    if (utility::Stricmp(device, "NIL") == 0)
        return "/dev/null";
    if (!IsKnownDevice(device))
        return word;
    return HostPath(word).value_or(word);
}

// The reason why exec or fork refused: a code that says there was no process, or that it was no program.
long CodeOfSpawnError(int error) {
    switch (error) {
    case ENOENT:
        SetIoErr(ErrorObjectNotFound);
        return CodeError;
    case E2BIG:
        SetIoErr(ErrorLineTooLong);
        return CodeError;
    case EACCES:
    case ENOEXEC:
    case EPERM:
    case ELIBBAD:
    case ETXTBSY:
    case EINVAL:
        SetIoErr(ErrorNotExecutable);
        return CodeError;
    case EAGAIN:
        SetIoErr(ErrorTaskTableFull);
        return CodeNoProcess;
    case ENOMEM:
        SetIoErr(ErrorNoFreeStore);
        return CodeNoProcess;
    default:
        SetIoErr(ErrorFromErrno(error, Operation::Lookup));
        return CodeNoProcess;
    }
}

// The current drawer for the child; nothing where the host cannot enter it.
HostFd CurrentHostDrawer() {
    FileLock current = CurrentDirLock();
    if (!current)
        current = Lock("SYS:");
    if (!current || current.Body()->Owner != &HostHandler)
        return HostFd();
    return DuplicateFd(AsHostLock(current.Body())->Object);
}

void SetPlace(ChildOrder& order) {
    order.Drawer = CurrentHostDrawer();
    const std::string path = order.Drawer ? HostPathOf(order.Drawer.Get()) : std::string();
    if (!path.empty())
        order.Environment.push_back("PWD=" + path);
}

// What the keeper of a child and the task that waits for it share.
struct Rendezvous {
    std::mutex Guard;
    std::condition_variable Changed;
    bool HasEnded = false;
    exec::Task* Waiter = nullptr; // null: waits for Changed
    exec::SignalMask Mask = 0;

    void Tell(bool end) {
        const std::lock_guard hold(Guard);
        HasEnded = HasEnded || end;
        if (Waiter)
            exec::Signal(Waiter, Mask);
        Changed.notify_all();
    }
    bool IsOver() {
        const std::lock_guard hold(Guard);
        return HasEnded;
    }
    // Sleeps until told or broken; gives the break signals that came.
    exec::SignalMask Sleep() {
        if (Mask != 0)
            return exec::Wait(Mask | exec::BreakControlC) & exec::BreakControlC;
        std::unique_lock hold(Guard);
        if (!HasEnded)
            Changed.wait(hold);
        return 0;
    }
};

} // namespace

// One command on its way from words to a process.
struct Launch {
    const SystemOptions& Options;
    Ownership Handles;
    ParsedCommand Command;
    bool InBackground = false; // behind "Run"
    ChildOrder Order{};

    bool FillWords(const FoundProgram& program);
    [[nodiscard]] SystemStream Input() const;
    [[nodiscard]] SystemStream Output() const;
    [[nodiscard]] std::optional<SystemStream> ErrorOutput() const;
    [[nodiscard]] long Refuse(std::string_view subject, long code) const;
    long Prepare();
    long RunAndWait();
    long RunAside(SystemJob* job);
    static long Do(std::string_view line, const SystemOptions& options, Ownership handles, SystemJob* job);
    long DoCommand(SystemJob* job);
    [[nodiscard]] long RunBuiltIn(const BuiltIn& command) const;
    [[nodiscard]] bool CloseHandles() const;
};

SystemStream Launch::Input() const {
    if (Command.Input)
        return SystemStream{.Name = *Command.Input};
    return InBackground ? SystemStream{} : Options.Input;
}

SystemStream Launch::Output() const {
    // What is read and written at once is not emptied before.
    const bool keeps = Command.Append || Command.OneStream;
    return Command.Output ? SystemStream{.Name = *Command.Output, .Append = keeps} : Options.Output;
}

std::optional<SystemStream> Launch::ErrorOutput() const {
    if (Command.ErrorOutput)
        return SystemStream{.Name = *Command.ErrorOutput, .Append = Command.ErrorAppend};
    if (Options.ErrorOutput)
        return Options.ErrorOutput;
    // Our own streams stay two.
    return Options.Output.Own ? std::optional(SystemStream{.Own = true}) : std::nullopt;
}

// Tells the user, who sees what the Shell has to say even when the command's output goes to a file.
long Launch::Refuse(std::string_view subject, long code) const {
    const long error = IoErr();
    // Where that fails too, no place is left to tell of it.
    static_cast<void>(WriteMessage(Options.Output, Options.Input, Fault(error, subject) + "\n"));
    SetIoErr(error);
    return code;
}

bool Launch::FillWords(const FoundProgram& program) {
    std::optional<std::vector<std::string>> words = SplitWords(Command.Arguments);
    if (!words)
        return false;
    std::string typed = Command.Arguments;
    while (!typed.empty() && typed.back() == '\n')
        typed.pop_back();
    if (typed.size() > LongestArguments) {
        SetIoErr(ErrorLineTooLong);
        return false;
    }
    Order.Environment = ChildEnvironment();
    Order.Environment.insert(Order.Environment.end(), Options.Environment.begin(), Options.Environment.end());
    if (program.IsOurs)
        Order.Environment.push_back(std::string(CommandLineVariable) + "=" + typed);
    Order.Path = program.HostPath;
    Order.Words.push_back(program.Name);
    for (std::string& word : *words)
        Order.Words.push_back(program.IsOurs ? std::move(word) : AsHostWord(std::move(word)));
    return true;
}

// Everything before the process; 0 when it can be made.
long Launch::Prepare() {
    const std::optional<FoundProgram> program = FindProgram(Command.Command);
    if (!program || !FillWords(*program))
        return Refuse(Command.Command, CodeError);
    SetPlace(Order);
    StreamPlumber plumber(Handles);
    if (!plumber.Connect(Input(), Output(), ErrorOutput(), Order, Command.OneStream))
        return Refuse(plumber.Culprit(), CodeError);
    return 0;
}

long Launch::RunAndWait() {
    const int number = exec::AllocSignal();
    auto meeting = std::make_shared<Rendezvous>();
    meeting->Mask = number < 0 ? 0 : exec::SignalMask{1} << number;
    meeting->Waiter = number < 0 ? nullptr : exec::FindTask();
    const auto child = Child::Start(
        std::move(Order), [meeting](long) { meeting->Tell(true); },
        Options.Stop ? [meeting] { meeting->Tell(false); } : Child::TickFunction());
    if (!child) {
        const long code = CodeOfSpawnError(errno);
        exec::FreeSignal(number);
        return Refuse(Command.Command, code);
    }
    exec::SignalMask broken = 0;
    while (!meeting->IsOver()) {
        const exec::SignalMask now = meeting->Sleep();
        const bool wantsBreak = now != 0 || (Options.Stop && !child->WasBroken() && Options.Stop());
        if (wantsBreak && !meeting->IsOver())
            child->Break();
        broken |= now;
    }
    exec::FreeSignal(number);
    exec::SetSignal(broken, broken);
    SetIoErr(child->WasBroken() ? ErrorBreak : 0);
    return child->WasBroken() ? CodeFail : child->Code();
}

long Launch::RunAside(SystemJob* job) {
    const auto child = Child::Start(std::move(Order), Options.Ended);
    if (!child)
        return Refuse(Command.Command, CodeOfSpawnError(errno));
    if (job)
        job->Process = child;
    return 0;
}

// Closes the handles that were given for good and that no process has taken over; false with IoErr.
bool Launch::CloseHandles() const {
    long failure = 0;
    const auto close = [&failure](FileHandle* handle) {
        if (handle && *handle && !Close(*handle) && failure == 0)
            failure = IoErr();
    };
    if (Handles != Ownership::Taken)
        return true;
    close(Options.Input.Handle);
    close(Options.Output.Handle);
    if (Options.ErrorOutput)
        close(Options.ErrorOutput->Handle);
    if (failure != 0)
        SetIoErr(failure);
    return failure == 0;
}

long Launch::RunBuiltIn(const BuiltIn& command) const {
    const BuiltInResult result = command(Command.Arguments);
    const long error = IoErr();
    // A file that the line names is made or emptied also by a command that says nothing.
    const bool isFile = Command.Output.has_value();
    const auto write = [&] {
        return Command.OneStream ? WriteAtStart(*Command.Output, result.Output)
                                 : WriteMessage(Output(), Input(), result.Output);
    };
    if ((isFile || !result.Output.empty()) && !write())
        return Refuse(Command.Command, std::max(result.Code, CodeError));
    if (!CloseHandles()) // before anybody is told of the end
        return std::max(result.Code, CodeError);
    SetIoErr(error);
    return result.Code;
}

long Launch::DoCommand(SystemJob* job) {
    SystemJob ignored;
    if (utility::Stricmp(Command.Command, "Run") == 0) {
        std::optional<ParsedCommand> behind = BehindRun(Command.Arguments);
        if (!behind)
            return Refuse(Command.Command, CodeError);
        Command.Command = std::move(behind->Command);
        Command.Arguments = std::move(behind->Arguments);
        InBackground = true;
        Handles = job ? Handles : Ownership::Lent;
        job = job ? job : &ignored;
    }
    if (Command.Command.empty())
        return 0;
    if (const BuiltIn own = FindBuiltIn(Command.Command)) {
        const long code = RunBuiltIn(own);
        const long error = IoErr();
        if (job)
            job->Code = code;
        if (job && Options.Ended)
            Options.Ended(code);
        SetIoErr(error);
        return job ? 0 : code;
    }
    const long code = Prepare();
    if (code != 0)
        return code;
    return job ? RunAside(job) : RunAndWait();
}

long Launch::Do(std::string_view line, const SystemOptions& options, Ownership handles, SystemJob* job) {
    std::optional<ParsedCommand> command =
        ParseCommandLine(line, options.Sources ? *options.Sources : ShellSources());
    Launch launch{.Options = options, .Handles = handles, .Command = {}};
    long code = CodeError;
    if (command) {
        launch.Command = *std::move(command);
        SetIoErr(0);
        code = launch.DoCommand(job);
    } else {
        code = launch.Refuse("Command line", CodeError);
    }
    const long error = IoErr();
    if (!launch.CloseHandles() && code == 0)
        return CodeError;
    SetIoErr(error);
    return code;
}

bool SystemJob::HasEnded() const {
    return !Process || Process->HasEnded();
}

long SystemJob::ReturnCode() const {
    return Process ? Process->Code() : Code;
}

void SystemJob::Break() {
    if (Process)
        Process->Break();
}

long System(std::string_view line, const SystemOptions& options) {
    return Launch::Do(line, options, Ownership::Caller, nullptr);
}

long StartSystem(std::string_view line, const SystemOptions& options, SystemJob* job) {
    SystemJob own;
    return Launch::Do(line, options, Ownership::Taken, job ? job : &own);
}

std::optional<std::string> CommandOutput(std::string_view line, std::size_t limit) {
    std::string text;
    bool isTooLong = false;
    SystemOptions options;
    options.Output.Sink = [&](std::string_view bytes) {
        isTooLong = isTooLong || bytes.size() > limit - text.size();
        if (!isTooLong)
            text += bytes;
        return !isTooLong;
    };
    options.ErrorOutput = SystemStream{};
    const long code = System(line, options);
    if (isTooLong)
        SetIoErr(ErrorLineTooLong);
    const bool isOfCommand = code >= 0 && (code < CodeError || IoErr() == 0);
    return isOfCommand && !isTooLong ? std::optional(std::move(text)) : std::nullopt;
}

CommandLineSources ShellSources() {
    const auto variable = [](std::string_view name) -> std::optional<std::string> {
        if (std::optional<std::string> value = GetVar(name))
            return value;
        const char* ofHost = std::getenv(std::string(name).c_str());
        return ofHost ? std::optional<std::string>(ofHost) : std::nullopt;
    };
    const auto output = [](std::string_view command) { return CommandOutput(command, MaxArgumentLine); };
    return {variable, output};
}

bool StartHostProgram(const std::vector<std::string>& words) {
    const std::optional<FoundProgram> program = words.empty() ? std::nullopt : FindHostProgram(words.front());
    if (!program)
        return false;
    ChildOrder order;
    order.Path = program->HostPath;
    order.Words = words;
    order.Environment = ChildEnvironment();
    SetPlace(order);
    order.Company = ChildCompany::Session;
    StreamPlumber plumber(Ownership::Taken);
    if (!plumber.Connect({}, {}, {}, order, false))
        return false;
    if (Child::Start(std::move(order), {}))
        return true;
    static_cast<void>(CodeOfSpawnError(errno));
    return false;
}

void SetBuiltIn(std::string_view name, BuiltIn command) {
    const std::lock_guard hold(OwnCommands().Guard);
    if (command)
        OwnCommands().Commands[std::string(name)] = std::move(command);
    else
        OwnCommands().Commands.erase(std::string(name));
}

} // namespace dos
