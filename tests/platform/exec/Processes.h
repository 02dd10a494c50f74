// What the tests of ports need: an own runtime directory, child processes and places to meet.
#pragma once

#include "platform/exec/RuntimeDirectory.h"
#include "tests/support/TempTree.h"

#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace exec_tests {

// A pipe over which processes tell one another that something has happened, one byte each.
class Channel {
public:
    Channel() { EXPECT_EQ(pipe2(Ends, O_CLOEXEC), 0); }
    ~Channel() {
        close(Ends[0]);
        close(Ends[1]);
    }
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    void Send(std::size_t times = 1) const {
        const std::string bytes(times, '+');
        EXPECT_EQ(write(Ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(times));
    }
    void Receive() const {
        char what = 0;
        EXPECT_EQ(read(Ends[0], &what, 1), 1);
    }

private:
    int Ends[2] = {-1, -1};
};

// A forked process; its body's result is its exit code. Killed at the end when it still runs.
class Process {
public:
    explicit Process(const std::function<int()>& body) : Id(fork()) {
        if (Id == 0)
            _exit(body());
        EXPECT_GT(Id, 0);
    }
    ~Process() {
        if (Id > 0)
            Kill();
    }
    Process(Process&& other) noexcept : Id(std::exchange(other.Id, -1)) {}
    Process& operator=(Process&&) = delete;

    // As a crash does: nothing of it runs any more afterwards.
    void Kill() {
        kill(Id, SIGKILL);
        static_cast<void>(Join());
    }
    // The exit code; -1 when it was killed.
    [[nodiscard]] int Join() {
        int status = 0;
        EXPECT_EQ(waitpid(std::exchange(Id, -1), &status, 0) > 0, true);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t Id;
};

class RuntimeTest : public testing::Test {
protected:
    RuntimeTest() { EXPECT_TRUE(exec::UseRuntimeDirectory(Temp.Path("runtime"))); }
    ~RuntimeTest() override { exec::UseRuntimeDirectory({}); }

    TempTree Temp;
};

} // namespace exec_tests
