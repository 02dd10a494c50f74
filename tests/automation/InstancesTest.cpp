#include "automation/Instances.h"

#include "model/Program.h"
#include "platform/exec/PublicPorts.h"
#include "tests/locations/OpenWindow.h"
#include "tests/platform/exec/Processes.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using intuition::Box;
using Sides = std::array<int, 4>;

Sides SidesOf(const Box& box) {
    return {box.Left, box.Top, box.Width, box.Height};
}

TEST(InstancesTest, BoxesOnTheScreen) {
    const Box area{10, 25, 803, 575};
    const struct {
        const char* What;
        Box Found;
        Sides Wanted;
    } rows[] = {
        {"left half", TileOf(Arrangement::Vertical, area, 0), {10, 25, 401, 575}},
        {"right half", TileOf(Arrangement::Vertical, area, 1), {411, 25, 401, 575}},
        {"over the first again", TileOf(Arrangement::Vertical, area, 2), {10, 25, 401, 575}},
        {"upper half", TileOf(Arrangement::Horizontal, area, 0), {10, 25, 803, 287}},
        {"lower half", TileOf(Arrangement::Horizontal, area, 1), {10, 312, 803, 287}},
        {"second corner", TileOf(Arrangement::FourCorners, area, 1), {411, 25, 401, 287}},
        {"third corner", TileOf(Arrangement::FourCorners, area, 2), {10, 312, 401, 287}},
        {"fourth corner", TileOf(Arrangement::FourCorners, area, 3), {411, 312, 401, 287}},
        {"fifth of four", TileOf(Arrangement::FourCorners, area, 4), {10, 25, 401, 287}},
        {"second behind", CascadeBox({5, 6, 300, 200}, 2), {25, 26, 300, 200}},
        {"centre", CentredBox(area, 403, 175), {210, 225, 403, 175}},
        {"three fourths", BoxOfPart(area, {3, 4}), {111, 98, 600, 429}},
        {"five eighths", BoxOfPart(area, {5, 8}), {161, 135, 500, 355}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(SidesOf(row.Found), row.Wanted) << row.What;
}

TEST(InstancesTest, NumbersAreReadFromThePortsOfTheProgramAlone) {
    EXPECT_EQ(InstanceOfPort("SOLVANE.12"), 12U);
    for (const char* other : {"", "SOLVANE", "SOLVANE.", "SOLVANE.x", "SOLVANE.1x", "OTHER.1"})
        EXPECT_EQ(InstanceOfPort(other), std::nullopt) << other;
}

class InstancePorts : public exec_tests::RuntimeTest {
protected:
    ~InstancePorts() override { PortNumber = 1; }
    static std::vector<std::string> CommandsOf(exec::PublicPort& port) {
        std::vector<std::string> commands;
        while (const auto message = port.Get())
            commands.push_back(message->Command());
        return commands;
    }
};

TEST_F(InstancePorts, TheOthersAreToldOnceAndTheFirstIsNotAwaited) {
    PortNumber = 7;
    std::set<std::string> told;
    const struct {
        std::vector<std::string> Ports, ToTell;
        bool SomeAreAwaited;
    } rounds[] = {{{"REXX", "SOLVANE.1", "SOLVANE.7", "SOLVANE.8"}, {"SOLVANE.1", "SOLVANE.8"}, true},
                  {{"SOLVANE.1", "SOLVANE.7", "SOLVANE.8", "SOLVANE.9"}, {"SOLVANE.9"}, true},
                  {{"SOLVANE.1", "SOLVANE.7", "SOLVANE.8"}, {}, true},
                  {{"SOLVANE.1", "SOLVANE.7"}, {}, false}};
    for (const auto& each : rounds) {
        const QuitRound round = NextQuitRound(each.Ports, told);
        EXPECT_EQ(round.ToTell, each.ToTell);
        EXPECT_EQ(round.SomeAreAwaited, each.SomeAreAwaited);
    }
    const auto own = exec::PublicPort::Create("SOLVANE.7");
    const auto first = exec::PublicPort::Create("SOLVANE.1");
    CloseAllButThisWindow();
    static_cast<void>(exec::Wait(first->Mask()));
    EXPECT_THAT(CommandsOf(*first), testing::ElementsAre("QUITNOSAVE")) << "it is not waited for";
    EXPECT_THAT(CommandsOf(*own), testing::IsEmpty());
}

using InstanceWindow = OpenWindow;

TEST_F(InstanceWindow, FullScreenTwiceRestoresTheBoxThatIsNotCollectedMeanwhile) {
    MainWindow->SetGeometry({30, 40, 500, 300});
    const Sides before = SidesOf(MainWindow->Geometry());
    Prefs.AutosaveWindowPosition = 1;
    FullScreen();
    EXPECT_GT(MainWindow->Geometry().Width, 500);
    EXPECT_EQ(Prefs.WindowWidth, 500);
    FullScreen();
    EXPECT_EQ(SidesOf(MainWindow->Geometry()), before);
    EXPECT_EQ(GoFullScreen, 0);
}

} // namespace
} // namespace solvane
