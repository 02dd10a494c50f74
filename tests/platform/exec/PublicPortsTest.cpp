#include "platform/exec/PublicPorts.h"

#include "platform/exec/Descriptor.h"
#include "platform/exec/PortFiles.h"
#include "platform/exec/PortSockets.h"
#include "platform/exec/Timer.h"
#include "tests/platform/exec/Processes.h"
#include "tests/support/Texts.h"

#include <algorithm>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

using namespace exec_tests;
namespace fs = std::filesystem;
using exec::PublicPort, testing::Test;

constexpr int LongTime = 60 * 1000; // ms, for what is expected to come

class PublicPorts : public RuntimeTest {
protected:
    [[nodiscard]] static std::string Directory() { return exec::RuntimeDirectory() + "/ports"; }
    [[nodiscard]] static std::string FileOf(std::string_view name, std::string_view suffix) {
        return Directory() + "/" + exec::PortFileStem(name) + std::string(suffix);
    }
    [[nodiscard]] static std::vector<std::string> Files() {
        return TextsOf(fs::directory_iterator(Directory()),
                       [](const auto& entry) { return entry.path().filename(); });
    }
};

// RC is the size of the command, the result its echo; "R" brings the largest result and one byte too many.
void ReplyToAll(PublicPort& port) {
    while (const auto message = port.Get()) {
        const std::string& command = message->Command();
        message->Reply(-static_cast<int>(command.size()),
                       command == "R" ? std::string(exec::MaxResultSize + 1, 'r') : command);
    }
}

// A process that owns the port and replies until it is killed.
Process StartOwner(const std::string& name) {
    const Channel ready;
    Process owner([&] {
        const auto port = PublicPort::Create(name);
        if (port == nullptr)
            return 1;
        ready.Send();
        while (true) {
            exec::Wait(port->Mask());
            ReplyToAll(*port);
        }
    });
    ready.Receive();
    return owner;
}

// A process that claims the name, is killed, and leaves its files.
void LeaveDeadPort(const std::string& name) {
    StartOwner(name).Kill();
}

TEST_F(PublicPorts, CommandsReachAnotherProcessAndBringBackRcAndResult) {
    const Process owner = StartOwner("SOLVANE.1");
    const std::string commands[] = {
        "",
        "CHANGEPATH \"Work:Bilder/\xC3\xA4\"",
        std::string("zero\0\xFF\n", 7),
        std::string(exec::MaxCommandSize, 'c'),
    };
    for (const std::string& command : commands) {
        SCOPED_TRACE(command.size());
        const auto reply = exec::SendCommand("solvane.1", command, LongTime);
        ASSERT_TRUE(reply.has_value());
        EXPECT_EQ(reply->Rc, -static_cast<int>(command.size()));
        EXPECT_EQ(reply->Result, command);
    }
    const auto large = exec::SendCommand("SOLVANE.1", "R", exec::WaitWithoutLimit);
    ASSERT_TRUE(large.has_value());
    EXPECT_EQ(large->Result, std::string(exec::MaxResultSize, 'r'));
    const std::string tooLong(exec::MaxCommandSize + 1, 'c');
    EXPECT_FALSE(exec::SendCommand("SOLVANE.1", tooLong, LongTime).has_value());
    EXPECT_FALSE(exec::PostCommand("SOLVANE.1", tooLong));
    EXPECT_FALSE(exec::SendCommand("SOLVANE.2", "x", LongTime).has_value());
    EXPECT_FALSE(exec::PostCommand("SOLVANE.2", "x"));
}

TEST_F(PublicPorts, SeveralSendersAreServedAtOnce) {
    const auto port = PublicPort::Create("SOLVANE.1");
    std::vector<Process> senders;
    constexpr int count = 6;
    const Channel done;
    for (int sender = 0; sender < count; ++sender) {
        senders.emplace_back([&] {
            bool good = true;
            for (int round = 0; round < 100; ++round) {
                const std::string command(static_cast<std::size_t>(round * 100), 'x');
                const auto reply = exec::SendCommand("SOLVANE.1", command, LongTime);
                good = good && reply && reply->Result == command;
            }
            static_cast<void>(exec::PostCommand("SOLVANE.1", "end"));
            return good ? 0 : 1;
        });
    }
    for (int ended = 0; ended < count;) {
        exec::Wait(port->Mask());
        while (const auto message = port->Get()) {
            ended += message->Command() == "end" ? 1 : 0;
            message->Reply(0, message->Command());
        }
    }
    for (Process& sender : senders)
        EXPECT_EQ(sender.Join(), 0);
}

