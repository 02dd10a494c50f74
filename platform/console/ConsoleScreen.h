// The text of a console and what control sequences make of it: lines of characters with their style, a
// cursor, within bounds whatever is written. It draws nothing and answers nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace console {

inline constexpr std::size_t MostLines = 3000;  // older ones go
inline constexpr std::size_t MostColumns = 400; // a longer line goes on in the next

inline constexpr std::int8_t DefaultColour = -1;

struct Style {
    std::int8_t Foreground = DefaultColour; // 0 to 7
    std::int8_t Background = DefaultColour;
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool Inverse = false;
    bool operator==(const Style&) const = default;
};

struct Cell {
    char32_t Character = U' ';
    Style Look{};
};
using Line = std::vector<Cell>;

// What has changed since it was last asked for.
struct Changes {
    std::size_t Dropped = 0; // lines that went at the top
    std::size_t First = 0;   // lines from here on may be new, counted without the dropped ones
};

class ConsoleScreen {
public:
    // The lines of the window, within which the cursor is placed.
    void SetRows(std::size_t rows);
    // Bytes as a command writes them: UTF-8, and Latin-1 where it is none.
    void Take(std::string_view bytes);

    [[nodiscard]] const std::vector<Line>& Lines() const noexcept { return Text; }
    [[nodiscard]] Changes TakeChanges();

private:
    enum class State { Plain, Escape, Sequence, Skip, SkipEnd };
    void TakeByte(unsigned char byte);
    void TakeUtf8(unsigned char byte);
    void TakeCharacter(char32_t character);
    void TakeControl(char32_t character);
    void TakeInEscape(char32_t character);
    void TakeInSequence(char32_t character);
    void Put(char32_t character);
    void Flush();

    void Obey(char32_t final);
    void ObeyStyle();
    std::size_t ObeyColour(std::size_t at, std::int8_t Style::*field);
    void MoveTo(std::size_t row, std::size_t column);
    void NewLine();
    void EraseLine();
    void EraseDisplay();
    void Clear();
    [[nodiscard]] std::size_t Top() const;
    [[nodiscard]] std::size_t Number(std::size_t index, std::size_t otherwise) const;
    void NoteChange(std::size_t row);

    std::vector<Line> Text = std::vector<Line>(1);
    std::size_t Row = 0, Column = 0; // of the cursor; Row counts from the first line kept
    std::size_t Rows = 25;
    Style Now;
    State Doing = State::Plain;
    std::string Sequence; // of a control sequence, without its beginning
    std::string Pending;  // the begin of a UTF-8 character
    std::size_t PendingLength = 0;
    Changes Changed;
};

} // namespace console
