// Execute: the lines of a file one after the other, with If, Else, EndIf, Skip, Lab, EndSkip, FailAt and
// Quit. Scripts whose lines begin with a dot (".key") take arguments in a way that is not offered here; they
// are refused as a whole.
#include "platform/commands/Runs.h"
#include "platform/commands/Shell.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <charconv>

namespace commands {

namespace {

constexpr std::size_t LargestScript = 1u << 20; // bytes
constexpr unsigned DeepestScript = 20;          // scripts within each other
constexpr std::string_view IfTemplate = "NOT/S,WARN/S,ERROR/S,FAIL/S,TEXT,EQ/K,GT/K,GE/K,VAL/S,EXISTS/K";

std::vector<std::string> LinesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.emplace_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// The first word of a line, folded.
std::string FirstWord(std::string_view line) {
    std::size_t at = 0;
    std::string word;
    const dos::ItemKind kind = dos::ReadItem(line, at, word);
    return kind == dos::ItemKind::Unquoted ? utility::Fold(word) : std::string();
}

long NumberOf(std::string_view text) {
    long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

class Script {
public:
    Script(Context& context, std::vector<std::string> text) : Where(context), Lines(std::move(text)) {
        for (const std::string& line : Lines)
            Words.push_back(FirstWord(line));
    }

    int Run() {
        while (Next < Lines.size() && !IsOver) {
            if (IsStopped(Where))
                return Complain(Where);
            const std::size_t line = Next++;
            if (!RunKeyword(line))
                RunLine(Where, Lines[line]);
            if (!IsOver && Where.LastCode >= Limit) {
                ComplainWith(Where, "line " + std::to_string(line + 1),
                             Words[line] + " failed returncode " + std::to_string(Where.LastCode));
                return Where.LastCode;
            }
        }
        return IsOver ? Code : ReturnOk;
    }

private:
    // Whether the line is one of the script's own words, which is then done.
    bool RunKeyword(std::size_t line) {
        const std::string& word = Words[line];
        if (word == "endif" || word == "lab" || word == "endskip")
            return true;
        if (word == "else")
            SkipBranch(false);
        else if (word == "if")
            DoIf(line);
        else if (word == "skip")
            DoSkip(line);
        else if (word == "failat")
            DoFailAt(line);
        else if (word == "quit")
            DoQuit(line);
        else
            return false;
        return true;
    }

    // The arguments of a line of our own. Nothing after a complaint, and the script ends.
    std::optional<dos::ArgResults> Arguments(std::size_t line, std::string_view argTemplate) {
        const auto parsed = ParseLine(Where, Lines[line]);
        auto arguments = parsed ? dos::ReadArgs(argTemplate, parsed->Arguments) : std::nullopt;
        if (!arguments) {
            Complain(Where, "line " + std::to_string(line + 1));
            End(ReturnFail);
        }
        return arguments;
    }

    void End(int code) {
        IsOver = true;
        Code = code;
    }

    void DoIf(std::size_t line) {
        const auto arguments = Arguments(line, IfTemplate);
        if (arguments && IsTrue(*arguments) == arguments->Flag("NOT"))
            SkipBranch(true);
    }

    [[nodiscard]] bool IsTrue(const dos::ArgResults& arguments) const {
        const std::pair<std::string_view, int> levels[] = {
            {"WARN", ReturnWarn}, {"ERROR", ReturnError}, {"FAIL", ReturnFail}};
        for (const auto& [name, level] : levels)
            if (arguments.Flag(name))
                return Where.LastCode >= level;
        if (const auto path = arguments.Text("EXISTS"))
            return static_cast<bool>(dos::Lock(*path));
        const std::string text = arguments.Text("TEXT").value_or("");
        const auto order = [&](const std::string& other) {
            if (!arguments.Flag("VAL"))
                return utility::Stricmp(text, other);
            const long a = NumberOf(text), b = NumberOf(other);
            return a < b ? -1 : a > b ? 1 : 0;
        };
        if (const auto other = arguments.Text("EQ"))
            return order(*other) == 0;
        if (const auto other = arguments.Text("GT"))
            return order(*other) > 0;
        if (const auto other = arguments.Text("GE"))
            return order(*other) >= 0;
        return false;
    }

    // Goes on behind the EndIf that belongs to the line before, or behind its Else where that may be.
    void SkipBranch(bool mayElse) {
        std::size_t depth = 0;
        for (; Next < Lines.size(); ++Next) {
            const std::string& word = Words[Next];
            if (word == "if")
                ++depth;
            else if (depth == 0 && (word == "endif" || (mayElse && word == "else"))) {
                ++Next;
                return;
            } else if (word == "endif")
                --depth;
        }
        ComplainWith(Where, "", "EndIf is missing");
        End(ReturnFail);
    }

    void DoSkip(std::size_t line) {
        const auto arguments = Arguments(line, "LABEL,BACK/S");
        if (!arguments)
            return;
        const std::string label = utility::Fold(arguments->Text("LABEL").value_or(""));
        for (std::size_t at = arguments->Flag("BACK") ? 0 : Next; at < Lines.size(); ++at) {
            const bool isEnd = Words[at] == "endskip";
            if (isEnd || (Words[at] == "lab" && LabelOf(at) == label)) {
                Next = at + 1;
                Where.LastCode = isEnd ? ReturnWarn : ReturnOk;
                return;
            }
        }
        ComplainWith(Where, label, "label not found");
        End(ReturnFail);
    }

    [[nodiscard]] std::string LabelOf(std::size_t line) const {
        std::size_t at = 0;
        std::string word;
        static_cast<void>(dos::ReadItem(Lines[line], at, word));
        const dos::ItemKind kind = dos::ReadItem(Lines[line], at, word);
        const bool isWord = kind == dos::ItemKind::Unquoted || kind == dos::ItemKind::Quoted;
        return isWord ? utility::Fold(word) : std::string();
    }

    void DoFailAt(std::size_t line) {
        const auto arguments = Arguments(line, "RCLIM/N");
        if (!arguments)
            return;
        if (const auto limit = arguments->Number("RCLIM"))
            Limit = *limit;
        else
            PrintLine(Where, "Fail limit: " + std::to_string(Limit));
    }

    void DoQuit(std::size_t line) {
        if (const auto arguments = Arguments(line, "RC/N"))
            End(static_cast<int>(std::clamp(arguments->Number("RC").value_or(0), -1L, 255L)));
    }

    Context& Where;
    std::vector<std::string> Lines;
    std::vector<std::string> Words; // first words, folded
    std::size_t Next = 0;
    long Limit = ReturnError; // of FailAt
    bool IsOver = false;
    int Code = ReturnOk;
};

} // namespace

int RunExecute(Context& context, const dos::ArgResults& arguments) {
    const std::string name = *arguments.Text("FILE");
    const auto text = dos::ReadWhole(name, LargestScript);
    if (!text)
        return Complain(context, name);
    std::vector<std::string> lines = LinesOf(*text);
    if (std::any_of(lines.begin(), lines.end(),
                    [](const std::string& line) { return line.starts_with('.'); })) {
        ComplainWith(context, name, "scripts with dot commands are not supported");
        return ReturnFail;
    }
    if (context.ScriptDepth >= DeepestScript) {
        dos::SetIoErr(dos::ErrorTooManyLevels);
        return Complain(context, name);
    }
    ++context.ScriptDepth;
    context.LastCode = ReturnOk;
    const int code = Script(context, std::move(lines)).Run();
    --context.ScriptDepth;
    return code;
}

} // namespace commands
