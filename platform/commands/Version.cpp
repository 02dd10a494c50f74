// Version: the "$VER:" text of programs and files, and our own.
#include "platform/commands/Command.h"
#include "platform/commands/FileReader.h"
#include "platform/commands/Runs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Paths.h"

#include <algorithm>
#include <charconv>

namespace commands {

namespace {

constexpr std::string_view Mark = "$VER:";
constexpr std::size_t LongestVersion = 256;             // bytes of its text
constexpr std::uint64_t LargestSearched = 256ull << 20; // bytes of a file looked through

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

// The text behind the mark up to a byte that ends it.
std::string TextBehind(std::string_view bytes) {
    const std::size_t end = std::min(bytes.find_first_of(std::string_view("\0\r\n", 3)), LongestVersion);
    return std::string(Trimmed(bytes.substr(0, end)));
}

// The first version text of a file. Nothing with IoErr: 205 when it has none.
std::optional<std::string> FindVersion(Context& context, const std::string& path) {
    FileReader file(path);
    if (!file.IsOpen())
        return {};
    std::string window; // the end of the last block and the next one
    std::string block;
    for (std::uint64_t done = 0; done < LargestSearched && file.Take(FileReader::BlockSize, block);
         done += block.size()) {
        if (IsStopped(context))
            return {};
        window += block;
        const std::size_t at = window.find(Mark);
        if (at != std::string::npos) {
            if (window.size() - at < Mark.size() + LongestVersion && file.Take(LongestVersion, block))
                window += block;
            return TextBehind(std::string_view(window).substr(at + Mark.size()));
        }
        window.erase(0, window.size() - std::min(window.size(), Mark.size()));
    }
    if (!file.HasFailed())
        dos::SetIoErr(dos::ErrorObjectNotFound);
    return {};
}

struct Numbers {
    long Version = 0, Revision = 0;
};

// The first "12.34" of a version text.
Numbers NumbersOf(std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool begins = at == 0 || text[at - 1] == ' ' || text[at - 1] == 'v';
        Numbers numbers;
        const char* end = text.data() + text.size();
        auto result = std::from_chars(text.data() + at, end, numbers.Version);
        if (!begins || result.ec != std::errc() || result.ptr == end || *result.ptr != '.')
            continue;
        result = std::from_chars(result.ptr + 1, end, numbers.Revision);
        if (result.ec == std::errc())
            return numbers;
    }
    return {};
}

// "List 2.4" without the date and what follows it.
std::string_view ShortForm(std::string_view text) {
    return Trimmed(text.substr(0, text.find('(')));
}

// The version of one of our commands, by its own name.
std::string OwnText(const Command& command) {
    const std::string_view own = OwnVersion();
    return std::string(command.Name).append(own.substr(own.find(' ')));
}

} // namespace

int RunVersion(Context& context, const dos::ArgResults& arguments) {
    const auto name = arguments.Text("NAME");
    const Command* command = name && !arguments.Flag("FILE") ? FindCommand(*name) : nullptr;
    std::optional<std::string> text;
    if (!name)
        text = std::string("Solvane").append(OwnVersion().substr(OwnVersion().find(' ')));
    else if (command != nullptr)
        text = OwnText(*command);
    else
        text = FindVersion(context, *name);
    if (!text) {
        const int code = dos::IoErr() == dos::ErrorBreak ? Complain(context) : ReturnError;
        if (code == ReturnError)
            ComplainWith(context, *name, "no version information");
        return code;
    }
    PrintLine(context, Shown(context, arguments.Flag("FULL") ? std::string_view(*text) : ShortForm(*text)));
    const Numbers has = NumbersOf(*text);
    const long version = arguments.Number("VERSION").value_or(has.Version);
    const long revision = arguments.Number("REVISION").value_or(0);
    const bool isOlder = has.Version < version || (has.Version == version && has.Revision < revision);
    return isOlder ? ReturnWarn : ReturnOk;
}

} // namespace commands
