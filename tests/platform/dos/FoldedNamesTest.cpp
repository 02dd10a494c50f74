#include "platform/dos/Copy.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Files.h"
#include "tests/platform/dos/DosTest.h"

#include <atomic>
#include <chrono>
#include <ctime>
#include <sys/stat.h>
#include <thread>

namespace {

int Walks = 0; // of directories, counted at the host call

class FoldedNamesTest : public DosTest {
protected:
    FoldedNamesTest() : DosTest(dos::NameRule::Fold) {}

    void CountWalks() {
        Walks = 0;
        Calls().Getdents = [](int drawer, void* buffer, std::size_t size) {
            ++Walks;
            return dos::RealHost().Getdents(drawer, buffer, size);
        };
    }
    // Old enough that its time can tell of any later change.
    void Age(const std::string& name) {
        std::filesystem::last_write_time(Tree.Path(name), std::filesystem::file_time_type::clock::now() -
                                                              std::chrono::hours(1));
    }
};

TEST_F(FoldedNamesTest, ExactNameWinsThenAnyOtherCaseIsFound) {
    Tree.Write("Drawer/Größe.Txt", "");
    Tree.Write("Drawer/README", "upper");
    Tree.Write("Drawer/readme", "lower");
    Tree.Link("Link", "drawer");                            // a link's text is the host's: exact
    EXPECT_EQ(Find("Test:dRAWER/gRÖSSE.tXT"), "error 205"); // no such folding
    EXPECT_EQ(Find("Test:drawer/grÖßE.TXT"), "Test:Drawer/Größe.Txt");
    EXPECT_EQ(Find("Test:Drawer/readme"), "Test:Drawer/readme");
    EXPECT_EQ(Find("Test:Drawer/README"), "Test:Drawer/README");
    EXPECT_EQ(Find("Test:Drawer/Readme"), "Test:Drawer/README"); // of twins always the same one
    EXPECT_EQ(Find("Test:Link"), "error 205");
}

TEST_F(FoldedNamesTest, NameThatDiffersInCaseOnlyExistsAlready) {
    Tree.Write("Drawer/File", "old");
    EXPECT_EQ(Refusal(dos::CreateDir("Test:DRAWER")), dos::ErrorObjectExists);
    EXPECT_TRUE(dos::WriteWhole("Test:drawer/FILE", "new"));
    EXPECT_EQ(Tree.Read("Drawer/File"), "new");
    EXPECT_EQ(List("Test:Drawer").size(), 1u);
}

TEST_F(FoldedNamesTest, AMoveLeavesTheTwinOfItsSource) {
    for (const char* name : {"Note", "NOTE", "old"})
        Tree.Write(name, name);
    ASSERT_TRUE(dos::Copy("Test:Note", "Test:old", {.Replaces = true, .Moves = true})) << dos::IoErr();
    EXPECT_EQ(Tree.Read("old"), "Note");
    EXPECT_EQ(Tree.Read("NOTE"), "NOTE");
}

TEST_F(FoldedNamesTest, AliasesFoldToo) {
    Tree.Write("Sound:Left.IFF", "left");
    std::string alias = NamesIn("Test:").front();
    for (char& c : alias)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    EXPECT_EQ(dos::ReadWhole("Test:" + alias, 10), "left");
    for (char& c : alias)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    EXPECT_EQ(dos::ReadWhole("Test:" + alias, 10), "left");
}

TEST_F(FoldedNamesTest, MissDoesNotWalkTheDrawerAgain) {
    for (int i = 0; i < 100; ++i)
        Tree.Write("Big/File" + std::to_string(i), "");
    Age("Big");
    CountWalks();
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(dos::Lock("Test:Big/none" + std::to_string(i)));
        EXPECT_TRUE(dos::Lock("Test:Big/FILE" + std::to_string(i)));
    }
    EXPECT_LE(Walks, 2); // one block and the end
}

TEST_F(FoldedNamesTest, OwnAdditionsDoNotMakeEveryMissAWalk) {
    Tree.Drawer("Big");
    Age("Big");
    CountWalks();
    for (int i = 0; i < 200; ++i)
        EXPECT_TRUE(dos::CreateDir("Test:Big/Drawer" + std::to_string(i)));
    EXPECT_FALSE(dos::CreateDir("Test:Big/DRAWER7"));
    EXPECT_LE(Walks, 100);
}

TEST_F(FoldedNamesTest, ReplacingFilesDoesNotMakeEveryMissAWalk) {
    Tree.Write("Big/File", "");
    Age("Big");
    CountWalks();
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(dos::WriteWhole("Test:Big/FILE", "new"));
        EXPECT_FALSE(dos::Lock("Test:Big/none"));
    }
    EXPECT_LE(Walks, 100); // two for each time that the drawer is read anew, which happens after a while
}

