#include "platform/exec/Forbid.h"

#include "platform/exec/Tasks.h"
#include "tests/platform/exec/Processes.h"

#include <thread>
#include <vector>

namespace {

using namespace exec_tests;
using Forbid = RuntimeTest;

// Another process that tries to get in when it is asked to.
class Neighbour {
public:
    [[nodiscard]] bool GetsIn() {
        Ask.Send();
        return Attempts.Join() == 1;
    }

private:
    Channel Ask;
    Process Attempts{[this] {
        Ask.Receive();
        return exec::AttemptForbid() ? 1 : 0;
    }};
};

TEST_F(Forbid, LetsOneProcessInAtATime) {
    const std::string counter = Temp.Path("counter");
    std::ofstream(counter) << 0;
    {
        std::vector<Process> processes;
        for (int i = 0; i < 8; ++i) {
            processes.emplace_back([&] {
                for (int round = 0; round < 200; ++round) {
                    const exec::ForbidScope forbidden;
                    int count = 0;
                    std::ifstream(counter) >> count;
                    std::ofstream(counter) << count + 1;
                }
                return 0;
            });
        }
        for (Process& process : processes)
            EXPECT_EQ(process.Join(), 0);
    }
    int count = 0;
    std::ifstream(counter) >> count;
    EXPECT_EQ(count, 8 * 200);
}

TEST_F(Forbid, NestsAndTakesNoHarmFromOnePermitTooMany) {
    Neighbour early, late;
    exec::Permit();
    exec::Forbid();
    exec::Forbid();
    EXPECT_TRUE(exec::AttemptForbid());
    exec::Permit();
    exec::Permit();
    EXPECT_FALSE(early.GetsIn());
    exec::Permit();
    exec::Permit();
    EXPECT_TRUE(late.GetsIn());
}

TEST_F(Forbid, KeepsOtherThreadsOut) {
    int count = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 2000; ++round) {
                const exec::ForbidScope forbidden;
                ++count;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(count, 4 * 2000);
}

TEST_F(Forbid, EndsWithItsTaskAndWithItsKilledProcess) {
    static_cast<void>(exec::CreateTask("careless", [] { exec::Forbid(); }));
    EXPECT_TRUE(Neighbour().GetsIn());

    const Channel inside;
    Process killed([&] {
        exec::Forbid();
        inside.Send();
        return pause();
    });
    inside.Receive();
    EXPECT_FALSE(exec::AttemptForbid());
    killed.Kill();
    EXPECT_TRUE(exec::AttemptForbid());
    exec::Permit();
}

TEST_F(Forbid, SurvivesTheRemovalOfItsFile) {
    Neighbour neighbour;
    exec::Forbid();
    std::filesystem::remove(exec::RuntimeDirectory() + "/forbid");
    exec::Permit();
    exec::Forbid();
    EXPECT_FALSE(neighbour.GetsIn());
    exec::Permit();
}

} // namespace
