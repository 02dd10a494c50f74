#include "platform/dos/Changes.h"
#include "platform/dos/Files.h"
#include "tests/platform/dos/DosTest.h"

namespace {

constexpr std::string_view Line = "-s--rwed 2001-02-03 04:05:06.08 note\n";

class RenameTest : public DosTest {};

class FoldedRenameTest : public DosTest {
protected:
    FoldedRenameTest() : DosTest(dos::NameRule::Fold) {}
};

TEST_F(RenameTest, RenamesMoveObjectsWithTheirSidecarAndNothingElse) {
    Tree.Write("file", "content");
    Tree.Write("file.uaem", Line);
    Tree.Write("file.info", "icon");
    Tree.Drawer("drawer/sub");
    Tree.Link("link", "file");
    EXPECT_TRUE(dos::Rename("Test:file", "Test:drawer/other"));
    EXPECT_TRUE(dos::Rename("Test:link", "Test:link2"));
    EXPECT_TRUE(dos::Rename("Test:drawer", "Test:Drawer/"));
    EXPECT_EQ(Tree.Read("Drawer/other"), "content");
    EXPECT_EQ(Tree.Read("Drawer/other.uaem"), Line);
    EXPECT_EQ(dos::ExamineObject("Test:Drawer/other")->Comment, "note");
    EXPECT_TRUE(std::filesystem::is_symlink(Tree.Path("link2")));
    EXPECT_EQ(NamesIn("Test:"), (Names{"Drawer", "file.info", "link2"}));
}

TEST_F(RenameTest, NothingIsEverReplaced) {
    Tree.Write("one", "1");
    Tree.Write("two", "2");
    Tree.Write("three", "3");
    Tree.Write("three.uaem", Line);
    Tree.Write("four.uaem", "somebody's");
    std::filesystem::create_hard_link(Tree.Path("one"), Tree.Path("ONE"));
    Tree.Plant({"empty/", "drawer/", "drawer/sub/"});
    const struct {
        std::string From, To;
        long Error;
    } cases[] = {
        {"Test:one", "Test:two", 203},
        {"Test:one", "Test:ONE", 203},
        {"Test:one", "Test:empty", 203},
        {"Test:drawer", "Test:empty", 203},
        {"Test:three", "Test:four", 203},
        {"Test:one", "Test:", 203},
        {"Test:", "Test:x", 202},
        {"Test:drawer", "Test:drawer/sub/x", 202},
        {"Test:none", "Test:x", 205},
        {"Test:one", "Test:none/x", 205},
        {"Test:one", "Test:two/x", 212},
        {"Test:one", "NIL:x", 215},
        {"Test:one", "Host:dev/x", 215},
        {"Test:one", "Test:a:b", 210},
        {"Test:one", "Test:" + std::string(1020, 'a'), 120},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Refusal(dos::Rename(row.From, row.To)), row.Error) << row.From << " " << row.To;
    EXPECT_TRUE(dos::Rename("Test:one", "Test:one"));
    EXPECT_EQ(NamesIn("Test:"), (Names{"ONE", "drawer", "empty", "four.uaem", "one", "three", "two"}));
    EXPECT_EQ(Tree.Read("three.uaem"), Line);
    EXPECT_EQ(Tree.Read("four.uaem"), "somebody's");
}

// Hosts that know no rename without replacing, and then no hard links either.
TEST_F(RenameTest, HostsWithoutTheFlagReplaceNothingEither) {
    for (const bool hasLinks : {true, false}) {
        Calls().Renameat2 = [](int from, const char* old, int to, const char* name, unsigned flags) {
            errno = EINVAL;
            return flags ? -1 : dos::RealHost().Renameat2(from, old, to, name, 0);
        };
        if (!hasLinks)
            Calls().LinkObject = Failing<EPERM>();
        Tree.Write("file", "1");
        Tree.Write("other", "2");
        Tree.Write("drawer/x", "3");
        EXPECT_TRUE(dos::Rename("Test:file", "Test:moved"));
        EXPECT_TRUE(dos::Rename("Test:drawer", "Test:place"));
        EXPECT_EQ(Refusal(dos::Rename("Test:moved", "Test:other")), dos::ErrorObjectExists);
        EXPECT_EQ(Refusal(dos::Rename("Test:place", "Test:other")), dos::ErrorObjectExists);
        dos::Host() = dos::RealHost();
        EXPECT_EQ(Tree.Read("moved"), "1");
        EXPECT_EQ(Tree.Read("other"), "2");
        EXPECT_EQ(NamesIn("Test:"), (Names{"moved", "other", "place"}));
        EXPECT_EQ(Tree.Read("place/x"), "3");
        EXPECT_TRUE(dos::Delete("Test:place/x") && dos::Delete("Test:place") && dos::Delete("Test:moved"));
    }
}

TEST_F(RenameTest, AliasedObjectsKeepTheirRealNameUnlessRenamed) {
    const std::string longName = "a very long name " + std::string(150, 'n') + ".txt";
    Tree.Write(longName, "long");
    Tree.Write("with:colon", "colon");
    Tree.Write("bad\xFFname", "bad");
    Tree.Drawer("drawer");
    const std::vector<std::string> names = NamesIn("Test:");
    ASSERT_EQ(names.size(), 4u);
    for (const std::string& name : names) {
        if (name != "drawer") {
            EXPECT_TRUE(dos::Rename("Test:" + name, "Test:drawer/" + name)) << name;
            EXPECT_TRUE(dos::Rename("Test:drawer/" + name, "Test:drawer/" + name)) << name;
        }
    }
    EXPECT_EQ(Tree.Read("drawer/" + longName), "long");
    EXPECT_EQ(Tree.Read("drawer/with:colon"), "colon");
    EXPECT_EQ(Tree.Read("drawer/bad\xFFname"), "bad");
    for (const auto& [name, object] : List("Test:drawer")) {
        EXPECT_TRUE(dos::SetDate("Test:drawer/" + name, 100'000'000)) << name;
        EXPECT_TRUE(dos::WriteWhole("Test:drawer/" + name, "new")) << name;
        EXPECT_TRUE(dos::Rename("Test:drawer/" + name, "Test:drawer/plain")) << name;
        EXPECT_TRUE(dos::Delete("Test:drawer/plain"));
    }
    EXPECT_TRUE(std::filesystem::is_empty(Tree.Path("drawer")));
}

TEST_F(FoldedRenameTest, ChangeOfCaseIsARename) {
    Tree.Write("File", "content");
    Tree.Write("File.uaem", Line);
    Tree.Write("Größe", "");
    EXPECT_TRUE(dos::Rename("Test:File", "Test:FILE"));
    EXPECT_TRUE(dos::Rename("Test:größe", "Test:GRÖße"));
    EXPECT_TRUE(dos::Rename("Test:FILE", "Test:FILE"));
    EXPECT_EQ(NamesIn("Test:"), (Names{"FILE", "GRÖße"}));
    EXPECT_EQ(Tree.Read("FILE.uaem"), Line);
    EXPECT_EQ(Find("Test:file"), "Test:FILE");
}

TEST_F(FoldedRenameTest, TwinsAreNeverMixedUp) {
    Tree.Write("Readme", "mixed");
    Tree.Write("README", "upper");
    Tree.Write("other", "other");
    EXPECT_EQ(Refusal(dos::Rename("Test:README", "Test:Readme")), dos::ErrorObjectExists);
    EXPECT_EQ(Refusal(dos::Rename("Test:other", "Test:readme")), dos::ErrorObjectExists);
    EXPECT_TRUE(dos::Delete("Test:README"));
    EXPECT_EQ(Find("Test:readme"), "Test:Readme");
    EXPECT_EQ(Tree.Read("Readme"), "mixed");
}

TEST_F(FoldedRenameTest, IndexStaysTrueAfterOwnChanges) {
    Tree.Write("drawer/keep", "");
    for (int i = 0; i < 20; ++i) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(Find("Test:drawer/NEW" + number), "error 205");
        EXPECT_TRUE(dos::WriteWhole("Test:drawer/New" + number, ""));
        EXPECT_EQ(Find("Test:drawer/NEW" + number), "Test:drawer/New" + number);
        EXPECT_TRUE(dos::Rename("Test:drawer/nEW" + number, "Test:drawer/Moved" + number));
        EXPECT_EQ(Find("Test:drawer/NEW" + number), "error 205");
        EXPECT_EQ(Find("Test:drawer/MOVED" + number), "Test:drawer/Moved" + number);
        EXPECT_TRUE(dos::MakeLink("Test:drawer/Link" + number, "moved" + number));
        EXPECT_EQ(dos::ExamineObject("Test:drawer/LINK" + number)->Name, "Moved" + number);
        EXPECT_TRUE(dos::Delete("Test:drawer/LINK" + number));
        EXPECT_TRUE(dos::Delete("Test:drawer/MOVED" + number));
        EXPECT_EQ(Find("Test:drawer/MOVED" + number), "error 205");
    }
    EXPECT_EQ(NamesIn("Test:drawer"), Names{"keep"});
}

