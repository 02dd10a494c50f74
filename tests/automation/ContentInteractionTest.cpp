// The Content pane under keys, clicks and selection commands: what is selected, opened and told. Implemented
// in automation/ContentEvents, ListKeys, OpenEntries, RawKey, SelectCommands and TypeAhead.
#include "automation/ContentEvents.h"
#include "automation/OpenEntries.h"
#include "automation/SelectCommands.h"
#include "automation/TypeAhead.h"
#include "content/SortLists.h"
#include "interface/DetailsGadgets.h"
#include "locations/Devices.h"
#include "locations/EnterDrawer.h"
#include "locations/PlaceRouter.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "platform/dos/System.h"
#include "platform/intuition/Events.h"
#include "platform/intuition/FormRequesters.h"
#include "tests/automation/PressKey.h"
#include "tests/locations/OpenWindow.h"

#include <gmock/gmock.h>
#include <utility>

namespace solvane {
namespace {

using testing::ElementsAre;
namespace qualifier = intuition::qualifier;
namespace rawkey = intuition::rawkey;

class ContentInteraction : public OpenWindow {
protected:
    ContentInteraction() {
        dos::SetBuiltIn("WBRun", [this](std::string_view line) -> dos::BuiltInResult {
            Opened.emplace_back(line.substr(0, line.find('\n')));
            return {};
        });
    }
    ~ContentInteraction() override {
        dos::SetBuiltIn("WBRun", {});
        intuition::SetFormHandler({});
        Qualifier = 0;
        SameJumpTo = 0;
        JumpToCount = 0;
    }

    static std::string Selected() {
        std::string names;
        for (const std::size_t row : Objects.ContentList->SelectedRows())
            names += (names.empty() ? "" : " ") + std::string(lblist2[row].Record->EntryName.View());
        return names;
    }
    static void Select(std::initializer_list<std::size_t> rows) {
        Objects.ContentList->ClearSelection();
        Objects.ContentList->SelectRows(rows);
    }
    static void Type(std::string_view text) {
        for (const char letter : text) {
            Code = rawkey::None;
            Qualifier = 0;
            KeyText = std::string(1, letter);
            EXPECT_EQ(HandleRawKeys(), Closing::Tab);
        }
    }
    static std::string Press(std::uint16_t code, unsigned held = 0) {
        EXPECT_EQ(PressKey(code, held), Closing::Tab) << code;
        return Selected();
    }
    // Six rows: drawers first.
    void ShowSome() {
        Plant({"d1/", "d2/"});
        for (const char* name : {"ab.txt", "Ac.txt", "b.txt", "z"})
            File(name, "12345");
        ASSERT_TRUE(PopulateContent2(Volume, Volume));
        ASSERT_EQ(TotalNodes, 6U);
    }

