#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Info.h"
#include "platform/dos/MountFile.h"
#include "platform/dos/Variables.h"
#include "platform/exec/RuntimeDirectory.h"
#include "tests/platform/dos/DosTest.h"

#include <poll.h>

namespace {

// A user with a home, configuration, data and runtime drawer in a temporary tree.
class VolumesTest : public testing::Test {
protected:
    VolumesTest() {
        for (const auto& [name, drawer] :
             {std::pair{"HOME", "home"}, {"XDG_DATA_HOME", "home/data"}, {"XDG_CONFIG_HOME", "home/config"}})
            ::setenv(name, Tree.Path(drawer).c_str(), 1);
        Tree.Drawer("home/Desktop");
        Tree.Write("skeleton/S/Startup", "script");
        Tree.Write("skeleton/Prefs/Env-Archive/x", "");
        Tree.Write("program/Tools/LhA", "tool");
        std::filesystem::permissions(Tree.Path("skeleton/S/Startup"), std::filesystem::perms::owner_read);
        EXPECT_TRUE(exec::UseRuntimeDirectory(Tree.Path("run")));
    }
    ~VolumesTest() override {
        exec::UseRuntimeDirectory("");
        dos::Host() = dos::RealHost();
        dos::Places() = {};
        dos::ResetVolumeTable();
    }

    [[nodiscard]] bool Begin() { return dos::SetUpSystem({Tree.Path("skeleton"), Tree.Path("program")}); }