// What a process does that looks for the first free number: 0 when there is none up to 50.
int ClaimNumber(std::unique_ptr<PublicPort>& port) {
    const exec::ForbidScope forbidden;
    for (int number = 1; number <= 50; ++number) {
        const std::string name = "Solvane_" + std::to_string(number) + ".port";
        if (!exec::FindPort(name)) {
            port = PublicPort::Create(name);
            return port != nullptr ? number : 0;
        }
    }
    return 0;
}

// Has eight processes do something at once and rest in hold() for a look; gives their sorted exit codes.
using Deed = std::function<int(int number, const std::function<void()>& hold)>;
std::vector<int> DoAtOnce(
    const Deed& deed, const std::function<void()>& look = [] {}) {
    constexpr int count = 8;
    const Channel begin, held, end;
    std::vector<Process> processes;
    for (int number = 0; number < count; ++number) {
        processes.emplace_back([&] {
            begin.Receive();
            return deed(number, [&] {
                held.Send();
                end.Receive();
            });
        });
    }
    begin.Send(count);
    for (int number = 0; number < count; ++number)
        held.Receive();
    look();
    end.Send(count);
    std::vector<int> codes;
    for (Process& process : processes)
        codes.push_back(process.Join());
    std::ranges::sort(codes);
    return codes;
}

TEST_F(PublicPorts, ProcessesThatStartAtTheSameInstantGetDifferentNumbers) {
    for (int round = 0; round < 20; ++round) {
        const auto numbers = DoAtOnce([](int, const auto& hold) {
            std::unique_ptr<PublicPort> port;
            const int number = ClaimNumber(port);
            hold();
            return number;
        });
        EXPECT_EQ(numbers, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8}));
    }
}

TEST_F(PublicPorts, OneOfManyGetsTheNameAndTheNextOneTheNameOfTheDead) {
    LeaveDeadPort("SOLVANE.1");
    const auto claim = [](int number, const auto& hold) -> int {
        const auto port = PublicPort::Create(number % 2 == 0 ? "SOLVANE.1" : "Solvane.1");
        hold();
        _exit(port != nullptr ? 1 : 0); // the port is left as it is
    };
    for (int round = 0; round < 20; ++round) {
        const auto owners = DoAtOnce(claim, [] {
            EXPECT_TRUE(exec::FindPort("SOLVANE.1"));
            EXPECT_EQ(exec::ListPorts().size(), 1U);
        });
        EXPECT_EQ(owners, (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 1}));
    }
}

TEST_F(PublicPorts, APortOfAKilledProcessIsDeadAndItsLeftoversGo) {
    const auto isDead = {+[] { return !exec::SendCommand("SOLVANE.1", "x", LongTime).has_value(); },
                         +[] { return !exec::FindPort("SOLVANE.1"); },
                         +[] { return exec::ListPorts().empty(); }};
    for (const auto finds : isDead) {
        LeaveDeadPort("SOLVANE.1");
        EXPECT_EQ(Files().size(), 2U);
        EXPECT_TRUE(finds());
        EXPECT_EQ(Files().size(), 0U);
    }
    LeaveDeadPort("SOLVANE.1");
    auto port = PublicPort::Create("SOLVANE.1");
    ASSERT_NE(port, nullptr);
    EXPECT_TRUE(exec::FindPort("SOLVANE.1"));
    port.reset();
    EXPECT_FALSE(exec::FindPort("SOLVANE.1"));
    EXPECT_EQ(Files().size(), 0U);
}

TEST_F(PublicPorts, ASenderLearnsOfTheDeathOfTheOwnerWhileItWaits) {
    const Channel fetched;
    Process owner([&] {
        const auto port = PublicPort::Create("SOLVANE.1");
        fetched.Send();
        exec::Wait(port->Mask());
        const auto message = port->Get();
        fetched.Send();
        return pause();
    });
    fetched.Receive();
    std::thread killer([&] {
        fetched.Receive();
        owner.Kill();
    });
    EXPECT_FALSE(exec::SendCommand("SOLVANE.1", "x", exec::WaitWithoutLimit).has_value());
    killer.join();
}

