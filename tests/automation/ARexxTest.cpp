#include "automation/ARexx.h"

#include "automation/ARexxCommands.h"
#include "automation/ARexxScripts.h"
#include "interface/Panes.h"
#include "model/Program.h"
#include "platform/intuition/FileRequester.h"
#include "tests/locations/OpenWindow.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/exec/Processes.h"

#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>

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
    EXPECT_EQ(JumpPath.View(), Path("c"));
    EXPECT_THAT(Answer("GETCURRENTPATH"), Pair(0, Volume)) << "until the place is on show";
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

TEST_F(ARexxWindow, LayoutSwitchesBarsAndPanes) {
    Prefs.PreviewStyle = 1;
    const struct {
        int Layout;
        bool Toolbar, UserButtons, Preview;
        std::int32_t Style;
    } steps[] = {{1, false, false, false, 1}, {2, false, false, false, 1}, {1, true, false, false, 1},
                 {4, true, false, true, 0},   {5, true, false, true, 1},   {5, true, false, true, 1},
                 {4, true, false, false, 0},  {9, true, false, false, 0},  {-1, true, false, false, 0}};
    for (const auto& step : steps) {
        EXPECT_THAT(Answer("LAYOUT LAYOUT=" + std::to_string(step.Layout)), Pair(0, ""));
        EXPECT_EQ(Objects.Toolbar != nullptr, step.Toolbar) << step.Layout;
        EXPECT_EQ(Objects.UserButtons != nullptr, step.UserButtons) << step.Layout;
        EXPECT_EQ(Objects.Preview != nullptr, step.Preview) << step.Layout;
        EXPECT_EQ(Prefs.PreviewStyle, step.Style) << step.Layout;
    }
}

TEST_F(ARexxWindow, SwitchesAndPlacesAsTheMenusDo) {
    ASSERT_TRUE(Scan());
    ProgramPrefsFile = Path("prefs.xml");
    const std::pair<const char*, std::int16_t PrefsRecord::*> switches[] = {
        {"PROCESSINFOFILES", &PrefsRecord::ProcessInfoFiles},
        {"SHOWACTUALICONS", &PrefsRecord::ShowActualIcons},
        {"SHOWTHUMBNAIL", &PrefsRecord::ShowThumbnail}};
    for (const auto& [command, setting] : switches) {
        const std::int16_t before = Prefs.*setting;
        EXPECT_THAT(Answer(command), Pair(0, ""));
        EXPECT_NE(Prefs.*setting, before) << command;
    }
    ProgramPrefsFile.Clear();
    for (const char* command : {"LOCKGUI", "UNLOCKGUI"}) {
        EXPECT_THAT(Answer(command), Pair(0, ""));
        EXPECT_EQ(MainWindow->IsBlocked(), *command == 'L');
    }
    EXPECT_THAT(Answer("LOCKGUI"), Pair(0, ""));
    Iconified = 1;
    EXPECT_THAT(Answer("UNLOCKGUI"), Pair(0, ""));
    Iconified = 0;
    EXPECT_FALSE(UnlockMainWindow()) << "a window that comes back from its icon is free";
    for (const int exists : {1, 0}) {
        EXPECT_THAT(Answer("PASTESTATUS CE=" + std::to_string(exists)), Pair(0, ""));
        EXPECT_EQ(ClipExists, exists);
    }
    EXPECT_THAT(Answer("12SCREENSIZE"), Pair(0, ""));
    const int half = MainWindow->Geometry().Width;
    EXPECT_THAT(Answer("34SCREENSIZE"), Pair(0, ""));
    EXPECT_GT(MainWindow->Geometry().Width, half);
    EXPECT_THAT(Answer("FULLSCREEN"), Pair(0, ""));
    EXPECT_EQ(GoFullScreen, 1);
    CommodityInForce = 1;
    EXPECT_THAT(Answer("QUITALL"), Pair(0, ""));
    EXPECT_EQ(done, 0) << "there are no others, and this one stays";
    EXPECT_THAT(Answer("NEWWINDOW PATH=RAM:"), Pair(0, ""));
    EXPECT_TRUE(Requests.empty());
    CommodityInForce = 0;
}

TEST_F(ARexxWindow, LayoutKeepsTheWeightsOfBothStylesOfThePreview) {
    Prefs.PreviewStyle = 1;
    Prefs.PreviewPane = 1;
    ArrangePanes();
    for (const int layout : {5, 4}) { // stays as it is, goes
        Prefs.ContentHeight = 33;
        Objects.ConPre->SetWeights({71, 29});
        EXPECT_THAT(Answer("LAYOUT LAYOUT=" + std::to_string(layout)), Pair(0, ""));
        EXPECT_EQ(Prefs.ContentHeight, 33) << layout;
        EXPECT_EQ(Prefs.ContentWidth, 71) << layout;
    }
}

class PortTest : public exec_tests::RuntimeTest {};

