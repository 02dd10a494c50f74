#include "platform/dos/ReadArgs.h"

#include "platform/dos/Errors.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace dos {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

bool EndsLine(std::string_view line, std::size_t at) {
    return at >= line.size() || line[at] == '\n';
}

void SkipBlanks(std::string_view line, std::size_t& at) {
    while (at < line.size() && IsBlank(line[at]))
        ++at;
}

char Unescape(char c) {
    switch (c) {
    case 'n':
    case 'N':
        return '\n';
    case 'e':
    case 'E':
        return '\x1B';
    default:
        return c;
    }
}

// Reads from behind the opening quote to behind the closing one.
ItemKind ReadQuoted(std::string_view line, std::size_t& position, std::string& word) {
    for (std::size_t at = position; !EndsLine(line, at); ++at) {
        if (line[at] == '"') {
            position = at + 1;
            return ItemKind::Quoted;
        }
        if (line[at] != '*') {
            word += line[at];
        } else if (!EndsLine(line, ++at)) {
            word += Unescape(line[at]);
        } else {
            break;
        }
    }
    SetIoErr(ErrorLineTooLong);
    return ItemKind::Error;
}

ItemKind ReadUnquoted(std::string_view line, std::size_t& position, std::string& word) {
    std::size_t at = position;
    while (!EndsLine(line, at) && !IsBlank(line[at]) && line[at] != '=')
        ++at;
    word = line.substr(position, at - position);
    position = EndsLine(line, at) ? at : at + 1;
    return ItemKind::Unquoted;
}

// A decimal number with a sign and blanks before it, within the 32 bits of a LONG.
std::optional<long> ParseNumber(std::string_view text) {
    std::size_t at = 0;
    SkipBlanks(text, at);
    text.remove_prefix(at);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

} // namespace

// Fills the items of a template from one line. Each step gives the error that ends the parse, 0
// when it went well.
class ArgParser {
public:
    explicit ArgParser(std::string_view line) : Line(line) {}
    long ParseTemplate(std::string_view argTemplate);
    long ParseLine();
    ArgResults Take() { return std::move(Results); }

private:
    using Item = ArgResults::Item;
    static long ParseTemplateItem(std::string_view text, Item& item);
    static bool ApplyModifier(std::string_view modifier, Item& item);
    Item* FindKeyword(std::string_view word);
    Item* NextPositional();
    long FillWord(ItemKind kind, std::size_t start, std::string word);
    long FillKeyword(Item& item);
    long FillRest(Item& item, ItemKind kind, std::size_t start, std::string word);
    static void Give(Item& item, std::string word);
    long FillRequired();
    long Steal(Item& item);
    long ConvertNumbers();

    std::string_view Line;
    std::size_t Position = 0;
    ArgResults Results;
};

bool ArgParser::ApplyModifier(std::string_view modifier, Item& item) {
    static constexpr std::pair<char, bool Item::*> modifiers[] = {
        {'S', &Item::Switch},  {'T', &Item::Toggle},   {'N', &Item::Numeric}, {'A', &Item::Required},
        {'K', &Item::Keyword}, {'M', &Item::Multiple}, {'F', &Item::Rest},
    };
    if (modifier.size() != 1)
        return false;
    const char letter = static_cast<char>(utility::ToUpper(static_cast<unsigned char>(modifier.front())));
    for (const auto& [name, field] : modifiers)
        if (name == letter) {
            item.*field = true;
            return true;
        }
    return false;
}

