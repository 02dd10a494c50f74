#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "content/Selection.h"
#include "interface/MainLayout.h"
#include "locations/Navigation.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"
#include "tests/content/DrawerTest.h"

#include <array>
#include <gmock/gmock.h>
#include <string>

namespace solvane {
namespace {

using testing::ElementsAre;

// The same with the window open, without a screen.
class WindowTest : public DrawerTest {
protected:
    WindowTest() {
        static std::string name = "solvane";
        static std::array<char*, 2> arguments = {name.data(), nullptr};
        Prefs.DetermineDatatype = 2;
        EXPECT_TRUE(intuition::OpenDisplay(1, arguments.data()));
        EXPECT_TRUE(CreateMainLayout());
        SetColumnInfo();
        EXPECT_TRUE(MainWindow->Open());
    }
    ~WindowTest() override {
        FreeContentRows();
        CloseWindowObject();
        intuition::CloseDisplay();
    }

    [[nodiscard]] std::vector<std::string> SelectedNames() const {
        std::vector<std::string> names;
        for (const std::size_t row : Objects.ContentList->SelectedRows()) {
            names.emplace_back(lblist2[row].Record->EntryName.View());
        }
        return names;
    }
    static std::size_t RowOf(std::string_view name) {
        for (std::size_t row = 0; row < lblist2.size(); ++row) {
            if (lblist2[row].Record != nullptr && lblist2[row].Record->EntryName == name) {
                return row;
            }
        }
        return intuition::NoRow;
    }
    void ManyFiles() const {
        for (int at = 100; at < 400; ++at) {
            File("many/" + std::to_string(at));
        }
    }
};

TEST_F(WindowTest, ReloadKeepsPlaceAndSelectionOfTheRows) {
    ManyFiles();
    ASSERT_TRUE(Scan("many"));
    EXPECT_EQ(Objects.ContentList->Top(), 0U);
    Objects.ContentList->SetTop(120);
    Objects.ContentList->Select(RowOf("150"), true);
    Objects.ContentList->Select(RowOf("300"), true);
    File("many/200 new");
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_EQ(Objects.ContentList->Top(), 120U);
    EXPECT_THAT(SelectedNames(), ElementsAre("150", "300"));
    EXPECT_EQ(StatusBarBuffer1.View(), "2/301 Selected | 0 B / 0 B");
    ASSERT_TRUE(Scan());
    EXPECT_EQ(Objects.ContentList->Top(), 0U);
    EXPECT_TRUE(SelectedNames().empty());
}

TEST_F(WindowTest, EntryThatIsGoneIsNoLongerSelected) {
    File("d/A");
    File("d/a");
    ASSERT_TRUE(Scan("d"));
    Objects.ContentList->Select(0, true);
    const std::string gone = SelectedNames().front();
    std::filesystem::remove(Host("d/" + gone));
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_TRUE(SelectedNames().empty()) << "a name that differs in case is another entry";
}

TEST_F(WindowTest, RowsAndRecordsShareOneSelection) {
    File("a");
    File("b");
    File("b.info");
    ASSERT_TRUE(Scan());
    Objects.ContentList->SelectAll();
    SelectContentListItems();
    EXPECT_EQ(NumSelected, 2);
    EXPECT_EQ(Entry("b.info").Selected, 0) << "what has no row is never acted on";
    ClearSelectedFiles();
    EXPECT_EQ(Objects.ContentList->SelectedCount(), 0U);
    EXPECT_EQ(FindFirstSelectedContentNode(), nullptr);
}

TEST_F(WindowTest, ParentButtonIsOfNoUseAtARoot) {
    File("d/file");
    PopulateContent2("d", Path("d"));
    EXPECT_EQ(Objects.Path->Text(), Path("d"));
    Objects.ContentList->Select(0, true);
    OpenSelectedEntry();
    EXPECT_EQ(Objects.Path->Text(), Path("d")) << "a file leads nowhere yet";
    GoToParent();
    EXPECT_EQ(Objects.Path->Text(), Volume);
    Objects.ContentList->Select(RowOf("d"), true);
    OpenSelectedEntry();
    EXPECT_EQ(Objects.Path->Text(), Path("d"));
}

TEST_F(WindowTest, EmptyDrawerHasNothingToSelect) {
    ASSERT_TRUE(Scan());
    Objects.ContentList->SelectAll();
    SelectContentListItems();
    EXPECT_EQ(NumSelected, 0);
    OpenSelectedEntry();
    EXPECT_EQ(CurrentPath.View(), Volume);
}

} // namespace
} // namespace solvane