TEST_F(PublicPorts, TimeIsOverForTheSenderAndTheCommandStillCounts) {
    const auto port = PublicPort::Create("SOLVANE.1");
    EXPECT_FALSE(exec::SendCommand("SOLVANE.1", "late", 30).has_value());
    EXPECT_TRUE(exec::PostCommand("SOLVANE.1", "posted"));
    for (const char* const expected : {"late", "posted"}) {
        auto message = port->Get();
        for (; message == nullptr; message = port->Get())
            exec::Wait(port->Mask());
        EXPECT_EQ(message->Command(), expected);
        message->Reply(0, std::string(exec::MaxResultSize, 'x')); // to nobody
    }
}

TEST_F(PublicPorts, CommandsThatNobodyRepliesToComeBackWithRc20) {
    auto port = PublicPort::Create("SOLVANE.1");
    std::vector<std::optional<exec::RemoteReply>> replies(3);
    std::vector<std::thread> senders;
    std::unique_ptr<exec::RemoteMessage> kept;
    for (std::size_t i = 0; i < replies.size(); ++i) {
        senders.emplace_back([&, i] { replies[i] = exec::SendCommand("SOLVANE.1", "x", LongTime); });
        exec::Wait(port->Mask());
        if (i == 0)
            EXPECT_NE(port->Get(), nullptr); // and is gone
        else if (i == 1)
            kept = port->Get();
    }
    port.reset();
    for (std::thread& sender : senders)
        sender.join();
    kept->Reply(0, "too late");
    for (const auto& reply : replies) {
        ASSERT_TRUE(reply.has_value());
        EXPECT_EQ(reply->Rc, exec::UnansweredCommandRc);
        EXPECT_EQ(reply->Result, "");
    }
}

