// Host command lines as ReadArgs gets them: what the host's shell split stays split, options stay options.
#include "frame/ArgumentParser.h"
#include "platform/dos/ReadArgs.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace solvane {
namespace {

constexpr const char* Template = "PATH/M,WIN_X/K/N,ICONIFY/S,PUBSCREEN/K";

struct LineCase {
    const char* Name;
    std::vector<std::string> Words, Paths;
    long WinX;
    bool Iconify;
    std::string Screen;
};

TEST(ArgumentLineTest, KeepsWordsAndOptionsApart) {
    const LineCase cases[] = {
        {"Nothing", {}, {}, 0, false, ""},
        {"PlainPaths", {"/a", "Work:b"}, {"/a", "Work:b"}, 0, false, ""},
        {"Blanks", {"/my files/x y"}, {"/my files/x y"}, 0, false, ""},
        {"QuotesStarsSemicolons", {"a\"b", "*n", ";x", "c*"}, {"a\"b", "*n", ";x", "c*"}, 0, false, ""},
        {"NewlineAndTab", {"a\nb", "c\td"}, {"a\nb", "c\td"}, 0, false, ""},
        {"EqualsInAPath", {"/x/a=b"}, {"/x/a=b"}, 0, false, ""},
        {"InvalidUtf8", {"/\xFF\xFE"}, {"/\xFF\xFE"}, 0, false, ""},
        {"OptionWithEquals", {"win_x=12", "iconify"}, {}, 12, true, ""},
        {"OptionInTwoWords", {"WIN_X", "-3", "/p"}, {"/p"}, -3, false, ""},
        {"OptionValueWithBlanks", {"PUBSCREEN=My screen"}, {}, 0, false, "My screen"},
    };
    for (const LineCase& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto results = dos::ReadArgs(Template, ArgumentLine(c.Words));
        ASSERT_TRUE(results.has_value());
        EXPECT_EQ(results->Multi("PATH"), c.Paths);
        EXPECT_EQ(results->Number("WIN_X").value_or(0), c.WinX);
        EXPECT_EQ(results->Flag("ICONIFY"), c.Iconify);
        EXPECT_EQ(results->Text("PUBSCREEN").value_or(""), c.Screen);
    }
}

} // namespace
} // namespace solvane
