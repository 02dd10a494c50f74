#include "tests/platform/commands/CommandTest.h"

#include <sys/stat.h>

namespace {

struct Row {
    std::string_view Line;
    int Code;
    std::string_view Text;
};

class CommandsTest : public CommandTest {
protected:
    void Check(std::initializer_list<Row> rows) {
        for (const Row& row : rows) {
            EXPECT_EQ(Run(row.Line), row.Code) << row.Line << "\n" << Text;
            EXPECT_EQ(Text, row.Text) << row.Line;
        }
    }
};

TEST_F(CommandsTest, ListShowsByTheCodesOfItsFormat) {
    Tree.Write("w/d/one.txt", std::string(513, 'x'));
    Tree.Plant({"w/d/two", "w/d/sub/"});
    Tree.Write("w/d/sub/deep", "y");
    Out("Protect d/one.txt srwd");
    Out("Filenote d/one.txt \"a note\"");
    Out("SetDate d/one.txt 03-Sep-25 12:34:56");
    Check({
        {"List d/one.txt LFORMAT \"%s|%n|%m|%e|%p|%f|%l|%b|%a|%c|%d|%t|%%|%x\"", 0,
         "one.txt|one.txt|one|txt|d/|Test:w/d/|513|2|-s--rw-d|a note|03-Sep-25|12:34:56|%|%x\n"},
        {"List d FILES LFORMAT \"%s%s\"", 0, "d/one.txt\nd/two\n"},
        {"List d FILES LFORMAT \"%s %s %s\"", 0, "d/ one.txt one.txt\nd/ two two\n"},
        {"List d FILES LFORMAT \"%S%S=%S%S\"", 0, "d/one.txt=d/one.txt\nd/two=d/two\n"},
        {"List d LFORMAT \"%5.3n|%-4l|\"", 0, "  one|513 |\n  sub|0   |\n  two|0   |\n"},
        {"List Test:w/d ALL DIRS LFORMAT \"%p%n\"", 0, "Test:w/d/sub\n"},
        {"List d ALL LFORMAT \"%p%n\"", 0, "d/one.txt\nd/sub\nd/two\nd/sub/deep\n"},
        {"List d PAT ~(#?.txt) QUICK", 0, "sub\ntwo\n"},
        {"List d/#?o#? SUB E QUICK", 0, "one.txt\n"},
        {"List d SINCE 02-Sep-25 UPTO 04-Sep-25 QUICK", 0, "one.txt\n"},
        {"List d UPTO never", 20, "List: bad number\n"},
        {"List none", 10, "List: none: object not found\n"},
        {"List d/#?.c", 5, "List: d/#?.c: no object matches\n"},
        {"List d/one.txt NOHEAD DATES", 0,
         "one.txt                      513 -s--rw-d 03-Sep-25 12:34:56\n: a note\n"},
    });
    EXPECT_THAT(Out("List d DATES"), testing::StartsWith("Directory \"Test:w/d\" on "));
    EXPECT_THAT(Text, testing::EndsWith("2 files - 1 directory - 2 blocks used\n"));
    EXPECT_THAT(Text, testing::HasSubstr("sub                          Dir ----rwed"));
}

// A line that List composes around names is safe to run.
TEST_F(CommandsTest, NamesBetweenQuotesOfTheFormatAreEscaped) {
    const std::string name = "a\" ;Delete #? *";
    Tree.Write("w/" + name, "");
    Tree.Write("w/kept", "");
    Out("List PAT a#? TO RAM:t/script LFORMAT \"Rename *\"%n*\" b\"");
    Out("Execute RAM:t/script");
    EXPECT_EQ(NamesIn("Test:w"), (Names{"b", "kept"}));
}

TEST_F(CommandsTest, ATerminalSeesNoControlCharactersOfNames) {
    Tree.Write("w/a\x1b[2J\nb", "");
    EXPECT_EQ(Out("List QUICK"), "a\x1b[2J\nb\n");
    Where.IsTerminal = true;
    EXPECT_EQ(Out("List QUICK"), "a?[2J?b\n");
    EXPECT_EQ(Out("List LFORMAT %n"), "a?[2J?b\n");
    EXPECT_EQ(Out("Echo \"*E[1mx\""), "\x1b[1mx\n");
}

TEST_F(CommandsTest, DirShowsDrawersAndThenFilesInTwoColumns) {
    Tree.Plant({"w/a", "w/b", "w/c", "w/sub/x", "w/sub/in/y"});
    const std::string columns = "  a                                b\n  c\n";
    Check({{"Dir", 0, "     sub (dir)\n" + columns},
           {"Dir FILES", 0, columns},
           {"Dir \"\" OPT D", 0, "     sub (dir)\n"},
           {"Dir sub ALL", 0, "     in (dir)\n  x\nsub/in (dir)\n  y\n"},
           {"Dir OPT X", 20, "Dir: OPT takes the letters A, D and F\n"}});
}

TEST_F(CommandsTest, PatternsGoThroughDrawersAndNamesAsTheyStandComeFirst) {
    for (const std::string_view name : {"w/a1/x.c", "w/a2/y.c", "w/a2/z.h", "w/b/x.c", "w/n (1)", "w/n 1",
                                        "w/it's", "w/100%", "w/old~", "w/C#", "w/a1/D#/in"})
        Tree.Write(name, name);
    Tree.Link("w/a3", "b");
    Check({
        {"List a#?/#?.c QUICK", 0, "x.c\ny.c\nx.c\n"},
        {"List a#?/x.c LFORMAT %p%n", 0, "a1/x.c\na3/x.c\n"},
        {"List Test:w/a?/#?.h LFORMAT %p%n", 0, "Test:w/a2/z.h\n"},
        {"Type \"n (1)\"", 0, "w/n (1)"},
        {"Type it's", 0, "w/it's"},
        {"Type 100%", 0, "w/100%"},
        {"Type old~", 0, "w/old~"},
        {"Type gone~", 10, "Type: gone~: object not found\n"},
        {"List a#?/#(", 10, "List: #(: bad template\n"},
        {"Type C#", 0, "w/C#"},
        {"List a#?/D# LFORMAT %p%n", 0, "a1/D#\n"},
        {"List a1/D# LFORMAT %p%n", 0, "a1/D#/in\n"},
        {"Type a1/D#/i?", 0, "w/a1/D#/in"},
        {"List a1/(", 10, "List: a1/(: object not found\n"},
    });
}

// Where the disk takes a name in any case, it means its object in any case too.
TEST_F(CommandsTest, AFoldedNameIsThatObjectAlone) {
    ASSERT_TRUE(dos::AddVolume(
        {.Device = "TF1", .Volume = "Folds", .HostRoot = Tree.Path("env"), .Names = dos::NameRule::Fold}));
    for (const std::string_view name :
         {"env/Notes (1)", "env/Notes 1", "env/Dead 1", "w/Notes (1)", "w/Notes 1"})
        Tree.Write(name, name);
    Tree.Link("env/Dead (1)", "nowhere");
    Check({
        {"Type \"Folds:notes (1)\"", 0, "env/Notes (1)"},
        {"Delete \"Folds:notes (1)\"", 0, "Folds:notes (1)  Deleted\n"},
        {"Delete \"Folds:dead (1)\"", 0, "Folds:dead (1)  Deleted\n"},
        {"Delete \"notes (1)\"", 0, "Notes 1  Deleted\n"},
    });
    EXPECT_EQ(NamesIn("Folds:"), (std::vector<std::string>{"Dead 1", "Notes 1"}));
    EXPECT_EQ(NamesIn("Test:w"), (std::vector<std::string>{"Notes (1)"}));
}

TEST_F(CommandsTest, ProtectComesToAllOfATreeBeforeItShutsItsDrawers) {
    Tree.Write("w/d/sub/f", "");
    const std::string inside = "d/sub/f...done\nd/sub...done\nd...done\n";
    const std::string outside = "d...done\nd/sub...done\nd/sub/f...done\n";
    Check({{"Protect d -e ALL", 0, inside},
           {"Protect d +e ALL", 0, outside},
           {"Protect d wed ALL", 0, inside},
           {"Protect d rwed ALL", 0, outside},
           {"Protect d -w ALL", 0, outside}});
}

// Deeper than the longest path: the walk goes on from drawer to drawer.
TEST_F(CommandsTest, WalksGoDeeperThanAPathIsLong) {
    const std::string name(100, 'd');
    const std::filesystem::path start = std::filesystem::current_path();
    std::filesystem::current_path(Tree.Path("w"));
    for (int i = 0; i < 15; ++i) {
        std::filesystem::create_directory(name);
        std::filesystem::current_path(name);
    }
    std::ofstream("leaf") << "found me\n";
    std::filesystem::current_path(start);
    EXPECT_EQ(Out("Search #? \"found me\" ALL NONUM QUICK").size(),
              15 * 101 + std::string("leaf: found me\n").size());
    Out("Protect #? -w ALL QUIET");
    EXPECT_THAT(Out("List ALL LFORMAT \"%n %a\""), testing::HasSubstr("\nleaf ----r--d\n"));
}

TEST_F(CommandsTest, LinksAreShownAndNotFollowed) {
    Tree.Write("w/d/f", "x");
    Tree.Link("w/d/self", ".");
    Tree.Link("w/d/circle", "circle");
    Tree.Link("w/d/out", Tree.Path("env"));
    Tree.Write("env/kept", "x");
    Out("Protect d -w ALL QUIET");
    EXPECT_EQ(Out("List env: LFORMAT %a"), "----rw-d\n");
    EXPECT_EQ(Out("List d ALL LFORMAT %n"), "circle\nf\nout\nself\n");
    EXPECT_THAT(Out("List d NODATES"),
                testing::HasSubstr("out                         Link ----rwed\n-> Test:env\n"));
    Out("Protect d +w ALL QUIET");
}

TEST_F(CommandsTest, ProtectSetsAddsAndTakesBits) {
    Tree.Write("w/f", "");
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"rwd", "----rw-d"},    {"+ps", "-sp-rw-d"},   {"-w", "-sp-r--d"},
        {"HE ADD", "hsp-r-ed"}, {"s SUB", "h-p-r-ed"}, {"", "--------"},
        {"+rwed", "----rwed"},  {"sad", "-s-a---d"},   {"+rw", "-s-arw-d"},
    };
    for (const auto& [flags, letters] : cases) {
        const std::size_t blank = std::min(flags.find(' '), flags.size());
        Out("Protect f \"" + std::string(flags.substr(0, blank)) + "\"" + std::string(flags.substr(blank)));
        if (::geteuid() != 0 && letters.find('r') == letters.npos)
            continue; // the host hides attributes of what the owner may not read
        EXPECT_EQ(Out("List f LFORMAT %a"), std::string(letters) + "\n") << flags;
    }
    ::chmod(Tree.Path("w/f").c_str(), 0644);
    Out("Protect f -e");
    struct stat after {};
    ASSERT_EQ(::stat(Tree.Path("w/f").c_str(), &after), 0);
    EXPECT_EQ(after.st_mode & 077u, 044u) << "group and others keep theirs";
    Check({{"Protect f rx", 20, "Protect: rx: invalid flag\n"},
           {"Protect f", 20, "Protect: required argument missing\n"},
           {"Protect none r", 10, "Protect: none: object not found\n"}});
}

