#include "platform/exec/Tasks.h"

#include "platform/exec/Ports.h"
#include "tests/platform/exec/Loop.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

using exec::SignalMask;

SignalMask Bit(int number) {
    return SignalMask{1} << number;
}

TEST(Tasks, EverySignalNumberIsGivenOnceAndComesBackCleared) {
    std::vector<int> numbers;
    SignalMask all = exec::ProcessPort(exec::FindTask()).Mask();
    for (int number = exec::AllocSignal(); number >= 0; number = exec::AllocSignal()) {
        EXPECT_EQ(all & Bit(number), 0U);
        all |= Bit(number);
        numbers.push_back(number);
    }
    EXPECT_EQ(all, ~exec::BreakSignals);
    exec::Signal(exec::FindTask(), Bit(numbers[5]));
    exec::FreeSignal(numbers[5]);
    exec::FreeSignal(-1);
    exec::FreeSignal(32);
    EXPECT_EQ(exec::AllocSignal(), numbers[5]);
    EXPECT_EQ(exec::SetSignal(0, 0), 0U);
    for (const int number : numbers)
        exec::FreeSignal(number);
}

TEST(Tasks, WaitTakesOnlyWhatWasAskedFor) {
    const int first = exec::AllocSignal();
    const int second = exec::AllocSignal();
    exec::Signal(exec::FindTask(), Bit(first) | Bit(second));
    EXPECT_EQ(exec::Wait(Bit(first)), Bit(first));
    EXPECT_EQ(exec::CheckSignal(Bit(first)), 0U);
    EXPECT_EQ(exec::SetSignal(0, Bit(second)), Bit(second));
    EXPECT_EQ(exec::CheckSignal(Bit(second)), 0U);
    EXPECT_EQ(exec::Wait(0), 0U);
    exec::FreeSignal(first);
    exec::FreeSignal(second);
}

// Two tasks wake each other in turn: one lost signal and both sleep for ever.
void PlayPingPong(int rounds) {
    exec::Task* const mine = exec::FindTask();
    const int ping = exec::AllocSignal();
    {
        const auto child = exec::CreateTask("ping pong", [&] {
            const SignalMask pong = exec::ProcessPort(exec::FindTask()).Mask();
            for (int round = 0; round < rounds; ++round) {
                exec::Wait(pong);
                exec::Signal(mine, Bit(ping));
            }
        });
        ASSERT_NE(child, nullptr);
        for (int round = 0; round < rounds; ++round) {
            exec::Signal(child->GetTask(), exec::ProcessPort(*child).Mask());
            EXPECT_EQ(exec::Wait(Bit(ping)), Bit(ping));
        }
    }
    exec::FreeSignal(ping);
}

TEST(Tasks, NoSignalBetweenTasksIsLost) {
    PlayPingPong(20000);
}

TEST(Tasks, NoSignalIsLostWhileTheEventLoopWaits) {
    const Loop loop;
    PlayPingPong(20000);
}

TEST(Tasks, SignalsThatAreAlwaysThereDoNotKeepTheEventLoopFromRunning) {
    const Loop loop;
    const int busy = exec::AllocSignal();
    for (int round = 1; round <= 10; ++round) {
        exec::Signal(exec::FindTask(), Bit(busy));
        exec::Wait(Bit(busy));
        EXPECT_GE(loop.Runs, round);
    }
    exec::FreeSignal(busy);
}

TEST(Tasks, CheckSignalHandlesEventsWithoutWaiting) {
    Loop loop;
    const int number = exec::AllocSignal();
    EXPECT_EQ(exec::CheckSignal(Bit(number)), 0U);
    loop.OnRun = [&] { exec::SetSignal(Bit(number), Bit(number)); };
    EXPECT_EQ(exec::CheckSignal(Bit(number)), Bit(number));
    EXPECT_EQ(loop.Runs, 2);
    exec::FreeSignal(number);
}

TEST(Tasks, EventHandlersMayWaitAndTakeTheirLoopAway) {
    Loop loop;
    const int outer = exec::AllocSignal();
    const int inner = exec::AllocSignal();
    exec::Task* const mine = exec::FindTask();
    std::thread helper;
    loop.OnRun = [&] {
        if (helper.joinable())
            return; // this is the inner one
        helper = std::thread([&] { exec::Signal(mine, Bit(inner)); });
        EXPECT_EQ(exec::Wait(Bit(inner)), Bit(inner));
        exec::SetEventPump({});
        exec::Signal(mine, Bit(outer));
    };
    exec::SetSignal(Bit(outer), Bit(outer));
    EXPECT_EQ(exec::Wait(Bit(outer)), Bit(outer));
    helper.join();
    exec::FreeSignal(outer);
    exec::FreeSignal(inner);
}

struct Order : exec::Message {
    int Number = 0;
    bool Served = false;
};

std::unique_ptr<Order> OrderFor(exec::MsgPort* replyPort, int number) {
    auto order = std::make_unique<Order>();
    order->ReplyPort = replyPort;
    order->Number = number;
    return order;
}

TEST(Ports, MessagesArriveAndComeBackInTheOrderOfTheirSending) {
    constexpr int last = 1000;
    exec::MsgPort replies;
    const auto child = exec::CreateTask("a name longer than fifteen bytes", [] {
        exec::MsgPort& orders = exec::ProcessPort(exec::FindTask());
        for (bool done = false; !done;) {
            exec::WaitPort(orders);
            while (auto message = exec::GetMsg(orders)) {
                auto& order = static_cast<Order&>(*message);
                order.Served = true;
                done = order.Number == last;
                exec::ReplyMsg(std::move(message));
            }
        }
    });
    ASSERT_NE(child, nullptr);
    for (int number = 1; number <= last; ++number)
        exec::PutMsg(exec::ProcessPort(*child), OrderFor(&replies, number));
    for (int number = 1; number <= last; ++number) {
        exec::WaitPort(replies);
        const auto reply = exec::GetMsg(replies);
        EXPECT_EQ(static_cast<Order&>(*reply).Number, number);
        EXPECT_TRUE(static_cast<Order&>(*reply).Served);
    }
    EXPECT_EQ(exec::GetMsg(replies), nullptr);
}

TEST(Ports, WhatAPortLeavesUnreadGoesBackToItsSender) {
    exec::MsgPort replies;
    exec::PutMsg(exec::ProcessPort(*exec::CreateTask("idle", [] {})), OrderFor(&replies, 7));
    {
        exec::MsgPort port;
        exec::PutMsg(port, OrderFor(&replies, 8));
        exec::PutMsg(port, OrderFor(nullptr, 9));
        exec::PutMsg(port, OrderFor(&port, 10)); // a reply that nobody fetched
    }
    for (const int number : {7, 8}) {
        const auto reply = exec::GetMsg(replies);
        ASSERT_NE(reply, nullptr);
        EXPECT_EQ(static_cast<Order&>(*reply).Number, number);
    }
    EXPECT_EQ(exec::CheckSignal(replies.Mask()), replies.Mask());
}

TEST(Ports, APortOfATaskWithoutFreeSignalsSaysSo) {
    std::vector<std::unique_ptr<exec::MsgPort>> ports;
    do {
        ports.push_back(std::make_unique<exec::MsgPort>());
    } while (ports.back()->IsOpen());
    EXPECT_EQ(ports.back()->Mask(), 0U);
    exec::PutMsg(*ports.back(), OrderFor(nullptr, 1));
    EXPECT_NE(exec::GetMsg(*ports.back()), nullptr);
    ports.erase(ports.begin());
    EXPECT_TRUE(exec::MsgPort().IsOpen());
}

} // namespace
