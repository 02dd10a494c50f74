#include "platform/dos/Dates.h"
#include "platform/dos/Sidecar.h"
#include "tests/platform/dos/DosTest.h"

#include <sys/xattr.h>

namespace {

class MetadataTest : public DosTest {
protected:
    // False where the temporary file system has no such attributes.
    [[nodiscard]] bool SetAttribute(std::string_view name, const char* attribute, std::string_view value) {
        return ::setxattr(Tree.Path(name).c_str(), attribute, value.data(), value.size(), 0) == 0;
    }
};

struct SidecarCase {
    std::string_view Text;
    std::optional<std::uint32_t> Protection, Date;
    std::string_view Comment;
};

TEST(SidecarTest, LinesOfEmulatorsAreRead) {
    const std::uint32_t date = dos::Date2Amiga({52, 20, 21, 12, 2, 2013, 0});
    const SidecarCase cases[] = {
        {"----rwed 2013-02-12 21:20:52.02 hello\n", 0, date, "hello"},
        {"hsparwed 2013-02-12 21:20:52.02 \n", 0xF0, date, ""},
        {"-------- 2013-02-12 21:20:52.02", 0x0F, date, ""},
        {"-s--r-e- 2013-02-12 21:20:52.02  two  blanks \r\nrest", 0x45, date, " two  blanks "},
        {"\xEF\xBB\xBF----rwed 2013-02-12 21:20:52.02 mark", 0, date, "mark"},
        {"----rwed 2013-02-12 21:20:52.02 Gr%f6%dfe 100%25 %2a", 0, date, "Größe 100% *"},
        {"----rwed 2013-02-12 21:20:52.02 Gr\xF6\xDF"
         "e",
         0, date, "Größe"},
        {"----rwed 2013-02-12 21:20:52.02 Größe", 0, date, "Größe"},
        {"----rwed 2013-02-12 21:20:52.02 cut %4", 0, date, "cut %4"},
        {"----rwed", 0, {}, ""},
        {"----rwed 2013-02-30 21:20:52.02 no such day", 0, {}, "no such day"},
        {"----rwed 2013-02-12", 0, {}, ""},
        {"----rw", 0, {}, ""},
        {"-s--\n", 0, {}, ""},
        {"", 0, {}, ""},
        {"-\nmy own list", {}, {}, ""},
        {"my own", {}, {}, ""},
        {"not a metadata line", {}, {}, ""},
        {"somebody with a text", {}, {}, ""},
        {"rwed---- 2013-02-12 21:20:52.02 moved", 0x0F, date, "moved"},
        {"-S-?rwxd 2013-02-12 21:20:52.02 odd", 0x02, date, "odd"},
        {"-S-?rwxd 2013-02-12 21:20:52 no hundredths", {}, {}, ""},
    };
    for (const SidecarCase& row : cases) {
        const dos::SidecarFacts facts = dos::ParseSidecar(row.Text);
        EXPECT_EQ(facts.Protection, row.Protection) << row.Text;
        EXPECT_EQ(facts.Date, row.Date) << row.Text;
        EXPECT_EQ(facts.Comment, row.Comment) << row.Text;
    }
}

TEST_F(MetadataTest, SidecarIsReadFirstAndHidden) {
    Tree.Write("file", "");
    Tree.Write("file.uaem", "-s-----d 1994-05-17 12:30:14.50 note\n");
    Tree.Drawer("drawer");
    Tree.Write("drawer.uaem", "----rwed 2001-02-03 04:05:06.08 of a drawer\n");
    Tree.Write("broken", "");
    Tree.Write("broken.uaem", "no such line");
    Tree.Write("orphan.uaem", "----rwed");
    Tree.Plant({"drawers.uaem/", "drawers", "ruled"});
    Tree.Write("ruled.uaem", "----------------\nmy own text");
    EXPECT_EQ(NamesIn("Test:"), (Names{"broken", "broken.uaem", "drawer", "drawers", "drawers.uaem", "file",
                                       "orphan.uaem", "ruled", "ruled.uaem"}));
    auto listed = List("Test:");
    for (const dos::ExamineData& object : {listed["file"], *dos::ExamineObject("Test:file")}) {
        EXPECT_EQ(object.Protection & 0xFF, 0x4Eu);
        EXPECT_EQ(object.Date, dos::Date2Amiga({14, 30, 12, 17, 5, 1994, 0}));
        EXPECT_EQ(object.Comment, "note");
    }
    EXPECT_EQ(listed["drawer"].Comment, "of a drawer");
    EXPECT_EQ(listed["drawer"].Date, dos::Date2Amiga({6, 5, 4, 3, 2, 2001, 0}));
    EXPECT_EQ(listed["broken"].Protection & 0xFF, dos::ProtectExecute);
}

TEST_F(MetadataTest, AttributesGiveCommentAndTheBitsThatModesLack) {
    Tree.Plant({"file", "bad", "drawer/"});
    if (!SetAttribute("file", "user.amiga.protection", "h-p-rwe-"))
        GTEST_SKIP() << "no attributes here";
    const std::string longNote(1000, 'n');
    ASSERT_TRUE(SetAttribute("file", "user.xdg.comment", "Größe\0"));
    ASSERT_TRUE(SetAttribute("bad", "user.amiga.protection", "rubbish!"));
    ASSERT_TRUE(SetAttribute("drawer", "user.xdg.comment", longNote));
    auto listed = List("Test:");
    for (const dos::ExamineData& object : {listed["file"], *dos::ExamineObject("Test:file")}) {
        // The letters r, w, e are the modes' own: 0644 has no e, whatever the attribute says.
        EXPECT_EQ(object.Protection & 0xFF,
                  dos::ProtectHold | dos::ProtectPure | dos::ProtectDelete | dos::ProtectExecute);
        EXPECT_EQ(object.Comment, "Größe");
    }
    EXPECT_EQ(listed["bad"].Protection & 0xFF, dos::ProtectExecute);
    EXPECT_EQ(listed["drawer"].Comment, longNote);
    EXPECT_EQ(dos::ExamineObject("Test:drawer")->Comment, longNote);
}

// Each row of objects must be whole again: a comment of the one before does not stay.
TEST_F(MetadataTest, CommentBelongsToItsObjectOnly) {
    for (int i = 0; i < 40; ++i)
        Tree.Write("plain" + std::to_string(i), "");
    Tree.Write("noted", "");
    if (!SetAttribute("noted", "user.xdg.comment", "note"))
        GTEST_SKIP() << "no attributes here";
    for (const auto& [name, object] : List("Test:"))
        EXPECT_EQ(object.Comment, name == "noted" ? "note" : "") << name;
}

TEST_F(MetadataTest, ManyOtherAttributesHideNoneOfOurs) {
    Tree.Write("file", "");
    if (!SetAttribute("file", "user.xdg.comment", "note"))
        GTEST_SKIP() << "no attributes here";
    for (int i = 0; i < 30; ++i)
        if (!SetAttribute("file", ("user." + std::string(50, 'a') + std::to_string(i)).c_str(), ""))
            break;
    EXPECT_EQ(List("Test:")["file"].Comment, "note");
}

int Questions = 0;

template <typename... Arguments>
long RefuseAttributes(Arguments...) {
    ++Questions;
    errno = EOPNOTSUPP;
    return -1;
}

TEST_F(MetadataTest, FileSystemWithoutAttributesIsNotAskedForEachFile) {
    for (int i = 0; i < 50; ++i)
        Tree.Write(std::to_string(i), "");
    Questions = 0;
    Calls().Getxattr = RefuseAttributes;
    Calls().Fgetxattr = RefuseAttributes;
    Calls().Listxattr = RefuseAttributes;
    EXPECT_EQ(List("Test:").size(), 50u);
    EXPECT_EQ(Questions, 1);
}

} // namespace
