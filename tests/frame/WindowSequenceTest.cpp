// Opening, rebuilding and leaving the main window, with a window that no screen shows.
#include "frame/WindowSequence.h"

#include "content/BuildLists.h"
#include "frame/ArgumentParser.h"
#include "frame/MainLoop.h"
#include "frame/Ports.h"
#include "interface/ContextMenus.h"
#include "interface/Iconify.h"
#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/Screens.h"
#include "locations/PlaceRouter.h"
#include "locations/TabRecords.h"
#include "model/Program.h"
#include "platform/exec/Ports.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"
#include "tests/content/DrawerTest.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <QGuiApplication>
#include <QScreen>

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace solvane {
namespace {

using testing::ElementsAre;

class WindowSequenceTest : public DrawerTest {
protected:
    WindowSequenceTest() {
        EXPECT_TRUE(intuition::OpenDisplay(0, nullptr));
        Prefs.DetermineDatatype = 2;
        CommandLineTabsList = SAK_CreateGenericList<TabsNode>();
        StartupTabsList = SAK_CreateGenericList<TabsNode>();
        ScrNotPort = std::make_unique<exec::MsgPort>();
        AppIconPort = std::make_unique<exec::MsgPort>();
        FirstRun = 1;
        SecondRun = done = done2 = PathSpecified = ReopenTabs = ScrNotChange = WindowClosed = 0;
        DefaultPubScreenID.Clear();
    }
    ~WindowSequenceTest() override {
        FreeAllTabs();
        CloseWindowObject();
        FreeMainMenuStrip();
        FreeContextMenus();
        EndScreenNotification();
        ScrNotPort.reset();
        AppIconPort.reset();
        CommodityInForce = StartIconified = QuitNoSave = 0;
        CommandLineTabsList.reset();
        StartupTabsList.reset();
        intuition::CloseDisplay();
        static_cast<void>(exec::CheckSignal(exec::BreakControlC));
    }

    void ShowAtStart(std::string_view path) {
        SAK_AddGenericListNode(*CommandLineTabsList, SAK_CreateGenericListNode<TabsNode>())->Path =
            Path(path);
        PathSpecified = 1;
    }
    static Station RunSequence() {
        Station station = RunEntryA();
        station = station == Station::EntryB ? RunEntryB() : station;
        return station == Station::EntryC ? RunEntryC() : station;
    }
    // Has the loop end as soon as it waits.
    static void EndLoop() { exec::Signal(exec::FindTask(), exec::BreakControlC); }
};

TEST_F(WindowSequenceTest, TheWindowOpensOnTheGivenPath) {
    Plant({"a/one", "a/two"});
    ShowAtStart("a");
    for (const char* path : {"gone", "b"}) { // the start-up tabs are for a window without a path
        SAK_AddGenericListNode(*StartupTabsList, SAK_CreateGenericListNode<TabsNode>())->Path = Path(path);
    }
    ASSERT_EQ(RunSequence(), Station::WaitLoop);
    EXPECT_TRUE(MainWindow->IsOpen());
    EXPECT_EQ(TabsOpen, 2U);
    EXPECT_THAT(Rows(), ElementsAre("one", "two"));
    EXPECT_EQ(Objects.Path->Text(), Path("a"));
    EXPECT_EQ(SAK_GenericListCount(*CommandLineTabsList), 0U);
}

TEST_F(WindowSequenceTest, ARebuildKeepsThePlaceTheScrollPositionAndTheColumns) {
    NumberedFiles("many/", 300);
    ShowAtStart("many");
    ASSERT_EQ(RunSequence(), Station::WaitLoop);
    Objects.ContentList->SetTop(150);
    const auto columns = Objects.ContentList->ColumnWidths();
    const std::size_t top = Objects.ContentList->Top();
    ASSERT_GT(top, 0U);

    CloseForRebuild();
    EXPECT_EQ(MainWindow, nullptr);
    EXPECT_TRUE(Rows().empty()) << "rows lean on the list that is gone";
    EXPECT_EQ(Objects.ContentList, nullptr);
    ASSERT_EQ(RunSequence(), Station::WaitLoop);

    EXPECT_EQ(Objects.Path->Text(), Path("many"));
    EXPECT_EQ(Rows().size(), 300U);
    EXPECT_EQ(Objects.ContentList->Top(), top);
    EXPECT_EQ(Objects.ContentList->ColumnWidths(), columns);
    EXPECT_EQ(ReopenTabs, 0);
    EXPECT_EQ(ScrNotChange, 0);
}

TEST_F(WindowSequenceTest, TheWindowOpensOnTheScreenThatIsNamedOrOnTheFirst) {
    File("screens", R"({"screens": [{"name": "one", "x": 0, "y": 0, "width": 800, "height": 600},
                                          {"name": "Two", "x": 1000, "y": 0, "width": 800, "height": 600}]})");
    intuition::CloseDisplay();
    const ScopedVariable platform("QT_QPA_PLATFORM",
                                  "offscreen:configfile=" + (HostRoot / "screens").string());
    ASSERT_TRUE(intuition::OpenDisplay(0, nullptr));
    ShowAtStart("");
    const int first = QGuiApplication::primaryScreen()->geometry().x();
    for (const auto& [wished, found, left] :
         {std::tuple{"", "Workbench", 0}, std::tuple{"two", "Two", 1000}, std::tuple{"ONE", "one", 0},
          std::tuple{"workbench", "Workbench", first}, std::tuple{"gone", "Workbench", 0}}) {
        DefaultPubScreenID = wished;
        ASSERT_EQ(RunSequence(), Station::WaitLoop);
        EXPECT_EQ(NameOfScreen(), found) << wished;
        EXPECT_EQ(MainWindow->Geometry().Left / 1000 * 1000, left) << wished;
        CloseForRebuild();
    }
}

