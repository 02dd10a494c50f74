// Open files of a script, each under a name that the script gives it. STDIN, STDOUT and STDERR are there from
// the start.
#include "platform/dos/Files.h"
#include "platform/rexx/ScriptFunctions.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>

namespace rexx {

namespace {

constexpr std::size_t BlockSize = 16 * 1024;                 // bytes read at once
constexpr std::size_t LongestPiece = std::size_t{16} << 20U; // bytes of a line or of one READCH
constexpr std::size_t MostStreams = 200;

// One open file. What is read ahead is given back before anything is written.
class ScriptStream {
public:
    virtual ~ScriptStream() = default;
    // Up to that many bytes; of a line its end is taken and not given.
    std::string Take(std::size_t most, bool isLine);
    [[nodiscard]] bool IsAtEnd();
    [[nodiscard]] virtual bool Put(std::string_view bytes) = 0;
    virtual std::int64_t Move(std::int64_t offset, dos::SeekFrom from) = 0;
    [[nodiscard]] virtual bool End() { return true; }

protected:
    [[nodiscard]] virtual std::int64_t Fetch(std::span<std::byte> block) = 0;
    [[nodiscard]] std::size_t Ahead() const { return Buffer.size() - At; }
    void ForgetAhead() {
        Buffer.clear();
        At = 0;
    }

private:
    bool Fill();

    std::string Buffer;
    std::size_t At = 0; // of Buffer, what is still to be given
};

bool ScriptStream::Fill() {
    std::array<std::byte, BlockSize> block{};
    const std::int64_t count = Fetch(block);
    if (count <= 0) {
        return false;
    }
    Buffer.erase(0, At);
    At = 0;
    Buffer.append(reinterpret_cast<const char*>(block.data()), static_cast<std::size_t>(count));
    return true;
}

std::string ScriptStream::Take(std::size_t most, bool isLine) {
    std::size_t searched = 0; // behind At, without a line end
    std::size_t end = std::string::npos;
    while (true) {
        end = isLine ? Buffer.find('\n', At + searched) : std::string::npos;
        searched = Ahead();
        if (end != std::string::npos || searched >= most || !Fill()) {
            break;
        }
    }
    const std::size_t count = std::min(most, end == std::string::npos ? Ahead() : end - At);
    std::string piece = Buffer.substr(At, count);
    At += count;
    if (end != std::string::npos && At == end) {
        ++At;
    }
    return piece;
}

bool ScriptStream::IsAtEnd() {
    return Ahead() == 0 && !Fill();
}

class FileStream : public ScriptStream {
public:
    explicit FileStream(dos::FileHandle file) : File(std::move(file)) {}

    bool Put(std::string_view bytes) override {
        if (Ahead() != 0) {
            static_cast<void>(Move(0, dos::SeekFrom::Current));
        }
        return dos::Write(File, std::as_bytes(std::span(bytes))) == static_cast<std::int64_t>(bytes.size());
    }
    std::int64_t Move(std::int64_t offset, dos::SeekFrom from) override {
        const std::int64_t back = from == dos::SeekFrom::Current ? static_cast<std::int64_t>(Ahead()) : 0;
        ForgetAhead();
        return dos::Seek(File, offset - back, from);
    }
    bool End() override { return dos::Close(File); }

private:
    std::int64_t Fetch(std::span<std::byte> block) override { return dos::Read(File, block); }

    dos::FileHandle File;
};

// A standard stream of the process.
class OwnStream : public ScriptStream {
public:
    explicit OwnStream(std::FILE* file) : File(file) {}

    bool Put(std::string_view bytes) override {
        return std::fwrite(bytes.data(), 1, bytes.size(), File) == bytes.size() && std::fflush(File) == 0;
    }
    std::int64_t Move(std::int64_t, dos::SeekFrom) override { return -1; }

private:
    // A line at a time, so that a person who types is answered.
    std::int64_t Fetch(std::span<std::byte> block) override {
        std::size_t count = 0;
        for (int byte = 0; count < block.size() && byte != '\n' && (byte = std::fgetc(File)) != EOF;
             ++count) {
            block[count] = static_cast<std::byte>(byte);
        }
        return static_cast<std::int64_t>(count);
    }

