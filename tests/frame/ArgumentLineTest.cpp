// Host command lines as ReadArgs gets them: what the host's shell split stays split, options stay options.
#include "frame/ArgumentParser.h"
#include "platform/dos/ReadArgs.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace solvane {
namespace {

constexpr const char* Template = "PATH/M,WIN_X/K/N,ICONIFY/S,PUBSCREEN/K";

struct LineCase {
    const char* Name;
    std::vector<std::string> Words;
    std::vector<std::string> Paths;
    long WinX;
    bool Iconify;
    std::string Screen;
};

void PrintTo(const LineCase& c, std::ostream* out) {
    *out << c.Name;
}

class ArgumentLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(ArgumentLineTest, KeepsWordsAndOptionsApart) {
    const LineCase& c = GetParam();
    const auto results = dos::ReadArgs(Template, ArgumentLine(c.Words));
    ASSERT_TRUE(results.has_value());
    EXPECT_EQ(results->Multi("PATH"), c.Paths);
    EXPECT_EQ(results->Number("WIN_X").value_or(0), c.WinX);
    EXPECT_EQ(results->Flag("ICONIFY"), c.Iconify);
    EXPECT_EQ(results->Text("PUBSCREEN").value_or(""), c.Screen);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ArgumentLineTest,
    testing::Values(
        LineCase{"Nothing", {}, {}, 0, false, ""},
        LineCase{"PlainPaths", {"/a", "Work:b"}, {"/a", "Work:b"}, 0, false, ""},
        LineCase{"Blanks", {"/my files/x y"}, {"/my files/x y"}, 0, false, ""},
        LineCase{
            "QuotesStarsSemicolons", {"a\"b", "*n", ";x", "c*"}, {"a\"b", "*n", ";x", "c*"}, 0, false, ""},
        LineCase{"NewlineAndTab", {"a\nb", "c\td"}, {"a\nb", "c\td"}, 0, false, ""},
        LineCase{"EqualsInAPath", {"/x/a=b"}, {"/x/a=b"}, 0, false, ""},
        LineCase{"InvalidUtf8", {"/\xFF\xFE"}, {"/\xFF\xFE"}, 0, false, ""},
        LineCase{"OptionWithEquals", {"win_x=12", "iconify"}, {}, 12, true, ""},
        LineCase{"OptionInTwoWords", {"WIN_X", "-3", "/p"}, {"/p"}, -3, false, ""},
        LineCase{"OptionValueWithBlanks", {"PUBSCREEN=My screen"}, {}, 0, false, "My screen"}),
    [](const auto& info) { return info.param.Name; });

} // namespace
} // namespace solvane
