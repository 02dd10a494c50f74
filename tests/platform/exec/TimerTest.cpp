#include "platform/exec/Timer.h"

#include "tests/platform/exec/Loop.h"

#include <chrono>
#include <gtest/gtest.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TEST(Timer, FiresOnceAndNotBeforeItsTime) {
    exec::Timer timer;
    const auto start = Clock::now();
    timer.Start(30);
    EXPECT_EQ(exec::Wait(timer.Mask()), timer.Mask());
    EXPECT_GE(Clock::now() - start, milliseconds(30));
    exec::Delay(2);
    EXPECT_EQ(exec::CheckSignal(timer.Mask()), 0U);
}

TEST(Timer, EachOfSeveralFiresInItsTurn) {
    exec::Timer late, early;
    late.Start(60);
    early.Start(10);
    EXPECT_EQ(exec::Wait(late.Mask() | early.Mask()), early.Mask());
    EXPECT_EQ(exec::Wait(late.Mask() | early.Mask()), late.Mask());
}

TEST(Timer, AStoppedOneIsSilentEvenWhenItHasFired) {
    exec::Timer fired, running;
    fired.Start(0);
    running.Start(20);
    exec::Delay(2);
    fired.Stop();
    running.Stop();
    exec::Delay(2);
    EXPECT_EQ(exec::CheckSignal(fired.Mask() | running.Mask()), 0U);
}

TEST(Timer, AStartReplacesTheOneBefore) {
    exec::Timer timer;
    const auto start = Clock::now();
    timer.Start(4'000'000'000U);
    timer.Start(1);
    exec::Delay(1);
    timer.Start(40);
    EXPECT_EQ(exec::Wait(timer.Mask()), timer.Mask());
    EXPECT_GE(Clock::now() - start, milliseconds(60));
}

TEST(Timer, DelayWorksWithoutAFreeSignalAndLeavesOthersPending) {
    const int number = exec::AllocSignal();
    const exec::SignalMask mask = exec::SignalMask{1} << number;
    exec::Signal(exec::FindTask(), mask);
    const auto start = Clock::now();
    exec::Delay(1);
    exec::SignalMask taken = 0;
    for (int other = exec::AllocSignal(); other >= 0; other = exec::AllocSignal())
        taken |= exec::SignalMask{1} << other;
    EXPECT_EQ(exec::Timer().Mask(), 0U);
    exec::Delay(1);
    EXPECT_GE(Clock::now() - start, milliseconds(40));
    EXPECT_EQ(exec::CheckSignal(mask), mask);
    exec::FreeSignal(number);
    for (int other = 0; other < 32; ++other)
        if ((taken >> other & 1) != 0)
            exec::FreeSignal(other);
}

TEST(Timer, DelayRunsTheEventLoop) {
    const Loop loop;
    exec::Delay(1);
    EXPECT_TRUE(loop.HasWaited);
}

} // namespace
