#include "frame/MenuDispatch.h"

#include "frame/EventDispatch.h"
#include "frame/Toolbars.h"
#include "interface/ContextMenus.h"
#include "interface/MenuIds.h"
#include "interface/MenuTable.h"
#include "interface/Menus.h"
#include "platform/intuition/NativeWindow.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "tests/automation/PressKey.h"
#include "tests/locations/OpenWindow.h"
#include "tests/platform/intuition/Stage.h"

#include <QAbstractButton>
#include <QLineEdit>

#include <gmock/gmock.h>
#include <set>
#include <tuple>

namespace solvane {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::IsEmpty;

class MenuDispatchTest : public intuition::OnDisplay {
protected:
    ~MenuDispatchTest() override {
        FreeMainMenuStrip();
        FreeContextMenus();
        Prefs = {};
    }
};

void CheckItems(const std::vector<intuition::MenuItem>& items, std::set<std::uint16_t>& seen) {
    for (const intuition::MenuItem& item : items) {
        if (item.Id == MenuNone)
            continue;
        EXPECT_TRUE(seen.insert(item.Id).second) << item.Id << " " << item.Label;
        EXPECT_FALSE(item.Label.empty()) << item.Id;
        EXPECT_NE(HasCommand(item.Id), item.IsHead) << item.Id << " " << item.Label;
        CheckItems(item.Items, seen);
    }
}

TEST_F(MenuDispatchTest, EveryItemOfTheStripHasANumberOfItsOwnAndLeadsToACommandUnlessItIsAHead) {
    std::set<std::uint16_t> seen;
    CheckItems(StripItems(), seen);
    for (int id = 1; id <= 158; ++id) { // these belong to lines between items
        const bool isLine = std::set{42, 74, 80, 132, 136}.contains(id) || (id >= 32 && id <= 41);
        EXPECT_NE(seen.contains(static_cast<std::uint16_t>(id)), isLine) << id;
    }
    for (const MenuId button : ItemOfButton)
        EXPECT_TRUE(HasCommand(button) || button == MenuSelectByType || button == MenuArchive) << button;
}

void CollectHeads(const std::vector<intuition::MenuItem>& items, std::set<std::uint16_t>& heads) {
    for (const intuition::MenuItem& item : items) {
        if (item.IsHead)
            heads.insert(item.Id);
        CollectHeads(item.Items, heads);
    }
}

TEST_F(MenuDispatchTest, EveryItemOfTheContextMenusLeadsToACommandUnlessItIsAHead) {
    std::set<std::uint16_t> heads = {MenuNone, MenuSortBy};
    CollectHeads(StripItems(), heads);
    ASSERT_TRUE(CreateMainMenuStrip());
    ASSERT_TRUE(CreateContextMenus());
    for (const auto* menu :
         {&ContextMenuObjects.NavContextMenuObj, &ContextMenuObjects.ConContextMenuObj,
          &ContextMenuObjects.ComputerContextMenuObj, &ContextMenuObjects.SeaContextMenuObj,
          &ContextMenuObjects.AminetContextMenuObj, &ContextMenuObjects.ArcContextMenuObj})
        for (const std::uint16_t id : (*menu)->Ids())
            EXPECT_NE(HasCommand(id), heads.contains(id)) << id;
}

TEST_F(MenuDispatchTest, MarksFollowTheSettings) {
    ASSERT_TRUE(CreateMainMenuStrip());
    Prefs.DrawersOrder = 1;
    Prefs.PreviewPane = 1;
    Prefs.PreviewStyle = 1;
    UpdateMenus_ViewMisc();
    UpdateMenus_Layout();
    EXPECT_FALSE(MenuStripObj->LookOf(MenuDrawersFirst)->Checked);
    EXPECT_TRUE(MenuStripObj->LookOf(MenuDrawersMixed)->Checked);
    EXPECT_FALSE(MenuStripObj->LookOf(MenuLayoutPreviewHorizontal)->Checked);
    EXPECT_TRUE(MenuStripObj->LookOf(MenuLayoutPreviewVertical)->Checked);
}

TEST_F(MenuDispatchTest, AnItemThatHasNoFeatureYetSaysSo) {
    StatusBarBuffer2 = "right";
    HandleMenuPick(MenuHexView);
    EXPECT_EQ(StatusBarBuffer1.View(), "This command comes with a later version.");
    EXPECT_EQ(StatusBarBuffer2.View(), "right");
}

using MenuKeysTest = OpenWindow;

TEST_F(MenuKeysTest, ReturnInTheSearchFieldAndTheButtonBesideItSayThatTheyComeLater) {
    auto& field = intuition::WidgetOf<QLineEdit>(*Objects.Search);
    QAbstractButton* button = nullptr;
    for (auto* found : MainWindow->Native().findChildren<QAbstractButton*>())
        button = found->toolTip() == QLatin1String("Advanced search") ? found : button;
    ASSERT_NE(button, nullptr);
    for (const bool typed : {true, false}) {
        StatusBarBuffer1.Clear();
        typed ? QTest::keyClick(&field, Qt::Key_Return) : QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(ServeWindowEvents(), Station::WaitLoop);
        EXPECT_EQ(StatusBarBuffer1.View(), "This command comes with a later version.") << typed;
    }
}

TEST_F(MenuKeysTest, AnyUserButtonSaysThatItComesLater) {
    for (const std::uint16_t number : {std::uint16_t{0}, std::uint16_t{499}}) {
        StatusBarBuffer1.Clear();
        intuition::PostFrom(MainWindow->Native(), intuition::EventClass::GadgetUp, GadgetUserButtons, number);
        EXPECT_EQ(ServeWindowEvents(), Station::WaitLoop);
        EXPECT_EQ(StatusBarBuffer1.View(), "This command comes with a later version.") << number;
    }
}

TEST_F(MenuKeysTest, TheChooserOfScriptsStartsThoseThatHaveNoItemInTheMenu) {
    ARexxList = SAK_CreateGenericList<ARexxNode>();
    for (int at = 0; at < 102; ++at) {
        auto node = SAK_CreateGenericListNode<ARexxNode>();
        node->ScriptPath = "Gone:" + std::to_string(at);
        SAK_AddGenericListNode(*ARexxList, std::move(node));
    }
    for (const std::uint32_t position : {2, 103, 104}) {
        HandleScriptChooser(position);
    }
    ARexxList.reset();
    EXPECT_THAT(Requests, ElementsAre(HasSubstr("Gone:0"), HasSubstr("Gone:101"))) << "there is no rx here";
}

TEST_F(MenuKeysTest, ALockOutlivesTheRoundAndTheCloseGadgetEndsIt) {
    Prefs.StatusBar = 1;
    ShowStatusBar();
    for (const bool byScript : {true, false}) {
        LockMainWindow();
        LockMainWindow();
        BlockMainWindow(1);
        BlockMainWindow(-1);
        EXPECT_TRUE(MainWindow->IsBlocked());
        EXPECT_EQ(Objects.StatusLeft->Text(), SAK_LocaleString(MSG_WINDOW_LOCKED));
        SetStatusBar("newer", ""); // as a tab does that comes on show
        EXPECT_EQ(Objects.StatusLeft->Text(), SAK_LocaleString(MSG_WINDOW_LOCKED));
        if (byScript) {
            EXPECT_TRUE(UnlockMainWindow());
        } else {
            MainWindow->Native().close();
            EXPECT_EQ(ServeWindowEvents(), Station::WaitLoop);
        }
        EXPECT_FALSE(MainWindow->IsBlocked());
        EXPECT_EQ(Objects.StatusLeft->Text(), "newer");
        EXPECT_EQ(StatusBarBuffer1.View(), "newer");
        EXPECT_EQ(done, 0);
    }
    EXPECT_FALSE(UnlockMainWindow());
    MainWindow->Native().close();
    EXPECT_EQ(ServeWindowEvents(), Station::WaitLoop);
    EXPECT_EQ(std::exchange(done, std::uint16_t{0}), 1);
}

TEST_F(MenuKeysTest, AKeyPicksItsItemWhereTheItemCouldBePicked) {
    File("d/file");
    ASSERT_TRUE(Scan("d"));
    LBLocation = LocationKind::Drawer;
    constexpr std::uint16_t control = intuition::qualifier::Control;
    const std::tuple<std::uint16_t, std::uint16_t, MenuId, bool> keys[] = {
        {50, control, MenuCut, true},
        {51, control, MenuCopy, true},
        {52, control, MenuPaste, false}, // nothing was cut or copied
        {intuition::rawkey::Delete, 0, MenuDelete, true},
        {86, 0, MenuToggleMetadata, true}};
    for (const bool selected : {false, true}) {
        NumSelected = selected ? 1 : 0;
        for (const auto& [key, held, item, whenSelected] : keys) {
            while (MainWindow->NextEvent()) {
            }
            static_cast<void>(PressKey(key, held));
            const auto event = MainWindow->NextEvent();
            const bool expected = selected ? whenSelected : item == MenuToggleMetadata;
            ASSERT_EQ(event.has_value(), expected) << key << selected;
            EXPECT_TRUE(!event || (event->Class == intuition::EventClass::MenuPick && event->Code == item &&
                                   event->Qualifier == held));
        }
    }
}

class HiddenEntriesTest : public OpenWindow {
protected:
    HiddenEntriesTest() { ProgramPrefsFile = Path("prefs.xml"); }
    ~HiddenEntriesTest() override {
        FreeMainMenuStrip();
        ProgramPrefsFile.Clear();
    }
};

TEST_F(HiddenEntriesTest, KeyAndMenuAreOneRoad) {
    constexpr std::uint16_t keyH = 37;
    ASSERT_TRUE(CreateMainMenuStrip());
    Plant({"d/.hidden", "d/seen"});
    ASSERT_TRUE(Scan("d"));
    LBLocation = LocationKind::Drawer;
    static_cast<void>(PressKey(keyH, intuition::qualifier::Control));
    EXPECT_TRUE(MenuStripObj->LookOf(MenuShowHidden)->Checked);
    EXPECT_THAT(Rows(), ElementsAre(".hidden", "seen"));
    HandleMenuPick(MenuShowHidden);
    EXPECT_FALSE(MenuStripObj->LookOf(MenuShowHidden)->Checked);
    EXPECT_THAT(Rows(), ElementsAre("seen"));
    EXPECT_THAT(Requests, IsEmpty());
}

} // namespace
} // namespace solvane
