#include "locations/Tabs.h"

#include "content/DetailsPane.h"
#include "content/Selection.h"
#include "content/Status.h"
#include "interface/DetailsGadgets.h"
#include "locations/History.h"
#include "locations/KeptPlaces.h"
#include "locations/Navigation.h"
#include "locations/OpenTabs.h"
#include "locations/PlaceRouter.h"
#include "locations/RenamedVolume.h"
#include "locations/RescanTabs.h"
#include "locations/TabRecords.h"
#include "locations/ViewChange.h"
#include "locations/VisitHistory.h"
#include "model/Program.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Events.h"
#include "platform/intuition/FormRequesters.h"
#include "prefs/PrefsLists.h"
#include "sak/Notify.h"
#include "tests/locations/OpenWindow.h"

#include <functional>
#include <gmock/gmock.h>

namespace solvane {
namespace {

using testing::ElementsAre, testing::IsEmpty;

class TabsTest : public OpenWindow {
protected:
    TabsTest() {
        StartupTabsList = SAK_CreateGenericList<TabsNode>();
        CommandLineTabsList = SAK_CreateGenericList<TabsNode>();
        ReopenTabs = AtPreferences = TabClosed = 0;
        File("start/s");
        Prefs.DefaultOpenAt = static_cast<std::int32_t>(LocationKind::Drawer);
        Prefs.DefaultOpenAtName = "start";
        Prefs.DefaultOpenAtPath = Path("start");
        EXPECT_TRUE(SetUpTabs());
        SetFirstTab();
    }
    ~TabsTest() override {
        FreeAllTabs();
        SAK_ShutDownNotify();
        StartupTabsList.reset();
        CommandLineTabsList.reset();
    }

