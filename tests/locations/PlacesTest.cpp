#include "content/RowPictures.h"
#include "interface/Menus.h"
#include "interface/NavigationPane.h"
#include "interface/Panes.h"
#include "locations/Assigns.h"
#include "locations/Devices.h"
#include "locations/EditNode.h"
#include "locations/FTPSites.h"
#include "locations/KeptPlaces.h"
#include "locations/LayoutChange.h"
#include "locations/Navigation.h"
#include "locations/NavigationList.h"
#include "locations/PlaceRouter.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/intuition/Events.h"
#include "platform/intuition/FormRequesters.h"
#include "prefs/PrefsLists.h"
#include "tests/locations/OpenWindow.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using intuition::FormAnswer, intuition::FormSpec, testing::ElementsAre, testing::IsSupersetOf;

// The window with its Navigation pane, without a screen; lists as a first start has them.
class PlacesTest : public OpenWindow {
protected:
    PlacesTest() {
        Prefs.ShowVolumeLabelAs = 1;
        Qualifier = 0;
        OldSelected = NothingSelected;
        ProgramComplete.Clear(); // no further window is started
        EXPECT_TRUE(CreatePrefsLists());
        EXPECT_TRUE(RestoreDefaultFavorites());
        EXPECT_TRUE(GetDevices() && CopyDevicesToNavDevices() && GetAssigns());
        BuildNavigationList();
    }
    ~PlacesTest() override {
        intuition::SetFormHandler({});
        FreeNavigationList();
        FreePrefsLists();
        Qualifier = 0;
    }

    FavoritesNode& AddFavorite(std::string_view label, std::string_view path,
                               LocationKind location = LocationKind::Drawer) const {
        auto made = SAK_CreateGenericListNode<FavoritesNode>();
        made->Location = location;
        made->Name = label;
        made->Path = path;
        made->Key = "[Fav]" + std::string(path);
        FavoritesNode& node = *SAK_AddGenericListNode(*MasterFavoritesList, std::move(made));
        BuildNavigationList();
        return node;
    }
    static std::vector<std::string> PaneTexts() {
        std::vector<std::string> texts;
        for (const intuition::TreeRow& row : Objects.Navigation->Rows())
            texts.push_back(row.UserData.starts_with("[Dev]") ? "[Dev]" : row.UserData);
        texts.erase(std::unique(texts.begin(), texts.end()), texts.end()); // one stands for all devices
        return texts;
    }
    static std::string SelectedText() {
        const std::size_t row = Objects.Navigation->Selected();
        return row == intuition::NoRow ? "" : Objects.Navigation->Rows()[row].UserData;
    }
    // Answers the next dialogs in turn; each is noted.
    void Answer(std::vector<FormAnswer> answers) {
        intuition::SetFormHandler([this, answers](const FormSpec& spec) {
            Forms.push_back(spec);
            return Forms.size() <= answers.size() ? answers[Forms.size() - 1] : FormAnswer();
        });
    }

    std::vector<FormSpec> Forms;
};

TEST_F(PlacesTest, PaneHasItsSectionsInOrderAsFarAsTheyAreWanted) {
    const std::vector<std::string> all = {"Favorites",       "Workbench",      "[Fav]SYS:Utilities",
                                          "[Fav]SYS:System", "[blank]",        "Computer",
                                          "[Dev]",           "Assigns",        "[blank]",
                                          "FTPSites",        "OS4DepotRecent", "OS4DepotFull",
                                          "AminetRecent",    "AminetFull"};
    EXPECT_EQ(PaneTexts(), all);
    Prefs.ShowFavorites = Prefs.ShowFTPSites = 0;
    BuildNavigationList();
    EXPECT_THAT(PaneTexts(), ElementsAre("Computer", "[Dev]", "Assigns"));
    Prefs.ShowFTPSites = FoundFTPMount = 1;
    Prefs.ShowOS4DepotRecent = Prefs.ShowOS4DepotFull = Prefs.ShowAminetFull = 0;
    SAK_AddGenericListNode(*FTPSitesList, SAK_CreateGenericListNode<FTPSitesNode>())->Key = "[FTP]mine";
    BuildNavigationList();
    FoundFTPMount = 0;
    EXPECT_THAT(PaneTexts(), ElementsAre("Computer", "[Dev]", "Assigns", "[blank]", "FTPSites",
                                         "AminetRecent", "[FTP]mine"));
}

