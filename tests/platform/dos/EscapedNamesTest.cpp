// Names on a volume whose files an emulator shares: "file1*" is the entry "file1%2a" there.
#include "platform/dos/Changes.h"
#include "platform/dos/Copy.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/NameEscapes.h"
#include "tests/platform/dos/DosTest.h"

#include <algorithm>

namespace {

class EscapedNamesTest : public DosTest {
protected:
    EscapedNamesTest() {
        Tree.Plant({"amiga/", "plain/"});
        AddDisk("UA0", "UA", Tree.Path("amiga"), dos::NameRule::Exact, dos::MetadataRule::Uaem);
        AddDisk("UF0", "UF", Tree.Path("amiga"), dos::NameRule::Fold, dos::MetadataRule::Uaem);
    }
    // What lies in a drawer of the host, sidecars too.
    [[nodiscard]] Names OnHost(std::string_view drawer) {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(Tree.Path(drawer)))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
};

TEST(NameEscapesTest, NamesComeBackAsTheyWere) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"file1*", "file1%2a"},    {"file2<", "file2%3c"}, {"file4.", "file4%2e"},     {"file6.t", "file6.t"},
        {"Foo\\Bar", "Foo%5cBar"}, {"AUX", "AU%58"},       {"nul.txt", "nu%6c.txt"},   {"com1", "co%6d1"},
        {"x.uaem", "x.uae%6d"},    {"100%", "100%25"},     {"a%2ab", "a%252ab"},       {"end ", "end%20"},
        {"Größe", "Größe"},        {"\tTab", "%09Tab"},    {"auxiliary", "auxiliary"}, {"lpt", "lpt"}};
    for (const auto& [name, host] : cases) {
        EXPECT_EQ(dos::EscapedName(name), host);
        EXPECT_EQ(dos::UnescapedName(host), name);
        EXPECT_EQ(dos::NeedsEscape(name), name != host) << name;
    }
    for (const std::string_view host :
         {"%41", "a%2A", "50%", "%2", "a%2fb", "%2e", "%2e.", "x%00", "a%2ab*", "%f6"})
        EXPECT_EQ(dos::UnescapedName(host), host);
}

TEST_F(EscapedNamesTest, NamesThatAnEmulatorWroteAreShownAsItShowsThem) {
    const std::pair<std::string, std::string_view> files[] = {
        {"file1%2a", "-s--rwed 2024-03-15 19:01:02.50 \n"},
        {"file2%3c", "----rwed 2024-03-15 19:01:13.84 comment on file2\n"},
        {"file4%2e", "----rwed 2024-08-12 13:19:39.78 \n"},
        {"file6.t", "----rwed 2024-08-12 13:20:25.56 \n"}};
    Tree.Drawer("amiga/dir1%2a");
    Tree.Write("amiga/dir1%2a.uaem", "----rwed 2024-08-12 13:18:05.06 \n");
    for (const auto& [name, line] : files) {
        Tree.Write("amiga/" + name, "");
        Tree.Write("amiga/" + name + ".uaem", line);
    }
    const auto shown = List("UA:");
    EXPECT_EQ(NamesIn("UA:"), (Names{"dir1*", "file1*", "file2<", "file4.", "file6.t"}));
    EXPECT_EQ(shown.at("file1*").Protection & 0xFF, 0x40u);
    EXPECT_EQ(shown.at("file2<").Comment, "comment on file2");
    for (const auto& [name, object] : shown) {
        const auto alone = dos::ExamineObject("UF:" + name);
        ASSERT_TRUE(alone) << name;
        EXPECT_EQ(alone->Name, name);
        EXPECT_EQ(alone->Date, object.Date) << name;
    }
}

