#include "platform/dos/CommandLine.h"

#include "platform/dos/Errors.h"

#include <gtest/gtest.h>
#include <random>

namespace {

std::optional<std::string> Variable(std::string_view name) {
    if (name == "drawer")
        return "Work:My files";
    if (name == "two words")
        return "a b\n";
    if (name == "evil")
        return "\"x ;>y <z `c` $drawer\n*>w";
    if (name == "empty")
        return "";
    return std::nullopt;
}

std::optional<std::string> Output(std::string_view command) {
    if (command == "fail") {
        dos::SetIoErr(dos::ErrorObjectNotFound);
        return std::nullopt;
    }
    return "[" + std::string(command) + "]\nline\n\n";
}

// What a line is: {command}{arguments} and each redirection as it would be typed; "#120" for an error.
std::string Parse(std::string_view line, const dos::CommandLineSources& sources = {Variable, Output}) {
    dos::SetIoErr(0);
    const std::optional<dos::ParsedCommand> parsed = dos::ParseCommandLine(line, sources);
    if (!parsed)
        return "#" + std::to_string(dos::IoErr());
    if (parsed->Arguments.empty() || parsed->Arguments.back() != '\n')
        return "arguments without newline";
    std::string text = "{" + parsed->Command + "}{";
    text += parsed->Arguments.substr(0, parsed->Arguments.size() - 1) + "}";
    if (parsed->OneStream && parsed->Input == parsed->Output)
        return text + " <>" + parsed->Output.value();
    if (parsed->Input)
        text += " <" + *parsed->Input;
    if (parsed->Output)
        text += (parsed->Append ? " >>" : " >") + *parsed->Output;
    if (parsed->ErrorOutput)
        text += (parsed->ErrorAppend ? " *>>" : " *>") + *parsed->ErrorOutput;
    return text;
}

struct Row {
    std::string_view Line, Outcome;
};

void ExpectOutcomes(const std::vector<Row>& rows) {
    for (const Row& row : rows)
        EXPECT_EQ(Parse(row.Line), row.Outcome) << row.Line;
}

TEST(CommandLineTest, FirstWordIsTheCommandAndTheRestIsUntouched) {
    ExpectOutcomes({
        {"Echo hello", "{Echo}{hello}"},
        {"  Echo\t  hello  world \n", "{Echo}{hello  world }"},
        {"Echo", "{Echo}{}"},
        {"\"My tool\" a", "{My tool}{a}"},
        {"\"a*\"b**c\"\"d\"", "{a\"b*c}{\"d\"}"},
        {"\"\" a", "{}{a}"},
        {"Copy \"a *\"b\" c**d = e", "{Copy}{\"a *\"b\" c**d = e}"},
        {"Format=x", "{Format}{x}"},
        {"Li*st a*nb", "{Li*st}{a*nb}"},
        {"", "{}{}"},
        {" \t\n", "{}{}"},
        {"; only said", "{}{}"},
        {"Echo a ; said > x", "{Echo}{a }"},
        {"Echo \"a ; b\" c;d", "{Echo}{\"a ; b\" c}"},
        {"Echo a\"b;c\"", "{Echo}{a\"b}"}, // a quote inside of a word quotes nothing
        {"= a", "#114"},
        {"\"Echo", "#120"},
        {"Echo \"a*\"", "#120"},
        {"Echo a\nDelete b", "#120"},
        {"Echo \"a\nb\"", "#120"},
        {std::string_view("Echo \0", 6), "#120"},
    });
}

TEST(CommandLineTest, RedirectionsLeaveTheLine) {
    ExpectOutcomes({
        {"List >RAM:out", "{List}{} >RAM:out"},
        {"List>RAM:out ALL", "{List}{ALL} >RAM:out"},
        {"List a > \"RAM:my *\"out\" b", "{List}{a  b} >RAM:my \"out"},
        {"List a>>out<in b", "{List}{a b} <in >>out"},
        {"List <in>out", "{List}{} <in >out"},
        {"List a <>CON:x b", "{List}{a b} <>CON:x"},
        {"List a *>err *>>out", "#118"},
        {"List a *> err >out", "{List}{a } >out *>err"},
        {"List a *>>err", "{List}{a } *>>err"},
        {"List a*>out", "{List}{a* } >out"}, // the star belongs to the word
        {"List \">a\" \"<b\"", "{List}{\">a\" \"<b\"}"},
        {"List \"a\">\"out\"b", "{List}{\"a\" b} >out"},
        {"List \"a\">out\"b\"", "{List}{\"a\" } >out\"b\""},
        {"List >out;said", "{List}{} >out"},
        {"List a >NIL: >x", "#118"},
        {"List <a <b", "#118"},
        {"List <>a >b", "#118"},
        {"List >b <>a", "#118"},
        {"List >", "#117"},
        {"List > ;x", "#117"},
        {"List >\"\"", "#117"},
        {"List >>>x", "#117"},
        {"List <<x", "#117"},
        {"List >\"x", "#120"},
        {">x List", "#120"},
        {" *>x List", "#120"},
    });
}

TEST(CommandLineTest, InsertedTextsAreNeverRead) {
    ExpectOutcomes({
        {"List $drawer/x ALL", "{List}{Work:My files/x ALL}"},
        {"List ${drawer}s", "{List}{Work:My filess}"},
        {"${two words} c", "{a}{b c}"},
        {"List \"$drawer `x`\"", "{List}{\"$drawer `x`\"}"},
        {"List $nosuch ${no such} $ $$ a$", "{List}{$nosuch ${no such} $ $$ a$}"},
        {"List >$drawer x", "{List}{x} >Work:My files"},
        {"List a$evil", "{List}{a\"x ;>y <z `c` $drawer *>w}"},
        {"List >$evil", "{List}{} >\"x ;>y <z `c` $drawer *>w"},
        {"List $empty\"a;b\"", "{List}{\"a;b\"}"},
        {"List \"x\"$empty\"a;b\"", "{List}{\"x\"\"a;b\"}"},
        {"List >$empty", "#117"},
        {"List `dir \"a`b\" >x;y` z", "{List}{[dir \"a`b\" >x;y] line z}"},
        {"`x`", "{[x]}{line}"},
        {"List `x", "#120"},
        {"List ${x", "#120"},
        {"List `fail`", "#205"},
    });
    EXPECT_EQ(Parse("List $drawer", {}), "{List}{$drawer}");
    EXPECT_EQ(Parse("List `x`", {}), "#236");
}

TEST(CommandLineTest, LengthIsLimitedBeforeAndAfterInsertion) {
    const std::string words(dos::MaxArgumentLine - 5, 'a');
    EXPECT_EQ(Parse("Echo " + words), "{Echo}{" + words + "}");
    EXPECT_EQ(Parse("Echo  " + words), "#120");
    int calls = 0;
    const dos::CommandLineSources large{[&calls, &words](std::string_view) {
                                            ++calls;
                                            return words;
                                        },
                                        {}};
    EXPECT_EQ(Parse("Echo $a$a$a$a$a", large), "#120");
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Parse("Echo $a", {[](std::string_view) { return std::string(1, '\0'); }, {}}), "#120");
}

