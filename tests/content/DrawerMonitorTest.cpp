#include "content/DrawerMonitor.h"

#include "platform/dos/Notify.h"
#include "platform/exec/Tasks.h"
#include "sak/Notify.h"
#include "tests/content/DrawerTest.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using testing::ElementsAre;

class DrawerMonitorTest : public DrawerTest {
protected:
    DrawerMonitorTest() {
        EXPECT_TRUE(SAK_SetUpNotify());
        Prefs.MonitorDrawer = 1;
        Prefs.DetermineDatatype = 2;
    }
    ~DrawerMonitorTest() override { SAK_ShutDownNotify(); }

    // Sleeps until any other watch on that drawer has told of a change: a watch of the test's own tells of
    // two.
    void ChangeAndWait(const std::string& drawer) {
        const int signal = exec::AllocSignal();
        const exec::SignalMask told = exec::SignalMask{1} << signal;
        dos::Notification clock;
        ASSERT_TRUE(clock.Start(Path(drawer), exec::FindTask(), signal));
        for (const char* file : {"/change 1", "/change 2"}) {
            File(drawer + file);
            static_cast<void>(exec::Wait(told));
        }
        clock.End();
        exec::FreeSignal(signal);
    }

    // Sleeps until the watched drawer has changed, then does what the main loop does.
    static void ServeOneChange() {
        ASSERT_NE(exec::Wait(SAK_NotifySignal) & SAK_NotifySignal, 0U);
        DrawerChanged();
    }
};

TEST_F(DrawerMonitorTest, ChangeOnDiskReloadsTheDrawerInPlace) {
    File("d/a");
    ASSERT_TRUE(Scan("d"));
    LBTop = 1;
    File("d/b");
    ServeOneChange();
    EXPECT_THAT(Rows(), ElementsAre("a", "b"));
    EXPECT_EQ(LBTop, 1U);
    std::filesystem::remove(Host("d/a"));
    ServeOneChange();
    EXPECT_THAT(Rows(), ElementsAre("b"));
}

TEST_F(DrawerMonitorTest, OwnChangeIsSwallowedOnce) {
    File("d/a");
    ASSERT_TRUE(Scan("d"));
    Changes = 1;
    File("d/b");
    ServeOneChange();
    EXPECT_THAT(Rows(), ElementsAre("a"));
    EXPECT_EQ(Changes, 0);
    File("d/c");
    ServeOneChange();
    EXPECT_THAT(Rows(), ElementsAre("a", "b", "c"));
}

TEST_F(DrawerMonitorTest, OnlyTheDrawerOnShowIsWatched) {
    Plant({"old/", "new/"});
    ASSERT_TRUE(Scan("old"));
    File("old/change nobody looks at");
    ASSERT_TRUE(Scan("new"));
    ChangeAndWait("new");
    EXPECT_NE(exec::SetSignal(0, SAK_NotifySignal) & SAK_NotifySignal, 0U);
    DrawerChanged();
    EXPECT_EQ(Rows().size(), 2U);
    ChangeAndWait("old");
    EXPECT_EQ(exec::SetSignal(0, 0) & SAK_NotifySignal, 0U);
}

TEST_F(DrawerMonitorTest, RefusedDrawerLeavesTheOneOnShowWatched) {
    Plant({"shown/", "closed/"});
    ASSERT_TRUE(Scan("shown"));
    std::filesystem::permissions(Host("closed"), std::filesystem::perms::none);
    {
        const PlainUser user(HostRoot);
        ASSERT_FALSE(Scan("closed"));
    }
    ChangeAndWait("shown");
    EXPECT_NE(exec::SetSignal(0, 0) & SAK_NotifySignal, 0U);
}

TEST_F(DrawerMonitorTest, VanishedDrawerIsToldAndItsRowsStay) {
    File("d/a");
    ASSERT_TRUE(Scan("d"));
    std::filesystem::remove_all(Host("d"));
    ServeOneChange();
    EXPECT_THAT(Requests, ElementsAre("Drawer does not exist."));
    EXPECT_THAT(Rows(), ElementsAre("a"));
}

TEST_F(DrawerMonitorTest, OtherLocationsAreNotReloaded) {
    File("d/a");
    ASSERT_TRUE(Scan("d"));
    LBLocation = LocationKind::Computer;
    File("d/b");
    ServeOneChange();
    EXPECT_THAT(Rows(), ElementsAre("a"));
}

TEST_F(DrawerMonitorTest, StoppedMonitorGoesOnWhereItWas) {
    Drawer("d");
    ASSERT_TRUE(Scan("d"));
    SAK_StopNotify();
    EXPECT_EQ(SAK_NotifyStarted, 0);
    SAK_StartNotify();
    EXPECT_EQ(SAK_NotifyStarted, 1);
    File("d/a");
    ServeOneChange();
    EXPECT_THAT(Rows(), ElementsAre("a"));
    SAK_ShutDownNotify();
    EXPECT_EQ(SAK_NotifySignal, 0U);
    SAK_StartNotify();
    EXPECT_EQ(SAK_NotifyStarted, 0);
}

} // namespace
} // namespace solvane