TEST_F(FoldedNamesTest, ChangeOfAnotherDuringAnOwnOneIsSeen) {
    Tree.Drawer("Drawer");
    Age("Drawer");
    EXPECT_FALSE(dos::Lock("Test:Drawer/other")); // now remembered
    dos::FileHandle file = dos::Open("Test:Drawer/own", dos::OpenMode::New);
    Tree.Write("Drawer/OTHER", "");
    ASSERT_TRUE(dos::Close(file));
    EXPECT_TRUE(dos::Lock("Test:Drawer/other"));
    EXPECT_FALSE(dos::CreateDir("Test:Drawer/other"));
}

// Of two spellings the first is remembered; it goes within the tick of the change before.
TEST_F(FoldedNamesTest, WhatATreesDeletionTookIsNotRemembered) {
    Tree.Plant({"Drawer/NOTE/file", "Drawer/Note"});
    Age("Drawer");
    Calls().Statx = [](int drawer, const char* name, int flags, unsigned mask, struct statx* about) {
        const int result = dos::RealHost().Statx(drawer, name, flags, mask, about);
        about->stx_mtime = about->stx_ctime = {4'000'000'000, 0, 0}; // trusted
        return result;
    };
    EXPECT_TRUE(dos::Lock("Test:Drawer/note/file")); // now remembered
    EXPECT_TRUE(dos::DeleteTree("Test:Drawer/NOTE"));
    EXPECT_EQ(Find("Test:Drawer/note"), "Test:Drawer/Note");
}

std::atomic<std::int64_t> DiskTime; // of all objects, on a disk that counts whole seconds
std::atomic<bool> MakesWhileRead;

TEST_F(FoldedNamesTest, ANameMadeWhileItsDrawerIsReadIsNotOverlooked) {
    Tree.Drawer("Drawer");
    DiskTime = 1'000'000'000;
    Calls().Statx = [](int drawer, const char* name, int flags, unsigned mask, struct statx* about) {
        const int result = dos::RealHost().Statx(drawer, name, flags, mask, about);
        about->stx_mtime = about->stx_ctime = {DiskTime, 0, 0};
        return result;
    };
    Calls().Mkdirat = [](int drawer, const char* name, unsigned mode) {
        if (DiskTime == 1'000'000'000)
            DiskTime = std::time(nullptr);
        return dos::RealHost().Mkdirat(drawer, name, mode);
    };
    Calls().Getdents = [](int drawer, void* buffer, std::size_t size) {
        const long got = dos::RealHost().Getdents(drawer, buffer, size);
        if (got == 0 && MakesWhileRead.exchange(false))
            std::thread([] { EXPECT_TRUE(dos::CreateDir("Test:Drawer/Second")); }).join();
        return got;
    };
    EXPECT_FALSE(dos::Lock("Test:Drawer/none")); // now remembered
    EXPECT_TRUE(dos::CreateDir("Test:Drawer/First"));
    std::this_thread::sleep_for(std::chrono::milliseconds(150)); // until it is to be read anew
    MakesWhileRead = true;
    EXPECT_FALSE(dos::Lock("Test:Drawer/none"));
    EXPECT_FALSE(MakesWhileRead);
    EXPECT_TRUE(dos::Lock("Test:Drawer/SECOND"));
    EXPECT_TRUE(dos::Lock("Test:Drawer/FIRST"));
}

TEST_F(FoldedNamesTest, ChangesOfOthersAreSeenAtOnce) {
    Tree.Drawer("Drawer");
    for (int i = 0; i < 20; ++i) {
        const std::string name = "File" + std::to_string(i);
        EXPECT_FALSE(dos::Lock("Test:Drawer/file" + std::to_string(i)));
        Tree.Write("Drawer/" + name, "");
        EXPECT_TRUE(dos::Lock("Test:Drawer/file" + std::to_string(i)));
        std::filesystem::remove(Tree.Path("Drawer/" + name));
        EXPECT_FALSE(dos::Lock("Test:Drawer/file" + std::to_string(i)));
    }
}

TEST_F(FoldedNamesTest, DrawerThatCannotBeReadIsNoEndlessSearch) {
    Tree.Write("Drawer/File", "");
    Calls().Getdents = Failing<EIO>();
    EXPECT_EQ(Find("Test:Drawer/file"), "error 205");
    EXPECT_EQ(Find("Test:Drawer/File"), "Test:Drawer/File");
}

} // namespace