TEST_F(WindowSequenceTest, ALostScreenMovesTheWindowToTheDefaultOneWithItsDrawer) {
    File("here/file");
    ShowAtStart("here");
    DefaultPubScreenID = "Second";
    exec::Task* loop = exec::FindTask();
    const auto screens = exec::CreateTask("screens", [loop] {
        exec::MsgPort replies;
        auto message = std::make_unique<ScreenMessage>();
        message->What = ScreenEvent::ScreenCloses;
        message->Screen = "Second";
        message->ReplyPort = &replies;
        exec::PutMsg(*ScrNotPort, std::move(message));
        exec::WaitPort(replies);
        static_cast<void>(exec::GetMsg(replies));
        exec::Signal(loop, exec::BreakControlC);
    });
    RunMainLoop();
    EXPECT_TRUE(DefaultPubScreenID.Empty());
    ASSERT_NE(MainWindow, nullptr);
    EXPECT_THAT(Rows(), ElementsAre("file"));
}

TEST_F(WindowSequenceTest, AStartPlaceThatIsGoneLeadsToTheComputer) {
    Prefs.DefaultOpenAt = static_cast<std::int32_t>(LocationKind::Drawer);
    Prefs.DefaultOpenAtPath = Path("gone");
    ASSERT_EQ(RunSequence(), Station::WaitLoop);
    EXPECT_THAT(Requests, ElementsAre("Drawer does not exist."));
    EXPECT_EQ(LBLocation, LocationKind::Computer);
}

TEST_F(WindowSequenceTest, ABackgroundProgramThatStartsAsAnIconOpensItsWindowWhenItIsCalled) {
    File("a/one");
    ShowAtStart("a");
    CommodityInForce = StartIconified = 1;
    ASSERT_EQ(RunSequence(), Station::WaitLoop);
    EXPECT_FALSE(IsWindowOpen());
    ASSERT_EQ(ShowProgram(), Station::EntryB);
    ASSERT_EQ(RunEntryB(), Station::EntryC);
    ASSERT_EQ(RunEntryC(), Station::WaitLoop);
    EXPECT_TRUE(IsWindowOpen());
    EXPECT_THAT(Rows(), ElementsAre("one"));
}

TEST_F(WindowSequenceTest, AWindowThatWasAnIconReadsADrawerAnewAndNoOtherPlace) {
    File("a/one");
    ShowAtStart("a");
    ASSERT_EQ(RunSequence(), Station::WaitLoop);
    for (const std::size_t rows : {2U, 0U}) {
        Changes = 1;
        ASSERT_TRUE(Iconify());
        File("a/two");
        ASSERT_EQ(ShowProgram(), Station::EntryC);
        ASSERT_EQ(RunEntryC(), Station::WaitLoop);
        EXPECT_TRUE(Requests.empty());
        EXPECT_TRUE(rows == 0 || Rows().size() == rows);
        EXPECT_EQ(Changes, 0);
        GoToPlace("Computer");
    }
}