TEST_F(EscapedNamesTest, EveryOperationGoesByTheAmigaName) {
    Tree.Write("amiga/file1%2a", "one");
    Tree.Write("amiga/file1%2a.uaem", "-s--rwed 2024-03-15 19:01:02.50 \n");
    ASSERT_EQ(NamesIn("UA:"), Names{"file1*"});
    EXPECT_EQ(List("UA:").at("file1*").Protection & 0xFF, 0x40u);
    EXPECT_EQ(Find("UA:file1*"), "UA:file1*");
    EXPECT_EQ(dos::ExamineObject("UA:file1*")->Name, "file1*");
    EXPECT_EQ(Find("UA:file1%2a"), "error 205");
    EXPECT_EQ(Find("UF:FILE1*"), "UF:file1*");
    EXPECT_EQ(dos::HostPath("UA:file1*"), Tree.Path("amiga/file1%2a"));
    EXPECT_EQ(dos::HostPath("UA:new?"), Tree.Path("amiga/new%3f"));
    EXPECT_TRUE(dos::FromHostPath(Tree.Path("amiga/file1%2a")).ends_with(":file1*"));

    EXPECT_TRUE(dos::CreateDir("UA:dir\\"));
    EXPECT_TRUE(dos::Rename("UA:file1*", "UA:dir\\/AUX"));
    EXPECT_EQ(OnHost("amiga/dir%5c"), (Names{"AU%58", "AU%58.uaem"}));
    EXPECT_TRUE(dos::Rename("UA:dir\\/AUX", "UA:dir\\/aux"));
    EXPECT_EQ(NamesIn("UA:dir\\"), Names{"aux"});
    EXPECT_TRUE(dos::WriteWhole("UA:dir\\/aux", "two"));
    EXPECT_TRUE(dos::SetComment("UA:dir\\/aux", "note"));
    EXPECT_TRUE(dos::WriteWhole("UA:dir\\/x.uaem", "no sidecar"));
    EXPECT_TRUE(dos::MakeLink("UA:dir\\/link.", "aux"));
    EXPECT_EQ(OnHost("amiga/dir%5c"), (Names{"au%78", "au%78.uaem", "link%2e", "x.uae%6d", "x.uae%6d.uaem"}));
    EXPECT_EQ(NamesIn("UA:dir\\"), (Names{"aux", "link.", "x.uaem"}));
    EXPECT_EQ(List("UA:dir\\").at("link.").LinkTarget, "aux");
    EXPECT_EQ(dos::ReadWhole("UA:dir\\/link.", 10), "two");
    EXPECT_TRUE(dos::Delete("UA:dir\\/aux"));
    EXPECT_EQ(NamesIn("UA:dir\\"), (Names{"link.", "x.uaem"}));
}

// Names that somebody gave who knows nothing of escapes.
TEST_F(EscapedNamesTest, TwoEntriesOfOneNameAreBothReached) {
    Tree.Write("amiga/a%2ab", "escape");
    Tree.Write("amiga/50%", "half");
    Tree.Write("amiga/%41", "A");
    Tree.Write("amiga/c?", "lone");
    EXPECT_EQ(NamesIn("UA:"), (Names{"%41", "50%", "a*b", "c?"}));
    for (const auto& [path, text] : {std::pair{"UA:%41", "A"}, {"UA:50%", "half"}, {"UF:C?", "lone"}})
        EXPECT_EQ(dos::ReadWhole(path, 10), text) << path;
    Tree.Write("amiga/a*b", "plain");
    for (const std::string volume : {"UA:", "UF:"}) {
        const Names names = NamesIn(volume);
        ASSERT_EQ(names.size(), 5u);
        EXPECT_TRUE(names[3].starts_with("a*b~")) << names[3];
        EXPECT_EQ(dos::ReadWhole(volume + "a*b", 10), "escape");
        EXPECT_EQ(dos::ReadWhole(volume + names[3], 10), "plain");
        EXPECT_EQ(Find(volume + names[3]), volume + names[3]);
    }
    EXPECT_EQ(dos::ReadWhole("UF:A*B", 10), "escape");
    const std::string alias = NamesIn("UA:")[3];
    EXPECT_FALSE(dos::Rename("UA:c?", "UA:" + alias));
    EXPECT_TRUE(dos::CreateDir("UA:d"));
    ASSERT_TRUE(dos::Rename("UA:" + alias, "UA:d/" + alias)) << dos::IoErr();
    EXPECT_EQ(Tree.Read("amiga/d/a%2ab"), "plain");
    EXPECT_EQ(Tree.Read("amiga/a%2ab"), "escape");
}

