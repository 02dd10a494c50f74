#include "platform/commands/Shell.h"

#include "platform/commands/Command.h"
#include "platform/commands/TextOutput.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/System.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <thread>

namespace commands {

namespace {

constexpr std::size_t LargestInsertion = dos::MaxArgumentLine; // bytes of a command's output
constexpr std::size_t InputBlock = 4096;                       // bytes read at one go
constexpr std::size_t LongestInputLine = dos::MaxArgumentLine; // bytes

using FileRef = std::shared_ptr<dos::FileHandle>;

// The lines of a stream of dos.
class LineSource {
public:
    explicit LineSource(FileRef from) : File(std::move(from)) {}

    std::optional<std::string> Next() {
        while (true) {
            const std::size_t end = Ready.find('\n');
            if (end != std::string::npos || Ready.size() > LongestInputLine || (IsOver && !Ready.empty())) {
                std::string line = Ready.substr(0, end);
                Ready.erase(0, end == std::string::npos ? end : end + 1);
                return line;
            }
            if (IsOver)
                return {};
            std::array<std::byte, InputBlock> block;
            const std::int64_t got = dos::Read(*File, block);
            IsOver = got <= 0;
            for (std::int64_t i = 0; i < got; ++i)
                Ready += static_cast<char>(block[static_cast<std::size_t>(i)]);
        }
    }

    // The stream, standing behind the last line that was given, as far as its device can go back.
    dos::FileHandle* AtNext() {
        const auto ahead = static_cast<std::int64_t>(Ready.size());
        if (ahead != 0 && dos::Seek(*File, -ahead, dos::SeekFrom::Current) >= 0)
            Ready.clear();
        IsOver = false;
        return File.get();
    }

private:
    FileRef File;
    std::string Ready;
    bool IsOver = false; // as far as Next has seen
};

FileRef OpenFor(const std::string& name, dos::OpenMode mode, bool isAppend) {
    auto file =
        std::make_shared<dos::FileHandle>(dos::Open(name, isAppend ? dos::OpenMode::ReadWrite : mode));
    if (!*file)
        return nullptr;
    if (isAppend && dos::Seek(*file, 0, dos::SeekFrom::End) < 0)
        return nullptr;
    return file;
}

// A file that is read and written from one place ("<>"). Each side has its own handle: a program reads while
// what it writes is taken on another thread. Its output begins behind what it has read by then.
class OnePlace {
public:
    OnePlace(const FileRef& in, FileRef out)
        : Lines(in), In(in), Out(std::move(out)), Owner(std::this_thread::get_id()) {}

    std::optional<std::string> Next() { return Lines.Next(); }

    // The side that is read, for a program.
    dos::FileHandle* AtNext() {
        dos::FileHandle* file = Lines.AtNext();
        return ReadOnFrom(Place()) ? file : nullptr;
    }

    bool Put(std::string_view bytes) {
        const bool isOurs = std::this_thread::get_id() == Owner;
        if (isOurs)
            Lines.AtNext();
        const std::int64_t place = Place();
        return place >= 0 && dos::Seek(*Out, place, dos::SeekFrom::Beginning) >= 0 &&
               dos::Write(*Out, std::as_bytes(std::span(bytes.data(), bytes.size()))) >= 0 &&
               (!isOurs || ReadOnFrom(place + static_cast<std::int64_t>(bytes.size())));
    }

private:
    [[nodiscard]] std::int64_t Place() {
        return std::max(dos::Seek(*In, 0, dos::SeekFrom::Current),
                        dos::Seek(*Out, 0, dos::SeekFrom::Current));
    }
    // What is read does not grow.
    bool ReadOnFrom(std::int64_t place) {
        return dos::Seek(*In, place, dos::SeekFrom::Beginning) >= 0 ||
               dos::Seek(*In, 0, dos::SeekFrom::End) >= 0;
    }