struct QuitCase {
    const char* Name;
    int Answer;
    bool Leaves;
};

class QuitQuestionTest : public WindowSequenceTest, public testing::WithParamInterface<QuitCase> {};

void PrintTo(const QuitCase& c, std::ostream* out) {
    *out << c.Name;
}

TEST_P(QuitQuestionTest, IsAskedWhereThePreferencesWantIt) {
    ShowAtStart("");
    Prefs.VerifyQuit = 1;
    done = QuitNoSave = 1; // as a script leaves it
    intuition::SetRequestHandler([this](const intuition::EasyRequestSpec& spec) {
        Requests.push_back(spec.Text);
        EndLoop(); // should the program go on it ends at once, unasked
        return GetParam().Answer;
    });
    RunMainLoop();
    EXPECT_THAT(Requests, ElementsAre("Are you sure you want to quit?"));
    EXPECT_EQ(done != 0, GetParam().Leaves);
    EXPECT_EQ(QuitNoSave != 0, GetParam().Leaves) << "who stays keeps what he sets";
}

INSTANTIATE_TEST_SUITE_P(Answers, QuitQuestionTest,
                         testing::Values(QuitCase{"Quit", 1, true}, QuitCase{"Iconify", 2, false},
                                         QuitCase{"Cancel", 0, false}),
                         [](const auto& info) { return info.param.Name; });

class ArgumentParserTest : public WindowSequenceTest {
protected:
    ArgumentParserTest() {
        Win_X = Win_Y = Win_W = Win_H = -1;
        StartIconified = 0;
        SAK_PreferredLanguage.Clear();
    }
    static bool Parse(std::vector<std::string> words) {
        application::StartMessage start;
        start.Arguments = std::move(words);
        return ArgumentParser(start);
    }
    static std::vector<std::string> Locations() {
        return TextsOf(*CommandLineTabsList, [](const TabsNode& tab) { return tab.Path.View(); });
    }
};

TEST_F(ArgumentParserTest, PathsAndOptionsAreTakenInTheirOrder) {
    ASSERT_TRUE(Parse({Path("a"), "WIN_X=7", Path("b c"), "computer", "pubscreen", std::string(200, 'x'),
                       "ICONIFY", "Language=German"}));
    EXPECT_THAT(Locations(), ElementsAre(Path("a"), Path("b c"), "computer"));
    EXPECT_EQ(PathSpecified, 1);
    EXPECT_EQ(Win_X, 7);
    EXPECT_EQ(Win_Y, -1);
    EXPECT_EQ(DefaultPubScreenID.Size(), 139U);
    EXPECT_EQ(StartIconified, 1);
    EXPECT_TRUE(SAK_PreferredLanguage.SameBytes("German"));
}

TEST_F(ArgumentParserTest, TheRestartMarkerEndsTheReadingOfArguments) {
    ASSERT_TRUE(Parse({"do_open_window", Path("a"), "WIN_X=7"}));
    EXPECT_EQ(done2, 1);
    EXPECT_EQ(PathSpecified, 0);
    EXPECT_EQ(Win_X, -1);
    EXPECT_TRUE(Locations().empty());
}

TEST_F(ArgumentParserTest, ALineThatCannotBeParsedStartsAsIfItWereEmpty) {
    ASSERT_TRUE(Parse({Path("a"), "WIN_X=seven"}));
    EXPECT_TRUE(Locations().empty());
    EXPECT_EQ(PathSpecified, 0);
    EXPECT_TRUE(Requests.empty());
}

TEST_F(ArgumentParserTest, APathThatDoesNotFitIsRefusedNotCut) {
    ASSERT_TRUE(Parse({Path(std::string(1100, 'x')), Path("a")}));
    EXPECT_THAT(Requests, ElementsAre("Path is too long."));
    EXPECT_THAT(Locations(), ElementsAre(Path("a")));
}

} // namespace
} // namespace solvane
