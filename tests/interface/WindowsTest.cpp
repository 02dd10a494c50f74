#include "interface/Windows.h"

#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/application/Start.h"
#include "platform/intuition/Requesters.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace solvane {
namespace {

using testing::Contains, testing::ElementsAre, testing::Not, testing::StartsWith;

std::vector<std::string> Words;
std::vector<std::string> Environment;

std::vector<std::string> Copied(char* const* texts) {
    std::vector<std::string> copies;
    for (; *texts != nullptr; ++texts)
        copies.emplace_back(*texts);
    return copies;
}

class WindowsTest : public DosTest {};

TEST_F(WindowsTest, AnInstanceIsStartedWithThePathAndWithoutTheWishForAPicture) {
    Tree.Write("the program", "#!/bin/true\n");
    ::chmod(Tree.Path("the program").c_str(), 0755);
    dos::CurrentDir(dos::Lock("Test:"));
    Calls().Spawn = [](const dos::SpawnOrder& order) {
        Words = Copied(order.Words);
        Environment = Copied(order.Environment);
        errno = EAGAIN;
        return -1;
    };
    const ScopedVariable wish("SOLVANE_SNAPSHOT", "/nowhere/window.png");
    EXPECT_EQ(application::SnapshotFile(), "/nowhere/window.png");
    ProgramComplete = "Test:the program";
    OpenNewSolvaneWindow("Gone:a \"b*c; $HOME`id`");
    EXPECT_THAT(Words, ElementsAre("the program", "Gone:a \"b*c; $HOME`id`"));
    EXPECT_THAT(Environment, Not(Contains(StartsWith("SOLVANE_SNAPSHOT="))));

    Words.clear();
    ProgramComplete.Clear();
    OpenNewSolvaneWindow("Test:");
    EXPECT_THAT(Words, ElementsAre()) << "where the program lies is not known";
}

TEST_F(WindowsTest, WhereThereCanBeNoneAScriptIsRefusedInSilenceAndAUserIsTold) {
    std::vector<std::string> told;
    intuition::SetRequestHandler([&told](const intuition::EasyRequestSpec& spec) {
        told.push_back(spec.Text);
        return 0;
    });
    CommodityInForce = 1;
    for (const auto open : {OpenNewSolvaneWindow, OpenWantedWindow}) {
        EXPECT_TRUE(told.empty());
        dos::SetIoErr(0);
        EXPECT_FALSE(open("Test:"));
        EXPECT_EQ(dos::IoErr(), dos::ErrorTaskTableFull);
    }
    CommodityInForce = 0;
    EXPECT_THAT(told, ElementsAre("Could not open window."));
    intuition::SetRequestHandler({});
}

} // namespace
} // namespace solvane