TEST_F(PortTest, SendsToOthersAndTellsOfAMissingOneUnlessItIsToBeQuiet) {
    std::vector<std::string> told;
    intuition::SetRequestHandler([&told](const intuition::EasyRequestSpec& spec) {
        told.push_back(spec.Text);
        return 0;
    });
    ARexxPortBuffer = "SOLVANE.7";
    ASSERT_TRUE(SetUpARexx());
    EXPECT_FALSE(SendARexxMessage("SOLVANE.8", "QUIT", 1));
    EXPECT_FALSE(SendARexxMessage("SOLVANE.8", "QUIT", 0));
    EXPECT_THAT(told, testing::ElementsAre("Could not find ARexx port: SOLVANE.8"));
    ARexxReply.Clear();
    ASSERT_TRUE(SendARexxMessage("SOLVANE.7", "SWITCHTAB NUM=x", 0));
    while (ARexxReply.Empty()) {
        static_cast<void>(exec::Wait(ARexxSignal));
        HandleARexx();
    }
    EXPECT_EQ(ARexxError, 1);
    EXPECT_EQ(ARexxReply.View(), "115");
    ShutDownARexx();
    EXPECT_EQ(ARexxSignal, 0U);
    intuition::SetRequestHandler({});
}

class ScriptsTest : public DosTest {
protected:
    static std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (const ARexxNode& script : *ARexxList)
            names.emplace_back(script.ScriptName.View());
        return names;
    }
};

TEST_F(ScriptsTest, AreListedWithoutTheirIconsAndStartedWithThePathAsDataAndOurPort) {
    static std::vector<std::string> started;
    started.clear();
    ASSERT_TRUE(SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize));
    ARexxList = SAK_CreateGenericList<ARexxNode>();
    Prefs.IncludeREXX = 1;
    ProgramDir = "Test:";
    std::vector<std::string> told;
    intuition::SetRequestHandler([&told](const intuition::EasyRequestSpec& spec) {
        told.push_back(spec.Text);
        return 0;
    });
    ASSERT_TRUE(dos::SetAssign("REXX", dos::AssignKind::NonBinding, {"Test:Rexx"}));
    for (const char* name : {"Rexx/b.rexx", "Rexx/a.rexx"})
        Tree.Write(name, "/* */");
    EXPECT_FALSE(DiscoverARexxScripts()) << "there is no drawer of the program's own";
    EXPECT_THAT(std::exchange(told, {}), testing::ElementsAre("Error scanning for ARexx scripts."));
    EXPECT_THAT(Names(), testing::ElementsAre("a.rexx", "b.rexx"));
    for (const char* name : {"ARexx/2", "ARexx/1"})
        Tree.Write(name, "/* */");
    std::filesystem::remove_all(Tree.Path("Rexx"));
    EXPECT_FALSE(DiscoverARexxScripts()) << "there is no drawer of the system's";
    EXPECT_THAT(Names(), testing::ElementsAre("1", "2"));
    std::filesystem::remove_all(Tree.Path("ARexx"));
    Prefs.IncludeREXX = 0;
    told.clear();
    for (const char* name :
         {"ARexx/b.rexx", "ARexx/A \"x* > y.rexx", "ARexx/b.rexx.info", "ARexx/drawer/c.rexx"})
        Tree.Write(name, "/* */");
    EXPECT_TRUE(DiscoverARexxScripts());
    const auto paths = TextsOf(*ARexxList, [](const ARexxNode& script) { return script.ScriptPath.View(); });
    EXPECT_THAT(paths, testing::ElementsAre("Test:ARexx/A \"x* > y.rexx", "Test:ARexx/b.rexx"));
    ARexxList.reset();

    Tree.Write("rx", "#!/bin/true\n");
    ::chmod(Tree.Path("rx").c_str(), 0755);
    ASSERT_TRUE(dos::SetAssign("C", dos::AssignKind::NonBinding, {"Test:"}));
    Calls().Spawn = [](const dos::SpawnOrder& order) {
        for (char* const* at = order.Words; *at != nullptr; ++at)
            started.emplace_back(*at);
        for (char* const* at = order.Environment; *at != nullptr; ++at)
            if (std::string_view(*at).starts_with("SOLVANE_AREXX_HOST="))
                started.emplace_back(*at);
        errno = EAGAIN;
        return -1;
    };
    ARexxPortBuffer = "SOLVANE.7";
    intuition::SetFileRequestHandler(
        [](const intuition::FileRequestSpec&) { return std::optional<std::string>(); });
    ExecuteARexxScriptSelect();
    ExecuteARexxScript("");
    EXPECT_TRUE(started.empty());
    intuition::SetFileRequestHandler(
        [&paths](const intuition::FileRequestSpec&) { return std::optional(paths[0]); });
    ExecuteARexxScriptSelect();
    EXPECT_THAT(started, testing::ElementsAre("rx", paths[0], "SOLVANE_AREXX_HOST=SOLVANE.7"));
    EXPECT_EQ(told.size(), 1U) << "it could not be started here";
    intuition::SetFileRequestHandler({});
    intuition::SetRequestHandler({});
}

} // namespace
} // namespace solvane
