#include "content/DiscoverDrawersFiles.h"
#include "content/ExamineSingle.h"
#include "platform/dos/Errors.h"
#include "tests/content/DrawerTest.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using testing::ElementsAre, testing::UnorderedElementsAre;

class DiscoverTest : public DrawerTest {
protected:
    DiscoverTest() : Found(SAK_CreateGenericList<DOSNode>()) { Walk.Found = Found.get(); }

    [[nodiscard]] std::vector<std::string> Paths() const {
        return TextsOf(*Found, [](const DOSNode& node) { return node.EntryPath.View(); });
    }

    std::unique_ptr<GenericList<DOSNode>> Found;
    DiscoverWalk Walk;
};

TEST_F(DiscoverTest, FindsEverythingBelowAndFollowsNoLink) {
    File("tree/file", "123");
    File("tree/sub/deep/file", "12");
    File("tree/.dot", "1");
    File("tree/file.info", "1");
    File("outside/not this");
    SoftLink("tree/out", "../outside");
    SoftLink("tree/round", ".");
    ASSERT_TRUE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_THAT(Paths(), UnorderedElementsAre(Path("tree/file"), Path("tree/sub"), Path("tree/sub/deep"),
                                              Path("tree/sub/deep/file"), Path("tree/.dot"),
                                              Path("tree/file.info"), Path("tree/out"), Path("tree/round")));
    EXPECT_EQ(Walk.TotalBytes, 7U);
    for (const DOSNode& node : *Found)
        if (node.EntryName == "out") {
            EXPECT_EQ(node.ObjectKind, EntryKind::SoftLinkToDrawer);
        }
}

TEST_F(DiscoverTest, DrawerStandsBeforeWhatIsInIt) {
    File("tree/a/b/c");
    ASSERT_TRUE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_THAT(Paths(), ElementsAre(Path("tree/a"), Path("tree/a/b"), Path("tree/a/b/c")));
    Walk.Position = ListPosition::Head;
    SAK_ClearGenericList(*Found);
    ASSERT_TRUE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_THAT(Paths(), ElementsAre(Path("tree/a/b/c"), Path("tree/a/b"), Path("tree/a")));
}

TEST_F(DiscoverTest, PasteTellsThePathsOfTheDestination) {
    File("From/sub/file");
    Walk.ForPaste = true;
    Walk.SourceRoot = Path("from");
    Walk.DestinationRoot = Path("To/there");
    ASSERT_TRUE(DiscoverDrawersFiles(Walk, Path("From")));
    EXPECT_THAT(Paths(), ElementsAre(Path("To/there/sub"), Path("To/there/sub/file")));
}

TEST_F(DiscoverTest, PasteMovesTheRootAloneAndAtTheEndOfAComponent) {
    File("a/From/From/file");
    const struct {
        std::string Source, Destination, Told;
    } rows[] = {
        {Path("a/from"), Path("To"), Path("To/From")},
        {Path("A/From/"), Path("To/"), Path("To/From")},
        {Path(""), "To:", "To:a/From/From"},
        {Path(""), "To:x", "To:x/a/From/From"},
        {Path("a/Fro"), Path("To"), ""},
        {Path("From"), Path("To"), ""},
        {"From", Path("To"), ""},
        {"", Path("To"), ""},
        {std::string(2000, 'x'), Path("To"), ""},
        {Path("a"), std::string(1020, 'd'), ""},
    };
    Walk.ForPaste = true;
    for (const auto& row : rows) {
        Walk.SourceRoot = row.Source;
        Walk.DestinationRoot = row.Destination;
        SAK_ClearGenericList(*Found);
        EXPECT_EQ(DiscoverDrawersFiles(Walk, Path("a/From")), !row.Told.empty()) << row.Source;
        if (row.Told.empty()) {
            EXPECT_EQ(dos::IoErr(), dos::ErrorLineTooLong) << row.Source;
            EXPECT_TRUE(Paths().empty()) << row.Source;
        } else {
            EXPECT_THAT(Paths(), ElementsAre(row.Told, row.Told + "/file")) << row.Source;
        }
    }
}

TEST_F(DiscoverTest, ProgressDoesNotDisturbTheReason) {
    Drawer("tree/only");
    Walk.Progress = [](std::string_view) { dos::SetIoErr(dos::ErrorObjectNotFound); };
    EXPECT_TRUE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoMoreEntries);
}

TEST_F(DiscoverTest, ProgressCountsWhatWasFound) {
    Drawer("tree/only");
    std::vector<std::string> told;
    Walk.Progress = [&](std::string_view text) { told.emplace_back(text); };
    ASSERT_TRUE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_EQ(told.front(), "1 item");
    File("tree/second");
    SAK_ClearGenericList(*Found);
    ASSERT_TRUE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_EQ(told.back(), "2 items");
}

TEST_F(DiscoverTest, WalkThatCannotBeWholeSaysSo) {
    EXPECT_FALSE(DiscoverDrawersFiles(Walk, Path("gone")));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectNotFound);
    std::string deep = "tree/";
    for (int level = 0; level < 8; ++level)
        deep += std::string(120, 'd') + "/";
    File(deep + std::string(100, 'f'));
    EXPECT_FALSE(DiscoverDrawersFiles(Walk, Path("tree")));
    EXPECT_EQ(dos::IoErr(), dos::ErrorLineTooLong);
}

using ExamineTest = DrawerTest;

TEST_F(ExamineTest, ShortRecordsTellFilesFromDrawers) {
    File("d/file", "1234");
    ASSERT_TRUE(ExamineSingle(Path("d/file")));
    EXPECT_EQ(ExamineSingleNode->ObjectKind, EntryKind::File);
    EXPECT_EQ(ExamineSingleNode->EntryPath.View(), Path("d/file"));
    EXPECT_EQ(ExamineSingleNode->EntrySizeText.View(), "4 B");
    EXPECT_EQ(ExamineSingleNode->DateSeconds, 0U);
    EXPECT_FALSE(ExamineSingleNode->DateText.Empty());
    ASSERT_TRUE(ExamineSingle(Path("d")));
    EXPECT_EQ(ExamineSingleNode->ObjectKind, EntryKind::Drawer);
    EXPECT_EQ(ExamineSingleNode->DatatypeName.View(), "Drawer");
    EXPECT_EQ(SAK_GenericListCount(*ExamineSingleList), 1U);
}

TEST_F(ExamineTest, FullRecordsHaveTypeAndBits) {
    File("picture.gif", std::string_view("GIF89a\x01\x00\x01\x00\x80\x00\x00", 13));
    ASSERT_TRUE(ExamineSingleFull(Path("picture.gif"), WithType::No));
    EXPECT_TRUE(ExamineSingleNode->DatatypeName.Empty());
    ASSERT_TRUE(ExamineSingleFull(Path("picture.gif"), WithType::Yes));
    EXPECT_EQ(ExamineSingleNode->DatatypeName.View(), "GIF Picture");
    EXPECT_NE(ExamineSingleNode->DateSeconds, 0U);
    EXPECT_EQ(ExamineSingleNode->ProtectionText.View().substr(4, 2), "rw");
}

TEST_F(ExamineTest, NothingLeavesNoRecord) {
    File("file");
    ASSERT_TRUE(ExamineSingle(Path("file")));
    EXPECT_FALSE(ExamineSingle(Path("gone")));
    EXPECT_EQ(ExamineSingleNode, nullptr);
    EXPECT_FALSE(ExamineSingle(Path("") + std::string(2000, 'x')));
    EXPECT_EQ(ExamineSingleNode, nullptr);
}

} // namespace
} // namespace solvane
