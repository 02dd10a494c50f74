// "rx": runs an ARexx script, or the text of one in quotes. A program of its own: a script that hangs or
// takes all memory is ended alone, and nothing of the interpreter is in the window's program.
#include "platform/application/Start.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "platform/dos/ProgramArguments.h"
#include "platform/dos/ReadArgs.h"
#include "platform/dos/Volumes.h"
#include "platform/rexx/ScriptFunctions.h"
#include "platform/rexx/ScriptStart.h"
#include "platform/rexx/Scripts.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int CodeOk = 0;
constexpr int CodeError = 10;
constexpr int CodeFail = 20;
constexpr int HighestCode = 255; // that a host's process can end with
constexpr std::string_view Blanks = " \t\n";
constexpr std::string_view Usage = "Usage: rx SCRIPT [ARGUMENTS], or rx \"PROGRAM TEXT\"\n";

// What the arguments ask for.
struct Order {
    std::string Name; // of a script; or, where there is none, program text
    std::string Text;
    std::optional<std::string> Arguments;
};

int Complain(std::string_view name, std::string_view text) {
    const std::string line =
        "rx: " + std::string(name) + (name.empty() ? "" : ": ") + std::string(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    return CodeError;
}

// Words of a host's shell: that shell has taken the quotes away.
Order OrderOfWords(const std::vector<std::string>& words) {
    Order order{words[0], words[0], {}};
    for (std::size_t at = 1; at < words.size(); ++at) {
        order.Arguments = order.Arguments ? *order.Arguments + " " + words[at] : words[at];
    }
    return order;
}

// Program text between quotes: two of them stand for one, the last may be missing, and nothing is an escape.
std::string QuotedText(std::string_view line) {
    std::string text;
    for (std::size_t at = 1; at < line.size(); ++at) {
        if (line[at] == '"') {
            if (at + 1 >= line.size() || line[at + 1] != '"') {
                break;
            }
            ++at;
        }
        text += line[at];
    }
    return text;
}

// A line as it was typed into a Shell of ours.
Order OrderOfLine(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(Blanks), line.size()));
    Order order;
    std::size_t end = 0;
    if (dos::ReadItem(line, end, order.Name) == dos::ItemKind::Error) {
        order.Name.clear();
        end = line.size();
    }
    order.Text = line.starts_with('"') ? QuotedText(line) : order.Name;
    const std::size_t rest = line.find_first_not_of(Blanks, end);
    if (rest != std::string_view::npos) {
        order.Arguments = line.substr(rest, line.find_last_not_of(Blanks) + 1 - rest);
    }
    return order;
}

Order ReadOrder(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    const std::string line = dos::ProgramArguments(argc, argv);
    return line == dos::JoinWords(words) ? OrderOfWords(words) : OrderOfLine(line);
}

// A single word is a name and never a program.
bool IsProgramText(std::string_view text) {
    return text.find_first_of(" \t\n;'\"(=") != std::string_view::npos;
}

int Run(const Order& order, const std::string& host) {
    rexx::Script script{.Name = "rx", .Source = order.Text, .Arguments = order.Arguments, .Host = host};
    if (const auto path = rexx::FindScript(order.Name)) {
        const auto source = rexx::ReadScript(*path);
        if (!source && dos::IoErr() == dos::ErrorFileNotObject) {
            return Complain(*path, "a script begins with a comment");
        }
        if (!source) {
            return Complain(*path, dos::Fault(dos::IoErr()));
        }
        script.Name = *path;
        script.Source = *source;
    } else if (!IsProgramText(order.Text)) {
        return Complain(order.Name, dos::Fault(dos::IoErr()));
    }
    const int code = rexx::RunScript(script);
    if (!rexx::CloseStreams()) {
        return Complain("", dos::Fault(dos::IoErr()));
    }
    return std::clamp(code, CodeOk, HighestCode);
}

} // namespace

int main(int argc, char** argv) {
    application::SecureStandardStreams();
    if (argc < 2) {
        std::fwrite(Usage.data(), 1, Usage.size(), stdout);
        return CodeFail;
    }
    const application::ProgramPlaces places = application::FindProgram(argv[0]);
    const application::StartMessage start = application::ReadStartMessage(argc, argv);
    const Order order = ReadOrder(argc, argv);
    const std::string host = rexx::TakeScriptHost();
    if (!dos::SetUpSystem({.SystemSkeleton = places.SystemSkeleton, .ProgramDrawer = places.ProgramDrawer})) {
        Complain("", dos::SetUpProblem());
        return CodeFail;
    }
    if (!start.CurrentDirectory.empty()) {
        dos::CurrentDir(dos::Lock(dos::FromHostPath(start.CurrentDirectory)));
    }
    dos::SetRequesters(false);
    const int code = Run(order, host);
    return std::fflush(stdout) == 0 ? code : std::max(code, CodeFail);
}
