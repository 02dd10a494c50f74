#include "platform/dos/ProgramArguments.h"

#include "platform/dos/ReadArgs.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <array>
#include <gtest/gtest.h>

namespace {

TEST(ProgramArgumentsTest, WordsOfTheHostComeBackFromReadArgsAsTheyWere) {
    const std::vector<std::string> words = {"plain",     "",          "two words", "\"",  "a\"b",
                                            "*",         "* \"",      "a=b",       "x;y", "\xFF\xC3\xBC",
                                            "line\nend", "tab\there", "-rf"};
    const auto read = dos::ReadArgs("WORDS/M", dos::JoinWords(words));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Multi("WORDS"), words);
    const auto keyword =
        dos::ReadArgs("FILE,TO/K", dos::JoinWords(std::vector<std::string>{"TO", "RAM:x y"}));
    ASSERT_TRUE(keyword);
    EXPECT_EQ(keyword->Text("TO"), "RAM:x y");
}

TEST(ProgramArgumentsTest, TheTypedLineIsTakenAsItStandsAndOnlyOnce) {
    const ScopedVariable line(dos::CommandLineVariable, "\"TO\" \"a*\"b\" LFORMAT=\"%n\"");
    std::string name = "List";
    std::string to = "TO", file = "a\"b", format = "LFORMAT=%n";
    std::array<char*, 5> words = {name.data(), to.data(), file.data(), format.data(), nullptr};
    EXPECT_EQ(dos::ProgramArguments(4, words.data()), "\"TO\" \"a*\"b\" LFORMAT=\"%n\"");
    EXPECT_EQ(dos::ProgramArguments(2, words.data()), "TO");
    EXPECT_EQ(dos::ProgramArguments(0, words.data() + 4), "");
}

TEST(ProgramArgumentsTest, ALineThatWasTypedForAnotherProgramIsNotTaken) {
    const ScopedVariable line(dos::CommandLineVariable, "#?");
    std::string name = "Delete";
    std::string word = "onlythis";
    std::array<char*, 3> words = {name.data(), word.data(), nullptr};
    EXPECT_EQ(dos::ProgramArguments(2, words.data()), "onlythis");
}

} // namespace
