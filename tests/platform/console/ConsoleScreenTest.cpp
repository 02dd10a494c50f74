#include "platform/console/ConsoleScreen.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>

namespace {

std::u32string Shown(const console::ConsoleScreen& screen) {
    std::u32string text;
    for (const console::Line& line : screen.Lines()) {
        for (const console::Cell& cell : line)
            text += cell.Character;
        text += U'\n';
    }
    text.pop_back();
    return text;
}

TEST(ConsoleScreenTest, ShowsTextAsAConsoleDoes) {
    const std::pair<std::string_view, std::u32string_view> rows[] = {
        {"one\r\ntwo\n", U"one\ntwo\n"},
        {"50%\r100%", U"100%"},
        {"ab\b\bx\ty", U"xb      y"},
        {"\xC3\xBC \xFC \xC3 \xE2\x82", U"\u00FC \u00FC \u00C3 "},
        {"\xE2\x82\xAC\xC0\xAF\xED\xA0\x80", U"\u20AC\u00C0\u00AF\u00ED\u00A0"},
        {"a\fb", U"b"},
        {"ab\x9B\x31Kc\x1B[2Kd", U"   d"},
        {"1\r\n2\r\n3\x1B[2A!\x1B[Jx", U"1!x"},
        {"\x1B[2;3Hx\x1B[99999;99999H\x1B[H!", U"!\n  x\n\n"},
        {"\x1B]0;title\x07x\x1B]2;evil\x1B\\y\x1B(Bz\x1B[6n\x1B[?25l\x1B[0 q", U"xyz"},
        {"x\xE2\x80\xAEy", U"x\uFFFDy"},
    };
    for (const auto& [bytes, shown] : rows) {
        console::ConsoleScreen screen;
        screen.SetRows(4);
        for (const char c : bytes) // a character may come in parts
            screen.Take(std::string_view(&c, 1));
        EXPECT_EQ(Shown(screen), shown) << bytes;
    }
}

TEST(ConsoleScreenTest, StylesColourWhatFollows) {
    console::ConsoleScreen screen;
    screen.Take("a\x1B[1;31;42mb\x1B[38;5;3;4mc\x1B[38;2;9;9;9;7md\x1B[me");
    const console::Line& line = screen.Lines().front();
    const console::Style b{.Foreground = 1, .Background = 2, .Bold = true};
    console::Style c = b;
    c.Foreground = 3;
    c.Underline = true;
    console::Style d = c;
    d.Inverse = true;
    EXPECT_EQ(line[0].Look, console::Style{});
    EXPECT_EQ(line[1].Look, b);
    EXPECT_EQ(line[2].Look, c);
    EXPECT_EQ(line[3].Look, d);
    EXPECT_EQ(line[4].Look, console::Style{});
}

// A copy that follows the changes only must always equal the screen.
TEST(ConsoleScreenTest, ChangesTellAllAndMemoryStaysBounded) {
    console::ConsoleScreen screen;
    std::size_t lines = 1;
    std::mt19937 random(7);
    const std::string_view alphabet = "ab\n\n\n\r\t\b\f\x1B[;19mHJKABCDG]\x07\x9B\xC3\xBC";
    for (int round = 0; round < 3000; ++round) {
        std::string bytes;
        for (int i = 0; i < 60; ++i)
            bytes += alphabet[random() % alphabet.size()];
        if (round % 3 == 0)
            bytes += std::string(1000, 'w') + "\n\n";
        screen.Take(bytes);
        const console::Changes changes = screen.TakeChanges();
        ASSERT_LE(changes.Dropped, lines);
        ASSERT_LE(changes.First, lines - changes.Dropped);
        lines = screen.Lines().size();
        ASSERT_LE(lines, console::MostLines);
        for (const console::Line& line : screen.Lines())
            ASSERT_LE(line.size(), console::MostColumns);
    }
}

} // namespace