TEST_F(CommandsTest, SetDateTakesAnyOfItsWords) {
    Tree.Write("w/f", "");
    for (const std::string_view words : {"03-Sep-25 12:34:56", "Wednesday 03-Sep-25 12:34:56",
                                         "f DATE 03-Sep-25 TIME 12:34:56", "2025-09-03 12:34:56"}) {
        Out("SetDate f");
        Out(words.starts_with("f ") ? "SetDate " + std::string(words) : "SetDate f " + std::string(words));
        EXPECT_EQ(Out("List f LFORMAT \"%d %t\""), "03-Sep-25 12:34:56\n") << words;
    }
    Check({{"SetDate f someday", 20, "SetDate: invalid date or time\n"}});
}

TEST_F(CommandsTest, RenameMovesAndNeverReplaces) {
    for (const std::string_view name : {"w/a.c", "w/b.c", "w/x", "w/y", "w/d/x"})
        Tree.Write(name, name);
    Check({
        {"Rename x y", 10, "Rename: x: object already exists\n"},
        {"Rename x TO d", 10, "Rename: x: object already exists\n"},
        {"Rename #?.c d QUIET", 0, ""},
        {"Rename y AS d/z", 0, ""},
        {"Rename d D", 0, ""},
        {"Rename D/#?.c e", 20, "Rename: e: more than one object needs a drawer to go to\n"},
        {"Rename D/a.? e", 0, "D/a.c as e\n"},
    });
    EXPECT_EQ(NamesIn("Test:w/D"), (Names{"b.c", "x", "z"}));
    EXPECT_EQ(NamesIn("Test:w"), (Names{"D", "e", "x"}));
}