TEST_F(PlacesTest, WordsLeadToTheirLists) {
    File("d/file");
    AddFavorite("here", Path("d"));
    const struct {
        std::string Text;
        LocationKind Location;
        std::string Shown, Selected;
    } rows[] = {{"bookmarks", LocationKind::Bookmarks, "Bookmarks", ""},
                {"Favorites", LocationKind::Favorites, "Favorites", "Favorites"},
                {"WORKBENCH", LocationKind::Workbench, "Workbench", "Workbench"},
                {"Computer", LocationKind::Computer, "Computer", "Computer"},
                {"Assigns", LocationKind::Assigns, "Assigns", "Assigns"},
                {"FTPSites", LocationKind::FTPSites, "FTP Sites", "FTPSites"},
                {"OS4DepotFull", LocationKind::OS4Depot, "OS4Depot Full", "OS4DepotFull"},
                {"AminetRecent", LocationKind::Aminet, "Aminet Recent", "AminetRecent"},
                {"[fav]" + Path("d"), LocationKind::Drawer, Path("d"), "[Fav]" + Path("d")},
                {"[Dev]" + std::string(FindMasterDevicesNode(Volume)->DeviceName.View()),
                 LocationKind::Drawer, Volume, std::string(FindMasterDevicesNode(Volume)->Key.View())},
                {"OS4Depot", LocationKind::Drawer, Volume, // and nothing happens
                 std::string(FindMasterDevicesNode(Volume)->Key.View())}};
    for (const auto& row : rows) {
        HandleNavigationListBrowser(row.Text);
        EXPECT_EQ(LBLocation, row.Location) << row.Text;
        EXPECT_EQ(CurrentPath.View(), row.Shown) << row.Text;
        EXPECT_EQ(SelectedText(), row.Selected) << row.Text;
    }
    EXPECT_TRUE(Requests.empty());
}

TEST_F(PlacesTest, LinkOnTheDesktopHasItsOwnIcon) {
    File("desk/file");
    SoftLink("desk/link", "file");
    ASSERT_TRUE(dos::SetAssign("Desktop", dos::AssignKind::Directory, {Path("desk")}));
    GoToPlace("Workbench");
    EXPECT_EQ(IconSteps(Entry("link")).front().Path, "Desktop:link.info");
    EXPECT_TRUE(dos::SetAssign("Desktop", dos::AssignKind::Directory, {}));
}

TEST_F(PlacesTest, WhatIsGoneIsToldAndEverythingStays) {
    File("d/file");
    AddFavorite("gone", Path("gone"));
    AddFavorite("gone volume", "NoSuchVolume:a:b");
    const std::string longLabel(127, 'x');
    AddFavorite(longLabel + longLabel, Path(std::string(1010, 'x')));
    ASSERT_TRUE(GoToPlace("[Dev]" + Volume));
    const struct {
        std::string Text, Told;
    } rows[] = {{"[Fav]" + Path("gone"), "Drawer does not exist."},
                {"[Fav]NoSuchVolume:a:b", "Drawer does not exist."},
                {"[Fav]" + Path(std::string(1010, 'x')), "Drawer does not exist."},
                {"[Fav]never kept", "Could not find favorite in list."},
                {"[Dev]GONE:", "Could not find device in list."},
                {"[FTP]nobody", "Could not find FTP site in list."},
                {"nonsense", "There is no such place in the Navigation pane.\n\nnonsense"}};
    for (const auto& row : rows) {
        Requests.clear();
        HandleNavigationListBrowser(row.Text);
        EXPECT_THAT(Requests, ElementsAre(row.Told)) << row.Text;
        EXPECT_EQ(LBLocation, LocationKind::Drawer);
        EXPECT_THAT(Rows(), ElementsAre("d")) << row.Text;
        EXPECT_EQ(PathUndoBuffer.View(), Volume);
    }
    EXPECT_EQ(MasterFavoritesList->Core.Count(), 6U);
}

TEST_F(PlacesTest, AltOpensElsewhereAndLeavesThisWindowAlone) {
    ASSERT_TRUE(GoToPlace("[Dev]" + Volume));
    Qualifier = intuition::qualifier::LeftAlt | intuition::qualifier::Control;
    for (const char* text : {"Computer", "[Fav]SYS:System", "Workbench"}) {
        HandleNavigationListBrowser(text);
        EXPECT_EQ(LBLocation, LocationKind::Drawer) << text;
    }
    HandleFavorites(0);
    EXPECT_EQ(LBLocation, LocationKind::Drawer);
    EXPECT_THAT(Requests, ElementsAre("Could not open window.", "Could not open window.",
                                      "Could not open window.", "Could not open window."));
    EXPECT_TRUE(GoToPlace("Computer")) << "keys that are held for something else do not count";
    EXPECT_EQ(LBLocation, LocationKind::Computer);
}

