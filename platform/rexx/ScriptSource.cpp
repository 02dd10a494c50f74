#include "platform/rexx/ScriptSource.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace rexx {

namespace {

constexpr char HostMark = '.';
constexpr std::array<std::string_view, 8> MarkedHosts = {"COMMAND",        "CMD",  "DOS",    "ENVIRONMENT",
                                                         "OS2ENVIRONMENT", "PATH", "REGINA", "SYSTEM"};

bool IsOneOf(std::string_view word, std::span<const std::string_view> names) {
    return std::any_of(names.begin(), names.end(),
                       [word](std::string_view name) { return utility::Stricmp(name, word) == 0; });
}

bool IsSymbolByte(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '_' || byte == '.' || byte == '!' || byte == '?' || byte == '@' || byte == '#' ||
           byte == '$';
}

enum class TokenKind { Blank, Symbol, Quoted, ClauseEnd, Other };

struct Token {
    TokenKind Kind;
    std::string_view Text; // with its quotes; of a comment, which counts as a blank, all of it
};

// Behind a comment that begins at the start of the text; they nest.
std::size_t EndOfComment(std::string_view text) {
    int depth = 0;
    std::size_t at = 0;
    do {
        const std::string_view two = text.substr(at, 2);
        depth += two == "/*" ? 1 : two == "*/" ? -1 : 0;
        at += two == "/*" || two == "*/" ? 2 : 1;
    } while (depth > 0 && at < text.size());
    return std::min(at, text.size());
}

// The first token of a text that is not empty.
Token FirstToken(std::string_view text) {
    const char first = text.front();
    if (text.starts_with("/*")) {
        return {TokenKind::Blank, text.substr(0, EndOfComment(text))};
    }
    if (first == '\'' || first == '"') {
        const std::size_t end = std::min(text.find_first_of(std::string{first, '\n'}, 1), text.size());
        const bool isClosed = end < text.size() && text[end] == first;
        return {TokenKind::Quoted, text.substr(0, end + (isClosed ? 1 : 0))};
    }
    if (IsSymbolByte(first)) {
        const auto end = std::find_if_not(text.begin(), text.end(), IsSymbolByte);
        return {TokenKind::Symbol, text.substr(0, static_cast<std::size_t>(end - text.begin()))};
    }
    const bool endsClause = first == ';' || first == '\n' || first == ':';
    const bool isBlank = first == ' ' || first == '\t' || first == '\r';
    return {endsClause ? TokenKind::ClauseEnd
            : isBlank  ? TokenKind::Blank
                       : TokenKind::Other,
            text.substr(0, 1)};
}

// Words behind which an instruction begins.
bool BeginsClause(const Token& token) {
    constexpr std::array<std::string_view, 4> Words = {"THEN", "ELSE", "OTHERWISE", "DO"};
    return token.Kind == TokenKind::ClauseEnd ||
           (token.Kind == TokenKind::Symbol && IsOneOf(token.Text, Words));
}

std::string MarkHost(const Token& token) {
    std::string text(token.Text);
    if (token.Kind == TokenKind::Symbol && IsOneOf(text, MarkedHosts)) {
        return text + HostMark;
    }
    if (token.Kind == TokenKind::Quoted && text.size() > 2 && text.back() == text.front() &&
        IsOneOf(std::string_view(text).substr(1, text.size() - 2), MarkedHosts)) {
        text.insert(text.size() - 1, 1, HostMark);
    }
    return text;
}

std::string ConditionFor(std::string_view word, bool isOn) {
    const bool isBreak = utility::Stricmp(word, "BREAK_C") == 0;
    if (!isBreak && utility::Stricmp(word, "IOERR") != 0) {
        return std::string(word);
    }
    const std::string condition = isBreak ? "HALT" : "NOTREADY";
    return isOn ? condition + " NAME " + std::string(word) : condition;
}

// Walks the tokens that are no blanks; what a token becomes hangs on the two before it.
class Translator {
public:
    std::string Next(const Token& token, char following);

private:
    enum class Place { ClauseStart, Address, Signal, SignalOn, SignalOff, Elsewhere };
    Place Now = Place::ClauseStart;

    std::string NextAtStart(const Token& token, char following);
};

std::string Translator::NextAtStart(const Token& token, char following) {
    const auto is = [&token](std::string_view word) { return utility::Stricmp(token.Text, word) == 0; };
    std::string text(token.Text);
    Now = Place::Elsewhere;
    if (token.Kind != TokenKind::Symbol || following == '=' || following == '(' || following == ':') {
        return text; // an assignment, a call or a label
    }
    if (is("ADDRESS") || is("SHELL")) {
        Now = Place::Address;
        return is("SHELL") ? "ADDRESS" : text;
    }
    if (is("SIGNAL") || is("CALL")) {
        Now = Place::Signal;
        return text;
    }
    return is("ECHO") ? "SAY" : text;
}

std::string Translator::Next(const Token& token, char following) {
    std::string text(token.Text);
    switch (Now) {
    case Place::ClauseStart:
        text = NextAtStart(token, following);
        break;
    case Place::Address:
        text = MarkHost(token);
        Now = Place::Elsewhere;
        break;
    case Place::Signal:
        Now = utility::Stricmp(text, "ON") == 0    ? Place::SignalOn
              : utility::Stricmp(text, "OFF") == 0 ? Place::SignalOff
                                                   : Place::Elsewhere;
        break;
    case Place::SignalOn:
    case Place::SignalOff:
        text = ConditionFor(text, Now == Place::SignalOn);
        Now = Place::Elsewhere;
        break;
    case Place::Elsewhere:
        break;
    }
    if (BeginsClause(token)) {
        Now = Place::ClauseStart;
    }
    return text;
}

// The first byte behind a token that is no blank of its line.
char ByteBehind(std::string_view rest) {
    const std::size_t at = rest.find_first_not_of(" \t");
    return at == std::string_view::npos ? '\n' : rest[at];
}

} // namespace

std::string TranslateSource(std::string_view source) {
    std::string translated;
    translated.reserve(source.size());
    Translator translator;
    while (!source.empty()) {
        const Token token = FirstToken(source);
        source.remove_prefix(token.Text.size());
        translated += token.Kind == TokenKind::Blank ? std::string(token.Text)
                                                     : translator.Next(token, ByteBehind(source));
    }
    return translated;
}

std::string_view WithoutMark(std::string_view host) {
    const std::string_view name = host.substr(0, host.size() - (host.ends_with(HostMark) ? 1 : 0));
    return IsOneOf(name, MarkedHosts) ? name : host;
}

bool AsksForResults(std::string_view source) {
    bool isInOptions = false;
    while (!source.empty()) {
        const Token token = FirstToken(source);
        source.remove_prefix(token.Text.size());
        if (token.Kind == TokenKind::ClauseEnd) {
            isInOptions = false;
        } else if (token.Kind == TokenKind::Symbol && utility::Stricmp(token.Text, "OPTIONS") == 0) {
            isInOptions = true;
        } else if (isInOptions && token.Kind == TokenKind::Symbol &&
                   utility::Stricmp(token.Text, "RESULTS") == 0) {
            return true;
        }
    }
    return false;
}

} // namespace rexx