// "foo.uaem" is the name of an object too, which is not the sidecar of another.
TEST_F(EscapedNamesTest, NoNameReachesTheSidecarOfAnother) {
    const std::string line = "-s--rwed 2024-03-15 19:01:02.50 note\n";
    Tree.Write("amiga/foo", "foo");
    Tree.Write("amiga/foo.uaem", line);
    Tree.Write("plain/from/foo.uaem", "no sidecar");
    Tree.Write("amiga/orphans/foo.uaem", line);
    for (const std::string name : {"UA:foo.uaem", "UF:foo.uaem", "UF:FOO.UAEM"}) {
        EXPECT_EQ(Find(name), "error 205") << name;
        EXPECT_FALSE(dos::Delete(name));
        EXPECT_FALSE(dos::Rename(name, "UA:bar"));
        EXPECT_TRUE(dos::WriteWhole(name, "own"));
        EXPECT_EQ(dos::ReadWhole(name, 10), "own");
        EXPECT_EQ(OnHost("amiga").size(), 5u) << name;
        EXPECT_TRUE(dos::Rename("UA:foo", "UA:bar") && dos::Rename("UA:bar", "UA:foo"));
        EXPECT_TRUE(dos::Delete(name));
        EXPECT_EQ(Tree.Read("amiga/foo.uaem"), line);
    }
    const dos::TreeOptions options{.Copy = {.Replaces = true}};
    const std::string plain = "Host:" + Tree.Path("plain").substr(1) + "/";
    for (const std::string& from : {plain + "from", std::string("UA:orphans")}) {
        for (const std::string to : {"UA:", "UF:"}) {
            EXPECT_TRUE(dos::CopyTree(from, to, options)) << from << dos::IoErr();
            EXPECT_EQ(Tree.Read("amiga/foo.uaem"), line) << from << " " << to;
            EXPECT_EQ(Tree.Read("amiga/foo.uae%6d").size(), from == "UA:orphans" ? line.size() : 10u);
        }
    }
}

// Both keep their names, whichever of them is shown under its own.
TEST_F(EscapedNamesTest, ATreeWithANameAndItsEscapeIsCopiedWhole) {
    Tree.Write("amiga/from/a*", "raw");
    Tree.Write("amiga/from/a%2a", "star");
    Tree.Link("amiga/link", Tree.Path("amiga/from/a*"));
    for (const std::string to : {"UF:new", "UA:other"}) {
        EXPECT_TRUE(dos::CopyTree("UF:from", to)) << dos::IoErr();
        EXPECT_EQ(Tree.Read("amiga/" + to.substr(3) + "/a*"), "raw");
        EXPECT_EQ(Tree.Read("amiga/" + to.substr(3) + "/a%2a"), "star");
    }
    Tree.Drawer("amiga/from/d");
    Tree.Link("amiga/beside", "from/a*");
    Tree.Link("amiga/from/d/up", "../a*");
    for (const std::string& target :
         {List("UA:")["link"].LinkTarget, "UA:" + List("UA:")["beside"].LinkTarget,
          "UA:from/d/" + List("UA:from/d")["up"].LinkTarget})
        EXPECT_EQ(dos::ReadWhole(target, 10), "raw") << target;
}

TEST_F(EscapedNamesTest, CopiesHaveTheNameOfTheirVolume) {
    Tree.Write("plain/from/a*b", "star");
    Tree.Write("plain/from/a%2ab", "text");
    Tree.Write("plain/from/d./AUX", "aux");
    const std::string plain = "Host:" + Tree.Path("plain").substr(1) + "/";
    ASSERT_TRUE(dos::CopyTree(plain + "from", "UA:to"));
    EXPECT_EQ(Tree.Read("amiga/to/a%2ab"), "star");
    EXPECT_EQ(Tree.Read("amiga/to/a%252ab"), "text");
    EXPECT_EQ(Tree.Read("amiga/to/d%2e/AU%58"), "aux");
    ASSERT_TRUE(dos::CopyTree("UA:to", plain + "back"));
    EXPECT_EQ(Tree.Read("plain/back/a*b"), "star");
    EXPECT_EQ(Tree.Read("plain/back/a%2ab"), "text");
    EXPECT_EQ(Tree.Read("plain/back/d./AUX"), "aux");
    ASSERT_TRUE(dos::Copy(plain + "from/a*b", "UF:one?"));
    EXPECT_EQ(Tree.Read("amiga/one%3f"), "star");
    // Where both are of one name, neither copy takes the other's place.
    Tree.Write("amiga/to/a*b", "raw");
    const dos::TreeResult result = dos::CopyTree("UA:to", plain + "back", {.Copy = {.Replaces = true}});
    EXPECT_EQ(result.Skipped, 1u);
    EXPECT_EQ(result.FirstError, dos::ErrorObjectExists);
    EXPECT_TRUE(dos::DeleteTree("UA:to"));
    EXPECT_EQ(OnHost("amiga"), (Names{"one%3f", "one%3f.uaem"}));
}

} // namespace