TEST_F(PlacesTest, OnlineListsSayThatTheyComeLater) {
    HandleNavigationListBrowser("AminetFull");
    EXPECT_EQ(WhichAminet, 1);
    EXPECT_EQ(TotalNodes, 0U);
    EXPECT_EQ(StatusBarBuffer1.View(), "This place is still empty: its contents come with a later version.");
    HandleNavigationListBrowser("Favorites");
    EXPECT_EQ(StatusBarBuffer1.View(), "0/3 Selected");
    EXPECT_THAT(Rows(), ElementsAre("Workbench", "Utilities", "System"));
}

TEST_F(PlacesTest, SelectedRowIsFoundAgainAmongNewRows) {
    ASSERT_TRUE(GoToPlace("Assigns"));
    LBLocation = LocationKind::SearchResults; // has no row of its own
    AddFavorite("before it", Path("d"));
    EXPECT_EQ(SelectedText(), "Assigns");
    SelectOldRow();
    EXPECT_EQ(SelectedText(), "Assigns");
}

TEST_F(PlacesTest, PlaceOnShowIsKeptUnderTheNameThatTheUserGives) {
    File("d/file");
    ASSERT_TRUE(Scan("d"));
    ASSERT_TRUE(CreateMainMenuStrip());
    Answer({FormAnswer{1, {"", Path("d")}, 0}, FormAnswer{1, {"My drawer", Path("d")}, 0}});
    AddCurrentLocationToFavorites(AskFirst::Yes);
    ASSERT_EQ(Forms.size(), 2U) << "an empty name is told, and asked for again";
    EXPECT_THAT(Requests, ElementsAre("Value can not be empty."));
    EXPECT_EQ(Forms[0].Fields[0].Text, "d");
    EXPECT_EQ(Forms[0].Fields[1].Text, Path("d"));
    EXPECT_EQ(PaneTexts()[4], "[Fav]" + Path("d"));
    EXPECT_EQ(MenuStripObj->LookOf(MenuFirstFavorite + 3)->Label, "My drawer");
    intuition::SetFormHandler([](const FormSpec&) { return FormAnswer(); });
    AddCurrentLocationToBookmarks(AskFirst::Yes);
    EXPECT_EQ(MasterBookmarksList->Core.Count(), 0U) << "given up";
    FreeMainMenuStrip();
}

TEST_F(PlacesTest, ListsOfPlacesAreKeptByTheirNames) {
    for (const char* word : {"Computer", "AminetFull"}) {
        HandleNavigationListBrowser(word);
        AddCurrentLocationToBookmarks(AskFirst::No);
    }
    ASSERT_TRUE(Scan());
    AddCurrentLocationToBookmarks(AskFirst::No);
    const auto kept = TextsOf(*MasterBookmarksList, [](const BookmarksNode& node) {
        return std::string(node.Key.View()) + "|" + std::string(node.Path.View());
    });
    EXPECT_THAT(kept, ElementsAre("[Bkm]Computer|Computer", "[Bkm]Aminet Full|Aminet Full",
                                  "[Bkm]" + Volume + "|" + Volume));
    HandleBookmarks(1);
    EXPECT_EQ(LBLocation, LocationKind::Aminet);
    EXPECT_EQ(WhichAminet, 1);
    HandleBookmarks(2);
    EXPECT_EQ(CurrentPath.View(), Volume);
    HandleBookmarks(3);
    EXPECT_TRUE(Requests.empty());
    HandleNavigationListBrowser("Bookmarks");
    EXPECT_EQ(Rows().size(), 3U);
    for (const LocationKind location : {LocationKind::Bookmarks, LocationKind::Favorites,
                                        LocationKind::SearchResults, LocationKind::Archive}) {
        LBLocation = location;
        AddCurrentLocationToBookmarks(AskFirst::No);
        AddCurrentLocationToFavorites(AskFirst::No);
    }
    EXPECT_EQ(Requests.size(), 8U);
    EXPECT_EQ(Requests[0], "Can not bookmark current location.");
    EXPECT_EQ(Requests[1], "Can not add current location to Favorites.");
    EXPECT_EQ(MasterBookmarksList->Core.Count(), 3U);
}

