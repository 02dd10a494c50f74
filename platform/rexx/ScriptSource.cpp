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

// The word behind SIGNAL ON or OFF.
std::string ConditionFor(std::string_view word, bool needsName, bool failuresAreErrors) {
    const auto is = [word](std::string_view name) { return utility::Stricmp(word, name) == 0; };
    const std::string condition = is("BREAK_C")                        ? "HALT"
                                  : is("IOERR")                        ? "NOTREADY"
                                  : is("FAILURE") && failuresAreErrors ? "ERROR"
                                                                       : "";
    if (condition.empty()) {
        return std::string(word);
    }
    return needsName ? condition + " NAME " + std::string(word) : condition;
}

// What follows on the same line, without the blanks before it.
std::string_view WithoutBlanks(std::string_view rest) {
    return rest.substr(std::min(rest.find_first_not_of(" \t"), rest.size()));
}

bool BeginsWithName(std::string_view rest) {
    rest = WithoutBlanks(rest);
    return !rest.empty() && utility::Stricmp(FirstToken(rest).Text, "NAME") == 0;
}

// Walks the tokens that are no blanks; what a token becomes hangs on the two before it.
class Translator {
public:
    explicit Translator(bool failuresAreErrors) : FailuresAreErrors(failuresAreErrors) {}
    // rest is what stands behind the token.
    std::string Next(const Token& token, std::string_view rest);

private:
    enum class Place { ClauseStart, Address, Signal, SignalOn, SignalOff, Elsewhere };
    Place Now = Place::ClauseStart;
    bool FailuresAreErrors;

    std::string NextAtStart(const Token& token, std::string_view rest);
};

std::string Translator::NextAtStart(const Token& token, std::string_view rest) {
    const auto is = [&token](std::string_view word) { return utility::Stricmp(token.Text, word) == 0; };
    std::string text(token.Text);
    Now = Place::Elsewhere;
    const std::string_view behind = WithoutBlanks(rest);
    const char following = behind.empty() ? '\n' : behind.front();
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

std::string Translator::Next(const Token& token, std::string_view rest) {
    std::string text(token.Text);
    switch (Now) {
    case Place::ClauseStart:
        text = NextAtStart(token, rest);
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
        text = ConditionFor(text, Now == Place::SignalOn && !BeginsWithName(rest), FailuresAreErrors);
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

} // namespace

std::string TranslateSource(std::string_view source) {
    std::string translated;
    translated.reserve(source.size());
    const ScriptWishes wishes = WishesOf(source);
    Translator translator(!wishes.WantsErrors);
    while (!source.empty()) {
        const Token token = FirstToken(source);
        source.remove_prefix(token.Text.size());
        translated +=
            token.Kind == TokenKind::Blank ? std::string(token.Text) : translator.Next(token, source);
    }
    return translated;
}

std::string_view WithoutMark(std::string_view host) {
    const std::string_view name = host.substr(0, host.size() - (host.ends_with(HostMark) ? 1 : 0));
    return IsOneOf(name, MarkedHosts) ? name : host;
}

ScriptWishes WishesOf(std::string_view source) {
    ScriptWishes wishes;
    bool isInOptions = false;
    bool isBehindOn = false;
    while (!source.empty()) {
        const Token token = FirstToken(source);
        source.remove_prefix(token.Text.size());
        const auto is = [&token](std::string_view word) { return utility::Stricmp(token.Text, word) == 0; };
        if (token.Kind == TokenKind::Blank) {
            continue;
        }
        isInOptions = token.Kind != TokenKind::ClauseEnd && (isInOptions || is("OPTIONS"));
        wishes.WantsResults = wishes.WantsResults || (isInOptions && is("RESULTS"));
        wishes.WantsErrors = wishes.WantsErrors || (isBehindOn && is("ERROR"));
        wishes.WantsFailures = wishes.WantsFailures || (isBehindOn && is("FAILURE"));
        isBehindOn = is("ON");
    }
    return wishes;
}

} // namespace rexx
