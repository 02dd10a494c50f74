#include "sak/Version.h"

#include "platform/dos/Files.h"
#include "platform/utility/Text.h"
#include "sak/FilenameSupport.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace solvane {

Text<512> SAK_GetVersionFull;
Text<128> SAK_GetVersionName;
Text<20> SAK_GetVersionVersion;
Text<20> SAK_GetVersionPort;
Text<20> SAK_GetVersionDate;
Text<256> SAK_GetVersionComment;

namespace {

constexpr std::size_t SearchedBytes = 65536;
constexpr std::size_t LongestVersion = 511; // bytes
constexpr std::string_view Mark = "$VER:";

void ClearResults() {
    SAK_GetVersionFull.Clear();
    SAK_GetVersionName.Clear();
    SAK_GetVersionVersion.Clear();
    SAK_GetVersionPort.Clear();
    SAK_GetVersionDate.Clear();
    SAK_GetVersionComment.Clear();
}

// The beginning of the file; nothing when it cannot be read.
std::optional<std::string> ReadBeginning(std::string_view path) {
    dos::FileHandle file = dos::OpenOld(path);
    if (!file) {
        return std::nullopt;
    }
    std::string bytes(SearchedBytes, '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const auto got = dos::Read(file, std::as_writable_bytes(std::span(bytes).subspan(filled)));
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

// What follows the mark up to the end of its line or text.
std::optional<std::string> FindVersion(std::string_view bytes) {
    for (std::size_t at = bytes.find('$'); at != std::string_view::npos; at = bytes.find('$', at + 1)) {
        if (utility::Stricmp(bytes.substr(at, Mark.size()), Mark) != 0) {
            continue;
        }
        const std::string_view rest = bytes.substr(at + Mark.size(), LongestVersion);
        const std::string_view line = rest.substr(0, rest.find_first_of(std::string_view("\0\r\n", 3)));
        return utility::IsValidUtf8(line) ? std::string(line) : utility::Utf8FromLatin1(line);
    }
    return std::nullopt;
}

// Takes the first word off the text.
std::string_view NextWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    return word;
}

std::string_view WithoutParentheses(std::string_view word) {
    word.remove_prefix(word.starts_with('(') ? 1 : 0);
    word.remove_suffix(word.ends_with(')') ? 1 : 0);
    return word;
}

void SplitVersion(std::string_view text) {
    SAK_GetVersionName = NextWord(text);
    SAK_GetVersionVersion = NextWord(text);
    std::string_view date = NextWord(text);
    if (date.starts_with('[')) {
        SAK_GetVersionPort = date;
        date = NextWord(text);
    }
    SAK_GetVersionDate = WithoutParentheses(date);
    std::string comment;
    for (std::string_view word = NextWord(text); !word.empty(); word = NextWord(text)) {
        comment.append(comment.empty() ? "" : " ").append(word);
    }
    SAK_GetVersionComment = comment;
}

} // namespace

bool SAK_GetVersion(std::string_view path) {
    ClearResults();
    const Text<128> extension = ExtensionOf(path);
    if (extension == ".o" || extension == ".lha") {
        return true;
    }
    const std::optional<std::string> bytes = ReadBeginning(path);
    std::optional<std::string> version = bytes ? FindVersion(*bytes) : std::nullopt;
    if (!version) {
        return false;
    }
    for (std::size_t at = version->find(")("); at != std::string::npos; at = version->find(")(", at)) {
        version->insert(at + 1, 1, ' ');
    }
    version->erase(0, std::min(version->find_first_not_of(' '), version->size()));
    SAK_GetVersionFull = *version;
    SplitVersion(*version);
    return true;
}

} // namespace solvane
