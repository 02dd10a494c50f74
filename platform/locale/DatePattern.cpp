#include "platform/locale/DatePattern.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace locale {
namespace {

constexpr std::string_view FieldLetters = "dMyHhmsztAa";

struct Field {
    char Letter;
    std::size_t Length;
    std::string_view Code;
};

// "h" counts to 12 only in a pattern that has an AM/PM field; without one it is a 24 hour field.
constexpr Field Fields[] = {
    {'d', 1, "%-d"}, {'d', 2, "%d"}, {'d', 3, "%a"},  {'d', 4, "%a"}, {'M', 1, "%-m"}, {'M', 2, "%m"},
    {'M', 3, "%b"},  {'M', 4, "%b"}, {'y', 2, "%y"},  {'y', 4, "%Y"}, {'H', 1, "%q"},  {'H', 2, "%H"},
    {'h', 1, "%Q"},  {'h', 2, "%I"}, {'m', 1, "%-M"}, {'m', 2, "%M"}, {'s', 1, "%-S"}, {'s', 2, "%S"},
    {'A', 2, "%p"},  {'a', 2, "%p"}, {'A', 1, "%p"},  {'a', 1, "%p"},
};

// Walks a pattern; quoted text is literal, '' is a quote.
class PatternWalker {
public:
    explicit PatternWalker(std::string_view pattern) : Pattern(pattern) {}
    std::string Run();

private:
    void TakeQuoted();
    void TakeField();
    void TakeLiteral();
    void AppendLiteral(char c);
    [[nodiscard]] std::size_t FieldLength() const;
    [[nodiscard]] bool HasDayHalf() const;

    std::string_view Pattern;
    std::size_t At = 0;
    std::string Codes;
};

void PatternWalker::AppendLiteral(char c) {
    Codes += c;
    if (c == '%')
        Codes += c;
}

// Two quotes are one, inside a quoted text and outside.
void PatternWalker::TakeQuoted() {
    if (Pattern.substr(At).starts_with("''")) {
        Codes += '\'';
        At += 2;
        return;
    }
    for (++At; At < Pattern.size(); ++At) {
        if (Pattern[At] != '\'')
            AppendLiteral(Pattern[At]);
        else if (!Pattern.substr(At).starts_with("''"))
            break;
        else
            Codes += Pattern[At++];
    }
    ++At;
}

bool PatternWalker::HasDayHalf() const {
    bool quoted = false;
    for (const char c : Pattern) {
        quoted = quoted != (c == '\'');
        if (!quoted && (c == 'A' || c == 'a'))
            return true;
    }
    return false;
}

// The run of one letter that begins here; "AP" in any case is one field, "y" comes as "yy" or
// "yyyy" only.
std::size_t PatternWalker::FieldLength() const {
    const char letter = Pattern[At];
    if (letter == 'A' || letter == 'a') {
        const char next = At + 1 < Pattern.size() ? Pattern[At + 1] : '\0';
        return next == 'P' || next == 'p' ? 2 : 1;
    }
    const std::size_t end = Pattern.find_first_not_of(letter, At);
    return std::min<std::size_t>(std::min(end, Pattern.size()) - At, 4);
}

void PatternWalker::TakeField() {
    char letter = Pattern[At];
    const std::size_t length = FieldLength();
    At += length;
    if (letter == 'h' && !HasDayHalf())
        letter = 'H';
    const auto* field = std::ranges::find_if(Fields, [&](const Field& candidate) {
        return candidate.Letter == letter && candidate.Length == length;
    });
    if (field == std::end(Fields)) {
        if (Codes.ends_with('(') && At < Pattern.size() && Pattern[At] == ')') {
            Codes.pop_back();
            ++At;
        }
        return;
    }
    Codes += field->Code;
}

// One blank is enough where a field between two has gone.
void PatternWalker::TakeLiteral() {
    const char c = Pattern[At++];
    if (c == ' ' && (Codes.empty() || Codes.back() == ' '))
        return;
    AppendLiteral(c);
}

std::string PatternWalker::Run() {
    while (At < Pattern.size()) {
        if (Pattern[At] == '\'')
            TakeQuoted();
        else if (FieldLetters.find(Pattern[At]) != std::string_view::npos)
            TakeField();
        else
            TakeLiteral();
    }
    while (!Codes.empty() && Codes.back() == ' ')
        Codes.pop_back();
    return std::move(Codes);
}

} // namespace

std::string CodesFromPattern(std::string_view pattern) {
    return PatternWalker(pattern).Run();
}

} // namespace locale
