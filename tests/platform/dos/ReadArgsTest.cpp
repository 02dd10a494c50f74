#include "platform/dos/ReadArgs.h"

#include "platform/dos/Errors.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

struct Row {
    std::string_view Template, Line;
    // What the items hold, parted by "; ": NAME=text, NAME->number, NAME={words}, NAME; "#117" for an error.
    std::string_view Outcome;
};

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : ",") + word;
    return "={" + text + "}";
}

std::string Value(const dos::ArgResults& results, const std::string& name, std::string_view modifiers) {
    const bool isNumber = modifiers.find("/N") != std::string_view::npos;
    if (modifiers.find("/S") != std::string_view::npos || modifiers.find("/T") != std::string_view::npos)
        return "";
    if (modifiers.find("/M") != std::string_view::npos) {
        std::vector<std::string> words = results.Multi(name);
        if (isNumber) {
            words.clear();
            for (const long number : results.Numbers(name))
                words.push_back("->" + std::to_string(number));
        }
        return Join(words);
    }
    return isNumber ? "->" + std::to_string(results.Number(name).value()) : "=" + results.Text(name).value();
}

std::string Outcome(std::string_view argTemplate, std::string_view line) {
    dos::SetIoErr(0);
    const std::optional<dos::ArgResults> results = dos::ReadArgs(argTemplate, line);
    if (!results)
        return "#" + std::to_string(dos::IoErr());
    std::string text;
    for (std::size_t start = 0; start < argTemplate.size();) {
        const std::size_t end = std::min(argTemplate.find(',', start), argTemplate.size());
        const std::string_view item = argTemplate.substr(start, end - start);
        const std::string name(item.substr(0, item.find_first_of("=/")));
        if (results->Flag(name))
            text += (text.empty() ? "" : "; ") + name + Value(*results, name, item);
        start = end + 1;
    }
    return text;
}

void ExpectOutcomes(const std::vector<Row>& rows) {
    for (const Row& row : rows)
        EXPECT_EQ(Outcome(row.Template, row.Line), row.Outcome) << row.Template << " : " << row.Line;
}

TEST(ReadArgsTest, FillsItemsByKeywordAndByPlace) {
    constexpr std::string_view copy = "FROM/A,TO/K,ALL/S,BUF=BUFFER/K/N";
    ExpectOutcomes({
        {"AKEY", "hello", "AKEY=hello"},
        {"AKEY", "akey hello", "AKEY=hello"},
        {"AKEY", "akey=hello", "AKEY=hello"},
        {"AKEY", "akey = hello", "AKEY=hello"},
        {"AKEY", "\takey\thello \n", "AKEY=hello"},
        {"AKEY", "\"akey\"", "AKEY=akey"},
        {"AKEY", "\"\"", "AKEY="},
        {"AKEY", "", ""},
        {"AKEY", "akey", "#117"},
        {"AKEY", "akey=", "#117"},
        {"AKEY", "a=b", "#118"},
        {"AKEY", "=x", "#114"},
        {"AKEY", "akey = = x", "#114"},
        {"AKEY/S", "x", "#118"},
        {copy, "src to dst", "FROM=src; TO=dst"},
        {copy, "src dst", "#118"},
        {copy, "to=dst src all", "FROM=src; TO=dst; ALL"},
        {copy, "from src buffer 7", "FROM=src; BUF->7"},
        {copy, "src buf=-1", "FROM=src; BUF->-1"},
        {copy, "src all=yes", "#118"},
        {copy, "src all all", "#118"},
        {copy, "", "#116"},
        {copy, "src ; rest", "FROM=src"},
        {copy, "src;rest", "FROM=src;rest"},
        {copy, "src\nall", "FROM=src"},
        {copy, "\"src", "#120"},
        {"A/K/A", "x", "#118"},
        {"A/K/A", "", "#118"},
        {"A,B,C", "b=x y z", "A=y; B=x; C=z"},
    });
}

