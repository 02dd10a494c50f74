#include "tests/platform/commands/CommandTest.h"

namespace {

class ScriptTest : public CommandTest {};

TEST_F(ScriptTest, ScriptsRunTheirLinesAndBranches) {
    const struct {
        std::string_view Script;
        int Code;
        std::string_view Text;
    } cases[] = {
        {"Echo a\n; comment\n\nEcho b", 0, "a\nb\n"},
        {"If EXISTS s\nEcho yes\nElse\nEcho no\nEndIf\n", 0, "yes\n"},
        {"If NOT EXISTS s\nEcho yes\nElse\nEcho no\nEndIf\n", 0, "no\n"},
        {"If WARN\nEcho bad\nIf ERROR\nEcho bad\nEndIf\nElse\nEcho fine\nEndIf\nEcho end", 0, "fine\nend\n"},
        {"List >NIL: #?.none\nIf WARN\nEcho warned\nEndIf\n", 0, "warned\n"},
        {"Type >NIL: none\nEcho never", 10, "Execute: line 1: type failed returncode 10\n"},
        {"FailAt 21\nType >NIL: none\nIf ERROR\nEcho error $RC\nEndIf\n", 0, "error 10\n"},
        {"If 9 GT 10 VAL\nEcho bad\nEndIf\nIf a EQ A\nEcho same\nEndIf\n", 0, "same\n"},
        {"Skip end\nEcho never\nLab end\nEcho here\n", 0, "here\n"},
        {"Skip nowhere\nEcho never\n", 20, "Execute: nowhere: label not found\n"},
        {"Skip x\nEndSkip\nIf WARN\nEcho ended\nEndIf", 0, "ended\n"},
        {"Quit 7\nEcho never", 7, ""},
        {"If WARN\nEcho never", 20, "Execute: EndIf is missing\n"},
        {".key name\nEcho <name>", 20, "Execute: s: scripts with dot commands are not supported\n"},
        {"Assign X: Test:env\nIf EXISTS X:\nEcho there\nEndIf\n", 0, "there\n"},
    };
    for (const auto& row : cases) {
        Tree.Write("w/s", row.Script);
        EXPECT_EQ(Run("Execute s"), row.Code) << row.Script << Text;
        EXPECT_EQ(Text, row.Text) << row.Script;
    }
}

TEST_F(ScriptTest, ProgramsOfTheHostShareStreamsAndVariables) {
    Tree.Write("w/in", "1\n2\n3\n4\n");
    Tree.Write("w/s", "FailAt 21\nhead -n 1\nEcho [`head -n 1`]\nsh -c \"exit 7\"\n"
                      "printf %s,%s $RC `Echo $RC`\ncat\n");
    EXPECT_EQ(Out("Execute <in s"), "1\n[2]\n7,73\n4\n");
    EXPECT_EQ(Out("Execute <in >out s"), "");
    EXPECT_EQ(Tree.Read("w/out"), "1\n[2]\n7,73\n4\n");
    // One place for reading and writing, and whoever writes a file that is not there yet.
    Tree.Write("w/s", "head -n 1\nEcho X\nhead -n 1\n");
    Tree.Write("w/both", "1\n2\n3\n4\n5\n6\n");
    EXPECT_EQ(Out("Execute <>both s"), "");
    EXPECT_EQ(Tree.Read("w/both"), "1\n1\nX\n4\n4\n6\n");
    EXPECT_EQ(Out("Execute <>fresh s"), "");
    EXPECT_EQ(Tree.Read("w/fresh"), "X\n");
    EXPECT_EQ(Run("Echo `head -c 100000 /dev/zero`"), 20) << "too much for a line";
    EXPECT_EQ(dos::IoErr(), dos::ErrorLineTooLong);
}

TEST_F(ScriptTest, AScriptThatCallsItselfAndOneThatLoopsEnd) {
    Tree.Write("w/s", "Execute s\n");
    EXPECT_EQ(Run("Execute s"), 10);
    EXPECT_THAT(Text, testing::HasSubstr("too many levels"));
    Tree.Write("w/s", "Lab again\nSkip again BACK\n");
    int asked = 0;
    Where.Stop = [&asked] { return ++asked > 100; };
    EXPECT_EQ(Run("Execute s"), 20);
}

} // namespace