// Whatever a name is, between quotes it is that name for the Shell and for the command.
TEST(CommandLineTest, EscapedTextsAreDataAndNothingElse) {
    std::mt19937 chance(20);
    constexpr std::string_view letters = "ab \"*;><`$={}\n\t\x1B\xC3\xA9NEne'/:";
    std::vector<std::string> names{"a\" ;rm -rf *", "",    "*",         "\"",
                                   "`x` >y",        "all", "${drawer}", "d\xFFr/é\t"};
    for (int i = 0; i < 3000; ++i) {
        std::string& name = names.emplace_back(chance() % 12, ' ');
        for (char& c : name)
            c = letters[chance() % letters.size()];
    }
    for (std::size_t i = 0; i + 2 < names.size(); i += 1) {
        const std::string line =
            "\"" + dos::EscapeArgument(names[i]) + "\" ALL " + dos::QuoteArgument(names[i + 1]) + " >\"" +
            dos::EscapeArgument("T:" + names[i + 2]) + "\" \"" + dos::EscapeArgument(names[i]) + "\"";
        const auto parsed = dos::ParseCommandLine(line, {Variable, Output});
        ASSERT_TRUE(parsed) << line;
        EXPECT_EQ(parsed->Command, names[i]);
        EXPECT_EQ(parsed->Output, "T:" + names[i + 2]);
        EXPECT_FALSE(parsed->Input || parsed->ErrorOutput);
        const auto words = dos::ReadArgs("FILES/M,ALL/S", parsed->Arguments);
        ASSERT_TRUE(words) << line;
        EXPECT_TRUE(words->Flag("ALL"));
        EXPECT_EQ(words->Multi("FILES"), (std::vector<std::string>{names[i + 1], names[i]})) << line;
    }
}

} // namespace
