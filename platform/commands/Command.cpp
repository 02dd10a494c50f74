#include "platform/commands/Command.h"

#include "platform/commands/Runs.h"
#include "platform/dos/Errors.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <utility>

namespace commands {

namespace {

// By name: the order in which they are shown.
constexpr Command Table[] = {
    {"Assign",
     "NAME,TARGET/M,LIST/S,EXISTS/S,DEFER/S,PATH/S,ADD/S,PREPEND/S,REMOVE/S,VOLS/S,DIRS/S,DEVICES/S",
     "Shows and sets the names that stand before a colon", RunAssign},
    {"Copy", "FROM/M,TO/A,ALL/S,QUIET/S,BUF=BUFFER/K/N,CLONE/S,DATES/S,NOPRO/S,COM/S,NOREQ/S",
     "Copies files and drawers", RunCopy},
    {"Date", "TO=VER/K", "Shows the date and time", RunDate},
    {"Delete", "FILE/M/A,ALL/S,QUIET/S,FORCE/S", "Deletes files and drawers", RunDelete},
    {"Dir", "DIR,OPT/K,ALL/S,DIRS/S,FILES/S", "Shows the names in a drawer", RunDir},
    {"Echo", "/M,NOLINE/S,FIRST/K/N,LEN/K/N,TO/K", "Prints words", RunEcho},
    {"Execute", "FILE/A", "Runs the lines of a script", RunExecute},
    {"Fault", "/N/M", "Tells what error numbers mean", RunFault},
    {"Filenote", "FILE/A,COMMENT,ALL/S,QUIET/S", "Sets the comment of files and drawers", RunFilenote},
    {"GetEnv", "NAME/A", "Shows an environment variable", RunGetEnv},
    {"Info", "DEVICE/M,DISKS/S,VOLS/S", "Shows how full the disks are", RunInfo},
    {"Join", "FILE/M/A,AS=TO/K/A", "Puts files together into one", RunJoin},
    {"List",
     "DIR/M,P=PAT/K,DATES/S,NODATES/S,TO/K,SUB/K,SINCE/K,UPTO/K,QUICK/S,BLOCK/S,NOHEAD/S,FILES/S,DIRS/"
     "S,LFORMAT/K,ALL/S",
     "Shows what is in a drawer, with size, bits and date", RunList},
    {"MakeDir", "NAME/M/A", "Makes drawers", RunMakeDir},
    {"MakeLink", "FROM/A,TO/A,HARD/S,SOFT/S", "Makes a link, a soft one without HARD", RunMakeLink},
    {"Protect", "FILE/A,FLAGS/A,ADD/S,SUB/S,ALL/S,QUIET/S", "Sets protection bits", RunProtect},
    {"Relabel", "DRIVE/A,NAME/A", "Gives a volume another name", RunRelabel},
    {"Rename", "FROM/A/M,TO=AS/A,QUIET/S", "Renames and moves within a disk", RunRename},
    {"Search", "FROM/M,SEARCH/A,ALL/S,NONUM/S,QUIET/S,QUICK/S,FILE/S,PATTERN/S,CASE/S",
     "Looks for a text in files", RunSearch},
    {"SetDate", "FILE/A,WEEKDAY,DATE,TIME,ALL/S", "Sets the date of files and drawers", RunSetDate},
    {"SetEnv", "NAME,SAVE/S,STRING/F", "Shows and sets environment variables", RunSetEnv},
    {"Sort", "FROM/A,TO/A,COLSTART/K/N,CASE/S,NUMERIC/S", "Sorts the lines of a file", RunSort},
    {"Type", "FROM/A/M,TO/K,OPT/K,HEX/S,NUMBER/S", "Shows the contents of files", RunType},
    {"UnSetEnv", "NAME,SAVE/S", "Removes an environment variable", RunUnSetEnv},
    {"Version", "NAME,VERSION/N,REVISION/N,FILE/S,FULL/S", "Shows the version of a program or of Solvane",
     RunVersion},
    {"Wait", "/N,SEC=SECS/S,MIN=MINS/S,UNTIL/K", "Waits", RunWait},
    {"Which", "FILE/A,ALL/S", "Tells where a command lies", RunWhich},
};

// What tools look for in the program file.
constexpr std::string_view VersionCookie = "$VER: amiga 2.4 (21.11.2026)";
constexpr std::string_view VersionMark = "$VER: ";

// Where a "?" stands that is the last word and so asks for the template.
std::optional<std::size_t> FindQuestion(std::string_view line) {
    std::size_t position = 0;
    std::string word;
    std::optional<std::size_t> question;
    while (true) {
        const dos::ItemKind kind = dos::ReadItem(line, position, word);
        if (kind == dos::ItemKind::Error)
            return {};
        if (kind == dos::ItemKind::Nothing)
            break;
        question.reset();
        if (kind == dos::ItemKind::Unquoted && word == "?")
            question = line.rfind('?', position - 1);
    }
    const bool isValue = question.value_or(0) > 0 && line[*question - 1] == '='; // "PAT=?"
    return isValue ? std::nullopt : question;
}

} // namespace

std::span<const Command> Commands() noexcept {
    return Table;
}

const Command* FindCommand(std::string_view name) noexcept {
    const auto* found = std::find_if(std::begin(Table), std::end(Table), [name](const Command& command) {
        return utility::Stricmp(command.Name, name) == 0;
    });
    return found == std::end(Table) ? nullptr : found;
}

std::string_view OwnVersion() noexcept {
    return VersionCookie.substr(VersionMark.size());
}

int RunCommand(const Command& command, std::string_view arguments, Context& context) {
    const std::string outer = std::exchange(context.Name, std::string(command.Name));
    std::string line(arguments);
    int code = ReturnOk;
    if (const auto question = FindQuestion(arguments)) {
        Print(context, std::string(command.Template).append(context.Input ? ": " : "\n"));
        const auto answer = context.Input ? context.Input() : std::nullopt;
        line = std::string(arguments.substr(0, *question)).append(answer.value_or(""));
        if (!answer) {
            context.Name = outer;
            return code;
        }
    }
    const auto parsed = dos::ReadArgs(command.Template, line);
    if (parsed) {
        code = command.Run(context, *parsed);
        if (context.OutputError != 0) {
            code = std::max(code, ReturnError);
            dos::SetIoErr(context.OutputError);
        }
    } else {
        Complain(context);
        code = ReturnFail;
    }
    context.Name = outer;
    return code;
}

} // namespace commands