    TempTree Tree;
};

TEST_F(VolumesTest, FirstStartMakesTheWholeSystem) {
    ASSERT_TRUE(Begin()) << dos::SetUpProblem();
    EXPECT_EQ(dos::SetUpProblem(), "");
    const std::string home = Tree.Path("home");
    const std::pair<std::string, std::string> cases[] = {
        {"SYS:", "Workbench:"},
        {"DH0:S/Startup", "Workbench:S/Startup"},
        {"s:startup", "Workbench:S/Startup"},
        {"C:", "Workbench:C"},
        {"LIBS:", "Workbench:Libs"},
        {"DH1:", "Home:"},
        {"Desktop:", "Home:Desktop"},
        {"Documents:", "error 205"}, // not there yet
        {"RAM:", "RAM Disk:"},
        {"T:", "RAM Disk:T"},
        {"ENV:", "RAM Disk:Env"},
        {"ENVARC:", "Home:config/solvane/Env-Archive"},
        {"APPDIR:LhA", "Host:" + Tree.Path("program/Tools/LhA").substr(1)},
        {"PROGDIR:", "Host:" + Tree.Path("program").substr(1)},
        {"", "Workbench:"},
        {"Host:" + home.substr(1), "Host:" + home.substr(1)},
    };
    for (const auto& [path, found] : cases)
        EXPECT_EQ(Find(path), found) << path;
    EXPECT_EQ(dos::FromHostPath(home + "/data/solvane/Workbench/C"), "Workbench:C");
    for (const auto& [typed, path] :
         {std::pair{"~", "Home:"}, {"~/", "Home:"}, {"~/a/../Music", "Home:Music"}, {"~root", "~root"}})
        EXPECT_EQ(dos::FromHostPath(typed), path) << typed;
    Tree.Drawer("here/~");
    EXPECT_EQ(dos::FromHostPath("~", Tree.Path("here")), "Host:" + Tree.Path("here/~").substr(1));
    EXPECT_EQ(dos::FromHostPath("~/x", home), "Home:x");
    EXPECT_EQ(dos::DevNameFromLock(dos::Lock("SYS:"), dos::DevName::DeviceOnly), "DH0");
    EXPECT_EQ(dos::Info("SYS:")->DosType, dos::Volumes().front().DosType);
    std::filesystem::create_directory(home + "/Documents");
    EXPECT_EQ(Find("Documents:"), "Home:Documents");
    EXPECT_TRUE(dos::WriteWhole("S:Startup", "changed")); // the user's own, though installed read-only
    for (const dos::AssignInfo& assign : dos::Assigns())
        EXPECT_NE(assign.Name, "PROGDIR");
    EXPECT_TRUE(dos::SetVar("AppPaths/Solvane", "x", dos::VarScope::GlobalSaved));
    EXPECT_TRUE(Tree.Exists("home/config/solvane/Env-Archive/AppPaths/Solvane"));
}

TEST_F(VolumesTest, LaterStartsKeepWhatTheUserHasMade) {
    Tree.Write("home/data/solvane/Workbench/S/Own", "mine");
    ASSERT_TRUE(Begin()) << dos::SetUpProblem();
    EXPECT_EQ(Tree.Read("home/data/solvane/Workbench/S/Own"), "mine");
    EXPECT_FALSE(Tree.Exists("home/data/solvane/Workbench/S/Startup"));
}

TEST_F(VolumesTest, CommandsOfTheUserComeBeforeThoseThatAreInstalled) {
    Tree.Plant({"program/C/List", "program/C/Copy"});
    ASSERT_TRUE(Begin());
    Tree.Write("home/data/solvane/Workbench/C/List", "");
    EXPECT_EQ(Find("C:List"), "Workbench:C/List");
    EXPECT_EQ(Find("C:Copy"), "Host:" + Tree.Path("program/C/Copy").substr(1));
}

TEST_F(VolumesTest, StartThatFailsLeavesNothingHalfMade) {
    dos::Host().Write = Failing<ENOSPC>();
    EXPECT_EQ(Refusal(Begin()), dos::ErrorDiskFull);
    EXPECT_NE(dos::SetUpProblem(), "");
    EXPECT_TRUE(std::filesystem::is_empty(Tree.Path("home/data/solvane")));
}

TEST_F(VolumesTest, UserDirectoriesComeFromTheDesktopsList) {
    Tree.Drawer("home/Schreibtisch \"x");
    Tree.Write("home/config/user-dirs.dirs", "# comment\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch \\\"x\"\n"
                                             "  XDG_MUSIC_DIR=\"" +
                                                 Tree.Path("program") +
                                                 "/\"\n"
                                                 "XDG_VIDEOS_DIR=\"$HOME/\"\nXDG_PICTURES_DIR=broken\n");
    Tree.Plant({"home/Videos/", "home/Pictures/"});
    ASSERT_TRUE(Begin()) << dos::SetUpProblem();
    EXPECT_EQ(Find("Desktop:"), "Home:Schreibtisch \"x");
    EXPECT_EQ(Find("Music:"), "Host:" + Tree.Path("program").substr(1));
    EXPECT_EQ(Find("Videos:"), "error 218"); // the home drawer means none
    EXPECT_EQ(Find("Pictures:"), "Home:Pictures");
}

TEST_F(VolumesTest, MountsOfTheUserAreAddedAndSlipsAreTold) {
    Tree.Plant({"home/Amiga/Games/Turrican", "more/Lemmings"});
    Tree.Write("home/config/solvane/mounts.toml",
               "[[volume]]\nname = \"Work\"\npath = \"~/Amiga\"\nnames = \"fold\"\nmetadata = \"uaem\"\n"
               "[[assign]]\nname = \"Games\"\npaths = [\"Work:Games\", \"" +
                   Tree.Path("more") +
                   "\"]\n"
                   "[[volume]]\nname = \"Gone\"\npath = \"/no/such/drawer\"\n"
                   "[[volume]]\nname = \"Home\"\npath = \"/\"\n"
                   "[[volume]]\nname = \"Odd\"\npath = \"/\"\nnames = \"loose\"\n"
                   "[[volume]]\nname = \"a/b\"\npath = \"/\"\n"
                   "[[assign]]\nname = \"Empty\"\n[[assign]]\nname = \"T\"\npath = \"Work:\"\ncolour = 1\n");
    ASSERT_TRUE(Begin());
    EXPECT_EQ(Find("work:GAMES/turrican"), "Work:Games/Turrican");
    EXPECT_EQ(Find("DH3:Games"), "Work:Games");
    EXPECT_EQ(Find("Games:Lemmings"), "Host:" + Tree.Path("more/Lemmings").substr(1));
    EXPECT_EQ(Find("Gone:"), "error 218");
    EXPECT_EQ(Find("T:"), "RAM Disk:T");
    const std::string problem = dos::SetUpProblem();
    EXPECT_EQ(std::count(problem.begin(), problem.end(), '\n'), 5) << problem;
    for (const std::string_view part : {"line 9: volume \"Gone\"", "\"Home\"", "\"loose\"", "\"a/b\"",
                                        "at least one path", "unknown key \"colour\""})
        EXPECT_NE(problem.find(part), std::string::npos) << part << " in\n" << problem;
}

TEST_F(VolumesTest, RelabelledVolumesAreCalledSoFromThenOn) {
    const std::string file = "home/config/solvane/mounts.toml";
    Tree.Drawer("home/Amiga");
    Tree.Write("dotfiles", "# \u00E4 mine\r\n[[volume]] # ä\npath = \"~/Amiga\"\nname = 'Wörk:' # its name");
    Tree.Drawer("home/config/solvane");
    Tree.Link(file, Tree.Path("dotfiles"));
    ASSERT_TRUE(Begin()) << dos::SetUpProblem();
    const dos::FileLock lock = dos::Lock("Home:Amiga");
    ASSERT_TRUE(dos::Relabel("wörk:", "My \"Work\\"));
    ASSERT_TRUE(dos::Relabel("DH1", "Things"));
    ASSERT_TRUE(dos::Relabel("Things", "Stuff"));
    ASSERT_TRUE(dos::Relabel("Workbench:", "System"));
    EXPECT_EQ(Tree.Read("dotfiles"),
              "# \u00E4 mine\r\n[[volume]] # ä\npath = \"~/Amiga\"\nname = \"My \\\"Work\\\\\" # its name\n\n"
              "[[label]]\nvolume = \"Home\"\nname = \"Stuff\"\n\n"
              "[[label]]\nvolume = \"Workbench\"\nname = \"System\"\n");
    for (int start = 0; start < 2; ++start) {
        EXPECT_EQ(Find("DH3:"), "My \"Work\\:");
        EXPECT_EQ(Find("Home:"), "error 218");
        EXPECT_EQ(Find("ENVARC:"), "Stuff:config/solvane/Env-Archive");
        EXPECT_EQ(Find("C:"), "System:C");
        EXPECT_EQ(dos::NameFromLock(lock), "Stuff:Amiga"); // made before it was called so
        dos::ResetVolumeTable();
        ASSERT_TRUE(Begin()) << dos::SetUpProblem();
    }
    const std::tuple<std::string, std::string, long> refused[] = {
        {"Nowhere", "x", dos::ErrorDeviceNotMounted},
        {"SYS", "x", dos::ErrorDeviceNotMounted},
        {"DH1", "", dos::ErrorInvalidComponentName},
        {"DH1", "a:b", dos::ErrorInvalidComponentName},
        {"DH1", "a/b", dos::ErrorInvalidComponentName},
        {"DH1", " a\n", dos::ErrorInvalidComponentName},
        {"DH1", std::string(101, 'a'), dos::ErrorInvalidComponentName},
        {"DH1", "ram disk", dos::ErrorObjectExists},
        {"DH1", "DH0", dos::ErrorObjectExists},
        {"DH1", "Sys", dos::ErrorObjectExists},
        {"DH1", "nil", dos::ErrorObjectExists}};
    for (const auto& [volume, name, error] : refused)
        EXPECT_EQ(Refusal(dos::Relabel(volume, name)), error) << volume << " to " << name;
    Tree.Write("dotfiles", "label = 7\n"); // no place for another label
    EXPECT_EQ(Refusal(dos::Relabel("DH1", "x")), dos::ErrorObjectWrongType);
    EXPECT_EQ(Find("Stuff:"), "Stuff:");
    EXPECT_EQ(Tree.Read("dotfiles"), "label = 7\n");
}

TEST_F(VolumesTest, NamesThatAreEditedGoToThePlaceTheyStandBy) {
    const std::string file = "home/config/solvane/mounts.toml";
    const auto row = [](const std::string& name, const std::string& rest) {
        return "[[volume]]\nname = \"" + name + "\"\npath = " + rest + "\n";
    };
    const std::string rest = "[[assign]]\nname = \"Mine\"\npath = \"~\"\n"
                             "[[label]]\nvolume = \"Home\"\nname = \"Host\"\n";
    for (const char* drawer : {"home/a", "home/b"})
        Tree.Drawer(drawer);
    const auto mounts = [&](const std::string& a, const std::string& b, const std::string& c) {
        return row(a, "\"~/a/\"") + row(b, "\"~/b/\"\ndevice = \"B0\"") + row(c, "\"~/b\"") + rest;
    };
    Tree.Write(file, mounts("A", "B", "Third"));
    ASSERT_TRUE(Begin());
    EXPECT_EQ(dos::SetUpProblem(), "mounts.toml: Host: there is already a volume or assign \"Host\"");
    EXPECT_EQ(Find("DH2:"), "DH2:");
    Tree.Write(file, mounts("A2", "B2", "Fourth") + row("Not yet", "\"~\""));
    std::vector<std::string> taken;
    for (const dos::VolumeRename& each : dos::TakeNewNames())
        taken.push_back(each.Before + " " + each.Now);
    EXPECT_EQ(taken, (std::vector<std::string>{"A A2", "B B2"})) << "Third: is not alone at its place";
    for (const auto& [before, now] : {std::pair{"A2", "A3"}, {"B2", "B3"}})
        EXPECT_TRUE(dos::Relabel(before, now)) << before;
    EXPECT_FALSE(dos::Relabel("A3", "Not yet"));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectExists);
    EXPECT_EQ(Tree.Read(file), mounts("A3", "B3", "Fourth") + row("Not yet", "\"~\""));
}

