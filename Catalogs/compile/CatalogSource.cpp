#include "Catalogs/compile/CatalogSource.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>

namespace catalogs {
namespace {

constexpr std::string_view Digits = "0123456789";
constexpr std::string_view Flags = "-+^<>"; // before the letter of a conversion

// Hands out the lines of a source and keeps where it is.
class Lines {
public:
    Lines(std::string_view source, std::string_view file, Findings& findings)
        : Rest(source), File(file), Found(findings) {}

    std::optional<std::string_view> Next() {
        if (Rest.empty()) {
            return std::nullopt;
        }
        ++Number;
        const std::size_t end = Rest.find('\n');
        const std::string_view line = Rest.substr(0, end);
        Rest.remove_prefix(end == std::string_view::npos ? Rest.size() : end + 1);
        return line;
    }
    [[nodiscard]] std::size_t Line() const { return Number; }
    void Report(std::string_view text, std::size_t line) {
        Found.push_back(std::string(File) + ":" + std::to_string(line) + ": " + std::string(text));
    }
    void Report(std::string_view text) { Report(text, Number); }

private:
    std::string_view Rest, File;
    Findings& Found;
    std::size_t Number = 0;
};

// "\n" and "\\" and "\"" become what they stand for; false at any other escape.
bool AppendResolved(std::string& text, std::string_view line) {
    for (std::size_t at = 0; at < line.size(); ++at) {
        char c = line[at];
        if (c == '\\') {
            c = ++at < line.size() ? line[at] : '\0';
            if (c != 'n' && c != '\\' && c != '"') {
                return false;
            }
            c = c == 'n' ? '\n' : c;
        }
        text += c;
    }
    return true;
}

// An odd number of backslashes at the end says that the text goes on in the next line.
bool GoesOn(std::string_view line) {
    const std::size_t last = line.find_last_not_of('\\');
    return (line.size() - (last == std::string_view::npos ? 0 : last + 1)) % 2 == 1;
}

std::string TextLines(Lines& lines) {
    std::string text;
    std::optional<std::string_view> line = lines.Next();
    if (!line) {
        lines.Report("the text is missing");
    }
    while (line) {
        const bool goesOn = GoesOn(*line);
        if (!AppendResolved(text, line->substr(0, line->size() - (goesOn ? 1 : 0)))) {
            lines.Report("unknown escape");
        }
        line = goesOn ? lines.Next() : std::nullopt;
    }
    if (!utility::IsValidUtf8(text) || text.find('\0') != std::string::npos) {
        lines.Report("the text is not UTF-8");
    }
    return text;
}

bool IsComment(std::string_view line) {
    return line.empty() || line.front() == ';';
}

// A decimal number at the start of the text, which it is taken off; nothing when there is none.
std::optional<std::uint32_t> TakeNumber(std::string_view& text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

bool TakeCharacter(std::string_view& text, char character) {
    const bool isThere = text.starts_with(character);
    text.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

// "MSG_NAME (12/0/20)"; either limit may be left out.
std::optional<DescribedText> ParseHead(std::string_view line) {
    DescribedText text;
    const std::size_t blank = line.find(' ');
    text.Name = line.substr(0, blank);
    line.remove_prefix(std::min(blank, line.size()));
    const bool opens = TakeCharacter(line, ' ') && TakeCharacter(line, '(');
    const auto number = opens ? TakeNumber(line) : std::nullopt;
    if (!number || *number == 0 || *number > LastNumber || !TakeCharacter(line, '/')) {
        return std::nullopt;
    }
    text.Number = static_cast<std::int32_t>(*number);
    text.Least = TakeNumber(line).value_or(0);
    const bool hasMost = TakeCharacter(line, '/');
    if (const auto most = TakeNumber(line)) {
        text.Most = *most;
    }
    return hasMost && line == ")" ? std::optional(text) : std::nullopt;
}

void CheckLength(const DescribedText& described, std::string_view text, Lines& lines, std::size_t line) {
    if (text.empty()) {
        lines.Report(described.Name + " is empty", line);
    } else if (text.size() < described.Least || text.size() > described.Most) {
        lines.Report(described.Name + " has " + std::to_string(text.size()) + " bytes", line);
    }
}

// The kind of each argument that a format asks for, by position: "s", "u" (any length letters), "-a" (a
// date's code with its flag) and so on, with "{f}" tags, which stand for themselves, behind them in their
// order.
std::vector<std::string> ArgumentsOf(std::string_view format) {
    std::map<std::size_t, std::string> kinds;
    std::vector<std::string> tags;
    std::size_t next = 1;
    for (std::size_t at = 0; at < format.size(); ++at) {
        if (format[at] == '{') {
            const std::size_t end = std::min(format.find('}', at), format.size());
            tags.emplace_back(format.substr(at, end - at));
        }
        if (format[at] != '%') {
            continue;
        }
        std::string_view rest = format.substr(at + 1);
        const std::size_t digits = rest.find_first_not_of(Digits);
        std::size_t position = next;
        if (digits != 0 && digits != std::string_view::npos && rest[digits] == '$') {
            position = TakeNumber(rest).value_or(0);
            TakeCharacter(rest, '$');
        } else {
            ++next;
        }
        const std::size_t flags = std::min(rest.find_first_not_of(Flags), rest.size());
        kinds[position] += rest.substr(0, flags);
        rest.remove_prefix(flags);
        const std::size_t letter = rest.find_first_not_of("0123456789.lh");
        kinds[position] += letter == std::string_view::npos ? std::string() : std::string(1, rest[letter]);
        at = format.size() - rest.size() + std::min(letter, rest.size() - (rest.empty() ? 0 : 1));
    }
    std::vector<std::string> all;
    for (const auto& [position, kind] : kinds) {
        all.push_back(std::to_string(position) + kind);
    }
    all.insert(all.end(), tags.begin(), tags.end());
    return all;
}

// How many gadgets a text names, and how many of them have a letter behind a "_". No gadgets when two have
// the same letter.
std::pair<std::size_t, std::size_t> GadgetsOf(std::string_view text) {
    std::set<std::string> letters;
    std::size_t marks = 0;
    for (std::size_t at = text.find('_'); at != std::string_view::npos; at = text.find('_', at + 1)) {
        const std::size_t behind = at + 1;
        const std::size_t length = behind < text.size() ? utility::Decode(text, behind).Length : 0;
        letters.insert(utility::Fold(text.substr(behind, length)));
        ++marks;
    }
    const auto bars = static_cast<std::size_t>(std::ranges::count(text, '|'));
    return {letters.size() == marks ? bars + 1 : 0, marks};
}

void CheckTranslation(const DescribedText& described, std::string_view text, Lines& lines, std::size_t line) {
    CheckLength(described, text, lines, line);
    if (ArgumentsOf(text) != ArgumentsOf(described.Text)) {
        lines.Report(described.Name + " asks for other arguments than \"" + described.Text + "\"", line);
    }
    if (described.Name.ends_with("_GAD") && GadgetsOf(text) != GadgetsOf(described.Text)) {
        lines.Report(described.Name + " has other gadgets, other marks, or two with the same letter", line);
    }
}

// "## version $VER: ..." and the like; comments with a blank behind "#" are none.
void TakeDirective(std::string_view line, locale::CatalogFile& catalog, Lines& lines) {
    constexpr std::string_view Version = "## version ", Language = "## language ", CodeSet = "## codeset ";
    if (line.starts_with(Version)) {
        catalog.VersionText = line.substr(Version.size());
    } else if (line.starts_with(Language)) {
        catalog.Language = line.substr(Language.size());
    } else if (line.starts_with(CodeSet)) {
        line.remove_prefix(CodeSet.size());
        catalog.CodeSet = TakeNumber(line).value_or(locale::CodeSetDefault);
    } else {
        lines.Report("unknown directive");
    }
}

} // namespace

Description ParseDescription(std::string_view source, std::string_view file, Findings& findings) {
    constexpr std::string_view Version = "#version ";
    Lines lines(source, file, findings);
    Description description;
    std::set<std::string> names;
    while (auto line = lines.Next()) {
        if (line->starts_with('#')) {
            line->remove_prefix(line->starts_with(Version) ? Version.size() : line->size());
            description.Version = TakeNumber(*line).value_or(description.Version);
        }
        if (IsComment(*line)) {
            continue;
        }
        std::optional<DescribedText> text = ParseHead(*line);
        if (!text) {
            lines.Report("is not of the form \"NAME (number/least/most)\"");
            continue;
        }
        text->Line = lines.Line();
        if (!names.insert(text->Name).second) {
            lines.Report(text->Name + " comes twice");
        }
        if (!description.Texts.empty() && text->Number <= description.Texts.back().Number) {
            lines.Report(std::to_string(text->Number) + " does not lie above the number before it");
        }
        text->Text = TextLines(lines);
        CheckLength(*text, text->Text, lines, text->Line);
        description.Texts.push_back(*std::move(text));
    }
    return description;
}

locale::CatalogFile ParseTranslation(std::string_view source, std::string_view file,
                                     const Description& description, Findings& findings) {
    Lines lines(source, file, findings);
    locale::CatalogFile catalog;
    std::map<std::string_view, const DescribedText*> missing;
    for (const DescribedText& text : description.Texts) {
        missing.emplace(text.Name, &text);
    }
    while (const auto line = lines.Next()) {
        if (line->starts_with("##")) {
            TakeDirective(*line, catalog, lines);
        } else if (!IsComment(*line)) {
            const std::size_t head = lines.Line();
            const std::string text = TextLines(lines);
            const auto found = missing.find(*line);
            if (found == missing.end()) {
                lines.Report(std::string(*line) + " is unknown or comes twice", head);
                continue;
            }
            CheckTranslation(*found->second, text, lines, head);
            catalog.Texts.push_back({found->second->Number, text});
            missing.erase(found);
        }
    }
    for (const auto& [name, text] : missing) {
        lines.Report(std::string(name) + " is missing");
    }
    if (locale::VersionOf(catalog.VersionText).Version < description.Version) {
        lines.Report("the version lies below that of the description");
    }
    return catalog;
}

} // namespace catalogs
