// Leaving the window for an icon and coming back, without a screen.
#include "fileops/Drops.h"
#include "interface/Iconify.h"
#include "interface/Screens.h"
#include "model/Program.h"
#include "platform/intuition/AppIcon.h"
#include "tests/locations/OpenWindow.h"

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace solvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class IconTest : public OpenWindow {
protected:
    IconTest() {
        AppIconPort = std::make_unique<exec::MsgPort>();
        WindowClosed = Iconified = done = appShowInAmiDock = 0;
        AppIconName = "Solvane_1";
        Prefs.IconifyAppDocky = 1;
        EXPECT_TRUE(RegisterApp());
    }
    ~IconTest() override {
        Uniconify();
        UnregisterApp();
        ShutDownAppMenuItem();
        Iconified = WindowClosed = done = 0;
        AppIconPort.reset();
    }
    static bool Send(std::vector<std::string> objects, bool quits = false) {
        auto message = std::make_unique<intuition::AppMessage>();
        message->Arguments = std::move(objects);
        message->Quits = quits;
        exec::PutMsg(*AppIconPort, std::move(message));
        return AppIconMsg(*AppIconPort);
    }
};

TEST_F(IconTest, TheWindowGoesAndItsGadgetsStay) {
    LBLocation = LocationKind::Drawer;
    CurrentPath = Path("games/");
    ASSERT_TRUE(Iconify());
    EXPECT_FALSE(MainWindow->IsOpen());
    EXPECT_NE(Objects.ContentList, nullptr);
    EXPECT_EQ(WindowClosed, 1);
    EXPECT_EQ(IconifiedAppDocky, 1);
    EXPECT_TRUE(Send({})) << "a double click brings the window back";
    EXPECT_EQ(IconifiedAppDocky, 0);
    EXPECT_EQ(Iconified, 1) << "is cleared with the window open again";
}

TEST_F(IconTest, OnAScreenOfItsOwnNothingHappens) {
    Prefs.OpenOnOwnScreen = 1;
    EXPECT_FALSE(Iconify());
    EXPECT_TRUE(MainWindow->IsOpen());
    EXPECT_EQ(Iconified, 0);
}

TEST_F(IconTest, WithNoFormWantedTheDockTakesIt) {
    Prefs.IconifyAppIcon = Prefs.IconifyAppDocky = 0;
    ASSERT_TRUE(Iconify());
    EXPECT_EQ(IconifiedAppDocky, 1);
}

TEST_F(IconTest, DropsAreForADrawerOnly) {
    LBLocation = LocationKind::Computer;
    ASSERT_TRUE(Iconify());
    EXPECT_EQ(AcceptDD, 0);
    EXPECT_FALSE(Send({Path("a file")}));
    EXPECT_THAT(Requests, ElementsAre(HasSubstr("Can not copy to current location.")));
}

TEST_F(IconTest, TheMenuEndsTheProgram) {
    ASSERT_TRUE(Iconify());
    EXPECT_FALSE(Send({}, true));
    EXPECT_EQ(done, 1);
}

} // namespace
} // namespace solvane