// A raw connection, as a peer makes that does not keep to the rules.
exec::Descriptor Connect(std::string_view name, std::string_view bytes) {
    const exec::Descriptor directory = exec::OpenPortDirectory();
    exec::Descriptor peer = exec::ConnectTo(directory, exec::PortFileStem(name));
    EXPECT_EQ(send(peer.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
    return peer;
}

TEST_F(PublicPorts, PeersThatSayNothingOrHalfOrTooMuchHoldNobodyUp) {
    const Process owner = StartOwner("SOLVANE.1");
    const std::string frame = exec::CommandFrame("CLOSE");
    const std::string openings[] = {"", frame.substr(0, 2), frame.substr(0, 6),
                                    std::string("\xFF\xFF\xFF\xFF text"), std::string("\x01\x00\x01\x00", 4)};
    std::vector<exec::Descriptor> peers;
    for (std::size_t i = 0; i < 400; ++i) {
        const std::string& opening = openings[i % std::size(openings)];
        exec::Descriptor peer = Connect("SOLVANE.1", opening);
        if (i % 7 != 0)
            peers.push_back(std::move(peer));
        if (i % 50 == 0) {
            const auto reply = exec::SendCommand("SOLVANE.1", "x", LongTime);
            ASSERT_TRUE(reply.has_value());
            EXPECT_EQ(reply->Result, "x");
        }
    }
}

TEST_F(PublicPorts, APeerThatDoesNotReadHoldsNeitherTheOwnerNorItsEndUp) {
    auto port = PublicPort::Create("SOLVANE.1");
    const exec::Descriptor peer = Connect("SOLVANE.1", exec::CommandFrame("R"));
    exec::Wait(port->Mask());
    ReplyToAll(*port);
    std::thread sender([] { EXPECT_TRUE(exec::SendCommand("SOLVANE.1", "x", LongTime)); });
    exec::Wait(port->Mask());
    ReplyToAll(*port);
    sender.join();
    port.reset();
    EXPECT_FALSE(exec::FindPort("SOLVANE.1"));
}

TEST_F(PublicPorts, AnOwnerThatOnlyHoldsTheLockIsAliveAndSendersGiveUp) {
    exec::Forbid();
    const auto claim = exec::ClaimPort("SOLVANE.1");
    exec::Permit();
    ASSERT_TRUE(claim.has_value());
    EXPECT_TRUE(exec::FindPort("SOLVANE.1"));
    EXPECT_EQ(PublicPort::Create("SOLVANE.1"), nullptr);
    EXPECT_FALSE(exec::SendCommand("SOLVANE.1", "x", 30).has_value());
    EXPECT_FALSE(exec::SendCommand("SOLVANE.1", "x", exec::WaitWithoutLimit).has_value());
}

TEST_F(PublicPorts, RubbishInThePlaceOfPortsIsNoPortAndDoesNotKeepTheNameFromBeingClaimed) {
    struct Case {
        const char* Name;
        void (*Make)(const std::string& path, const std::string& userFile);
    };
    const Case cases[] = {
        {"empty file", [](const auto& path, const auto&) { std::ofstream file(path); }},
        {"zeros", [](const auto& path, const auto&) { std::ofstream(path) << std::string(5000, '\0'); }},
        {"huge file",
         [](const auto& path, const auto&) {
             std::ofstream file(path);
             fs::resize_file(path, std::uintmax_t{1} << 40);
         }},
        {"unreadable file",
         [](const auto& path, const auto&) {
             std::ofstream file(path);
             fs::permissions(path, fs::perms::none);
         }},
        {"empty drawer", [](const auto& path, const auto&) { fs::create_directory(path); }},
        {"pipe", [](const auto& path, const auto&) { mkfifo(path.c_str(), 0600); }},
        {"link to a file",
         [](const auto& path, const auto& userFile) { fs::create_symlink(userFile, path); }},
        {"second name of a file",
         [](const auto& path, const auto& userFile) { fs::create_hard_link(userFile, path); }},
        {"link to itself", [](const auto& path, const auto&) { fs::create_symlink(path, path); }},
    };
    const std::string userFile = Temp.Path("letter");
    std::ofstream(userFile) << "Dear";
    ASSERT_TRUE(exec::ListPorts().empty());
    for (const Case& one : cases) {
        for (const char* const suffix : {".lock", ".port"}) {
            SCOPED_TRACE(std::string(one.Name) + " as " + suffix);
            one.Make(FileOf("SOLVANE.1", suffix), userFile);
            EXPECT_FALSE(exec::FindPort("SOLVANE.1"));
            EXPECT_TRUE(exec::ListPorts().empty());
            EXPECT_FALSE(exec::SendCommand("SOLVANE.1", "x", LongTime).has_value());
            const auto port = PublicPort::Create("SOLVANE.1");
            ASSERT_NE(port, nullptr);
            EXPECT_TRUE(exec::PostCommand("SOLVANE.1", "x"));
            EXPECT_EQ(exec::ListPorts(), std::vector<std::string>{"SOLVANE.1"});
        }
        EXPECT_EQ(Files().size(), 0U);
        EXPECT_EQ(fs::file_size(userFile), 4U);
    }
}

TEST_F(PublicPorts, ADamagedNameInALockFileOnlyKeepsThePortOutOfTheList) {
    const auto port = PublicPort::Create("SOLVANE.1");
    for (const std::string& text :
         {std::string(), std::string("SOLVANE.2"), std::string("\n"), std::string(100000, 'x')}) {
        std::ofstream(FileOf("SOLVANE.1", ".lock")) << text;
        EXPECT_TRUE(exec::ListPorts().empty());
        EXPECT_TRUE(exec::FindPort("SOLVANE.1"));
    }
}

TEST_F(PublicPorts, ADrawerThatCannotBeTrustedHoldsNoPorts) {
    ASSERT_FALSE(exec::FindPort("SOLVANE.1"));
    fs::permissions(Directory(), fs::perms::all);
    EXPECT_EQ(PublicPort::Create("SOLVANE.1"), nullptr);
    fs::remove(Directory());
    fs::create_directory_symlink(Temp.Root(), Directory());
    EXPECT_EQ(PublicPort::Create("SOLVANE.1"), nullptr);
    EXPECT_TRUE(exec::ListPorts().empty());
    EXPECT_FALSE(exec::UseRuntimeDirectory(Directory()));
    EXPECT_EQ(PublicPort::Create("SOLVANE.1"), nullptr);
    EXPECT_FALSE(exec::FindPort("SOLVANE.1"));
    EXPECT_FALSE(exec::SendCommand("SOLVANE.1", "x", LongTime).has_value());
}

TEST_F(PublicPorts, NamesCompareWithoutCaseAndAreListedAsWrittenInTheOrderOfClaims) {
    const std::string names[] = {"SOLVANE.10",
                                 "Solvane_2.port",
                                 "Ärger/..",
                                 ".",
                                 std::string(exec::MaxPortName, 'n'),
                                 std::string(exec::MaxPortName - 1, 'n') + "m"};
    std::vector<std::unique_ptr<PublicPort>> ports;
    for (const std::string& name : names) {
        ports.push_back(PublicPort::Create(name));
        ASSERT_NE(ports.back(), nullptr) << name;
        exec::Delay(1); // a tick of the file system's clock
    }
    EXPECT_EQ(exec::ListPorts(), std::vector<std::string>(std::begin(names), std::end(names)));
    EXPECT_TRUE(exec::FindPort("solvane.10"));
    EXPECT_TRUE(exec::FindPort("\xC3\xA4RGER/.."));
    EXPECT_FALSE(exec::FindPort("SOLVANE.1"));
    EXPECT_EQ(PublicPort::Create("SOLVANE_2.PORT"), nullptr);
}

TEST_F(PublicPorts, TextsThatAreNoNamesAreRefused) {
    for (const std::string& name : {std::string(), std::string("a\nb"), std::string("a\0b", 3),
                                    std::string(exec::MaxPortName + 1, 'n')}) {
        EXPECT_EQ(PublicPort::Create(name), nullptr);
        EXPECT_FALSE(exec::FindPort(name));
        EXPECT_FALSE(exec::PostCommand(name, "x"));
    }
}

TEST_F(PublicPorts, FiftyProcessesHaveTheirPorts) {
    std::vector<Process> owners;
    for (int number = 1; number <= 50; ++number)
        owners.push_back(StartOwner("Solvane_" + std::to_string(number) + ".port"));
    std::unique_ptr<PublicPort> port;
    EXPECT_EQ(ClaimNumber(port), 0);
    EXPECT_EQ(exec::ListPorts().size(), 50U);
    owners[41].Kill();
    EXPECT_EQ(ClaimNumber(port), 42);
    for (const std::string& name : exec::ListPorts())
        EXPECT_TRUE(exec::PostCommand(name, "x"));
}

TEST_F(PublicPorts, ARuntimeDirectoryWithALongPathServesAsWell) {
    const std::string deep = Temp.Path(std::string(200, 'd'));
    ASSERT_TRUE(exec::UseRuntimeDirectory(deep));
    const Process owner = StartOwner("SOLVANE.1");
    const auto reply = exec::SendCommand("SOLVANE.1", "x", LongTime);
    ASSERT_TRUE(reply.has_value());
    EXPECT_EQ(reply->Result, "x");
}

TEST_F(PublicPorts, OtherUsersAreTurnedAwayEvenWhenTheirWayIsOpen) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs the right to become another user";
    const Process owner = StartOwner("SOLVANE.1");
    for (const std::string& path : {Temp.Root(), exec::RuntimeDirectory(), Directory()})
        chmod(path.c_str(), 0755);
    chmod(FileOf("SOLVANE.1", ".port").c_str(), 0777);
    Process stranger([&] {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::ranges::copy(FileOf("SOLVANE.1", ".port"), address.sun_path);
        const exec::Descriptor peer(socket(AF_UNIX, SOCK_STREAM, 0));
        if (setuid(64321) != 0 ||
            connect(peer.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            return 1;
        const std::string frame = exec::CommandFrame("x");
        static_cast<void>(send(peer.Get(), frame.data(), frame.size(), MSG_NOSIGNAL));
        char byte = 0;
        return recv(peer.Get(), &byte, 1, 0) > 0 ? 2 : 0;
    });
    EXPECT_EQ(stranger.Join(), 0);
}

} // namespace
