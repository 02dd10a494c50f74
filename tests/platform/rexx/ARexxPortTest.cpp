#include "platform/rexx/ARexxPort.h"

#include "platform/exec/Tasks.h"
#include "tests/platform/exec/Processes.h"

#include <array>
#include <gmock/gmock.h>

namespace rexx {
namespace {

using testing::ElementsAre;

void Echo(CommandCall& call) {
    call.Result = call.Arguments.Text("TEXT").value_or("none");
    call.Rc = static_cast<int>(call.Arguments.Number("RC").value_or(0));
}

constexpr auto Table =
    std::to_array<Command>({{"ECHO", 0, Echo, "TEXT/K,RC/N", 0}, {"PLAIN", 1, Echo, "", 0}});

TEST(ARexxCommandLine, IsReadByTheTemplateOfItsCommand) {
    struct Row {
        std::string Line;
        int Rc;
        std::string Result;
    };
    const Row rows[] = {
        {"ECHO", 0, "none"},
        {"  echo TEXT=\"Work:My *\"Dir\" 5", 5, "Work:My \"Dir"},
        {"PLAIN", 0, "none"},
        {"PLAIN x", ReturnError, "118"},
        {"ECHO TEXT", ReturnError, "117"},
        {"ECHO TEXT a TEXT b", ReturnError, "118"},
        {"ECHO x1", ReturnError, "115"},
        {"ECHO TEXT \"open", ReturnError, "120"},
        {"ECHO 99999999999999999999999", ReturnError, "115"},
        {"", ReturnFail, "1"},
        {"ECHOES", ReturnFail, "1"},
        {"ECHO TEXT=" + std::string(60000, 'x'), 0, std::string(60000, 'x')},
    };
    for (const Row& row : rows) {
        const Reply reply = RunCommandLine(Table, row.Line);
        EXPECT_EQ(reply.Rc, row.Rc) << row.Line.substr(0, 60);
        EXPECT_EQ(reply.Result, row.Result) << row.Line.substr(0, 60);
    }
}

class ARexxPort : public exec_tests::RuntimeTest {
protected:
    std::vector<std::string> Replies;

    std::unique_ptr<Port> Open(std::string_view host) {
        return Port::Create(host, Table, [this](const Reply& reply) {
            Replies.push_back(std::to_string(reply.Rc) + " " + reply.Result);
        });
    }
    // Serves until so many replies have come.
    void ServeUntil(Port& port, std::size_t replies) {
        while (Replies.size() < replies) {
            static_cast<void>(exec::Wait(port.Mask()));
            port.HandleMessages([] { return true; });
        }
    }
};

TEST_F(ARexxPort, AnswersItselfWithoutWaitingAndTellsOfAReceiverThatEnds) {
    const auto port = Open("HOST.1");
    ASSERT_TRUE(port);
    EXPECT_EQ(Open("HOST.1"), nullptr) << "the name is taken";
    EXPECT_FALSE(port->Execute("HOST.2", "ECHO")) << "there is no such port";
    EXPECT_FALSE(port->Execute("HOST.1", std::string(exec::MaxCommandSize + 1, 'x')));
    EXPECT_TRUE(port->Execute("HOST.1", "ECHO TEXT=7"));
    ServeUntil(*port, 1);

    auto other = exec::PublicPort::Create("OTHER");
    EXPECT_TRUE(port->Execute("OTHER", "never answered"));
    static_cast<void>(exec::Wait(other->Mask()));
    other.reset();
    ServeUntil(*port, 2);
    EXPECT_THAT(Replies, ElementsAre("0 7", "20 "));
}

TEST_F(ARexxPort, ABusyReceiverHoldsNeitherTheLimitNorTheEndUp) {
    const auto busy = exec::PublicPort::Create("BUSY");
    auto port = Open("HOST.1");
    for (std::size_t sent = 0; sent < MaxWaitingCalls; ++sent)
        ASSERT_TRUE(port->Execute("BUSY", "ECHO"));
    EXPECT_FALSE(port->Execute("BUSY", "ECHO")) << "one too many";
    port.reset(); // ends although nobody answers
    EXPECT_THAT(Replies, ElementsAre());
}

TEST_F(ARexxPort, StopsBehindACommandThatTheCallerMustFinish) {
    const auto port = Open("HOST.1");
    ASSERT_TRUE(port->Execute("HOST.1", "ECHO 1"));
    ASSERT_TRUE(port->Execute("HOST.1", "ECHO 2"));
    int handled = 0;
    while (handled < 2) { // the signal is set again for the second
        static_cast<void>(exec::Wait(port->Mask()));
        const int before = handled;
        port->HandleMessages([&handled] {
            ++handled;
            return false;
        });
        ASSERT_LE(handled, before + 1);
    }
    ServeUntil(*port, 2);
    EXPECT_THAT(Replies, testing::UnorderedElementsAre("1 none", "2 none"));
}

} // namespace
} // namespace rexx