    std::vector<std::string> Opened;
};

TEST_F(ContentInteraction, KeysMoveTheSelectionAndTellOfIt) {
    ShowSome();
    const struct {
        std::uint16_t Code;
        unsigned Held;
        const char* Then;
    } steps[] = {
        {rawkey::Up, 0, "d1"},
        {rawkey::Up, 0, "d1"},
        {rawkey::Down, 0, "d2"},
        {rawkey::Down, qualifier::Control, "z"},
        {rawkey::Down, 0, "z"},
        {rawkey::Up, qualifier::LeftShift, "d1"},
        {rawkey::End, 0, "z"},
        {rawkey::Up, qualifier::RightAlt, "z"},
        {rawkey::Space, 8, "b.txt z"},
        {rawkey::Home, 0, "d1"},
        {rawkey::PageDown, 0, "z"},
        {rawkey::PageUp, 0, "d1"},
        {49, qualifier::Control, ""},
        {rawkey::Down, qualifier::Control, "z"},
        {32, qualifier::Control, "d1 d2 ab.txt Ac.txt b.txt z"},
    };
    for (const auto& step : steps)
        EXPECT_EQ(Press(step.Code, step.Held), step.Then) << step.Code << " " << step.Held;
    EXPECT_EQ(StatusBarBuffer1.View(), "6/6 Selected | 20 B / 20 B");
    Press(rawkey::End);
    EXPECT_EQ(Details1Buffer.View(), "z");
    EXPECT_EQ(StatusBarBuffer1.View(), "1/6 Selected | 5 B / 20 B");
    Press(49, qualifier::Control);
    EXPECT_EQ(Details1Buffer.View(), Volume) << "without a selection the drawer tells of itself";
    EXPECT_EQ(StatusBarBuffer1.View(), "0/6 Selected | 0 B / 20 B");
}

TEST_F(ContentInteraction, KeysInQuickSuccessionFormOneBeginning) {
    ShowSome();
    Type("a");
    EXPECT_EQ(Selected(), "ab.txt");
    Type("C");
    EXPECT_EQ(Selected(), "Ac.txt") << "case aside";
    Type("q");
    EXPECT_EQ(Selected(), "Ac.txt") << "no such row";
    for (int tick = 0; tick < 10; ++tick) {
        EXPECT_EQ(JumpToBuffer.View(), "aCq");
        TickTypeAhead();
    }
    Type("b");
    EXPECT_EQ(Selected(), "b.txt") << "a pause begins a new word";
    MainWindow->SetTicks(false); // as a window that has gone and come
    exec::SetSignal(0, MainWindow->Mask());
    Type("z");
    static_cast<void>(exec::Wait(MainWindow->Mask()));
    EXPECT_EQ(MainWindow->NextEvent()->Class, intuition::EventClass::IntuiTicks);
    EndTypeAhead();
    Type("d");
    EXPECT_EQ(Selected(), "d1");
}

TEST_F(ContentInteraction, ReturnAndDoubleClickOpenWhatTheKeysWant) {
    ShowSome();
    const std::string ab = "\"" + Path("ab.txt") + "\"", b = "\"" + Path("b.txt") + "\"";
    const auto doubleClick = [](std::size_t row, unsigned held) {
        Qualifier = static_cast<std::uint16_t>(held);
        OpenRow(row);
    };
    Select({0, 2, 4});
    doubleClick(2, 0);
    EXPECT_THAT(std::exchange(Opened, {}), ElementsAre(ab));
    doubleClick(2, qualifier::RightShift);
    EXPECT_THAT(std::exchange(Opened, {}), ElementsAre(ab, b));
    doubleClick(2, qualifier::Control);
    EXPECT_THAT(std::exchange(Opened, {}), ElementsAre(ab));
    EXPECT_EQ(OpenArchiveInNewTab, 1);
    Select({2, 4});
    Press(rawkey::Return);
    EXPECT_THAT(std::exchange(Opened, {}), ElementsAre(ab, b));
    Select({0});
    Press(rawkey::Enter);
    EXPECT_EQ(PathUndoBuffer.View(), Path("d1"));
    EXPECT_EQ(Press(rawkey::Return), "");
    Press(rawkey::Backspace);
    EXPECT_EQ(PathUndoBuffer.View(), Volume);
    EXPECT_TRUE(Opened.empty());
}

TEST_F(ContentInteraction, ManyAreOpenedOnlyAfterAQuestion) {
    for (int number = 0; number < 21; ++number) {
        File("f" + std::to_string(number));
        Drawer("d" + std::to_string(number));
    }
    ASSERT_TRUE(PopulateContent2(Volume, Volume));
    int answer = 0;
    intuition::SetRequestHandler([&](const intuition::EasyRequestSpec& spec) {
        Requests.push_back(spec.Text);
        return answer;
    });
    const unsigned tabs = TabsOpen;
    SelectAll();
    Press(rawkey::Return, qualifier::Control);
    EXPECT_EQ(TabsOpen, tabs);
    for (std::size_t row = 0; row < 21; ++row)
        Objects.ContentList->Select(row, false); // drawers come first
    Press(rawkey::Return);
    EXPECT_THAT(Requests, ElementsAre(testing::HasSubstr("open 21 entries"), testing::HasSubstr("21")));
    EXPECT_TRUE(Opened.empty());
    answer = 1;
    Press(rawkey::Return);
    EXPECT_EQ(Opened.size(), 21U);
    Objects.ContentList->Select(21, false);
    Requests.clear();
    Press(rawkey::Return);
    EXPECT_EQ(Opened.size(), 41U);
    EXPECT_TRUE(Requests.empty());
}

TEST_F(ContentInteraction, FurtherMouseButtonsDoWhatThePreferencesSay) {
    ShowSome();
    Select({1});
    Prefs.FourthButtonAction = 1;
    Prefs.FifthButtonAction = 2;
    Code = intuition::mousebutton::FourthUp;
    Qualifier = qualifier::Control; // not meant
    HandleMouseButton();
    EXPECT_EQ(PathUndoBuffer.View(), Path("d2"));
    Code = intuition::mousebutton::FifthUp;
    HandleMouseButton();
    EXPECT_EQ(PathUndoBuffer.View(), Volume);
}

TEST_F(ContentInteraction, EscapeAndQuitKeysCloseTheWindow) {
    ShowSome();
    EXPECT_EQ(PressKey(rawkey::Escape, 0), Closing::Tab);
    Prefs.EscapeToQuit = 1;
    EXPECT_EQ(PressKey(rawkey::Escape, 0), Closing::WithWindow);
    EXPECT_EQ(PressKey(16, 0), Closing::Tab);
    EXPECT_EQ(done, 0);
    EXPECT_EQ(PressKey(16, qualifier::LeftAlt), Closing::Tab) << "what closes the window only";
    EXPECT_EQ(std::exchange(done, std::uint16_t{0}), 1);
}

TEST_F(ContentInteraction, OnlyBareArrowsTravelAndNotInTheFilmstrip) {
    Drawer("d1");
    StartupTabsList = SAK_CreateGenericList<TabsNode>();
    CommandLineTabsList = SAK_CreateGenericList<TabsNode>();
    ASSERT_TRUE(SetUpTabs());
    SetFirstTab();
    ASSERT_TRUE(PopulateContent2(Volume, Volume));
    ASSERT_TRUE(PopulateContent2("d1", Path("d1")));
    Press(rawkey::Left, qualifier::LeftAlt);
    EXPECT_EQ(PathUndoBuffer.View(), Path("d1"));
    Prefs.ContentViewStyle = ViewFilmstrip;
    Press(rawkey::Left);
    EXPECT_EQ(PathUndoBuffer.View(), Path("d1"));
    Prefs.ContentViewStyle = ViewList;
    Press(rawkey::Left);
    EXPECT_EQ(PathUndoBuffer.View(), Volume);
    Press(rawkey::Right, qualifier::RightAmiga);
    EXPECT_EQ(PathUndoBuffer.View(), Volume);
    FreeAllTabs();
    StartupTabsList.reset();
    CommandLineTabsList.reset();
}

TEST_F(ContentInteraction, CommandsSelectAndTellOfIt) {
    ShowSome();
    SelectAll();
    EXPECT_EQ(NumSelected, 6);
    EXPECT_EQ(SelectedBytes, 20U);
    Select({0, 5});
    ToggleSelection();
    EXPECT_EQ(Selected(), "d2 ab.txt Ac.txt b.txt");
    SelectNone();
    EXPECT_EQ(Selected(), "");
    SelectEntry("AC.TXT", EntrySort::File);
    SelectEntry("d2", EntrySort::File);
    SelectEntry("d2", EntrySort::Drawer);
    EXPECT_EQ(Selected(), "d2 Ac.txt");
    EXPECT_EQ(NumSelected, 2);
}

TEST_F(ContentInteraction, PatternAddsToTheSelectionOrIsTold) {
    ShowSome();
    std::vector<std::pair<std::string, bool>> typed;
    intuition::SetFormHandler([&typed](const intuition::FormSpec&) {
        if (typed.empty())
            return intuition::FormAnswer{};
        const auto [text, cased] = typed.front();
        return intuition::FormAnswer{1, {text}, 0, {cased}};
    });
    const struct {
        const char* Text;
        bool Case;
        const char* Then;
    } rows[] = {{"a#?.txt", false, "d1 ab.txt Ac.txt"},
                {"a#?.txt", true, "d1 ab.txt"},
                {"*.TXT", true, "d1"},
                {"nothing", false, "d1"},
                {"a(", false, "d1"},
                {"?", false, "d1 z"}};
    for (const auto& row : rows) {
        Select({0});
        Pattern(row.Text, row.Case);
        EXPECT_EQ(Selected(), row.Then) << row.Text;
        Select({0});
        typed = {{row.Text, row.Case}};
        Pattern("", false);
        EXPECT_EQ(Selected(), row.Then) << row.Text << " typed";
    }
    EXPECT_THAT(Requests, ElementsAre("Invalid pattern.", "Invalid pattern."));
    typed.clear();
    Pattern("", false);
    EXPECT_EQ(Selected(), "d1 z") << "the user has none to give";
    LBLocation = LocationKind::Computer;
    Pattern("#?", false);
    EXPECT_EQ(Selected(), "d1 z");
}

TEST_F(ContentInteraction, TypesAreSelectedAloneOrWithShiftBesideWhatWas) {
    ShowSome();
    for (const char* name : {"ab.txt", "b.txt"})
        FindContentNode(name, AnyKind)->DatatypeGroupValue = GroupText;
    Select({5});
    Qualifier = qualifier::LeftShift;
    SelectByType(GroupText);
    EXPECT_EQ(Selected(), "ab.txt b.txt z");
    Qualifier = 0;
    SelectByType(GroupText);
    EXPECT_EQ(Selected(), "ab.txt b.txt");
    SelectByType(9);
    EXPECT_EQ(Selected(), "ab.txt b.txt");
    SelectByType(GroupMovie);
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Details1Buffer.View(), Volume);
}

TEST_F(ContentInteraction, OnTheWorkbenchTypesAndNamesSelectAllButVolumes) {
    ShowSome();
    LBLocation = LocationKind::Workbench;
    for (const char* name : {"ab.txt", "Ac.txt"})
        FindContentNode(name, AnyKind)->DatatypeGroupValue = GroupText;
    FindContentNode("Ac.txt", AnyKind)->PlaceFacts =
        std::make_unique<PlaceRecord>(PlaceRecord{DevicesNode()});
    Qualifier = 0;
    SelectByType(GroupText);
    EXPECT_EQ(Selected(), "ab.txt");
    Pattern("#?.txt", false);
    SelectEntry("Ac.txt", EntrySort::File);
    SelectEntry("z", EntrySort::File);
    EXPECT_EQ(Selected(), "ab.txt b.txt z");
}

TEST_F(ContentInteraction, PersistentClickThatDeselectsShowsTheDrawer) {
    ShowSome();
    Prefs.PersistentSelect = 1;
    Select({2});
    RowClicked(3);
    EXPECT_EQ(Details1Buffer.View(), Volume);
    EXPECT_EQ(StatusBarBuffer1.View(), "1/6 Selected | 5 B / 20 B");
}

TEST_F(ContentInteraction, FileWithoutATypeIsTypedWhenItIsClicked) {
    File("note.txt", "Some plain words.\n");
    Prefs.DetermineDatatype = 1;
    ASSERT_TRUE(Scan());
    ContentNode& node = *FindContentNode("note.txt", AnyKind);
    node.DatatypeName = "File";
    Prefs.DetermineDatatype = 2;
    EXPECT_EQ(Press(rawkey::End), "note.txt");
    EXPECT_EQ(node.DatatypeName.View(), "File");
    Press(49, qualifier::Control);
    Prefs.DetermineDatatype = 1;
    Press(rawkey::End);
    EXPECT_NE(node.DatatypeName.View(), "File");
    EXPECT_EQ(Details2Buffer.View(), node.DatatypeName.View());
}

TEST_F(ContentInteraction, GuideIsOpenedOrItsFailureTold) {
    ShowSome();
    Press(rawkey::F1);
    EXPECT_THAT(Opened, ElementsAre("\"PROGDIR:Docs/guide.md\""));
    EXPECT_TRUE(Requests.empty());
    dos::SetBuiltIn("WBRun", [](std::string_view) { return dos::BuiltInResult{.Code = 10}; });
    Press(rawkey::Help);
    EXPECT_EQ(Requests.size(), 1U);
}

TEST_F(ContentInteraction, EmptyDriveIsSelectedByItselfAlone) {
    ASSERT_TRUE(GetDevices());
    auto* drive = SAK_AddGenericListNode(*MasterDevicesList, SAK_CreateGenericListNode<DevicesNode>());
    drive->DeviceName = drive->VolumeName = drive->Label = "DF9:";
    ASSERT_TRUE(GoToPlace("Computer"));
    SelectAll();
    EXPECT_EQ(Objects.ContentList->SelectedRows().size() + 1, lblist2.size());
    EXPECT_THAT(Selected(), testing::Not(testing::HasSubstr("DF9:")));
    ToggleSelection();
    EXPECT_EQ(Selected(), "");
    const auto names = Rows();
    Select({static_cast<std::size_t>(std::ranges::find(names, "DF9:") - names.begin())});
    EXPECT_EQ(Selected(), "DF9:");
}

} // namespace
} // namespace solvane
