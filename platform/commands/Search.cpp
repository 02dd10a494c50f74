// Search: a text or pattern in the lines of files, or in their names.
#include "platform/commands/FileReader.h"
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Patterns.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <functional>

namespace commands {

namespace {

constexpr std::size_t NumberWidth = 6;

struct SearchOptions {
    std::string Text; // folded unless IsCase
    std::optional<dos::Pattern> Pattern;
    bool IsCase = false, IsQuiet = false, IsQuick = false, HasNumbers = true, IsForNames = false;
};

// Lines are compared as they are folded, so that a long file costs no more than its bytes.
bool HasText(const SearchOptions& options, std::string_view line) {
    if (options.Pattern)
        return options.Pattern->Matches(line);
    return options.IsCase ? line.find(options.Text) != std::string_view::npos
                          : utility::Fold(line).find(options.Text) != std::string::npos;
}

struct Findings {
    bool IsFound = false;
    int Code = ReturnOk;
};

void SearchLines(Context& context, const SearchOptions& options, const Found& object, Findings& findings) {
    FileReader file(object.Path);
    if (!file.IsOpen()) {
        findings.Code = std::max(findings.Code, Complain(context, object.Text));
        return;
    }
    if (!options.IsQuiet && !options.IsQuick)
        PrintLine(context, "   " + Shown(context, object.Text) + "..");
    std::string line;
    for (std::uint64_t number = 1; file.Line(line) && !IsStopped(context); ++number) {
        if (!HasText(options, line))
            continue;
        findings.IsFound = true;
        if (options.IsQuiet)
            break;
        const std::string name = options.IsQuick ? Shown(context, object.Text) + ": " : std::string();
        const std::string before =
            options.HasNumbers ? PadLeft(std::to_string(number), NumberWidth) + " " : std::string();
        PrintLine(context, name + before + Shown(context, line));
    }
    if (file.HasFailed())
        findings.Code = std::max(findings.Code, Complain(context, object.Text));
}

void SearchObject(Context& context, const SearchOptions& options, const Found& object, Findings& findings) {
    if (!options.IsForNames) {
        SearchLines(context, options, object, findings);
        return;
    }
    const std::string name = object.Data ? object.Data->Name : object.Path;
    if (!HasText(options, name))
        return;
    findings.IsFound = true;
    if (!options.IsQuiet)
        PrintLine(context, Shown(context, object.Text));
}

// One argument: a file, what a pattern means, or all that is in a drawer.
void SearchArgument(Context& context, const SearchOptions& options, const std::string& path, bool isAll,
                    Findings& findings) {
    const Visit visit = [&](const Found& object) {
        const bool isFile = object.Data ? object.Data->Type == dos::TypeFile : !IsDrawer(object.Path);
        if (isFile && !(options.IsQuiet && findings.IsFound))
            SearchObject(context, options, object, findings);
        return ReturnOk;
    };
    const bool isOneDrawer = IsDrawer(path);
    const std::string pattern = isOneDrawer ? JoinText(path, "#?") : path;
    const int code = ForEach(context, pattern, isAll ? Depth::All : Depth::Objects, visit);
    const bool isEmptyDrawer = isOneDrawer && code == ReturnWarn;
    findings.Code = std::max(findings.Code, isEmptyDrawer ? ReturnOk : code);
}

std::optional<SearchOptions> ReadOptions(const dos::ArgResults& arguments) {
    SearchOptions options;
    options.Text = *arguments.Text("SEARCH");
    options.IsCase = arguments.Flag("CASE");
    options.IsQuiet = arguments.Flag("QUIET");
    options.IsQuick = arguments.Flag("QUICK");
    options.HasNumbers = !arguments.Flag("NONUM");
    options.IsForNames = arguments.Flag("FILE");
    if (arguments.Flag("PATTERN")) {
        // A line holds the pattern; a name is it.
        const std::string source = options.IsForNames ? options.Text : "#?" + options.Text + "#?";
        options.Pattern = dos::Pattern::Parse(source, options.IsCase ? dos::PatternCase::Respect
                                                                     : dos::PatternCase::Ignore);
        if (!options.Pattern)
            return {};
    }
    if (!options.IsCase)
        options.Text = utility::Fold(options.Text);
    return options;
}

} // namespace

int RunSearch(Context& context, const dos::ArgResults& arguments) {
    const auto options = ReadOptions(arguments);
    if (!options) {
        Complain(context, *arguments.Text("SEARCH"));
        return ReturnFail;
    }
    std::vector<std::string> paths = arguments.Multi("FROM");
    if (paths.empty())
        paths.emplace_back();
    Findings findings;
    for (const std::string& path : paths) {
        SearchArgument(context, *options, path, arguments.Flag("ALL"), findings);
        if (IsStopped(context))
            return ReturnFail;
    }
    if (findings.Code >= ReturnError)
        return findings.Code;
    return findings.IsFound ? ReturnOk : ReturnWarn;
}

} // namespace commands