long ArgParser::ParseTemplateItem(std::string_view text, Item& item) {
    const std::size_t namesEnd = std::min(text.find('/'), text.size());
    for (std::size_t start = 0; start <= namesEnd;) {
        const std::size_t end = std::min(text.find('=', start), namesEnd);
        item.Names.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    for (std::size_t start = namesEnd + 1; start <= text.size();) {
        const std::size_t end = std::min(text.find('/', start), text.size());
        if (!ApplyModifier(text.substr(start, end - start), item))
            return ErrorBadTemplate;
        start = end + 1;
    }
    return 0;
}

long ArgParser::ParseTemplate(std::string_view argTemplate) {
    if (argTemplate.empty())
        return 0;
    for (std::size_t start = 0; start <= argTemplate.size();) {
        const std::size_t end = std::min(argTemplate.find(',', start), argTemplate.size());
        if (Results.Items.size() == MaxTemplateItems)
            return ErrorBadTemplate;
        Item item;
        if (const long error = ParseTemplateItem(argTemplate.substr(start, end - start), item))
            return error;
        Results.Items.push_back(std::move(item));
        start = end + 1;
    }
    return 0;
}

// The item that an unquoted word names, if it can still take a value.
ArgParser::Item* ArgParser::FindKeyword(std::string_view word) {
    for (Item& item : Results.Items) {
        if (item.Given && !item.Multiple)
            continue;
        for (const std::string& name : item.Names)
            if (utility::Stricmp(name, word) == 0)
                return &item;
    }
    return nullptr;
}

// The item that takes the next word which is no keyword.
ArgParser::Item* ArgParser::NextPositional() {
    for (Item& item : Results.Items)
        if (!item.Keyword && !item.Switch && !item.Toggle && (item.Multiple || !item.Given))
            return &item;
    return nullptr;
}

void ArgParser::Give(Item& item, std::string word) {
    item.Given = true;
    item.Words.push_back(std::move(word));
}

// All from the word that begins at start to the end of the line; only a quoted first word loses its
// quotes.
long ArgParser::FillRest(Item& item, ItemKind kind, std::size_t start, std::string word) {
    const std::size_t end = std::min(Line.find('\n', start), Line.size());
    if (kind == ItemKind::Quoted)
        word += Line.substr(Position, end - Position);
    else
        word = Line.substr(start, end - start);
    Position = end;
    Give(item, std::move(word));
    return 0;
}

// Gives the item that was named the next word, one "=" may stand between.
long ArgParser::FillKeyword(Item& item) {
    if (item.Switch || item.Toggle) {
        item.Given = true;
        return 0;
    }
    std::string word;
    SkipBlanks(Line, Position);
    std::size_t start = Position;
    ItemKind kind = ReadItem(Line, Position, word);
    if (kind == ItemKind::Equal) {
        SkipBlanks(Line, Position);
        start = Position;
        kind = ReadItem(Line, Position, word);
    }
    if (kind == ItemKind::Error)
        return IoErr();
    if (kind == ItemKind::Equal)
        return ErrorBadTemplate;
    if (kind == ItemKind::Nothing)
        return ErrorKeyNeedsArg;
    if (item.Rest)
        return FillRest(item, kind, start, std::move(word));
    Give(item, std::move(word));
    return 0;
}

long ArgParser::FillWord(ItemKind kind, std::size_t start, std::string word) {
    if (kind == ItemKind::Unquoted)
        if (Item* named = FindKeyword(word))
            return FillKeyword(*named);
    Item* item = NextPositional();
    if (item == nullptr)
        return ErrorTooManyArgs;
    if (item->Rest)
        return FillRest(*item, kind, start, std::move(word));
    Give(*item, std::move(word));
    return 0;
}

// Takes the last of the left-over words for an item that must have one.
long ArgParser::Steal(Item& item) {
    const auto list = std::ranges::find_if(Results.Items, [](const Item& candidate) {
        return candidate.Multiple && !candidate.Keyword && !candidate.Words.empty();
    });
    if (list == Results.Items.end())
        return ErrorRequiredArgMissing;
    Give(item, std::move(list->Words.back()));
    list->Words.pop_back();
    list->Given = !list->Words.empty();
    return 0;
}

long ArgParser::FillRequired() {
    for (auto item = Results.Items.rbegin(); item != Results.Items.rend(); ++item) {
        if (!item->Required || item->Given || item->Multiple)
            continue;
        if (item->Keyword)
            return ErrorTooManyArgs;
        if (const long error = Steal(*item))
            return error;
    }
    const bool complete =
        std::ranges::all_of(Results.Items, [](const Item& item) { return item.Given || !item.Required; });
    return complete ? 0 : ErrorRequiredArgMissing;
}

long ArgParser::ConvertNumbers() {
    for (Item& item : Results.Items) {
        if (!item.Numeric)
            continue;
        for (const std::string& word : item.Words) {
            const std::optional<long> number = ParseNumber(word);
            if (!number)
                return ErrorBadNumber;
            item.Values.push_back(*number);
        }
    }
    return 0;
}

long ArgParser::ParseLine() {
    for (;;) {
        std::string word;
        SkipBlanks(Line, Position);
        const std::size_t start = Position;
        const ItemKind kind = ReadItem(Line, Position, word);
        if (kind == ItemKind::Nothing)
            break;
        if (kind == ItemKind::Error)
            return IoErr();
        if (kind == ItemKind::Equal)
            return ErrorBadTemplate;
        if (const long error = FillWord(kind, start, std::move(word)))
            return error;
    }
    if (const long error = FillRequired())
        return error;
    return ConvertNumbers();
}

const ArgResults::Item* ArgResults::Find(std::string_view name) const {
    for (const Item& item : Items)
        for (const std::string& candidate : item.Names)
            if (utility::Stricmp(candidate, name) == 0)
                return &item;
    return nullptr;
}

bool ArgResults::Flag(std::string_view name) const {
    const Item* item = Find(name);
    return item != nullptr && item->Given;
}

bool ArgResults::Toggle(std::string_view name, bool preset) const {
    return preset != Flag(name);
}

std::optional<std::string> ArgResults::Text(std::string_view name) const {
    const Item* item = Find(name);
    if (item == nullptr || item->Words.empty())
        return std::nullopt;
    return item->Words.front();
}

std::optional<long> ArgResults::Number(std::string_view name) const {
    const Item* item = Find(name);
    if (item == nullptr || item->Values.empty())
        return std::nullopt;
    return item->Values.front();
}

std::vector<std::string> ArgResults::Multi(std::string_view name) const {
    const Item* item = Find(name);
    return item == nullptr ? std::vector<std::string>() : item->Words;
}

std::vector<long> ArgResults::Numbers(std::string_view name) const {
    const Item* item = Find(name);
    return item == nullptr ? std::vector<long>() : item->Values;
}

ItemKind ReadItem(std::string_view line, std::size_t& position, std::string& word) {
    word.clear();
    SkipBlanks(line, position);
    if (EndsLine(line, position) || line[position] == ';')
        return ItemKind::Nothing;
    if (line[position] == '=') {
        ++position;
        return ItemKind::Equal;
    }
    if (line[position] == '"')
        return ReadQuoted(line, ++position, word);
    return ReadUnquoted(line, position, word);
}

std::optional<ArgResults> ReadArgs(std::string_view argTemplate, std::string_view line) {
    ArgParser parser(line);
    long error = line.size() > MaxArgumentLine ? ErrorLineTooLong : 0;
    if (error == 0)
        error = parser.ParseTemplate(argTemplate);
    if (error == 0)
        error = parser.ParseLine();
    if (error != 0) {
        SetIoErr(error);
        return std::nullopt;
    }
    return parser.Take();
}

std::string QuoteArgument(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '*')
            quoted.append({'*', c});
        else if (c == '\n')
            quoted += "*N";
        else if (c == '\x1B')
            quoted += "*E";
        else
            quoted += c;
    }
    return quoted += '"';
}

} // namespace dos