TEST_F(VolumesTest, BrokenMountFileLeavesTheRestAtWork) {
    Tree.Write("home/config/solvane/mounts.toml", "[[volume]]\nname = \"Work\npath");
    ASSERT_TRUE(Begin());
    EXPECT_NE(dos::SetUpProblem().find("mounts.toml, line 2"), std::string::npos) << dos::SetUpProblem();
    EXPECT_EQ(Find("SYS:"), "Workbench:");
}

TEST_F(VolumesTest, AssignsOfTheMountFileAreBoundAsItSays) {
    Tree.Drawer("home/Amiga/Games");
    Tree.Write("home/config/solvane/mounts.toml",
               "[[volume]]\nname = \"Work:\"\npath = \"~/Amiga\"\ndevice = \"QDH0\"\n"
               "[[volume]]\nname = \"Other\"\npath = \"~/Amiga\"\n"
               "[[assign]]\nname = \"Late\"\npath = \"Work:Games\"\nbind = \"late\"\n"
               "[[assign]]\nname = \"Path\"\npath = \"~/Amiga/Games\"\nbind = \"path\"\n"
               "[[assign]]\nname = \"C\"\npaths = [\"SYS:C\", \"Work:C\"]\n"); // the user's instead of ours
    ASSERT_TRUE(Begin());
    EXPECT_EQ(dos::SetUpProblem(), "");
    EXPECT_EQ(Find("Late:"), "Work:Games");
    EXPECT_EQ(Find("Path:"), "Work:Games");
    EXPECT_EQ(Find("QDH0:"), "Work:");
    EXPECT_EQ(Find("DH3:"), "Other:");
    Tree.Write("home/Amiga/C/Own", "");
    EXPECT_EQ(Find("C:Own"), "Work:C/Own");
    std::filesystem::rename(Tree.Path("home/Amiga/Games"), Tree.Path("home/Amiga/Old"));
    EXPECT_EQ(Find("Late:"), "Work:Old");
    EXPECT_EQ(Find("Path:"), "error 205");
}