TEST_F(CommandsTest, CopyGoesByWhatItsSourceAndTargetAre) {
    for (const std::string_view name : {"w/a.c", "w/b.c", "w/d/x", "w/d/in/y"})
        Tree.Write(name, name);
    Tree.Link("w/link", "a.c");
    Out("Filenote a.c note");
    Out("SetDate a.c 03-Sep-25 12:34:56");
    Check({
        {"Copy a.c n", 0, "   a.c..copied\n"},
        {"Copy a.c m CLONE QUIET", 0, ""},
        {"List m LFORMAT \"%d %c\"", 0, "03-Sep-25 note\n"},
        {"List n LFORMAT %c", 0, "\n"},
        {"Copy b.c n QUIET", 0, ""},
        {"Type n", 0, "w/b.c"},
        {"Copy link l QUIET", 0, ""},
        {"Copy d e QUIET", 0, ""},
        {"List e ALL LFORMAT %p%n", 0, "e/x\n"},
        {"Copy d f ALL QUIET", 0, ""},
        {"List f ALL LFORMAT %p%n", 0, "f/in\nf/x\nf/in/y\n"},
        {"Copy #?.c f QUIET", 0, ""},
        {"Copy a.c d g ALL QUIET", 0, ""},
        {"List g ALL LFORMAT %p%n", 0, "g/a.c\ng/d\ng/d/in\ng/d/x\ng/d/in/y\n"},
        {"Copy none h", 10, "Copy: none: object not found\n"},
        {"Copy a.c a.c", 10, "Copy: a.c: object is in use\n"},
        {"Copy d d/in ALL", 10, "Copy: d: object is in use\n"},
        {"Copy a.c", 10, "Copy: a.c: object already exists\n"},
    });
    EXPECT_FALSE(std::filesystem::is_symlink(Tree.Path("w/l")));
    EXPECT_EQ(NamesIn("Test:w/f"), (Names{"a.c", "b.c", "in", "x"}));
}

