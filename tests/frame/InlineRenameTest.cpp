// Names edited in their rows and titles clicked: automation/ContentEvents, content/DrawerMonitor.
#include "automation/ContentEvents.h"
#include "content/DrawerMonitor.h"
#include "content/Selection.h"
#include "frame/MenuDispatch.h"
#include "interface/DetailsGadgets.h"
#include "interface/MenuIds.h"
#include "interface/MenuState.h"
#include "interface/Menus.h"
#include "locations/EnterDrawer.h"
#include "locations/PlaceFigures.h"
#include "model/Program.h"
#include "platform/intuition/FormRequesters.h"
#include "tests/locations/OpenWindow.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>
#include <utility>

namespace solvane {
namespace {

using testing::ElementsAre;

class InlineRenameTest : public OpenWindow {
protected:
    InlineRenameTest() {
        Prefs.EnableInlineRename = 1;
        Plant({"a.txt", "b.txt"});
        Plant({"d/", "e/"});
        EXPECT_TRUE(PopulateContent2(Volume, Volume));
        EXPECT_THAT(Rows(), ElementsAre("d", "e", "a.txt", "b.txt"));
    }

    // The editor, which lies in the viewport of a list; null when there is none.
    static QLineEdit* Editor() {
        for (QWidget* widget : QApplication::allWidgets()) {
            auto* line = qobject_cast<QLineEdit*>(widget);
            if (line != nullptr && line->isVisible() && line->parentWidget() != nullptr &&
                qobject_cast<QTreeView*>(line->parentWidget()->parentWidget()) != nullptr)
                return line;
        }
        return nullptr;
    }
    static bool Start(std::size_t row) {
        Objects.ContentList->ClearSelection();
        Objects.ContentList->Select(row, true);
        StartInlineRename();
        return Editor() != nullptr;
    }
    static void Finish(const QString& name, Qt::Key key = Qt::Key_Return) {
        Editor()->setText(name);
        QTest::keyClick(Editor(), key);
        HandleContentListBrowser();
    }
};

TEST_F(InlineRenameTest, NewNameIsTakenOrRefusedWithItsReason) {
    const struct {
        std::size_t Row;
        const char *Typed, *Then, *Told;
    } rows[] = {
        {0, "e", "d", "Drawer already exists."},
        {2, "b.txt", "a.txt", "File already exists."},
        {2, "A.TXT", "a.txt", nullptr},
        {2, "d/x", "a.txt", "object name invalid"},
        {2, "RAM:x", "a.txt", "object name invalid"},
        {2, "", "a.txt", nullptr},
        {2, "c.txt", "c.txt", nullptr},
        {0, "f", "f", nullptr},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(Start(row.Row));
        Finish(QString::fromUtf8(row.Typed));
        EXPECT_EQ(lblist2[row.Row].Record->EntryName.View(), row.Then) << row.Typed;
        EXPECT_TRUE(std::filesystem::exists(Host(row.Then))) << row.Typed;
        const auto told = std::exchange(Requests, {});
        ASSERT_EQ(told.size(), row.Told != nullptr ? 1U : 0U) << row.Typed;
        if (row.Told != nullptr) {
            EXPECT_THAT(told.front(), testing::HasSubstr(row.Told)) << row.Typed;
        }
    }
    EXPECT_EQ(Details1Buffer.View(), "f");
}

TEST_F(InlineRenameTest, StartsForOneEntryWhereNamesStandAndOnlyIfWanted) {
    Prefs.ContentViewStyle = ViewTiles;
    EXPECT_FALSE(Start(0));
    Prefs.ContentViewStyle = ViewList;
    Objects.ContentList->SelectAll();
    StartInlineRename();
    EXPECT_EQ(Editor(), nullptr);
    Prefs.EnableInlineRename = 0;
    EXPECT_FALSE(Start(0));
}

TEST_F(InlineRenameTest, WhereItCannotStartTheMenuAsksUntilTheNameIsGood) {
    std::vector<std::string> typed, shown;
    intuition::SetFormHandler([&](const intuition::FormSpec& form) {
        shown.push_back(form.Fields.at(0).Text);
        EXPECT_EQ(form.Fields[0].Forbidden, ":/");
        if (typed.empty())
            return intuition::FormAnswer{.Gadget = 2};
        const std::string text = typed.front();
        typed.erase(typed.begin());
        return intuition::FormAnswer{.Gadget = 1, .Texts = {text}};
    });
    const auto rename = [](std::initializer_list<std::size_t> rows) {
        Objects.ContentList->ClearSelection();
        Objects.ContentList->SelectRows(rows);
        HandleMenuPick(MenuRename);
        EXPECT_EQ(Editor(), nullptr);
    };
    Prefs.ContentViewStyle = ViewTiles;
    typed = {"b.txt", "", "A.txt"};
    rename({2});
    EXPECT_THAT(shown, ElementsAre("a.txt", "b.txt", ""));
    EXPECT_THAT(std::exchange(Requests, {}), ElementsAre("File already exists.", "Value can not be empty."));
    EXPECT_THAT(Rows(), ElementsAre("d", "e", "A.txt", "b.txt"));
    Prefs.ContentViewStyle = ViewList;
    Prefs.EnableInlineRename = 0;
    rename({3});
    EXPECT_THAT(Rows(), ElementsAre("d", "e", "A.txt", "b.txt")) << "passed over";
    typed = {"f"};
    rename({0});
    EXPECT_TRUE(std::filesystem::exists(Host("f")));
    const std::size_t asked = shown.size();
    StatusBarBuffer1.Clear();
    rename({0, 1});
    EXPECT_EQ(shown.size(), asked);
    EXPECT_EQ(StatusBarBuffer1.View(), "This command comes with a later version.");
    intuition::SetFormHandler({});
}

TEST_F(InlineRenameTest, ChangeOnDiskWaitsForTheName) {
    for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Escape}) {
        const std::string came = "new" + std::to_string(end);
        ASSERT_TRUE(Start(2));
        File(came);
        DrawerChanged();
        ASSERT_NE(Editor(), nullptr);
        EXPECT_THAT(Rows(), testing::Not(testing::Contains(came)));
        Finish(QStringLiteral("c.txt"), end);
        ServeDelayedChange();
        EXPECT_THAT(Rows(), testing::Contains(came));
        EXPECT_THAT(Rows(), testing::Contains("c.txt"));
    }
    ServeDelayedChange(); // once is enough
    EXPECT_TRUE(std::filesystem::exists(Host("c.txt")));
    EXPECT_FALSE(std::filesystem::exists(Host("a.txt")));
}