    void Go(std::string_view drawer) const { PopulateContent2(drawer, Path(drawer)); }
    void OpenOn(std::string_view drawer) const {
        OpenNewTab(1);
        Go(drawer);
    }
    // Tabs "a", "b", "c" with a file each, the last one on show.
    void ThreeTabs() const {
        for (const char* name : {"a", "b", "c"})
            File(std::string(name) + "/in " + name);
        Go("a");
        OpenOn("b");
        OpenOn("c");
    }
    [[nodiscard]] static std::vector<std::string> Labels() {
        return TextsOf(*tabslist, [](const ClickTabNode& tab) {
            return (&tab == currTab ? "*" : "") + std::string(tab.Label.View());
        });
    }
    [[nodiscard]] static std::vector<std::string> Places() {
        return TextsOf(*HistoryList, [](const HistoryNode& entry) {
            return (&entry == CurrentHistory ? "*" : "") + std::string(entry.Name.View());
        });
    }
};

// The settings of Prefs that each tab has for itself.
constexpr auto DirectionsOfTabs =
    std::array{&PrefsRecord::WorkbenchSortDirection, &PrefsRecord::ComputerSortDirection,
               &PrefsRecord::AssignsSortDirection,   &PrefsRecord::FTPSitesSortDirection,
               &PrefsRecord::SearchSortDirection,    &PrefsRecord::ArchiveSortDirection,
               &PrefsRecord::ContentSortDirection};
constexpr auto NumbersOfTabs = std::array{&PrefsRecord::ComputerDetailsCISortColumn,
                                          &PrefsRecord::FTPSitesDetailsCISortColumn,
                                          &PrefsRecord::ArchiveDetailsCISortColumn,
                                          &PrefsRecord::ContentDetailsCISortColumn,
                                          &PrefsRecord::BookmarksViewStyle,
                                          &PrefsRecord::FavoritesViewStyle,
                                          &PrefsRecord::WorkbenchViewStyle,
                                          &PrefsRecord::ComputerViewStyle,
                                          &PrefsRecord::AssignsViewStyle,
                                          &PrefsRecord::FTPSitesViewStyle,
                                          &PrefsRecord::ArchiveViewStyle,
                                          &PrefsRecord::ContentViewStyle};

std::vector<std::int32_t> SettingsOfPrefs() {
    std::vector<std::int32_t> all;
    for (const auto direction : DirectionsOfTabs)
        all.push_back(Prefs.*direction);
    for (const auto number : NumbersOfTabs)
        all.push_back(Prefs.*number);
    return all;
}

// Each setting as no other one is, from that number on.
void SetSettings(std::int32_t number) {
    for (const auto direction : DirectionsOfTabs)
        Prefs.*direction = static_cast<std::int16_t>(number++);
    for (const auto setting : NumbersOfTabs)
        Prefs.*setting = number++;
}

// All that the user can tell of a tab, and the records that it is made of.
struct Observed {
    explicit Observed(int) {}
    Observed()
        : Values(ActiveSet),
          Settings(SettingsOfPrefs()),
          Lists(HistoryList.get(), CurrentHistory, LinksList.get(), ContentList.get(), lblist2.data(),
                lblist2.size()),
          Top(Objects.ContentList->Top()),
          Row(Objects.ContentList->Current()),
          Selected(Objects.ContentList->SelectedRows()),
          PathShown(Objects.Path->Text()) {}
    TabValues Values;
    std::vector<std::int32_t> Settings;
    std::tuple<const void*, const void*, const void*, const void*, const void*, std::size_t> Lists;
    std::size_t Top = 0, Row = 0;
    std::vector<std::size_t> Selected;
    std::string PathShown;
};

void ExpectSame(const Observed& now, const Observed& before) {
    const TabValues &a = now.Values, &b = before.Values;
    EXPECT_EQ(
        std::tie(a.Location, a.LBTop, a.NumConSel, a.TotalNodes, a.ActuallyZero, a.TotalBytes,
                 a.SelectedBytes, a.AtFTPMount, a.AtWHDLoadGamesRootDrawer, a.GaugeLevel, a.HistorySelected),
        std::tie(b.Location, b.LBTop, b.NumConSel, b.TotalNodes, b.ActuallyZero, b.TotalBytes,
                 b.SelectedBytes, b.AtFTPMount, b.AtWHDLoadGamesRootDrawer, b.GaugeLevel, b.HistorySelected));
    const auto texts = [](const TabValues& of) {
        std::vector<std::string> all;
        for (const auto view :
             {of.Path.View(), of.PathUndo.View(), of.PathRead.View(), of.StatusBar1.View(),
              of.StatusBar2.View(), of.TotalBytesBuffer.View(), of.SelectedBytesBuffer.View()}) {
            all.emplace_back(view.ends_with('/') ? view.substr(0, view.size() - 1) : view);
        }
        for (const auto& detail : of.Details) {
            all.emplace_back(detail.View());
        }
        return all;
    };
    EXPECT_EQ(texts(a), texts(b));
    EXPECT_EQ(now.Settings, before.Settings);
    EXPECT_EQ(now.Lists, before.Lists) << "rows and records are the same ones, not read again";
    EXPECT_EQ(now.Top, before.Top);
    EXPECT_EQ(now.Row, before.Row);
    EXPECT_EQ(now.Selected, before.Selected);
    EXPECT_EQ(now.PathShown, before.PathShown);
}

TEST_F(TabsTest, ATabComesBackWithEverythingThatItShowed) {
    for (int at = 100; at < 400; ++at)
        File("many/" + std::to_string(at), std::string(static_cast<std::size_t>(at), 'x'));
    File("few/one", "1234");
    Go("many");
    Objects.ContentList->SetTop(120);
    Objects.ContentList->Select(130, true);
    Objects.ContentList->Select(299, true);
    Objects.ContentList->SetCurrent(130);
    Objects.ContentList->SetTop(120);
    SelectContentListItems();
    RefreshBytes();
    SetSettings(100);
    Prefs.ContentViewStyle = ViewDetails;
    Prefs.ContentDetailsCISortColumn = 2;
    Details3Buffer = "a detail";
    SetFuelGaugeImage(42);
    ShowContentStatus();
    BeforeSwitchTabs(1);
    const Observed many;

    OpenOn("few");
    SetSettings(200);
    Prefs.ContentViewStyle = ViewList;
    Prefs.ContentDetailsCISortColumn = 3;
    BeforeSwitchTabs(1);
    const Observed few;
    EXPECT_THAT(Rows(), ElementsAre("one"));

    for (int round = 0; round < 2; ++round) {
        std::filesystem::remove_all(Host(round == 0 ? "many" : "few")); // nobody looks at the disk
        SwitchToTabNumber(1);
        BeforeSwitchTabs(1);
        ExpectSame(Observed(), many);
        SwitchToTabNumber(2);
        BeforeSwitchTabs(1);
        ExpectSame(Observed(), few);
    }
    EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(TabsTest, OpeningStepsAndClosingFollowTheRow) {
    ThreeTabs();
    EXPECT_THAT(Labels(), ElementsAre("a", "b", "*c", "New tab"));
    EXPECT_EQ(TabsOpen, 4U);
    NextTab();
    EXPECT_THAT(Labels(), ElementsAre("*a", "b", "c", "New tab")) << "never on to the extra tab";
    EXPECT_THAT(Rows(), ElementsAre("in a"));
    PreviousTab();
    EXPECT_THAT(Labels(), ElementsAre("a", "b", "*c", "New tab"));
    for (const std::uint32_t number : {0U, 4U, 5U, 1U}) {
        SwitchToTabNumber(number);
        EXPECT_THAT(Labels(), ElementsAre("*a", "b", "c", "New tab")) << number;
        SwitchToTabNumber(2);
    }
    EXPECT_EQ(CloseTab(), Closing::Tab);
    EXPECT_THAT(Labels(), ElementsAre("*a", "c", "New tab")) << "to the one before";
    EXPECT_EQ(CloseTab(), Closing::Tab);
    EXPECT_THAT(Labels(), ElementsAre("*c", "New tab")) << "of the first to the one behind";
    EXPECT_THAT(Rows(), ElementsAre("in c"));
    CloseAllButThisTab();
    EXPECT_THAT(Labels(), ElementsAre("*c", "New tab"));
    EXPECT_EQ(CloseTab(), Closing::WithWindow);
    OpenNewTab(0);
    EXPECT_THAT(Labels(), ElementsAre("c", "*start", "New tab"));
    EXPECT_THAT(Rows(), ElementsAre("s"));
    EXPECT_EQ(CloseTabOf(SAK_FirstGenericListNode(*tabslist)->TabUserData), Closing::Tab);
    EXPECT_THAT(Labels(), ElementsAre("*start", "New tab")) << "another is closed without a switch";
    ThreeTabs();
    CloseAllButThisTab();
    EXPECT_THAT(Labels(), ElementsAre("*c", "New tab"));
}

TEST_F(TabsTest, ClonesAndSelectedDrawersOpenInTabsOfTheirOwn) {
    Plant({"d/x/1", "d/y/2", "d/file"});
    Go("d");
    CloneTab();
    EXPECT_THAT(Labels(), ElementsAre("d", "*d", "New tab"));
    Objects.ContentList->SelectAll();
    OpenMultipleNewTabs();
    EXPECT_THAT(Labels(), ElementsAre("d", "d", "x", "*y", "New tab"));
    EXPECT_THAT(Rows(), ElementsAre("2"));
}

TEST_F(TabsTest, AMarkedTabIsReadAnewWhenItIsShown) {
    ThreeTabs();
    Plant({"a/new", "c/new"});
    SetRescanAllTabsByPath(Path("A/"), currTab->TabNumber);
    SetRescanAllTabsByPath(Path("c"), currTab->TabNumber);
    EXPECT_EQ(ActiveTab->RescanTab, 0) << "who made the change knows of it";
    SwitchToTabNumber(1);
    EXPECT_THAT(Rows(), ElementsAre("in a", "new"));
    SwitchToTabNumber(3);
    EXPECT_THAT(Rows(), ElementsAre("in c")) << "was not marked";
    SetRescanAllTabsByLocation(LocationKind::Drawer);
    RescanAllTabs();
    EXPECT_THAT(Labels(), ElementsAre("a", "b", "*c", "New tab"));
    EXPECT_THAT(Rows(), ElementsAre("in c", "new"));
}

TEST_F(TabsTest, TabsFollowAVolumeThatIsRenamed) {
    ThreeTabs();
    PopulateContent2("root", Volume);
    OpenOn("a");
    RenameVolumeInTabs({.Before = Volume, .Now = "New:"});
    EXPECT_THAT(Labels(), ElementsAre("a", "b", "New:", "*a", "New tab"));
    EXPECT_EQ(CurrentPath.View(), "New:a");
    EXPECT_EQ(CurrentHistory->Path.View(), "New:a");
    EXPECT_EQ(ActiveTab->RescanTab, 1) << "its records have the old paths";
    RenameVolumeInTabs({.Before = "New:", .Now = Volume});
    SwitchToTabNumber(3);
    GoBackInHistory();
    EXPECT_THAT(Rows(), ElementsAre("in c"));
    CurrentPath = "STRA\u1E9EE:a";
    RenameVolumeInTabs({"Stra\u00DFe:", "New:"});
    EXPECT_EQ(CurrentPath.View(), "New:a") << "another case may have another length";
}

TEST_F(TabsTest, ATabTellsFiguresOfItsVolumeThatCameWhileItWasLeft) {
    MasterDevicesList = SAK_CreateGenericList<DevicesNode>();
    DevicesNode& device =
        *SAK_AddGenericListNode(*MasterDevicesList, SAK_CreateGenericListNode<DevicesNode>());
    device.VolumeName = Volume;
    device.Usage = UsageState::Silent;
    PopulateContent2(Volume, Volume);
    OpenOn("start");
    device.Usage = UsageState::Known;
    device.TotalBytes = 100;
    device.FreeText = "50 B";
    DetailsPaneVolume();
    EXPECT_EQ(Details2Buffer.View(), "Drawer");
    SwitchToTabNumber(1);
    EXPECT_THAT(std::string(Details2Buffer.View()), testing::EndsWith("50 B"));
    MasterDevicesList.reset();
}

TEST_F(TabsTest, RestingListsOfKeptPlacesAreMarkedWhenOneChanges) {
    ASSERT_TRUE(CreatePrefsLists());
    for (const auto& [word, add] : {std::pair{"Favorites", &AddCurrentLocationToFavorites},
                                    std::pair{"Bookmarks", &AddCurrentLocationToBookmarks}}) {
        GoToPlace(word);
        OpenOn("start");
        add(AskFirst::No);
        SwitchToTabNumber(1);
        EXPECT_THAT(Rows(), ElementsAre("start")) << word;
    }
    FreePrefsLists();
}

TEST_F(TabsTest, SelectedAssignsAskWhichOfTheirDrawersIsMeant) {
    Plant({"one/a", "two/b"});
    const std::string name = "Tab" + Volume;
    ASSERT_TRUE(dos::SetAssign(name.substr(0, name.size() - 1), dos::AssignKind::Directory,
                               {Path("one"), Path("two")}));
    for (const int gadget : {0, 1}) {
        GoToPlace("Assigns");
        SelectAlone(name);
        intuition::SetFormHandler([gadget](const intuition::FormSpec&) {
            return intuition::FormAnswer{gadget, {}, 1};
        });
        OpenMultipleNewTabs();
    }
    intuition::SetFormHandler({});
    EXPECT_EQ(TabsOpen, 3U) << "none was opened for the one that was given up";
    EXPECT_THAT(Rows(), ElementsAre("b"));
}

TEST_F(TabsTest, AMarkedTabOnShowKeepsItsSelection) {
    ThreeTabs();
    Objects.ContentList->Select(0, true);
    File("c/new");
    SetRescanAllTabsByLocation(LocationKind::Drawer);
    SwitchToTabNumber(3);
    EXPECT_THAT(Rows(), ElementsAre("in c", "new"));
    EXPECT_THAT(Objects.ContentList->SelectedRows(), ElementsAre(0U));
}

TEST_F(TabsTest, AViewStyleIsThatOfAllTabsWhenThePreferencesSaySo) {
    ThreeTabs();
    for (const bool all : {false, true}) {
        Prefs.ChangeAllTabs = all ? 1 : 0;
        ChangeViewStyleOfTabs(all ? ViewList : ViewTiles);
        SwitchToTabNumber(1);
        EXPECT_EQ(Prefs.ContentViewStyle == ViewList, all);
        EXPECT_THAT(Rows(), ElementsAre("in a"));
        SwitchToTabNumber(3);
    }
}

TEST_F(TabsTest, AChangeIsNoticedWhileTheTabIsNotOnShow) {
    Prefs.MonitorDrawer = 1;
    ASSERT_TRUE(SAK_SetUpNotify());
    ThreeTabs();
    File("a/new");
    static_cast<void>(exec::Wait(SAK_NotifySignal));
    EXPECT_FALSE(SAK_NotifyHasChanged()) << "concerns a tab that is not on show";
    SwitchToTabNumber(1);
    EXPECT_THAT(Rows(), ElementsAre("in a", "new"));
    File("a/newer");
    static_cast<void>(exec::Wait(SAK_NotifySignal));
    EXPECT_TRUE(SAK_NotifyHasChanged());
}

TEST_F(TabsTest, OwnChangeIsForgottenWithTheDrawerThatItWasMadeIn) {
    Prefs.MonitorDrawer = 1;
    ASSERT_TRUE(SAK_SetUpNotify());
    ASSERT_TRUE(CreatePrefsLists());
    ThreeTabs();
    const struct {
        const char* Name;
        std::function<void()> Do;
        int Left;
    } rows[] = {
        {"reloaded", [] { ReloadDrawer(); }, 1},
        {"not left, as the other is gone", [this] { Go("gone"); }, 1},
        {"left for another", [this] { Go("start"); }, 0},
        {"left for places", [] { GoToPlace("Favorites"); }, 0},
        {"left for devices", [] { GoToPlace("Computer"); }, 0},
        {"left for a tab", [] { SwitchToTabNumber(1); }, 0},
        {"closed", [] { EXPECT_EQ(CloseTab(), Closing::Tab); }, 0},
    };
    for (const auto& row : rows) {
        Go("c");
        Changes = 1;
        row.Do();
        EXPECT_EQ(Changes, row.Left) << row.Name;
        Changes = 0;
    }
    FreePrefsLists();
}

TEST_F(TabsTest, StartUpTabsAreReadWhenTheyAreShown) {
    FreeAllTabs();
    Plant({"p/1", "q/2"});
    for (const char* place : {"p", "gone", "q"}) {
        TabsNode* tab = SAK_AddGenericListNode(*StartupTabsList, SAK_CreateGenericListNode<TabsNode>());
        tab->Location = LocationKind::Drawer;
        tab->Path = Path(place);
    }
    ASSERT_TRUE(SetUpTabs());
    SetFirstTab();
    EXPECT_THAT(Labels(), ElementsAre("*p", "gone", "q", "New tab"));
    EXPECT_THAT(Requests, IsEmpty());
    SwitchToTabNumber(3);
    EXPECT_THAT(Rows(), ElementsAre("2"));
    ShowContentStatus();
    SwitchToTabNumber(2);
    EXPECT_EQ(StatusBarBuffer1.View(), "");
    EXPECT_THAT(Requests, ElementsAre("Drawer does not exist."));
    EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(TabsTest, TabsOutliveTheirWindowWithHistoryAndSettings) {
    ThreeTabs();
    SwitchToTabNumber(2);
    Go("a");
    Prefs.ContentViewStyle = ViewList;
    OpenNewTab(0);
    LBLocation = LocationKind::SearchResults;
    SwitchToTabNumber(2);
    GetOpenTabs();
    EXPECT_EQ(Offset, 2U);
    FreeAllTabs();
    Prefs.ContentViewStyle = ViewDetails;
    ASSERT_TRUE(SetUpTabs());
    SetFirstTab();
    SwitchToTabNumber(Offset);
    ReopenTabs = 0;
    EXPECT_THAT(Labels(), ElementsAre("a", "*a", "c", "New tab"));
    EXPECT_THAT(Rows(), ElementsAre("in a"));
    EXPECT_THAT(Places(), ElementsAre("*a", "b", "start"));
    EXPECT_EQ(Prefs.ContentViewStyle, ViewList);
}

TEST_F(TabsTest, HistoryForgetsWhatLayAheadAndKeepsScrollPositions) {
    NumberedFiles("a/", 200);
    Plant({"b/1", "c/1"});
    Go("a");
    Objects.ContentList->SetTop(77);
    Go("b");
    PopulateContent2("again", Path("B"));
    Requests.clear(); // on a volume that tells cases apart there is no "B"
    Go("c");
    EXPECT_THAT(Places(), ElementsAre("*c", "b", "a", "start"));
    GoForwardInHistory();
    EXPECT_THAT(Places(), ElementsAre("*c", "b", "a", "start"));
    GoBackInHistory();
    GoBackInHistory();
    EXPECT_THAT(Places(), ElementsAre("c", "b", "*a", "start"));
    EXPECT_EQ(Objects.ContentList->Top(), 77U);
    EXPECT_EQ(HistorySelected, 2);
    Go("gone");
    EXPECT_THAT(Places(), ElementsAre("c", "b", "*a", "start")) << "what could not be shown changes nothing";
    Go("b");
    EXPECT_THAT(Places(), ElementsAre("*b", "a", "start"));
    HistoryFirst();
    EXPECT_EQ(HistoryBack(), CurrentHistory);
    EXPECT_THAT(Places(), ElementsAre("b", "a", "*start"));
    HistoryLast();
    EXPECT_EQ(HistoryForward(), CurrentHistory);
    EXPECT_THAT(Places(), ElementsAre("*b", "a", "start"));
    HistoryFirst();
    ASSERT_NE(ChooseHistory(0), nullptr);
    EXPECT_EQ(ChooseHistory(0), nullptr);
    EXPECT_EQ(ChooseHistory(9), nullptr);
    DeleteLastHistoryRefreshList();
    EXPECT_THAT(Places(), ElementsAre("*a", "start"));
    AddHistoryNode("found", "Search results", LocationKind::SearchResults);
    HandleHistory();
    EXPECT_THAT(Rows(), ElementsAre("1")) << "results are not there any more: the list stays";
    ClearHistory();
    EXPECT_EQ(HistoryFirst(), nullptr);
    EXPECT_EQ(HistoryLast(), nullptr);
}

TEST_F(TabsTest, TheFirstEntryOfAPlaceIsKnownAgainWhateverItIsCalled) {
    FreeAllTabs();
    File("a/1");
    File("b/1");
    auto tab = SAK_CreateGenericListNode<TabsNode>();
    tab->Location = LocationKind::FTPSites;
    tab->Path = "FTP Sites"; // as it is shown
    SAK_AddGenericListNode(*StartupTabsList, std::move(tab));
    ASSERT_TRUE(SetUpTabs());
    SetFirstTab();
    Go("a");
    Go("b");
    for (const int step : {2, 1}) {
        GoBackInHistory();
        EXPECT_EQ(SAK_GenericListCount(*HistoryList), 3U) << step;
    }
    EXPECT_EQ(LBLocation, LocationKind::FTPSites);
    GoForwardInHistory();
    EXPECT_EQ(CurrentPath.View(), Path("a"));
}

TEST_F(TabsTest, TabOpenedForAPlaceThatIsGoneIsClosedAgain) {
    ThreeTabs();
    SwitchToTabNumber(2);
    Objects.ContentList->Select(0, true);
    Qualifier = intuition::qualifier::Control;
    EXPECT_FALSE(GoWhereWanted(Path("gone"), [this] { return PopulateContent2("gone", Path("gone")); }));
    EXPECT_THAT(Requests, ElementsAre(testing::HasSubstr("does not exist")));
    EXPECT_THAT(Labels(), ElementsAre("a", "*b", "c", "New tab"));
    EXPECT_EQ(CurrentPath.View(), Path("b"));
    EXPECT_THAT(Rows(), ElementsAre("in b"));
    EXPECT_THAT(Objects.ContentList->SelectedRows(), ElementsAre(0U));
    Qualifier = intuition::qualifier::Control;
    EXPECT_TRUE(GoWhereWanted(Path("a"), [this] { return PopulateContent2("a", Path("a")); }));
    EXPECT_THAT(Labels(), ElementsAre("a", "b", "c", "*a", "New tab"));
}

TEST_F(TabsTest, StepToAPlaceThatIsGoneIsTakenBack) {
    Plant({"a/1", "b/1", "c/1"});
    Go("a");
    Go("b");
    std::filesystem::remove_all(Host("a"));
    GoBackInHistory();
    EXPECT_THAT(Requests, ElementsAre(testing::HasSubstr("does not exist")));
    EXPECT_EQ(CurrentPath.View(), Path("b"));
    EXPECT_THAT(Places(), ElementsAre("*b", "a", "start"));
    EXPECT_EQ(HistorySelected, 0);
    Go("c");
    EXPECT_THAT(Places(), ElementsAre("*c", "b", "a", "start"));
    HistoryFirst(); // as if "start" were on show
    GoForwardInHistory();
    EXPECT_THAT(Places(), ElementsAre("c", "b", "a", "*start"));
}

TEST_F(TabsTest, TheWayBackToAListLeavesItsPositionAlone) {
    NumberedFiles("a/", 200);
    GoToPlace("FTPSites");
    ASSERT_EQ(LBLocation, LocationKind::FTPSites);
    Go("a");
    Objects.ContentList->SetTop(77);
    GoBackInHistory();
    EXPECT_EQ(LBLocation, LocationKind::FTPSites);
    EXPECT_EQ(CurrentHistory->LBTop, 0U);
    GoForwardInHistory();
    EXPECT_EQ(Objects.ContentList->Top(), 77U);
}

TEST_F(TabsTest, HundredsOfTabsAndThousandsOfPlaces) {
    File("a/1");
    for (int at = 0; at < 10000; ++at)
        AddHistoryNode("place", Path("a" + std::to_string(at)), LocationKind::Drawer);
    EXPECT_EQ(SAK_GenericListCount(*HistoryList), 10001U);
    PopHistoryChooser();
    EXPECT_TRUE(Objects.HistoryChooser->IsUp());
    for (int at = 0; at < 300; ++at)
        OpenOn("a");
    EXPECT_EQ(TabsOpen, 302U);
    EXPECT_THAT(Places(), ElementsAre("*a", "start")) << "a history of its own";
    SwitchToTabNumber(1);
    EXPECT_EQ(HistorySelected, 0);
    EXPECT_EQ(SAK_GenericListCount(*HistoryList), 10001U);
}

} // namespace
} // namespace solvane
