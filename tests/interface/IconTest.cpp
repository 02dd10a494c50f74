// Leaving the window for an icon and coming back, without a screen.
#include "fileops/Drops.h"
#include "interface/Iconify.h"
#include "interface/Screens.h"
#include "model/Program.h"
#include "platform/intuition/AppIcon.h"
#include "tests/locations/OpenWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <gmock/gmock.h>
#include <memory>
#include <utility>

namespace solvane {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::SizeIs;

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
    // The icon's window, null where none is seen.
    static QWidget* IconWindow() {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* window : windows)
            if (window->isVisible() && window->windowFlags().testFlag(Qt::FramelessWindowHint))
                return window;
        return nullptr;
    }
    static bool Send(std::vector<std::string> objects, bool quits = false,
                     IconDrop drop = IconDrop::IntoDrawer) {
        auto message = std::make_unique<intuition::AppMessage>();
        message->Arguments = std::move(objects);
        message->Quits = quits;
        exec::PutMsg(*AppIconPort, std::move(message));
        return AppIconMsg(*AppIconPort, drop);
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

TEST_F(IconTest, WithNoFormWantedAnIconStandsOnTheDesktop) {
    Prefs.IconifyAppIcon = Prefs.IconifyAppDocky = 0;
    ASSERT_TRUE(Iconify());
    ASSERT_NE(IconWindow(), nullptr);
    EXPECT_EQ(IconWindow()->windowTitle(), QStringLiteral("Solvane_1"));
}

TEST_F(IconTest, WhoStandsOnTheDesktopHearsOfIt) {
    struct Case {
        int Desktop, Menu, Dock;
        const std::unique_ptr<exec::MsgPort>& Hears;
    };
    for (const Case& form :
         {Case{1, 1, 1, AppIconPort}, Case{0, 1, 1, AppMenuPort}, Case{0, 0, 1, AppLibPort}}) {
        Prefs.IconifyAppIcon = static_cast<std::int16_t>(form.Desktop);
        Prefs.IconifyAppMenu = static_cast<std::int16_t>(form.Menu);
        Prefs.IconifyAppDocky = static_cast<std::int16_t>(form.Dock);
        appShowInAmiDock = 1; // an entry from the start, which no tray shows
        ASSERT_TRUE(Iconify());
        ASSERT_NE(IconWindow(), nullptr);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(IconWindow(), &key);
        EXPECT_TRUE(AppIconMsg(*form.Hears, IconDrop::IntoDrawer));
        EXPECT_EQ(IconWindow(), nullptr) << "is gone with the window back";
    }
}

TEST_F(IconTest, DropsAreForADrawerOnly) {
    LBLocation = LocationKind::Computer;
    ASSERT_TRUE(Iconify());
    EXPECT_FALSE(AcceptDD());
    EXPECT_FALSE(Send({Path("a file")}));
    EXPECT_THAT(Requests, ElementsAre(HasSubstr("Can not copy to current location.")));
    EXPECT_TRUE(Send({Path("a file")}, false, IconDrop::Opens)) << "the entry of the menu takes none";
    EXPECT_THAT(Requests, SizeIs(1));
}

TEST_F(IconTest, TheMenuEndsTheProgram) {
    ASSERT_TRUE(Iconify());
    EXPECT_FALSE(Send({}, true));
    EXPECT_EQ(done, 1);
}

} // namespace
} // namespace solvane