TEST(MountFileTest, FaultsAreToldWithTheirLineAndTheRestCounts) {
    const std::string good = "[[assign]]\nname = \"Good\"\npath = \"X:\"\n"; // three lines
    const std::pair<std::string, std::string> cases[] = {
        {"[[assign]]\nname = 5\npath = \"X:\"", "line 5: name is a text"},
        {"[[assign]]\nname = \"A/B\"\npath = \"X:\"", "line 4: \"A/B\" cannot stand before a colon"},
        {"[[assign]]\nname = \"a\\u0000\"\npath = \"X:\"", "cannot stand before a colon"},
        {"[[assign]]\nname = \"" + std::string(101, 'x') + "\"\npath = \"X:\"", "cannot stand"},
        {"[[assign]]\nname = \"A\"\npath = \"relative\"", "line 6: \"relative\" is no full path"},
        {"[[assign]]\nname = \"A\"\npath = \"\"", "is no full path"},
        {"[[assign]]\nname = \"A\"\npaths = [\"X:\", 1]", "a path is a text"},
        {"[[assign]]\nname = \"A\"\npaths = \"X:\"", "write paths = ["},
        {"[[assign]]\nname = \"GOOD\"\npath = \"X:\"", "line 4: the name \"GOOD\" stands here twice"},
        {"[[assign]]\nname = \"A\"\nbind = \"now\"\npath = \"X:\"", "\"late\" or \"path\", not \"now\""},
        {"[[assign]]\nname = \"A\"\nbind = \"path\"\npaths = [\"X:\", \"Y:\"]", "has one path only"},
        {"[[volume]]\nname = \"V\"\npath = \"Work:\"", "path of a host drawer"},
        {"[[volume]]\nname = \"V\"\npath = \"/\"\ndevice = \"v\"", "the name \"v\" stands here twice"},
        {"[[volume]]\nname = \"V\"\npath = \"/\"\nnames = 1", "names is a text"},
        {"[[volumes]]\nname = \"V\"", "unknown key \"volumes\""},
        {"[volume]\nname = \"V\"", "write [[volume]]"},
        {"volume = [1]", "write [[volume]]"},
    };
    for (const auto& [text, problem] : cases) {
        const bool isKey = text.starts_with("volume =");
        const dos::MountFile file =
            dos::ParseMountFile(isKey ? text + "\n" + good : good + text + "\n", "/home/u");
        ASSERT_EQ(file.Problems.size(), 1u) << text;
        EXPECT_NE(file.Problems[0].find(problem), std::string::npos) << text << "\n" << file.Problems[0];
        EXPECT_EQ(file.Assigns.size(), 1u) << text;
        EXPECT_TRUE(file.Volumes.empty()) << text;
    }
}