TEST(ReadArgsTest, ListsTakeWhatIsLeftOver) {
    constexpr std::string_view join = "FROM/A/M,TO/A";
    constexpr std::string_view program = "PATH/M,WIN_X/K/N,ICONIFY/S";
    ExpectOutcomes({
        {"FILES/M,ALL/S", "", ""},
        {"FILES/M,ALL/S", "a b c all", "FILES={a,b,c}; ALL"},
        {"FILES/M,ALL/S", "\"all\" a", "FILES={all,a}"},
        {"FILES/M,ALL/S", "a \"b*\"c\" d", "FILES={a,b\"c,d}"},
        {"FILES/M,ALL/S", "\"a**b\" \"x*ny\" a*nb", "FILES={a*b,x\ny,a*nb}"},
        {"FILES/M,ALL/S", "\"*e[1m*x\"", "FILES={\x1B[1mx}"},
        {"FILES/M,ALL/S", "files a files b c", "FILES={a,b,c}"},
        {join, "a b c", "FROM={a,b}; TO=c"},
        {join, "a to=x b", "FROM={a,b}; TO=x"},
        {join, "a", "#116"},
        {join, "", "#116"},
        {"A/A,B/A,REST/M", "rest x rest y", "A=x; B=y"}, // the last item takes the last word
        {"NUM/N/M", "1 2 -3", "NUM={->1,->2,->-3}"},
        {"NUM/N/M", "1 x", "#115"},
        {program, "Work: RAM:T win_x=10", "PATH={Work:,RAM:T}; WIN_X->10"},
        {program, "iconify=1", "PATH={1}; ICONIFY"},
        {program, "bogus=1", "PATH={bogus,1}"},
        {program, "win_x", "#117"},
        {program, "WIN_X abc", "#115"},
    });
}

TEST(ReadArgsTest, RestOfLineIsKeptVerbatim) {
    constexpr std::string_view button = "CLOSE/S,QUICK/S,COMMAND/F";
    ExpectOutcomes({
        {"CMD/A,ARGS/F", "run  a b  \"c d\" = e", "CMD=run; ARGS=a b  \"c d\" = e"},
        {"CMD/A,ARGS/F", "run \"a b\"  c ;d\n", "CMD=run; ARGS=a b  c ;d"},
        {"CMD/A,ARGS/F", "run args = x y", "CMD=run; ARGS=x y"},
        {button, "close quick dir all", "CLOSE; QUICK; COMMAND=dir all"},
        {button, "dir close", "COMMAND=dir close"},
    });
}

TEST(ReadArgsTest, NumbersAreDecimalAndFitALong) {
    ExpectOutcomes({
        {"N/N", "0x10", "#115"},
        {"N/N", "$10", "#115"},
        {"N/N", "12x", "#115"},
        {"N/N", "\"\"", "#115"},
        {"N/N", "\" +12\"", "N->12"},
        {"N/N", "+-1", "#115"},
        {"N/N", "-", "#115"},
        {"N/N", "-2147483648", "N->-2147483648"},
        {"N/N", "2147483648", "#115"},
    });
}

TEST(ReadArgsTest, RefusesTemplatesItCannotHold) {
    std::string wide = "A";
    for (std::size_t i = 1; i < dos::MaxTemplateItems; ++i)
        wide += ",X";
    EXPECT_TRUE(dos::ReadArgs(wide, "word").has_value());
    ExpectOutcomes({{wide + ",X", "word", "#114"}, {"A/Q", "word", "#114"}, {"A/", "word", "#114"}});
    EXPECT_FALSE(dos::ReadArgs("A", std::string(dos::MaxArgumentLine + 1, ' ')).has_value());
    EXPECT_EQ(dos::IoErr(), dos::ErrorLineTooLong);
}

TEST(ReadArgsTest, ItemsAreFoundByAliasAndWithoutCase) {
    const auto results = dos::ReadArgs("BUF=BUFFER/K/N,X=EXTRA/T", "buffer 7 extra");
    ASSERT_TRUE(results);
    EXPECT_EQ(results->Number("buffer"), 7);
    EXPECT_FALSE(results->Toggle("x", true));
    EXPECT_TRUE(results->Toggle("x", false));
    EXPECT_EQ(results->Text("NOSUCH"), std::nullopt);
}

} // namespace
