#include "platform/commands/Context.h"

#include "platform/dos/Errors.h"
#include "platform/utility/Text.h"

namespace commands {

namespace {

std::size_t CharacterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += utility::Decode(text, at).Length)
        ++count;
    return count;
}

std::string Missing(std::string_view text, std::size_t characters) {
    const std::size_t has = CharacterCount(text);
    return std::string(characters > has ? characters - has : 0, ' ');
}

// C0, DEL, C1 and bytes that are no UTF-8: what a terminal might obey.
bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code >= utility::InvalidByteBase;
}

} // namespace

void Print(Context& context, std::string_view text) {
    if (context.OutputError != 0 || text.empty() || !context.Output)
        return;
    if (!context.Output(text))
        context.OutputError = dos::IoErr();
}

void PrintLine(Context& context, std::string_view text) {
    Print(context, std::string(text).append("\n"));
}

bool IsStopped(Context& context) {
    if (context.OutputError != 0) {
        dos::SetIoErr(context.OutputError);
        return true;
    }
    if (!context.Stop || !context.Stop())
        return false;
    dos::SetIoErr(dos::ErrorBreak);
    return true;
}

int ComplainWith(Context& context, std::string_view about, std::string_view text) {
    std::string line = context.Name;
    for (const std::string& part : {Shown(context, about), std::string(text)})
        if (!part.empty())
            line += (line.empty() ? "" : ": ") + part;
    line += '\n';
    if (context.ErrorOutput)
        static_cast<void>(context.ErrorOutput(line)); // nowhere to tell of it
    else
        Print(context, line);
    return ReturnError;
}

int Complain(Context& context, std::string_view about) {
    const long error = dos::IoErr();
    const bool isEnd = error == dos::ErrorBreak || context.OutputError != 0;
    if (error == dos::ErrorBreak) {
        Print(context, dos::Fault(error).append("\n"));
    } else {
        const bool isPathTooLong = error == dos::ErrorLineTooLong && !about.empty();
        ComplainWith(context, about, isPathTooLong ? "path is too long" : dos::Fault(error));
    }
    dos::SetIoErr(error);
    return isEnd ? ReturnFail : ReturnError;
}

bool ConcernsDisk(long error) noexcept {
    return error == dos::ErrorDiskFull || error == dos::ErrorDiskWriteProtected ||
           error == dos::ErrorDeviceNotMounted || error == dos::ErrorNoDisk;
}

std::string Shown(const Context& context, std::string_view name) {
    if (!context.IsTerminal)
        return std::string(name);
    std::string shown;
    for (std::size_t at = 0; at < name.size();) {
        const utility::Character character = utility::Decode(name, at);
        if (IsControl(character.Code))
            shown += '?';
        else
            shown += name.substr(at, character.Length);
        at += character.Length;
    }
    return shown;
}

std::string PadRight(std::string_view text, std::size_t characters) {
    return std::string(text) + Missing(text, characters);
}

std::string PadLeft(std::string_view text, std::size_t characters) {
    return Missing(text, characters).append(text);
}

} // namespace commands
