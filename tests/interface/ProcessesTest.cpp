// The helpers that find out how menus and bars look, at work beside the loop.
#include "interface/Processes.h"

#include "platform/exec/Ports.h"

#include <gtest/gtest.h>

namespace solvane {
namespace {

TEST(ProcessesTest, EachCommandIsWorkedOnOnceAndTheEndWaitsForTheWork) {
    ASSERT_TRUE(SetUpProcesses());
    const WindowState state{.Location = LocationKind::Aminet, .Selected = true};
    constexpr int Commands = 50;
    for (int command = 0; command < Commands; ++command) {
        TellHelper(SMSPort, state);
        TellHelper(STSPort, state);
        TellHelper(GVPort, state); // idles
    }
    int menus = 0, toolbars = 0;
    while (menus + toolbars < 2 * Commands) {
        exec::WaitPort(*ResultPort);
        const auto result = TakeHelperResult();
        ASSERT_TRUE(result);
        menus += result->Menu == DoSetMenuState(state) ? 1 : 0;
        toolbars += result->Toolbar == DoSetToolbarState(state) ? 1 : 0;
    }
    EXPECT_EQ(menus, Commands);
    TellHelper(SMSPort, state);
    ShutDownProcesses();
    EXPECT_EQ(SMSPort, nullptr);
    TellHelper(SMSPort, state);
}

} // namespace
} // namespace solvane