    std::FILE* File;
};

using Streams = std::map<std::string, std::unique_ptr<ScriptStream>, std::less<>>;

Streams& AllStreams() {
    static Streams streams = [] {
        Streams own;
        own.emplace("STDIN", std::make_unique<OwnStream>(stdin));
        own.emplace("STDOUT", std::make_unique<OwnStream>(stdout));
        own.emplace("STDERR", std::make_unique<OwnStream>(stderr));
        return own;
    }();
    return streams;
}

ScriptStream* FindStream(std::string_view name) {
    const auto found = AllStreams().find(name);
    return found != AllStreams().end() ? found->second.get() : nullptr;
}

dos::FileHandle OpenFile(std::string_view path, char mode) {
    switch (mode) {
    case 'W':
        return dos::Open(path, dos::OpenMode::New);
    case 'A': {
        dos::FileHandle file = dos::Open(path, dos::OpenMode::ReadWrite);
        if (file && dos::Seek(file, 0, dos::SeekFrom::End) < 0) {
            return {};
        }
        return file;
    }
    default:
        return dos::OpenOld(path);
    }
}

std::optional<std::string> Open(const FunctionArguments& arguments) {
    const char mode = arguments.Letter(2, 'R');
    const bool isKnownMode = mode == 'R' || mode == 'W' || mode == 'A';
    if (arguments[0].empty() || !isKnownMode) {
        return std::nullopt;
    }
    if (FindStream(arguments[0]) != nullptr || AllStreams().size() >= MostStreams) {
        return "0";
    }
    dos::FileHandle file = OpenFile(arguments[1], mode);
    if (!file) {
        return "0";
    }
    AllStreams().emplace(arguments[0], std::make_unique<FileStream>(std::move(file)));
    return "1";
}

std::optional<std::string> Close(const FunctionArguments& arguments) {
    const auto found = AllStreams().find(arguments[0]);
    if (found == AllStreams().end()) {
        return "0";
    }
    const bool success = found->second->End();
    AllStreams().erase(found);
    return success ? "1" : "0";
}

// Functions on a stream that is not open are errors of the script, but for the question after its end.
std::optional<std::string> ReadLn(const FunctionArguments& arguments) {
    ScriptStream* stream = FindStream(arguments[0]);
    return stream != nullptr ? std::optional(stream->Take(LongestPiece, true)) : std::nullopt;
}

std::optional<std::string> ReadCh(const FunctionArguments& arguments) {
    ScriptStream* stream = FindStream(arguments[0]);
    const auto count = arguments.Has(1) ? arguments.Number(1) : std::optional(1L);
    if (stream == nullptr || !count || *count < 0) {
        return std::nullopt;
    }
    return stream->Take(std::min(static_cast<std::size_t>(*count), LongestPiece), false);
}

std::optional<std::string> Write(const FunctionArguments& arguments, std::string_view end) {
    ScriptStream* stream = FindStream(arguments[0]);
    if (stream == nullptr) {
        return std::nullopt;
    }
    const std::string bytes = std::string(arguments[1]).append(end);
    return std::to_string(stream->Put(bytes) ? bytes.size() : 0);
}

std::optional<std::string> WriteLn(const FunctionArguments& arguments) {
    return Write(arguments, "\n");
}

std::optional<std::string> WriteCh(const FunctionArguments& arguments) {
    return Write(arguments, "");
}

std::optional<std::string> Eof(const FunctionArguments& arguments) {
    ScriptStream* stream = FindStream(arguments[0]);
    return stream != nullptr && stream->IsAtEnd() ? "1" : "0";
}

std::optional<std::string> Seek(const FunctionArguments& arguments) {
    ScriptStream* stream = FindStream(arguments[0]);
    const auto offset = arguments.Number(1);
    if (stream == nullptr || !offset) {
        return std::nullopt;
    }
    const char from = arguments.Letter(2, 'C');
    return std::to_string(stream->Move(*offset, from == 'B'   ? dos::SeekFrom::Beginning
                                                : from == 'E' ? dos::SeekFrom::End
                                                              : dos::SeekFrom::Current));
}

constexpr ScriptFunction Table[] = {
    {"CLOSE", 1, 1, Close},   {"EOF", 1, 1, Eof},   {"OPEN", 2, 3, Open},       {"READCH", 1, 2, ReadCh},
    {"READLN", 1, 1, ReadLn}, {"SEEK", 2, 3, Seek}, {"WRITECH", 2, 2, WriteCh}, {"WRITELN", 1, 2, WriteLn},
};

} // namespace

std::span<const ScriptFunction> StreamFunctions() {
    return Table;
}

bool CloseStreams() {
    bool success = true;
    for (auto& [name, stream] : AllStreams()) {
        success = stream->End() && success;
    }
    AllStreams().clear();
    return success;
}

std::vector<std::string> OpenStreams() {
    std::vector<std::string> names;
    for (const auto& [name, stream] : AllStreams()) {
        names.push_back(name);
    }
    return names;
}

} // namespace rexx
