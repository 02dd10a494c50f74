#include "automation/ARexx.h"

#include "automation/ARexxCommands.h"
#include "model/Content.h"
#include "model/Program.h"
#include "tests/locations/OpenWindow.h"

#include <gmock/gmock.h>
#include <set>

namespace solvane {
namespace {

using testing::Pair;

std::pair<int, std::string> Answer(std::string_view line) {
    const rexx::Reply reply = rexx::RunCommandLine(ARexxCommands(), line);
    return {reply.Rc, reply.Result};
}

TEST(ARexxTable, HasEachNumberAndNameOnce) {
    std::set<std::string_view> names;
    int number = 0;
    for (const rexx::Command& command : ARexxCommands()) {
        EXPECT_EQ(command.Number, number) << command.Name;
        number += number == 23 ? 2 : 1; // 24 is not used
        EXPECT_TRUE(names.insert(command.Name).second) << command.Name;
        EXPECT_TRUE(dos::ReadArgs(command.Template, "")) << command.Name;
    }
    EXPECT_EQ(number, 112);
}

TEST(ARexxTable, WithoutAWindowAllButTwoReportSuccessAndDoNothing) {
    VERSION_STRING = "2.4";
    for (const rexx::Command& command : ARexxCommands()) {
        if (command.Name == "ACTIVATE" || command.Name == "UNICONIFY")
            continue; // these are for such a moment
        const bool isRefused = command.Name == "GETCURRENTPATH" || command.Name == "GETPUBSCREENNAME";
        EXPECT_EQ(Answer(command.Name).first, isRefused ? 10 : 0) << command.Name;
        EXPECT_EQ(JumpToARexxCmd, NoJump) << command.Name;
        EXPECT_EQ(done, 0) << command.Name;
    }
    EXPECT_THAT(Answer("VERSION"), Pair(0, "2.4"));
    EXPECT_THAT(Answer("ACTIVATE"), Pair(0, ""));
    EXPECT_EQ(std::exchange(JumpToARexxCmd, NoJump), 1);
}

using ARexxWindow = OpenWindow;

TEST_F(ARexxWindow, TellsWhatIsShownAndLeavesPlacesToTheLoop) {
    File("a", "12345");
    File("b", "1");
    Drawer("c");
    ASSERT_TRUE(Scan());
    Objects.ContentList->Select(0, true);
    EXPECT_THAT(Answer("GETCURRENTPATH"), Pair(0, Volume));
    EXPECT_THAT(Answer("GETNUMENTRIES"), Pair(0, "3"));
    EXPECT_THAT(Answer("GETNUMFILES"), Pair(0, "2"));
    EXPECT_THAT(Answer("GETNUMDRAWERSSELECTED"), Pair(0, "1"));
    EXPECT_THAT(Answer("GETNUMFILESSELECTED"), Pair(0, "0"));
    EXPECT_THAT(Answer("GETTOTALBYTES"), Pair(0, "6"));

    EXPECT_THAT(Answer("CHANGEPATH"), Pair(0, "")) << "without its argument it does nothing";
    EXPECT_EQ(JumpToARexxCmd, NoJump);
    EXPECT_THAT(Answer("CHANGEPATH PATH=" + std::string(1024, 'x')), Pair(0, ""))
        << "a path that does not fit";
    EXPECT_EQ(JumpToARexxCmd, NoJump);
    EXPECT_THAT(Answer("CHANGEPATH PATH=" + Path("c")), Pair(0, ""));
    EXPECT_EQ(std::exchange(JumpToARexxCmd, NoJump), 84);
    EXPECT_EQ(CurrentPath.View(), Path("c"));
}

TEST_F(ARexxWindow, TakesNoNumberThatIsOutOfRange) {
    ASSERT_TRUE(Scan());
    for (const int style : {0, 1, 2, 3, 4, 5, -1}) {
        Prefs.ContentViewStyle = 1;
        EXPECT_THAT(Answer("VIEWSTYLE STYLE=" + std::to_string(style)), Pair(0, ""));
        EXPECT_EQ(Prefs.ContentViewStyle, style >= 0 && style < 5 ? style : 1) << style;
    }
    const intuition::Box before = MainWindow->Geometry();
    for (const char* line : {"SIZEWINDOW W=600", "SIZEWINDOW W=600 H=-1", "SIZEWINDOW W=600 H=70000"}) {
        EXPECT_THAT(Answer(line), Pair(0, "")) << line;
        EXPECT_EQ(MainWindow->Geometry().Width, before.Width) << line;
    }
}

} // namespace
} // namespace solvane