TEST(MountFileTest, SlipsOfThePenBreakNothing) {
    for (const std::string_view text :
         {"[\\assign]]", "[[assign]]\nn\xC3\xA4me = 1", "\xC3\xA4", "[\xC8\xB7]", "a = \xFF",
          "[[assign]]\nname = \"A", "a = 1\na = 2", "= 1", "[]", "a = {b = 1,}"}) {
        const dos::MountFile file = dos::ParseMountFile(text, "/");
        EXPECT_EQ(file.Problems.size(), 1u) << text;
        EXPECT_EQ(file.Problems.front().rfind("mounts.toml, line ", 0), 0u) << text;
    }
}

TEST(MountFileTest, FilesWithoutMeasureAreBounded) {
    std::string volumes;
    for (int i = 0; i < 1000; ++i)
        volumes += "[[volume]]\nname = \"V" + std::to_string(i) + "\"\npath = \"/\"\n";
    EXPECT_EQ(dos::ParseMountFile(volumes, "/").Volumes.size(), dos::MostMountRows);
    std::string faults;
    for (int i = 0; i < 400; ++i)
        faults += "[[assign]]\nname = \"" + std::string(1000, '\\') + "\"\n";
    EXPECT_LE(dos::ParseMountFile(faults, "/").Problems.size(), 101u);
    std::string paths = "[[assign]]\nname = \"A\"\npaths = [";
    for (int i = 0; i < 100; ++i)
        paths += "\"X:\",";
    const dos::MountFile file = dos::ParseMountFile(paths + "]\n", "/");
    EXPECT_TRUE(file.Assigns.empty());
    EXPECT_EQ(file.Problems.size(), 1u);
    EXPECT_EQ(dos::ParseMountFile("a = " + std::string(100000, '['), "/").Problems.size(), 1u);
}

class VolumeNamesTest : public DosTest {};

TEST_F(VolumeNamesTest, BadOrTakenNamesAreRefused) {
    struct Case {
        std::string Device, Volume, Root;
        long Error;
    };
    for (const Case& row : {Case{"td0", "B", Tree.Root(), 203},
                            {"NIL", "B", Tree.Root(), 203},
                            {"B:", "B", Tree.Root(), 210},
                            {"B", "", Tree.Root(), 210},
                            {"B", "B", "relative", 210},
                            {"B", "B", Tree.Path("none"), 205},
                            {"B", "B", "/dev/null", 212}}) {
        EXPECT_EQ(Refusal(dos::AddVolume({.Device = row.Device, .Volume = row.Volume, .HostRoot = row.Root})),
                  row.Error)
            << row.Device << " " << row.Volume << " " << row.Root;
    }
}

} // namespace