TEST_F(CommandsTest, CopyOfATwinReplacesNoOther) {
    ASSERT_TRUE(dos::AddVolume(
        {.Device = "TF1", .Volume = "Folds", .HostRoot = Tree.Path("env"), .Names = dos::NameRule::Fold}));
    for (const std::string_view name : {"w/a/Twin", "w/a/twin", "env/2/TWIN"})
        Tree.Write(name, name);
    for (const std::string_view line :
         {"Copy a Folds:1 ALL QUIET", "Copy a Folds:2 QUIET", "Copy a/#? Folds:1 QUIET"}) {
        EXPECT_EQ(Run(line), 10) << line;
        EXPECT_THAT(Text, testing::HasSubstr("win: object already exists\n")) << line;
    }
    Check({{"Copy a w2 QUIET", 0, ""}, {"Copy a w2 QUIET", 0, ""}});
    EXPECT_EQ(NamesIn("Test:w/w2").size(), 2u);
}

TEST_F(CommandsTest, DeleteTakesWhatIsNamedAndNothingElse) {
    Tree.Plant({"w/a.c", "w/b.c", "w/#?", "w/d/x", "w/d/in/y", "w/p/z", "env/kept"});
    Tree.Link("w/d/out", Tree.Path("env"));
    Tree.Link("w/link", "d");
    Out("Protect p/z -d");
    if (Out("List p/z LFORMAT %a") != "----rw--\n")
        GTEST_SKIP() << "no attributes here";
    Check({
        {"Delete none", 5, "Delete: none: object not found\n"},
        {"Delete none#?", 5, "No file to delete\n"},
        {"Delete #?", 0, "#?  Deleted\n"},
        {"Delete #?.c", 0, "a.c  Deleted\nb.c  Deleted\n"},
        {"Delete d", 10, "Delete: d: directory not empty\n"},
        {"Delete link ALL", 0, "link  Deleted\n"},
        {"Delete d/in ALL", 0, "d/in/y  Deleted\nd/in  Deleted\n"},
        {"Delete d ALL QUIET", 0, ""},
        {"Delete p/z QUIET", 10, "Delete: p/z: object is protected from deletion\n"},
        {"Delete p ALL QUIET", 10, "Delete: p/z: object is protected from deletion\n"},
        {"Delete p ALL FORCE QUIET", 0, ""},
    });
    EXPECT_EQ(NamesIn("Test:w"), Names());
    EXPECT_TRUE(Tree.Exists("env/kept"));
}