    LineSource Lines;
    FileRef In, Out;
    std::thread::id Owner;
};

// Is it a file, or could it be one? A device gives one stream for both sides.
bool IsFileName(const std::string& name) {
    return dos::ExamineObject(name) || dos::IoErr() == dos::ErrorObjectNotFound;
}

// The streams of one line in place of the context's own while it lives.
class Redirected {
public:
    Redirected(Context& context, const dos::ParsedCommand& line) : Where(context), Before(context) {
        if (line.Output || line.ErrorOutput)
            Where.FlushOwn = nullptr; // programs write to the streams of the context
        IsGood = OpenAll(line);
    }
    Redirected(const Redirected&) = delete;
    Redirected& operator=(const Redirected&) = delete;
    ~Redirected() {
        Where.Output = Before.Output;
        Where.ErrorOutput = Before.ErrorOutput;
        Where.Input = Before.Input;
        Where.InputFile = Before.InputFile;
        Where.FlushOwn = Before.FlushOwn;
        Where.IsTerminal = Before.IsTerminal;
        Where.OutputError = Before.OutputError;
    }

    [[nodiscard]] bool IsOpen() const noexcept { return IsGood; }

    // Puts the written files under their names; false with IoErr.
    [[nodiscard]] bool Close() {
        const bool isWhole = !Out || Where.OutputError == 0;
        if (!isWhole)
            dos::SetIoErr(Where.OutputError);
        bool isClosed = isWhole;
        for (const FileRef& file : {Out, Errors})
            isClosed = (!file || (file == Out && !isWhole) || dos::Close(*file)) && isClosed;
        return isClosed;
    }

private:
    bool OpenAll(const dos::ParsedCommand& line) {
        if (line.OneStream && line.Input) {
            Out = OpenFor(*line.Input, dos::OpenMode::ReadWrite, false);
            if (!Out)
                return false;
            if (!IsFileName(*line.Input))
                ReadFrom(Out);
            else if (!ShareFile(*line.Input))
                return false;
        } else if (line.Input) {
            const FileRef in = OpenFor(*line.Input, dos::OpenMode::Old, false);
            if (!in)
                return false;
            ReadFrom(in);
        }
        if (line.Output && !line.OneStream) {
            Out = OpenFor(*line.Output, dos::OpenMode::New, line.Append);
            if (!Out)
                return false;
        }
        if (Out) {
            Where.Output =
                Both ? [both = Both](std::string_view bytes) { return both->Put(bytes); } : OutputTo(Out);
            Where.IsTerminal = false;
        }
        if (!line.ErrorOutput)
            return true;
        if (line.ErrorOutput == line.Output) { // one file, in the order of the writes
            Where.ErrorOutput = Where.Output;
            return true;
        }
        Errors = OpenFor(*line.ErrorOutput, dos::OpenMode::New, line.ErrorAppend);
        if (Errors)
            Where.ErrorOutput = OutputTo(Errors);
        return Errors != nullptr;
    }

    bool ShareFile(const std::string& name) {
        const bool isThere = static_cast<bool>(dos::Lock(name)); // a new one is not before it is closed
        const FileRef in = OpenFor(isThere ? name : "NIL:", dos::OpenMode::Old, false);
        if (!in)
            return false;
        Both = std::make_shared<OnePlace>(in, Out);
        Where.Input = [both = Both] { return both->Next(); };
        Where.InputFile = [both = Both] { return both->AtNext(); };
        return true;
    }

    void ReadFrom(const FileRef& file) {
        const auto lines = std::make_shared<LineSource>(file);
        Where.Input = [lines] { return lines->Next(); };
        Where.InputFile = [lines] { return lines->AtNext(); };
    }

