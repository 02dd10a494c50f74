#include "platform/dos/HostPaths.h"

#include "tests/platform/dos/DosTest.h"

namespace {

class HostPathsTest : public DosTest {};

TEST_F(HostPathsTest, HostPathsBecomeTheShortestVolumePath) {
    Tree.Write("a/b/file", "");
    Tree.Link("a/link", "b");
    ASSERT_TRUE(dos::AddVolume({.Device = "TD1", .Volume = "Inner", .HostRoot = Tree.Path("a/b")}));
    const std::string root = Tree.Root();
    const std::pair<std::string, std::string> cases[] = {
        {root, "Test:"},
        {root + "/", "Test:"},
        {root + "//a/./x/", "Test:a/x"},
        {root + "/a/b/file", "Inner:file"},
        {root + "/a/bc", "Test:a/bc"},
        {root + "/a/link", "Test:a/link"},
        {root + "/a/link/../new", "Test:a/new"}, // up from where the link leads
        {root + "/a/b/../../..", "Host:" + root.substr(1, root.rfind('/') - 1)},
        {"/", "Host:"},
        {"/..", "Host:"},
        {"file://" + root + "/a%20b%C3%A4", "Test:a bä"},
        {"FILE:" + root + "/x", "Test:x"},
        {"file://localhost" + root + "/x", "Test:x"},
        {"file://elsewhere" + root, "file://elsewhere" + root},
        {"file://" + root + "/bad%2", "file://" + root + "/bad%2"},
        {"file://" + root + "/nul%00", "file://" + root + "/nul%00"},
        {"test:a/b", "test:a/b"},
        {"NIL:", "NIL:"},
        {"Unknown:a", "Unknown:a"},
        {":a", ":a"},
        {"", ""},
        {"relative/name", "relative/name"},
    };
    for (const auto& [host, amiga] : cases)
        EXPECT_EQ(dos::FromHostPath(host), amiga) << host;
}

TEST_F(HostPathsTest, RelativeHostPathsStartFromTheGivenDrawer) {
    Tree.Plant({"a/file", "a/x:y"});
    const std::string here = Tree.Path("a");
    EXPECT_EQ(dos::FromHostPath("file", here), "Test:a/file");
    EXPECT_EQ(dos::FromHostPath(".", here), "Test:a");
    EXPECT_EQ(dos::FromHostPath("..", here), "Test:");
    EXPECT_EQ(dos::FromHostPath("../new", here), "Test:new");
    EXPECT_EQ(dos::FromHostPath("Test:a", here), "Test:a");
    EXPECT_EQ(dos::FromHostPath("No:such", here), "No:such");
    EXPECT_EQ(dos::HostPath(dos::FromHostPath("x:y", here)), here + "/x:y");
}

TEST_F(HostPathsTest, EveryListedObjectHasItsWayToTheHostAndBack) {
    const std::vector<std::string> names = {"plain",     "col:on",   std::string(200, 'l') + ".png",
                                            "new\nline", "\xFF\xFE", "d:r/in:ner/file",
                                            "quote\"*"};
    for (const std::string& name : names) {
        Tree.Write(name, "");
        const std::string amiga = dos::FromHostPath(Tree.Path(name));
        EXPECT_EQ(dos::HostPath(amiga), Tree.Path(name)) << amiga;
        EXPECT_EQ(Find(amiga), amiga);
    }
}

TEST_F(HostPathsTest, HostPathNamesWhatCouldBeMade) {
    Tree.Plant({"one/", "two/there"});
    Tree.Link("link", "one");
    ASSERT_TRUE(dos::SetAssign("Multi", dos::AssignKind::Late, {"Test:one", "Test:two"}));
    EXPECT_EQ(dos::HostPath("Test:one/new"), Tree.Path("one/new"));
    EXPECT_EQ(dos::HostPath("Multi:new"), Tree.Path("one/new"));
    EXPECT_EQ(dos::HostPath("Multi:there"), Tree.Path("two/there"));
    EXPECT_EQ(dos::HostPath("Test:link"), Tree.Path("link")); // the link, not where it leads
    EXPECT_EQ(dos::HostPath("Test:"), Tree.Root());
    EXPECT_EQ(Refusal(dos::HostPath("Test:none/new")), dos::ErrorObjectNotFound);
    EXPECT_EQ(Refusal(dos::HostPath("Nobody:x")), dos::ErrorDeviceNotMounted);
    EXPECT_FALSE(dos::HostPath("NIL:"));
}

} // namespace
