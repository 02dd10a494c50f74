#include "sak/FilenameSupport.h"

#include "tests/platform/dos/DosTest.h"

namespace solvane {
namespace {

TEST(Filenames, SplitIntoDrawerAndFile) {
    struct Row {
        std::string_view Path, Drawer, File;
    };
    for (const Row& row :
         {Row{"", "", ""}, Row{"a", "", "a"}, Row{"Work:", "Work:", ""}, Row{"Work:a", "Work:", "a"},
          Row{"Work:a/b", "Work:a", "b"}, Row{"Work:a/b/", "Work:a/b", ""}, Row{"a/b", "a", "b"},
          Row{"/a", "/", "a"}, Row{":a", ":", "a"}, Row{"RAM Disk:a b/c.info", "RAM Disk:a b", "c.info"}}) {
        Text<1024> drawer = "old";
        Text<128> file = "old";
        SAK_SplitFilename(row.Path, drawer, file);
        EXPECT_EQ(drawer.View(), row.Drawer) << row.Path;
        EXPECT_EQ(file.View(), row.File) << row.Path;
    }
}

TEST(Filenames, SplitIntoTheirOwnInput) {
    Text<1024> path = "Work:a/b";
    Text<128> file;
    SAK_SplitFilename(path, path, file);
    EXPECT_EQ(path.View(), "Work:a");
    EXPECT_EQ(file.View(), "b");
    Text<1024> drawer;
    file = "a/b";
    SAK_SplitFilename(file, drawer, file);
    EXPECT_EQ(drawer.View(), "a");
    EXPECT_EQ(file.View(), "b");
}

TEST(Filenames, SplitCutsTheFileAtAWholeCharacter) {
    Text<1024> drawer;
    Text<128> file;
    SAK_SplitFilename("Work:" + std::string(126, 'n') + "\xC3\xA4", drawer, file);
    EXPECT_EQ(file.Size(), 126U);
}

TEST(Filenames, JoinWithOneSlashWhereOneIsNeeded) {
    struct Row {
        std::string_view Drawer, File, Whole;
    };
    for (const Row& row : {Row{"", "a", "a"}, Row{"Work:", "a", "Work:a"}, Row{"Work:a", "b", "Work:a/b"},
                           Row{"Work:a/", "b", "Work:a/b"}, Row{"a", "b/c", "a/b/c"}}) {
        Text<1024> out = "old";
        EXPECT_TRUE(SAK_JoinFilename(out, row.Drawer, row.File));
        EXPECT_EQ(out.View(), row.Whole);
    }
}

TEST(Filenames, JoinRefusesWhatDoesNotFit) {
    Text<1024> out = "old";
    const std::string drawer(1000, 'd');
    EXPECT_TRUE(SAK_JoinFilename(out, drawer, std::string(22, 'f')));
    EXPECT_EQ(out.Size(), 1023U);
    EXPECT_FALSE(SAK_JoinFilename(out, drawer, std::string(23, 'f')));
    EXPECT_TRUE(out.Empty());
    EXPECT_EQ(dos::IoErr(), dos::ErrorLineTooLong);
    EXPECT_FALSE(SAK_JoinFilename(out, std::string(2000, 'd'), "f"));
}

TEST(Filenames, DeviceRoots) {
    struct Row {
        std::string_view Path, Root, Rest;
        bool HasRoot, HasRest;
    };
    for (const Row& row :
         {Row{"Work:a/b", "Work:", "a/b", true, true}, Row{"Work:", "Work:", "", true, false},
          Row{"a/b", "a/b", "", false, false}, Row{"a:b:", "a:", "b:", true, true}}) {
        Text<1024> root;
        Text<128> rest = "old";
        EXPECT_EQ(SAK_GetDeviceRoot(row.Path, root), row.HasRoot);
        EXPECT_EQ(root.View(), row.Root);
        EXPECT_EQ(SAK_RemoveDeviceRoot(row.Path, rest), row.HasRest);
        EXPECT_EQ(rest.View(), row.Rest);
    }
    EXPECT_TRUE(SAK_IsDeviceRoot("Work:"));
    EXPECT_FALSE(SAK_IsDeviceRoot("Work:a"));
}

TEST(Filenames, ParentsTakeOneTrailingSlashOffThePath) {
    struct Row {
        std::string_view Path, Left, Parent;
    };
    for (const Row& row : {Row{"Work:a/b/", "Work:a/b", "Work:a"}, Row{"Work:a/b", "Work:a/b", "Work:a"},
                           Row{"Work:a", "Work:a", "Work:"}, Row{"Work:", "Work:", "Work:"},
                           Row{"a", "a", ""}, Row{"", "", ""}}) {
        Text<1024> path = row.Path;
        Text<1024> parent;
        SAK_GetParent(path, parent);
        EXPECT_EQ(path.View(), row.Left);
        EXPECT_EQ(parent.View(), row.Parent);
    }
}

TEST(Filenames, Extensions) {
    struct Row {
        std::string_view Name, Extension, Rest;
        bool Info;
    };
    for (const Row& row :
         {Row{"a.info", ".info", "a", true}, Row{".info", ".info", "", true},
          Row{"a.txt.INFO", ".INFO", "a.txt", true}, Row{"info", "", "info", false},
          Row{"a.info2", ".info2", "a", false}, Row{"a.", ".", "a", false}, Row{"", "", "", false}}) {
        Text<128> extension = "old";
        Text<128> rest = "old";
        EXPECT_EQ(SAK_GetFileExtension(row.Name, extension), !row.Extension.empty()) << row.Name;
        EXPECT_EQ(extension.View(), row.Extension);
        EXPECT_EQ(SAK_GetFileNoExtension(row.Name, rest), !row.Extension.empty());
        EXPECT_EQ(rest.View(), row.Rest);
        EXPECT_EQ(SAK_IsInfoFile(row.Name), row.Info);
    }
}

// Two volumes of one name over a tree of their own: "One" and "Two" are drawers of it.
class OnDisk : public DosTest {
protected:
    OnDisk() {
        for (const std::string volume : {"One", "Two"}) {
            Tree.Drawer(volume + "/drawer");
            Tree.Write(volume + "/file", "12345");
            EXPECT_TRUE(
                dos::AddVolume({.Device = "SAK" + volume, .Volume = "Twin", .HostRoot = Tree.Path(volume)}));
        }
        Tree.Link("One/linkfile", "file");
        Tree.Link("One/linkdrawer", "drawer");
        Tree.Link("One/dangling", "nothing");
    }
};

TEST_F(OnDisk, FileTestsTellWhatAPathLeadsTo) {
    struct Row {
        std::string_view Path;
        bool File, Drawer;
        std::int64_t Size;
    };
    for (const Row& row : {Row{"SAKOne:file", true, false, 5}, Row{"SAKOne:drawer", false, true, -1},
                           Row{"SAKOne:", false, true, -1}, Row{"SAKOne:nothing", false, false, 0},
                           Row{"SAKOne:linkfile", true, false, 5}, Row{"SAKOne:linkdrawer", false, true, -1},
                           Row{"SAKOne:dangling", false, false, 0}, Row{"SAKNone:file", false, false, 0}}) {
        EXPECT_EQ(SAK_FileExists(row.Path), row.File) << row.Path;
        EXPECT_EQ(SAK_IsFileOrDrawer(row.Path), row.File) << row.Path;
        EXPECT_EQ(SAK_DrawerExists(row.Path), row.Drawer) << row.Path;
        EXPECT_EQ(SAK_GetFileSize(row.Path), row.Size) << row.Path;
    }
}

TEST_F(OnDisk, DatesAreThoseOfFilesOnly) {
    Text<35> text = "old";
    EXPECT_EQ(SAK_GetFileDate("SAKOne:nothing", "%Y", text), 0U);
    EXPECT_EQ(text.View(), "old");
    EXPECT_GT(SAK_GetFileDate("SAKOne:file", "%Y", text), 1000000000U);
    EXPECT_EQ(text.Size(), 4U);
    EXPECT_GT(SAK_GetFileDateJulian("SAKOne:file", text), 1000000000U);
    EXPECT_GE(std::stoi(text.CStr()), 1);
    EXPECT_LE(std::stoi(text.CStr()), 366);
    EXPECT_EQ(SAK_GetFileDate("SAKOne:drawer", "%Y", text), 0U);
    EXPECT_TRUE(text.Empty());
}

TEST_F(OnDisk, VolumeNamesEndInOneColon) {
    Text<128> name;
    EXPECT_TRUE(SAK_GetNameFromLock("SAKOne:", name));
    EXPECT_EQ(name.View(), "Twin:");
    EXPECT_FALSE(SAK_GetNameFromLock("SAKOne:nothing", name));
}

TEST_F(OnDisk, SaferNamesLeadBackToTheirObject) {
    Text<1024> name;
    for (const char* path : {"SAKOne:drawer", "SAKTwo:drawer"}) {
        const dos::FileLock lock = dos::Lock(path);
        ASSERT_TRUE(SAK_SaferNameFromLockVolumeFromDevice(lock, name));
        EXPECT_TRUE(dos::SameLock(dos::Lock(name), lock)) << name.View();
    }
    EXPECT_FALSE(SAK_SaferNameFromLockVolumeFromDevice(dos::FileLock(), name));
    EXPECT_TRUE(name.Empty());
}

TEST_F(OnDisk, AnAmbiguousVolumeIsNamedByItsDevice) {
    Text<1024> first, second;
    ASSERT_TRUE(SAK_SaferNameFromLockDeviceFromVolume(dos::Lock("SAKOne:drawer"), first));
    ASSERT_TRUE(SAK_SaferNameFromLockDeviceFromVolume(dos::Lock("SAKTwo:drawer"), second));
    EXPECT_TRUE(first == "Twin:drawer" || second == "Twin:drawer") << first.View() << second.View();
    EXPECT_TRUE(first == "SAKOne:drawer" || second == "SAKTwo:drawer") << first.View() << second.View();
}

TEST_F(OnDisk, VolumesAreTheSameByTheirRoots) {
    EXPECT_TRUE(SAK_SaferSameVolume("SAKOne:file", "SAKOne:drawer/x"));
    EXPECT_FALSE(SAK_SaferSameVolume("SAKOne:file", "SAKTwo:file"));
    EXPECT_TRUE(SAK_SaferSameVolume("SAKOne:file", "SAKNone:file"))
        << "what cannot be locked is not told apart";
}

} // namespace
} // namespace solvane