TEST_F(CommandsTest, LinksAndDrawersAreMade) {
    Check({
        {"MakeDir a b/", 0, ""},
        {"MakeDir a c", 10, "MakeDir: a: object already exists\n"},
        {"Echo >a/f text", 0, ""},
        {"MakeLink s a/f", 0, ""},
        {"MakeLink h a/f HARD", 0, ""},
        {"MakeLink h2 a HARD", 10, "MakeLink: h2: object is not of required type\n"},
        {"Type s h", 0, "text\ntext\n"},
    });
    EXPECT_TRUE(std::filesystem::is_symlink(Tree.Path("w/s")));
    EXPECT_EQ(std::filesystem::hard_link_count(Tree.Path("w/h")), 2u);
}

TEST_F(CommandsTest, SearchGivesNumberedLinesAndACode) {
    Tree.Write("w/d/one", "alpha\nBeta *x\ngamma");
    Tree.Write("w/d/sub/two", "no\nbeta\n");
    Check({
        {"Search d/one beta", 0, "   d/one..\n     2 Beta *x\n"},
        {"Search d SEARCH beta ALL NONUM QUICK", 0, "d/one: Beta *x\nd/sub/two: beta\n"},
        {"Search d beta CASE QUIET", 5, ""},
        {"Search d beta QUIET", 0, ""},
        {"Search d g?m#? PATTERN QUICK", 0, "d/one:      3 gamma\n"},
        {"Search d tw ALL FILE", 0, "d/sub/two\n"},
        {"Search d one FILE PATTERN", 0, "d/one\n"},
        {"Search d ( PATTERN", 20, "Search: (: bad template\n"},
        {"Search none beta QUIET", 10, "Search: none: object not found\n"},
    });
}

TEST_F(CommandsTest, TextsAreEchoedTypedJoinedAndSorted) {
    Tree.Write("w/f", "b 10\nA 9\nc 2");
    Tree.Write("w/long", "");
    std::filesystem::resize_file(Tree.Path("w/long"), (64u << 20) + 1);
    Check({
        {"Echo a \"b  c\" NOLINE", 0, "a b  c"},
        {"Echo abcdef FIRST 2 LEN 3", 0, "bcd\n"},
        {"Echo abcdef LEN 2", 0, "ef\n"},
        {"Echo abc FIRST 9", 0, "\n"},
        {"Type f NUMBER", 0, "    1 b 10\n    2 A 9\n    3 c 2\n"},
        {"Type f HEX", 0, "0000: 62203130 0A412039 0A632032           b 10.A 9.c 2\n"},
        {"Type none", 10, "Type: none: object not found\n"},
        {"Sort f s", 0, ""},
        {"Type s", 0, "A 9\nb 10\nc 2\n"},
        {"Sort f s COLSTART 2 NUMERIC", 0, ""},
        {"Type s", 0, "c 2\nA 9\nb 10\n"},
        {"Sort long s", 10, "Sort: long: object too large\n"},
        {"Join f s AS j", 0, ""},
        {"Join f none AS j", 10, "Join: none: object not found\n"},
        {"Type j", 0, "b 10\nA 9\nc 2c 2\nA 9\nb 10\n"},
    });
}