TEST_F(PlacesTest, RenamedEntriesHaveNewKeys) {
    FavoritesNode& drawer = AddFavorite("old", Path("d"));
    Answer({FormAnswer{1, {"new", Volume + std::string(1100, 'x')}, 0},
            FormAnswer{1, {"new", Host("e").string() + "/"}, 0}, FormAnswer{1, {"Online"}, 0}});
    EXPECT_TRUE(RenameFavorites(drawer));
    EXPECT_THAT(Requests, ElementsAre("Path is too long."));
    EXPECT_EQ(drawer.Key.View(), "[Fav]" + Path("e"));
    FavoritesNode& online = AddFavorite("Aminet Recent", "Aminet Recent", LocationKind::Aminet);
    EXPECT_TRUE(RenameFavorites(online));
    EXPECT_EQ(online.Name.View(), "Online");
    HandleFavorites(4);
    EXPECT_EQ(WhichAminet, 0) << "a new name does not lead elsewhere";
    EXPECT_FALSE(RenameFavorites(online)) << "given up";
    AddCurrentLocationToBookmarks(AskFirst::No);
    BookmarksNode& bookmark = *SAK_LastGenericListNode(*MasterBookmarksList);
    Forms.clear();
    Answer({FormAnswer{1, {"kept"}, 0}});
    EXPECT_TRUE(RenameBookmarks(bookmark));
    EXPECT_EQ(bookmark.Key.View(), "[Bkm]kept");
    HandleNavigationListBrowser("Bookmarks");
    FreeContentList(1);
    CopyToMasterBookmarksList();
    EXPECT_EQ(MasterBookmarksList->Core.Count(), 0U);
}

TEST_F(PlacesTest, SelectedEntriesAreRenamedInTheirListPaneAndMenu) {
    AddFavorite("mine", Path("d"));
    EXPECT_FALSE(RenameSelectedPlaces()) << "no list of kept places is on show";
    HandleNavigationListBrowser("Favorites");
    Objects.ContentList->SelectAll();
    Answer({FormAnswer(), FormAnswer{1, {"tools", Path("e")}, 0}});
    EXPECT_TRUE(RenameSelectedPlaces());
    EXPECT_EQ(Forms.size(), 4U) << "one given up is no end";
    EXPECT_THAT(Rows(), ElementsAre("Workbench", "tools", "System", "mine"));
    EXPECT_THAT(PaneTexts(), IsSupersetOf({"[Fav]" + Path("e"), std::string("[Fav]SYS:System")}));
    EXPECT_EQ(SAK_GetGenericListNode(*MasterFavoritesList, 1)->Name.View(), "tools");
    EXPECT_NE(FindMasterFavoritesNode(Path("e")), nullptr);
    HandleNavigationListBrowser("Computer");
    AddCurrentLocationToBookmarks(AskFirst::No);
    HandleNavigationListBrowser("Bookmarks");
    Objects.ContentList->Select(0, true);
    Forms.clear();
    Answer({FormAnswer{1, {"disks"}, 0}});
    EXPECT_TRUE(RenameSelectedPlaces());
    EXPECT_THAT(Rows(), ElementsAre("disks"));
    EXPECT_EQ(SAK_FirstGenericListNode(*MasterBookmarksList)->Key.View(), "[Bkm]disks");
    HandleBookmarks(0);
    EXPECT_EQ(LBLocation, LocationKind::Computer);
}

TEST_F(PlacesTest, ChangesMadeOnShowReplaceTheList) {
    AddFavorite("mine", Path("d"));
    HandleNavigationListBrowser("Favorites");
    SAK_DeleteGenericListNode(*ContentList, SAK_FirstGenericListNode(*ContentList));
    CopyToMasterFavoritesList();
    BuildNavigationList();
    EXPECT_THAT(PaneTexts(), IsSupersetOf({std::string("[Fav]SYS:Utilities"), "[Fav]" + Path("d")}));
    EXPECT_EQ(MasterFavoritesList->Core.Count(), 3U);
}

TEST_F(PlacesTest, SitesAreMountedUnderTheirUserWithoutHisPassword) {
    FTPSitesNode site;
    site.Address = "ftp.example.org";
    site.Port = 2121;
    EXPECT_EQ(MountPathOf(site).View(), "FTPMount:@ftp.example.org,2121");
    site.Username = "me";
    site.Password = "secret";
    site.RemoteDrawer = "pub/a";
    EXPECT_EQ(MountPathOf(site).View(), "FTPMount:me@ftp.example.org,2121/pub/a");
    site.Anonymous = 1;
    EXPECT_EQ(MountPathOf(site).View(), "FTPMount:ftp.example.org,2121/pub/a");
}

} // namespace
} // namespace solvane
