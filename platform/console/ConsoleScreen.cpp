#include "platform/console/ConsoleScreen.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <utility>

namespace console {

namespace {

constexpr char32_t Csi = 0x9B;
constexpr char32_t Escape = 0x1B;
constexpr char32_t Bell = 0x07;
constexpr char32_t StringEnd = 0x9C;
constexpr std::size_t LongestSequence = 64; // bytes; a longer one is passed over
constexpr std::size_t TabWidth = 8;
constexpr std::size_t LargestNumber = 9999;

// Bytes of the UTF-8 character that begins so; 0 for none.
std::size_t LengthOf(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF)
        return 2;
    if (byte >= 0xE0 && byte <= 0xEF)
        return 3;
    return byte >= 0xF0 && byte <= 0xF4 ? 4 : 0;
}

char32_t Decode(std::string_view bytes) {
    const auto first = static_cast<unsigned char>(bytes.front());
    char32_t character = first & (0xFFu >> (bytes.size() + 1));
    for (const char c : bytes.substr(1))
        character = (character << 6) | (static_cast<unsigned char>(c) & 0x3Fu);
    return character;
}

// Too long a form, half a surrogate pair, or beyond the last character.
bool IsSound(char32_t character, std::size_t length) {
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    return character >= least[length] && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

// Marks that would turn text round or hide it are shown as a replacement.
char32_t Harmless(char32_t character) {
    const bool turns =
        (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
    const bool breaksLine = character == 0x2028 || character == 0x2029;
    return turns || breaksLine ? U'\uFFFD' : character;
}

} // namespace

void ConsoleScreen::SetRows(std::size_t rows) {
    Rows = std::clamp<std::size_t>(rows, 1, MostLines / 2);
}

void ConsoleScreen::Take(std::string_view bytes) {
    for (const char c : bytes)
        TakeByte(static_cast<unsigned char>(c));
}

Changes ConsoleScreen::TakeChanges() {
    return std::exchange(Changed, Changes{0, Text.size()});
}

void ConsoleScreen::NoteChange(std::size_t row) {
    Changed.First = std::min(Changed.First, row);
}

// What turned out to be no UTF-8 is Latin-1.
void ConsoleScreen::Flush() {
    const std::string bytes = std::exchange(Pending, {});
    PendingLength = 0;
    for (const char c : bytes)
        TakeCharacter(static_cast<unsigned char>(c));
}

void ConsoleScreen::TakeUtf8(unsigned char byte) {
    Pending += static_cast<char>(byte);
    if (Pending.size() < PendingLength)
        return;
    const char32_t character = Decode(Pending);
    if (!IsSound(character, PendingLength))
        return Flush();
    Pending.clear();
    PendingLength = 0;
    TakeCharacter(character);
}

void ConsoleScreen::TakeByte(unsigned char byte) {
    const bool continues = (byte & 0xC0) == 0x80;
    if (PendingLength != 0 && continues)
        return TakeUtf8(byte);
    if (PendingLength != 0)
        Flush();
    PendingLength = LengthOf(byte);
    if (PendingLength != 0)
        return TakeUtf8(byte);
    TakeCharacter(byte);
}

void ConsoleScreen::TakeCharacter(char32_t character) {
    switch (Doing) {
    case State::Escape:
        return TakeInEscape(character);
    case State::Sequence:
        return TakeInSequence(character);
    case State::Skip: // a title or another text for a terminal, which this is not
        if (character == Bell || character == StringEnd)
            Doing = State::Plain;
        else if (character == Escape)
            Doing = State::SkipEnd;
        return;
    case State::SkipEnd:
        Doing = State::Plain;
        return;
    case State::Plain:
        break;
    }
    if (character < 0x20 || (character >= 0x7F && character < 0xA0))
        TakeControl(character);
    else
        Put(Harmless(character));
}

void ConsoleScreen::TakeControl(char32_t character) {
    switch (character) {
    case '\n':
        return NewLine();
    case '\r':
        Column = 0;
        return;
    case '\b':
        Column -= Column > 0 ? 1 : 0;
        return;
    case '\t':
        return MoveTo(Row, std::min((Column / TabWidth + 1) * TabWidth, MostColumns - 1));
    case '\f':
        return Clear();
    case Escape:
        Doing = State::Escape;
        return;
    case Csi:
        Doing = State::Sequence;
        Sequence.clear();
        return;
    default:
        return;
    }
}

void ConsoleScreen::TakeInEscape(char32_t character) {
    Doing = State::Plain;
    if (character == '[') {
        Doing = State::Sequence;
        Sequence.clear();
    } else if (character == ']' || character == 'P' || character == 'X' || character == '^' ||
               character == '_') {
        Doing = State::Skip;
    } else if (character == 'c') {
        Now = Style{};
        Clear();
    } else if (character >= 0x20 && character < 0x30) {
        Doing = State::Escape; // the choice of a character set: one more follows
    }
}

void ConsoleScreen::TakeInSequence(char32_t character) {
    if (character < 0x20 || character > 0x7E || Sequence.size() >= LongestSequence) {
        Doing = State::Plain;
        if (character < 0x20)
            TakeControl(character);
        return;
    }
    if (character < 0x40) {
        Sequence += static_cast<char>(character);
        return;
    }
    Doing = State::Plain;
    // Private sequences and those with a blank speak to other terminals.
    if (Sequence.find_first_not_of("0123456789;") == std::string::npos)
        Obey(character);
}

// The number of that place in the sequence; 0 counts as not given.
std::size_t ConsoleScreen::Number(std::size_t index, std::size_t otherwise) const {
    std::size_t at = 0;
    for (; index > 0; --index) {
        at = Sequence.find(';', at);
        if (at == std::string::npos)
            return otherwise;
        ++at;
    }
    std::size_t number = 0;
    for (; at < Sequence.size() && Sequence[at] != ';'; ++at)
        number = std::min(number * 10 + static_cast<std::size_t>(Sequence[at] - '0'), LargestNumber);
    return number == 0 ? otherwise : number;
}

void ConsoleScreen::Obey(char32_t final) {
    const std::size_t count = Number(0, 1);
    switch (final) {
    case 'm':
        return ObeyStyle();
    case 'A':
        return MoveTo(std::max(Top(), Row - std::min(Row, count)), Column);
    case 'B':
        return MoveTo(Row + count, Column);
    case 'C':
        return MoveTo(Row, Column + count);
    case 'D':
        return MoveTo(Row, Column - std::min(Column, count));
    case 'G':
        return MoveTo(Row, count - 1);
    case 'E':
        return MoveTo(Row + count, 0);
    case 'F':
        return MoveTo(std::max(Top(), Row - std::min(Row, count)), 0);
    case 'H':
    case 'f':
        return MoveTo(Top() + count - 1, Number(1, 1) - 1);
    case 'J':
        return Number(0, 0) >= 2 ? Clear() : EraseDisplay();
    case 'K':
        return EraseLine();
    default:
        return; // what asks for an answer gets none
    }
}

// Colours of larger tables and of true colour stay as they are; their numbers are passed over.
std::size_t ConsoleScreen::ObeyColour(std::size_t at, std::int8_t Style::*field) {
    const std::size_t kind = Number(at + 1, 0);
    if (kind == 5 && Number(at + 2, 0) < 8)
        Now.*field = static_cast<std::int8_t>(Number(at + 2, 0));
    return kind == 5 ? 2 : kind == 2 ? 4 : 0;
}

void ConsoleScreen::ObeyStyle() {
    const auto count = static_cast<std::size_t>(std::count(Sequence.begin(), Sequence.end(), ';')) + 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t number = Number(i, 0);
        if (number == 0)
            Now = Style{};
        else if (number == 1 || number == 22)
            Now.Bold = number == 1;
        else if (number == 3 || number == 23)
            Now.Italic = number == 3;
        else if (number == 4 || number == 24)
            Now.Underline = number == 4;
        else if (number == 7 || number == 27)
            Now.Inverse = number == 7;
        else if (number == 38 || number == 48)
            i += ObeyColour(i, number == 38 ? &Style::Foreground : &Style::Background);
        else if (number >= 30 && number <= 39)
            Now.Foreground = number == 39 ? DefaultColour : static_cast<std::int8_t>(number - 30);
        else if (number >= 40 && number <= 49)
            Now.Background = number == 49 ? DefaultColour : static_cast<std::int8_t>(number - 40);
    }
}

// The first line of the part that the window shows.
std::size_t ConsoleScreen::Top() const {
    return Text.size() - std::min(Text.size(), Rows);
}

void ConsoleScreen::MoveTo(std::size_t row, std::size_t column) {
    const std::size_t last = std::max(Text.size(), Top() + Rows) - 1;
    Row = std::min(row, last);
    Column = std::min(column, MostColumns - 1);
    if (Row < Text.size())
        return;
    NoteChange(Text.size());
    Text.resize(Row + 1);
}

void ConsoleScreen::NewLine() {
    Column = 0;
    ++Row;
    if (Row < Text.size())
        return;
    NoteChange(Text.size());
    Text.emplace_back();
    if (Text.size() <= MostLines)
        return;
    // Many at once, so that each line is moved a few times only.
    constexpr std::size_t step = MostLines / 10;
    Text.erase(Text.begin(), Text.begin() + step);
    Row -= step;
    Changed.Dropped += step;
    Changed.First -= std::min(Changed.First, step);
}

void ConsoleScreen::Put(char32_t character) {
    if (Column >= MostColumns)
        NewLine();
    Line& line = Text[Row];
    if (line.size() <= Column)
        line.resize(Column + 1);
    line[Column++] = {character, Now};
    NoteChange(Row);
}

void ConsoleScreen::EraseLine() {
    const std::size_t how = Number(0, 0);
    Line& line = Text[Row];
    NoteChange(Row);
    if (how == 0)
        line.resize(std::min(line.size(), Column));
    else if (how == 2)
        line.clear();
    else
        std::fill_n(line.begin(), std::min(line.size(), Column + 1), Cell{});
}

void ConsoleScreen::EraseDisplay() {
    if (Number(0, 0) == 1) {
        for (std::size_t row = Top(); row < Row; ++row)
            Text[row].clear();
        NoteChange(Top());
    } else {
        Text.resize(Row + 1);
        NoteChange(Row);
    }
    EraseLine();
}

// What scrolled off before stays to be looked at.
void ConsoleScreen::Clear() {
    Row = Top();
    Column = 0;
    NoteChange(Row);
    Text.resize(Row + 1);
    Text[Row].clear();
}

} // namespace console