TEST_F(CommandsTest, LinesAreRedirectedAndTakeVariables) {
    Check({
        {"Echo >out one", 0, ""},
        {"Echo second >>out", 0, ""},
        {"Type out", 0, "one\nsecond\n"},
        {"Type none >out2", 10, ""},
        {"Type out2", 0, "Type: none: object not found\n"},
        {"Type none *>NIL:", 10, ""},
        {"SetEnv v \"some text\"", 0, ""},
        {"SetEnv w  many  words", 0, ""},
        {"GetEnv w", 0, "many  words\n"},
        {"Echo $v", 0, "some text\n"},
        {"Echo [`Type out`]", 0, "[one second]\n"},
        {"Fault 205", 0, "Fault 205: object not found\n"},
        {"List ?", 0,
         "DIR/M,P=PAT/K,DATES/S,NODATES/S,TO/K,SUB/K,SINCE/K,UPTO/K,QUICK/S,BLOCK/S,NOHEAD/S,FILES/S,DIRS/S,"
         "LFORMAT/K,ALL/S\n"},
        {"Nonsense x", 10, "Nonsense: object not found\n"},
        {"", 10, ""},
        {"Echo \"x", 20, "argument line invalid or too long\n"},
        {"UnSetEnv v SAVE", 0, ""},
        {"GetEnv v", 5, "GetEnv: v: object not found\n"},
        {"UnSetEnv /x", 10, "UnSetEnv: /x: object name invalid\n"},
    });
    // The input of a command that asks is that of its line.
    Tree.Write("w/args", "out QUICK\n");
    EXPECT_THAT(Out("List <args ?"), testing::EndsWith("ALL/S: out\n"));
    Tree.Write("w/more", "QUICK\n");
    EXPECT_THAT(Out("List <more out ?"), testing::EndsWith("ALL/S: out\n"));
    EXPECT_EQ(Out("Echo what \"?\""), "what ?\n");
}

TEST_F(CommandsTest, AssignChangesWhatNamesMean) {
    Tree.Plant({"w/a/1", "w/b/2"});
    Where.ScriptDepth = 1;
    Check({
        {"Assign X: a", 0, ""},
        {"Assign X: b ADD", 0, ""},
        {"Assign X: EXISTS", 0, "X              Test:w/a\n             + Test:w/b\n"},
        {"List X: LFORMAT %p%n", 0, "Test:w/a/1\nTest:w/b/2\n"},
        {"List X:#? QUICK", 0, "1\n2\n"},
        {"Assign X: a REMOVE", 0, ""},
        {"List X: LFORMAT %p%n", 0, "X:2\n"},
        {"Assign L: late DEFER", 0, ""},
        {"Assign L: EXISTS", 0, "L              <late>\n"},
        {"Assign X: ADD", 20, "Assign: required argument missing\n"},
        {"Assign X: DEFER", 20, "Assign: required argument missing\n"},
        {"List X: LFORMAT %p%n", 0, "X:2\n"},
        {"Assign X:", 0, ""},
        {"Assign X: EXISTS", 5, "X: not assigned\n"},
        {"Assign X: none", 10, "Assign: X:: object not found\n"},
        {"Assign Test", 20, "Assign: Test: a name needs its colon\n"},
        {"Info Nowhere:", 10, "Info: Nowhere:: device (or volume) is not mounted\n"},
    });
    EXPECT_THAT(Out("Assign DEVICES"), testing::HasSubstr("TD0"));
    EXPECT_THAT(Out("Info TD0:"), testing::ContainsRegex("TD0: .*%  Read/Write  Test\n"));
    Where.ScriptDepth = 0;
    EXPECT_EQ(Run("Assign X: a"), 5) << "ends with the program";
}

TEST_F(CommandsTest, VersionsAreFoundInFilesAcrossBlocks) {
    Tree.Write("w/tool",
               std::string(65534, 'x') + "$VER: Tool 3.12 (1.2.2003) more" + std::string(1, '\0') + "end");
    Tree.Write("w/none", "$VE");
    Check({
        {"Version tool", 0, "Tool 3.12\n"},
        {"Version tool FULL", 0, "Tool 3.12 (1.2.2003) more\n"},
        {"Version tool 3 12", 0, "Tool 3.12\n"},
        {"Version tool 3 13", 5, "Tool 3.12\n"},
        {"Version tool 4", 5, "Tool 3.12\n"},
        {"Version none", 10, "Version: none: no version information\n"},
    });
    EXPECT_THAT(Out("Version"), testing::StartsWith("Solvane 2."));
    EXPECT_THAT(Out("Version dir"), testing::StartsWith("Dir 2."));
}