    Context& Where;
    Context Before;
    FileRef Out, Errors;
    std::shared_ptr<OnePlace> Both; // of one file
    bool IsGood = false;
};

// The output of a line, for the place where it stood between backticks.
std::optional<std::string> OutputOf(const Context& context, std::string_view line) {
    std::string text;
    Context inner = context;
    inner.IsTerminal = false;
    inner.FlushOwn = nullptr;
    if (!inner.ErrorOutput)
        inner.ErrorOutput = inner.Output;
    inner.Output = [&text](std::string_view bytes) {
        if (text.size() + bytes.size() > LargestInsertion) {
            dos::SetIoErr(dos::ErrorLineTooLong);
            return false;
        }
        text.append(bytes);
        return true;
    };
    RunLine(inner, line);
    if (inner.OutputError == 0)
        return text;
    dos::SetIoErr(inner.OutputError);
    return {};
}

std::optional<std::string> Variable(const Context& context, std::string_view name) {
    if (utility::Stricmp(name, "RC") == 0)
        return std::to_string(context.LastCode);
    if (utility::Stricmp(name, "Result2") == 0)
        return std::to_string(context.LastError);
    return dos::ShellSources().Variable(name);
}

dos::CommandLineSources SourcesOf(const Context& context) {
    return {
        [&context](std::string_view name) { return Variable(context, name); },
        [&context](std::string_view command) { return OutputOf(context, command); },
    };
}

// Nothing with IoErr when a stream cannot be opened, or has not taken all.
std::optional<int> RunRedirected(Context& context, const Command& command, const dos::ParsedCommand& line) {
    Redirected streams(context, line);
    if (!streams.IsOpen())
        return {};
    dos::SetIoErr(0);
    const int code = RunCommand(command, line.Arguments, context);
    const long error = dos::IoErr();
    if (!streams.Close())
        return {};
    dos::SetIoErr(error);
    return code;
}

int RunParsed(Context& context, const dos::ParsedCommand& line) {
    const Command* command = FindCommand(line.Command);
    if (command == nullptr) { // the first word was one before variables were put in
        dos::SetIoErr(dos::ErrorObjectNotFound);
        return Complain(context, line.Command);
    }
    if (!line.Input && !line.Output && !line.ErrorOutput) {
        dos::SetIoErr(0);
        return RunCommand(*command, line.Arguments, context);
    }
    const std::optional<int> code = RunRedirected(context, *command, line);
    return code ? *code : Complain(context, line.Command);
}

// An output of the context for a program, with the reason why it took no more.
dos::SystemStream SinkOf(const std::function<bool(std::string_view)>& output, long& failure) {
    return {.Sink = [&output, &failure](std::string_view bytes) {
        if (!output || output(bytes))
            return true;
        failure = dos::IoErr();
        return false;
    }};
}

void ShareStreams(Context& context, dos::SystemOptions& options, long& failure) {
    if (context.InputFile)
        options.Input.Handle = context.InputFile();
    else
        options.Input.Own = context.HasOwnInput;
    if (!context.FlushOwn) {
        options.Output = SinkOf(context.Output, failure);
        if (context.ErrorOutput)
            options.ErrorOutput = SinkOf(context.ErrorOutput, failure);
        return;
    }
    if (!context.FlushOwn())
        context.OutputError = dos::IoErr();
    options.Output.Own = true;
    options.ErrorOutput = dos::SystemStream{.Own = true};
}

// A line whose command is none of ours: as the service runs it, over the streams of the context.
int RunProgramLine(Context& context, std::string_view line) {
    long failure = 0;
    dos::SystemOptions options;
    options.Stop = context.Stop;
    options.Sources = SourcesOf(context);
    ShareStreams(context, options, failure);
    const long code = dos::System(line, options);
    if (failure != 0) {
        context.OutputError = failure;
        dos::SetIoErr(failure);
        return static_cast<int>(std::clamp<long>(code, ReturnError, 255));
    }
    if (code < 0)
        return Complain(context);
    if (code >= ReturnFail && dos::IoErr() == dos::ErrorBreak)
        return Complain(context);
    return static_cast<int>(std::min(code, 255L));
}

// Whether the line begins with the name of one of our commands. Nothing for a blank line.
std::optional<bool> IsOwnLine(std::string_view line) {
    std::size_t at = 0;
    std::string word;
    const dos::ItemKind kind = dos::ReadItem(line, at, word);
    if (kind == dos::ItemKind::Nothing)
        return {};
    return kind == dos::ItemKind::Error || kind == dos::ItemKind::Equal || FindCommand(word) != nullptr;
}

} // namespace

std::optional<dos::ParsedCommand> ParseLine(Context& context, std::string_view line) {
    return dos::ParseCommandLine(line, SourcesOf(context));
}

int RunLine(Context& context, std::string_view line) {
    const auto isOwn = IsOwnLine(line);
    if (!isOwn)
        return context.LastCode;
    if (!*isOwn) {
        context.LastCode = RunProgramLine(context, line);
    } else if (const auto parsed = ParseLine(context, line)) {
        context.LastCode = RunParsed(context, *parsed);
    } else {
        Complain(context);
        context.LastCode = ReturnFail;
    }
    context.LastError = context.LastCode == ReturnOk ? 0 : dos::IoErr();
    return context.LastCode;
}

} // namespace commands