TEST_F(InlineRenameTest, AChangeOnDiskIsToldToMenusAndDetailsToo) {
    ASSERT_TRUE(CreateMainMenuStrip());
    const auto isOn = [](MenuId item) { return !MenuStripObj->LookOf(item)->Disabled; };
    ASSERT_TRUE(PopulateContent2("d", Path("d")));
    SetMenuState();
    ASSERT_FALSE(isOn(MenuSelectAll));
    File("d/x");
    DrawerChanged();
    EXPECT_TRUE(isOn(MenuSelectAll));
    Objects.ContentList->Select(0, true);
    SelectContentListItems();
    TellContentSelection();
    ASSERT_TRUE(isOn(MenuRename));
    File("d/y");
    for (const bool byUser : {false, true}) {
        byUser ? static_cast<void>(ReloadDrawer()) : DrawerChanged();
        EXPECT_EQ(Details1Buffer.View(), "x") << byUser;
        EXPECT_TRUE(StatusBarBuffer1.View().starts_with("1/2")) << byUser;
    }
    std::filesystem::remove(Host("d/x"));
    DrawerChanged();
    EXPECT_FALSE(isOn(MenuRename)) << "it would have nothing to rename";
    FreeMainMenuStrip();
}

TEST_F(InlineRenameTest, TitleOfTheIconColumnGoesRoundTheOrdersOfDrawers) {
    Prefs.ContentViewStyle = ViewDetails;
    SetColumnInfo();
    Prefs.DrawersOrder = 0;
    QHeaderView* titles = nullptr;
    for (QWidget* widget : QApplication::allWidgets()) {
        auto* header = qobject_cast<QHeaderView*>(widget);
        titles = header != nullptr && header->isVisible() && header->count() > 2 ? header : titles;
    }
    ASSERT_NE(titles, nullptr);
    const QPoint icon(titles->sectionViewportPosition(0) + titles->sectionSize(0) / 2, titles->height() / 2);
    for (const std::int32_t order : {1, 2, 0}) {
        QTest::mouseClick(titles->viewport(), Qt::LeftButton, Qt::NoModifier, icon);
        HandleContentListBrowser();
        EXPECT_EQ(Prefs.DrawersOrder, order);
    }
}

} // namespace
} // namespace solvane