TEST_F(CommandsTest, BreaksEndACommandWithCode20) {
    for (const std::string_view name : {"w/a", "w/b", "w/c"})
        Tree.Write(name, "text\n");
    for (const std::string_view line :
         {"List", "Dir", "Type #?", "Search #? text", "Protect #? +s", "Wait 5 MIN"}) {
        int asked = 0;
        Where.Stop = [&asked] { return ++asked > 1; };
        Where.Pause = [](std::uint32_t) {};
        EXPECT_EQ(Run(line), 20) << line;
        EXPECT_EQ(dos::IoErr(), dos::ErrorBreak) << line;
        EXPECT_THAT(Text, testing::EndsWith("***Break\n")) << line;
    }
}

TEST_F(CommandsTest, OutputThatTakesNoMoreEndsTheCommand) {
    Tree.Plant({"w/a", "w/b"});
    int calls = 0;
    Where.Output = [&calls](std::string_view) {
        ++calls;
        dos::SetIoErr(dos::ErrorDiskFull);
        return false;
    };
    EXPECT_EQ(Run("List"), 20);
    EXPECT_EQ(dos::IoErr(), dos::ErrorDiskFull);
    EXPECT_EQ(calls, 1);
}

TEST_F(CommandsTest, ADiskThatTakesNoMoreIsToldOfOnce) {
    for (int i = 0; i < 100; ++i)
        Tree.Write("w/d/" + std::to_string(i), "text");
    const std::size_t count = NamesIn("Test:w/d").size();
    Calls().LinkObject = [](int, int, const char*) {
        errno = ENOSPC;
        return -1;
    };
    Calls().Unlinkat = [](int, const char*, int) {
        errno = EROFS;
        return -1;
    };
    Calls().SetAttribute = [](int, const char*, const void*, std::size_t) {
        errno = EROFS;
        return -1;
    };
    for (const std::string_view line :
         {"Copy d new ALL", "Copy d/#? new", "Copy d new2", "Delete d ALL", "Delete d/#?", "Delete d d ALL",
          "Filenote d/#? note", "Filenote d note ALL"}) {
        EXPECT_EQ(Run(line), 10) << line;
        EXPECT_EQ(std::ranges::count(Text, '\n'), 1) << Text;
        EXPECT_THAT(Text, testing::HasSubstr(": disk is ")) << line;
    }
    EXPECT_EQ(NamesIn("Test:w/d").size(), count);
}

TEST_F(CommandsTest, AFullDiskBehindAnOutputIsTold) {
    Tree.Write("w/a", "text");
    Calls().Write = [](int, const void*, std::size_t) -> long {
        errno = ENOSPC;
        return -1;
    };
    for (const std::string_view line : {"Echo >RAM:x text", "List >>RAM:x", "Type >RAM:x a",
                                        "Type a TO RAM:x", "Fault >RAM:x 205", "Echo >RAM:x text *>RAM:y"}) {
        EXPECT_GE(Run(line), 10) << line;
        EXPECT_EQ(dos::IoErr(), dos::ErrorDiskFull) << line;
        EXPECT_THAT(Text, testing::EndsWith(": disk is full\n")) << line;
    }
    EXPECT_EQ(NamesIn("RAM:"), (Names{"t", "y"})) << "only where complaints go";
}

// The links of C: are made from a list; it names what there is.
TEST_F(CommandsTest, EveryCommandHasItsLinkInC) {
    const std::map<std::string, std::string> ownPrograms = {{"WBRun", "wbrun"}, {"rx", "rx"}};
    std::vector<std::string> links, names;
    for (const auto& entry : std::filesystem::directory_iterator(SOLVANE_BUILD_DIR "/share/solvane/C")) {
        links.push_back(entry.path().filename().string());
        const auto own = ownPrograms.find(links.back());
        EXPECT_EQ(std::filesystem::read_symlink(entry.path()).filename(),
                  own == ownPrograms.end() ? "amiga" : own->second);
    }
    for (const auto& [name, program] : ownPrograms)
        names.push_back(name);
    for (const commands::Command& command : commands::Commands())
        names.emplace_back(command.Name);
    EXPECT_THAT(links, testing::UnorderedElementsAreArray(names));
}

} // namespace