// Both spellings open the file there, and a rename onto the other one finds the name taken.
TEST_F(RenameTest, ChangeOfCaseWorksOnADiskThatFoldsByItself) {
    Tree.Write("File", "content");
    static int spellings = 0;
    spellings = 0;
    Calls().Openat2 = [](int drawer, const char* name, int flags, std::uint64_t resolve) {
        const int found = dos::RealHost().Openat2(drawer, name, flags, resolve);
        return found < 0 && std::string_view(name) == "FILE"
                   ? dos::RealHost().Openat2(drawer, "File", flags, resolve)
                   : found;
    };
    Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        const int found = dos::RealHost().Openat(drawer, name, flags, mode);
        return found < 0 && std::string_view(name) == "FILE"
                   ? dos::RealHost().Openat(drawer, "File", flags, mode)
                   : found;
    };
    Calls().Renameat2 = [](int from, const char* old, int to, const char* name, unsigned flags) {
        if (std::string_view(old) == "File" && std::string_view(name) == "FILE") {
            ++spellings;
            errno = EEXIST;
            return -1;
        }
        return dos::RealHost().Renameat2(from, old, to, name, flags);
    };
    EXPECT_TRUE(dos::Rename("Test:File", "Test:FILE"));
    EXPECT_GT(spellings, 0);
    EXPECT_EQ(Tree.Read("FILE"), "content");
    EXPECT_FALSE(Tree.Exists("File"));
    EXPECT_EQ(NamesIn("Test:"), Names{"FILE"});
}

} // namespace
