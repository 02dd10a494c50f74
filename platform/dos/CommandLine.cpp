#include "platform/dos/CommandLine.h"

#include "platform/dos/Errors.h"

#include <algorithm>
#include <utility>

namespace dos {
namespace {

bool IsSeparator(char c) {
    return c == ' ' || c == '\t' || c == '=';
}

bool IsNameLetter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

// An inserted text keeps to the one line it is inserted into.
std::string AsOneLine(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

// Where the backtick that closes a substitution stands, those in quoted words left out; npos when there is
// none.
std::size_t FindBacktick(std::string_view line, std::size_t at) {
    for (bool wordBegins = true; at < line.size(); ++at) {
        if (line[at] == '`')
            return at;
        if (wordBegins && line[at] == '"') {
            for (++at; at < line.size() && line[at] != '"'; ++at)
                at += line[at] == '*' ? 1 : 0;
            continue; // a word begins behind the closing quote
        }
        wordBegins = IsSeparator(line[at]);
    }
    return std::string_view::npos;
}

// Parts the command from its arguments.
long Part(std::string_view line, ParsedCommand& result) {
    std::size_t position = 0;
    const ItemKind kind = ReadItem(line, position, result.Command);
    if (kind == ItemKind::Error)
        return IoErr();
    if (kind == ItemKind::Equal)
        return ErrorBadTemplate;
    if (kind != ItemKind::Nothing) {
        const std::size_t start = std::min(line.find_first_not_of(" \t", position), line.size());
        result.Arguments = line.substr(start);
    }
    result.Arguments += '\n';
    return 0;
}

// Goes once through a line: what stays of it grows in Rest, redirections go to the record. Each step gives
// the error that ends the parse, 0 when it went well.
class LineScanner {
public:
    LineScanner(std::string_view line, const CommandLineSources& sources) : Line(line), Sources(sources) {}
    long Scan();
    long Finish() { return Part(Rest, Result); }
    ParsedCommand Take() { return std::move(Result); }

private:
    struct Direction {
        std::optional<std::string> ParsedCommand::*Name;
        bool ParsedCommand::*Append;
    };
    [[nodiscard]] char Peek(std::size_t ahead = 0) const;
    [[nodiscard]] bool WordBegins() const { return Rest.empty() || IsSeparator(Rest.back()) || BehindQuote; }
    long ScanNext();
    long CopyQuoted();
    long Insert(std::string& to);
    long InsertVariable(std::string& to);
    long InsertOutput(std::string& to);
    long InsertText(std::string& to, std::string text);
    long ScanRedirection();
    long ReadOutputDirection(Direction direction);
    long ReadName(std::string& name);
    long ReadPlainName(std::string& name);

    std::string_view Line;
    const CommandLineSources& Sources;
    std::size_t At = 0;
    std::size_t Inserted = 0; // bytes that insertions gave, file names included
    bool BehindQuote = false; // the end of Rest is a closing quote
    std::string Rest;
    ParsedCommand Result;
};

// A character of the line, NUL behind its end.
char LineScanner::Peek(std::size_t ahead) const {
    return At + ahead < Line.size() ? Line[At + ahead] : '\0';
}

long LineScanner::InsertText(std::string& to, std::string text) {
    Inserted += text.size();
    if (Inserted > MaxArgumentLine || text.find('\0') != std::string::npos)
        return ErrorLineTooLong;
    to += AsOneLine(std::move(text));
    return 0;
}

// The value of a variable that the line names at this place; what names none is copied.
long LineScanner::InsertVariable(std::string& to) {
    const std::size_t start = At++;
    std::size_t end = At;
    std::string_view name;
    if (Peek() == '{') {
        end = Line.find('}', At);
        if (end == std::string_view::npos)
            return ErrorLineTooLong;
        name = Line.substr(At + 1, end - At - 1);
        ++end;
    } else {
        while (end < Line.size() && IsNameLetter(Line[end]))
            ++end;
        name = Line.substr(At, end - At);
    }
    At = end;
    std::optional<std::string> value;
    if (!name.empty() && Sources.Variable)
        value = Sources.Variable(name);
    if (!value) {
        to += Line.substr(start, end - start);
        return 0;
    }
    return InsertText(to, *std::move(value));
}

long LineScanner::InsertOutput(std::string& to) {
    const std::size_t end = FindBacktick(Line, At + 1);
    if (end == std::string_view::npos)
        return ErrorLineTooLong;
    if (!Sources.Output)
        return ErrorNotImplemented;
    SetIoErr(0);
    std::optional<std::string> output = Sources.Output(Line.substr(At + 1, end - At - 1));
    if (!output)
        return IoErr() != 0 ? IoErr() : ErrorNotImplemented;
    At = end + 1;
    return InsertText(to, *std::move(output));
}

// Copies one character, or what stands for an insertion in its place.
long LineScanner::Insert(std::string& to) {
    if (Peek() == '$')
        return InsertVariable(to);
    if (Peek() == '`')
        return InsertOutput(to);
    to += Line[At++];
    return 0;
}

// Copies a quoted word as it stands.
long LineScanner::CopyQuoted() {
    std::string word;
    const std::size_t start = At;
    if (ReadItem(Line, At, word) != ItemKind::Quoted)
        return ErrorLineTooLong;
    Rest += Line.substr(start, At - start);
    BehindQuote = true;
    return 0;
}

// A name without quotes ends where a word does, and where the next redirection or a comment begins.
long LineScanner::ReadPlainName(std::string& name) {
    while (At < Line.size() && !IsSeparator(Peek()) && Peek() != '<' && Peek() != '>' && Peek() != ';')
        if (const long error = Insert(name))
            return error;
    if (At < Line.size() && IsSeparator(Peek()))
        ++At;
    return 0;
}

long LineScanner::ReadName(std::string& name) {
    while (Peek() == ' ' || Peek() == '\t')
        ++At;
    long error = 0;
    if (Peek() == '"')
        error = ReadItem(Line, At, name) == ItemKind::Quoted ? 0 : ErrorLineTooLong;
    else
        error = ReadPlainName(name);
    if (error == 0 && name.empty())
        return ErrorKeyNeedsArg;
    return error;
}

// At is behind the first ">".
long LineScanner::ReadOutputDirection(Direction direction) {
    if (Result.*direction.Name)
        return ErrorTooManyArgs;
    if (Peek() == '>') {
        ++At;
        Result.*direction.Append = true;
    }
    return ReadName((Result.*direction.Name).emplace());
}

long LineScanner::ScanRedirection() {
    if (Rest.find_first_not_of(" \t") == std::string::npos)
        return ErrorLineTooLong;
    if (!IsSeparator(Rest.back()))
        Rest += ' '; // the words on both sides stay apart
    const char first = Line[At++];
    if (first == '>')
        return ReadOutputDirection({&ParsedCommand::Output, &ParsedCommand::Append});
    if (first == '*') {
        ++At;
        return ReadOutputDirection({&ParsedCommand::ErrorOutput, &ParsedCommand::ErrorAppend});
    }
    const bool both = Peek() == '>';
    if (Result.Input || (both && Result.Output))
        return ErrorTooManyArgs;
    At += both ? 1 : 0;
    if (const long error = ReadName(Result.Input.emplace()))
        return error;
    if (both)
        Result.Output = Result.Input;
    Result.OneStream = both;
    return 0;
}

long LineScanner::ScanNext() {
    const char next = Peek();
    if (next == '"' && WordBegins())
        return CopyQuoted();
    if (next == '<' || next == '>' || (next == '*' && Peek(1) == '>' && WordBegins()))
        return ScanRedirection();
    if (next == ';') {
        At = Line.size();
        return 0;
    }
    const std::size_t before = Rest.size();
    const long error = Insert(Rest);
    BehindQuote = BehindQuote && Rest.size() == before;
    return error;
}

long LineScanner::Scan() {
    while (At < Line.size())
        if (const long error = ScanNext())
            return error;
    return Rest.size() > MaxArgumentLine ? ErrorLineTooLong : 0;
}

// Reads one word from behind the blanks before it; false when a quote is not closed.
bool ReadWord(std::string_view text, std::size_t& at, std::string& word) {
    for (bool mayQuote = true; at < text.size() && text[at] != ' ' && text[at] != '\t';) {
        if (mayQuote && text[at] == '"') {
            std::string part;
            std::size_t end = at;
            if (ReadItem(text, end, part) != ItemKind::Quoted)
                return false;
            at = end;
            word += part;
            return true;
        }
        mayQuote = text[at] == '=';
        word += text[at++];
    }
    return true;
}

// The line without the newlines that end it; nothing when it is none that a Shell can take.
std::optional<std::string_view> AsSingleLine(std::string_view line) {
    if (line.size() > MaxArgumentLine)
        return std::nullopt;
    while (!line.empty() && line.back() == '\n')
        line.remove_suffix(1);
    if (line.find_first_of(std::string_view("\n\0", 2)) != std::string_view::npos)
        return std::nullopt;
    return line;
}

} // namespace

std::optional<ParsedCommand> ParseCommandLine(std::string_view line, const CommandLineSources& sources) {
    const std::optional<std::string_view> single = AsSingleLine(line);
    LineScanner scanner(single.value_or(std::string_view{}), sources);
    long error = single ? 0 : ErrorLineTooLong;
    if (error == 0)
        error = scanner.Scan();
    if (error == 0)
        error = scanner.Finish();
    if (error != 0) {
        SetIoErr(error);
        return std::nullopt;
    }
    return scanner.Take();
}

std::optional<ParsedCommand> SplitCommand(std::string_view line) {
    ParsedCommand result;
    const std::optional<std::string_view> single = AsSingleLine(line);
    const long error = single ? Part(*single, result) : ErrorLineTooLong;
    if (error == 0)
        return result;
    SetIoErr(error);
    return std::nullopt;
}

std::optional<std::vector<std::string>> SplitWords(std::string_view arguments) {
    while (!arguments.empty() && arguments.back() == '\n')
        arguments.remove_suffix(1);
    std::vector<std::string> words;
    for (std::size_t at = 0; (at = arguments.find_first_not_of(" \t", at)) < arguments.size();) {
        if (!ReadWord(arguments, at, words.emplace_back())) {
            SetIoErr(ErrorLineTooLong);
            return std::nullopt;
        }
    }
    return words;
}

std::string EscapeArgument(std::string_view text) {
    const std::string quoted = QuoteArgument(text);
    return quoted.substr(1, quoted.size() - 2);
}

} // namespace dos
