#include "platform/dos/System.h"

#include "platform/dos/Handler.h"
#include "platform/exec/Tasks.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <csignal>
#include <fcntl.h>
#include <future>
#include <semaphore>
#include <sys/wait.h>
#include <thread>

namespace {

class SystemTest : public DosTest {
protected:
    SystemTest() {
        Script("C/Show", "printf %s \"$0|$#|$1|$2|$SOLVANE_COMMAND_LINE\"");
        Script("C/Code", "exit $1");
        Script("C/Die", "kill -TERM $$");
        Script("C/Both", "cat; echo trouble >&2");
        Script("C/Forever", "exec sleep 1000");
        Tree.Write("C/Plain", "no program");
        Tree.Write("a b", "content\n");
        EXPECT_TRUE(dos::SetAssign("C", dos::AssignKind::Directory, {"Test:C"}));
        dos::CurrentDir(dos::Lock("Test:"));
    }
    ~SystemTest() override {
        // Every child is reaped by its keeper; this would not end otherwise.
        siginfo_t child{};
        while (::waitid(P_ALL, 0, &child, WEXITED | WNOWAIT) == 0)
            ::sched_yield();
    }
    void Script(std::string_view name, std::string_view text) const {
        Tree.Write(name, "#!/bin/sh\n" + std::string(text) + "\n");
        ::chmod(Tree.Path(name).c_str(), 0755);
    }
    // What a line writes and its code: "text=0".
    static std::string Run(std::string_view line, dos::SystemOptions options = {}) {
        std::string text;
        options.Output.Sink = [&text](std::string_view bytes) { return text.append(bytes), true; };
        const long code = dos::System(line, options);
        return text + "=" + std::to_string(code);
    }
};

TEST_F(SystemTest, ProgramsOfOursGetWordsAsTypedAndThoseOfTheHostGetHostPaths) {
    const std::string show = Tree.Path("C/Show");
    Tree.Link("C/there", "/usr/bin/printf");
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"show \"Test:a b\" k=\"*\"x\" ; comment", show + "|2|Test:a b|k=\"x|\"Test:a b\" k=\"*\"x\" =0"},
        {"Test:C/Show", show + "|0|||=0"},
        {"printf %s/%s,%s \"Test:a b\" NIL: k=\"a*\"b\"", Tree.Path("a b") + "//dev/null,k=a\"b=0"},
        {"there %s|%s Nowhere:x \"$(id);`x*n\"", "Nowhere:x|$(id);`x\n=0"},
        {"/usr/bin/printf %s test:", Tree.Root() + "=0"},
        {"run printf x", "=0"},
        {"", "=0"},
    };
    for (const auto& [line, result] : rows)
        EXPECT_EQ(Run(line), result) << line;
}

TEST_F(SystemTest, WhatCannotRunIsToldAndHasItsCode) {
    struct Row {
        std::string Line, Result;
        long Error;
    };
    const Row rows[] = {
        {"nosuch x", "nosuch: object not found\n=10", 205},
        {"plain", "plain: file is not executable\n=10", 305},
        {"C:", "C:: object is not of required type\n=10", 212},
        {"show >", "Command line: value after keyword missing\n=10", 117},
        {"show <Test:none", "Test:none: object not found\n=10", 205},
        {"show >Test:C", "Test:C: object is not of required type\n=10", 212},
        {"code 7", "=7", 0},
        {"die", "=20", 0},
    };
    for (const Row& row : rows) {
        std::string text = Run(row.Line);
        EXPECT_EQ(text.substr(text.rfind('=')), row.Result.substr(row.Result.rfind('='))) << row.Line;
        EXPECT_EQ(dos::IoErr(), row.Error) << row.Line;
        if (row.Error != 0) {
            EXPECT_EQ(text, dos::Fault(row.Error, row.Result.substr(0, row.Result.rfind(": "))) + "\n=10");
        }
    }
    // Not even a lookup empties a file.
    EXPECT_EQ(Run("nosuch >\"a b\""), "nosuch: object not found\n=10");
    EXPECT_EQ(Tree.Read("a b"), "content\n");
}

TEST_F(SystemTest, StreamsLeadWhereTheLineSays) {
    EXPECT_EQ(Run("both <\"a b\" >Test:out *>Test:err"), "=0");
    EXPECT_EQ(Tree.Read("out") + Tree.Read("err"), "content\ntrouble\n");
    EXPECT_EQ(Run("both <\"a b\" >>Test:out *>>err"), "=0");
    EXPECT_EQ(Tree.Read("out") + Tree.Read("err"), "content\ncontent\ntrouble\ntrouble\n");
    EXPECT_EQ(Run("both >out"), "=0");
    EXPECT_EQ(Tree.Read("out"), "trouble\n");
    const ScopedVariable word("SOLVANE_TEST_WORD", "a\"b >x");
    EXPECT_EQ(Run("printf %s,%s%s, `printf 1*2` ${SOLVANE_TEST_WORD}"), "1*2,a\"b>x,=0");

    dos::FileHandle input = dos::OpenOld("Test:a b");
    dos::FileHandle output = dos::Open("Test:copy", dos::OpenMode::New);
    EXPECT_EQ(dos::System("cat", {.Input = {.Handle = &input}, .Output = {.Handle = &output}}), 0);
    EXPECT_TRUE(dos::Close(output));
    EXPECT_EQ(Tree.Read("copy"), "content\n");
}

TEST_F(SystemTest, OneStreamReadsAndWritesFromOnePlace) {
    Script("C/Update", "read -r line; printf '<%s>' \"$line\"");
    Tree.Write("two", "one\ntwo two\n");
    EXPECT_EQ(Run("update <>two"), "=0");
    EXPECT_EQ(Tree.Read("two"), "one\n<one>wo\n");
    EXPECT_EQ(Run("update <>fresh"), "=0");
    EXPECT_EQ(Tree.Read("fresh"), "<>");
    EXPECT_EQ(Run("update <>NIL:"), "=0");
}

// Gives its blocks one by one and then waits until it is broken.
class SlowStream final : public dos::Stream {
public:
    explicit SlowStream(std::vector<std::string> blocks) : Blocks(std::move(blocks)) {}
    std::int64_t Read(std::span<std::byte> buffer) override {
        if (Next == Blocks.size())
            return exec::Wait(exec::BreakControlC), dos::SetIoErr(dos::ErrorBreak), -1;
        const std::string& block = Blocks[Next++];
        std::ranges::copy(std::as_bytes(std::span(block)), buffer.begin());
        return static_cast<std::int64_t>(block.size());
    }
    std::int64_t Write(std::span<const std::byte>) override { return -1; }
    std::int64_t Seek(std::int64_t, dos::SeekFrom) override { return -1; }
    std::int64_t SetSize(std::int64_t, dos::SeekFrom) override { return -1; }
    bool Close() override { return true; }

private:
    std::vector<std::string> Blocks;
    std::size_t Next = 0;
};

TEST_F(SystemTest, AnInputThatGivesNothingMoreHoldsNoCommandBack) {
    dos::FileHandle slow(std::make_unique<SlowStream>(Names{"one\n", "two\n"}));
    Script("C/Three", "read -r a; read -r b; echo \"$a$b\"; exit 3");
    EXPECT_EQ(Run("three", {.Input = {.Handle = &slow}}), "onetwo\n=3");
    EXPECT_EQ(Run("three <NIL:"), "\n=3");
    Script("C/Deaf", "exec <&-; echo x; exit 4"); // goes on behind a closed input
    EXPECT_EQ(Run("deaf", {.Input = {.Handle = &slow}}), "x\n=4");
    dos::FileHandle ending(std::make_unique<SlowStream>(Names{"end", ""}));
    EXPECT_EQ(Run("cat", {.Input = {.Handle = &ending}}), "end=0");
}

// A file that is being written is read through a pipe.
TEST_F(SystemTest, WhatAChildDoesNotReadIsReadByTheNextOne) {
    Script("C/One", "sleep 0.05; read -r a; echo $a"); // a pipe is read byte by byte
    for (const std::size_t more : {10u, 200'000u}) {
        dos::FileHandle file = dos::Open("Test:lines", dos::OpenMode::New);
        const std::string text = "one\ntwo\n" + std::string(more, 'x');
        ASSERT_GT(dos::Write(file, std::as_bytes(std::span(text))), 0);
        ASSERT_EQ(dos::Seek(file, 0, dos::SeekFrom::Beginning), 0);
        EXPECT_EQ(Run("true", {.Input = {.Handle = &file}}), "=0");
        EXPECT_EQ(Run("one", {.Input = {.Handle = &file}}), "one\n=0");
        EXPECT_EQ(Run("one", {.Input = {.Handle = &file}}), "two\n=0");
        EXPECT_EQ(dos::Seek(file, 0, dos::SeekFrom::Current), 8);
    }
}

TEST_F(SystemTest, AChildBeginsFresh) {
    const int leak = ::open("/dev/null", O_RDONLY); // without close-on-exec
    sigset_t blocked{};
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    sigset_t before{};
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto oldHandler = std::signal(SIGPIPE, SIG_IGN);
    // 3 is the drawer that the command reads.
    EXPECT_EQ(Run("ls /proc/self/fd"), "0\n1\n2\n3\n=0");
    EXPECT_EQ(Run("sed -n s/SigBlk:.//p /proc/self/status"), "0000000000000000\n=0");
    constexpr unsigned long hostSignals = 0x7FFFFFFF; // 1 to 31; the C library has its way with 32 and 33
    EXPECT_EQ(std::stoul(Run("sed -n s/SigIgn:.//p /proc/self/status"), nullptr, 16) & hostSignals, 0u);
    EXPECT_EQ(Run("pwd"), Tree.Root() + "\n=0");
    std::signal(SIGPIPE, oldHandler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::close(leak);
}

// The command goes on only after an event of the window was handled.
TEST_F(SystemTest, TheWindowOfTheTaskLivesOnMeanwhile) {
    Script("C/Ask", "touch asked; until [ -e answered ]; do sleep 0.01; done");
    std::counting_semaphore<> woken(0);
    exec::SetEventPump({.Run =
                            [&](bool wait) {
                                while (!Tree.Exists("asked"))
                                    std::this_thread::yield();
                                Tree.Write("answered", "");
                                if (wait)
                                    woken.acquire();
                            },
                        .Wake = [&woken] { woken.release(); }});
    EXPECT_EQ(Run("ask"), "=0");
    exec::SetEventPump({});
}

TEST_F(SystemTest, OutputHasNoEndOrAnEarlyOne) {
    std::size_t count = 0;
    dos::SystemOptions options;
    options.Output.Sink = [&count](std::string_view bytes) { return count += bytes.size(), true; };
    EXPECT_EQ(dos::System("head -c 50000000 /dev/zero", options), 0);
    EXPECT_EQ(count, 50000000u);
    // A reader that has had enough ends the writer.
    options.Output.Sink = [](std::string_view) { return false; };
    EXPECT_EQ(dos::System("yes", options), 20);
    EXPECT_EQ(Refusal(dos::CommandOutput("yes", 100)), dos::ErrorLineTooLong);
    // Neither one that closes its output nor one whose child keeps it open is waited for in vain.
    Script("C/Early", "exec >&- 2>&-; exit 3");
    EXPECT_EQ(Run("early"), "=3");
    Script("C/Leave", "sleep 3 & echo done");
    EXPECT_EQ(Run("leave"), "done\n=0");
}

TEST_F(SystemTest, ACommandThatNeverEndsIsBroken) {
    EXPECT_EQ(dos::System("forever", {.Stop = [] { return true; }}), 20);
    EXPECT_EQ(dos::IoErr(), dos::ErrorBreak);
    exec::Signal(exec::FindTask(), exec::BreakControlC);
    EXPECT_EQ(dos::System("forever"), 20);
    EXPECT_NE(exec::SetSignal(0, exec::BreakControlC) & exec::BreakControlC, 0u) << "is kept for the program";

    Script("C/Stubborn", "trap '' INT; echo; while :; do sleep 1; done");
    std::promise<void> isThere;
    std::promise<long> ended;
    dos::SystemJob job;
    dos::SystemOptions options;
    options.Output.Sink = [&isThere](std::string_view) { return isThere.set_value(), true; };
    options.Ended = [&ended](long code) { ended.set_value(code); };
    ASSERT_EQ(dos::StartSystem("stubborn", options, &job), 0);
    isThere.get_future().wait();
    EXPECT_FALSE(job.HasEnded());
    job.Break();
    job.Break();
    EXPECT_EQ(ended.get_future().get(), 20);
    EXPECT_TRUE(job.HasEnded());
}

TEST_F(SystemTest, AnAsynchronousCommandTakesItsStreamsAlong) {
    dos::FileHandle output = dos::Open("Test:out", dos::OpenMode::New);
    std::promise<long> ended;
    ASSERT_EQ(dos::StartSystem("both <\"a b\"", {.Input = {},
                                                 .Output = {.Handle = &output},
                                                 .Ended = [&ended](long code) { ended.set_value(code); }}),
              0);
    EXPECT_FALSE(output);
    EXPECT_EQ(ended.get_future().get(), 0);
    EXPECT_EQ(Tree.Read("out"), "content\ntrouble\n");
}

TEST_F(SystemTest, EveryStartThatNoProcessComesOfClosesItsStreams) {
    dos::SetBuiltIn("Show", [](std::string_view) { return dos::BuiltInResult{0, "own\n"}; });
    dos::FileHandle output;
    std::string atEnd;
    const auto ended = [&](long) { atEnd = Tree.Read("out"); };
    for (const auto& [line, code, text] :
         {std::tuple{"show x", 0, "own\n"},
          {"", 0, ""},
          {"nothing x", 10, "nothing: object not found\n"},
          {"show \"x", 10, "Command line: argument line invalid or too long\n"}}) {
        dos::FileHandle input = dos::OpenOld("a b");
        output = dos::Open("Test:out", dos::OpenMode::New);
        EXPECT_EQ(dos::StartSystem(
                      line, {.Input = {.Handle = &input}, .Output = {.Handle = &output}, .Ended = ended}),
                  code);
        EXPECT_FALSE(input || output) << line;
        EXPECT_EQ(Tree.Read("out"), text) << line;
    }
    EXPECT_EQ(atEnd, "own\n");
    dos::SetBuiltIn("Show", {});
}

TEST_F(SystemTest, BuiltInCommandsComeFirst) {
    dos::SetBuiltIn("Show", [](std::string_view arguments) {
        return dos::BuiltInResult{5, "own " + std::string(arguments)};
    });
    EXPECT_EQ(Run("SHOW a \"b*\""), "Command line: argument line invalid or too long\n=10");
    EXPECT_EQ(Run("SHOW a \"b c\""), "own a \"b c\"\n=5");
    Tree.Write("two", "0123456789");
    EXPECT_EQ(Run("show x <>two"), "=5");
    EXPECT_EQ(Tree.Read("two"), "own x \n789");
    EXPECT_EQ(Run("show x >out"), "=5");
    EXPECT_EQ(Tree.Read("out"), "own x \n");
    dos::SetBuiltIn("Still", [](std::string_view) { return dos::BuiltInResult{0, ""}; });
    EXPECT_EQ(Run("still >>out"), "=0");
    EXPECT_EQ(Tree.Read("out"), "own x \n");
    EXPECT_EQ(Run("still >none"), "=0");
    EXPECT_EQ(Tree.Read("none"), "");
    EXPECT_TRUE(dos::ExamineObject("none"));
    dos::SetBuiltIn("Still", {});
    EXPECT_EQ(Run("Run QUIET run \"Run\" show x"), "own x\n=0");
    Calls().Write = Failing<ENOSPC>();
    EXPECT_EQ(Run("show x >out"), "show: disk is full\n=10");
    EXPECT_EQ(dos::IoErr(), dos::ErrorDiskFull);
    EXPECT_EQ(Tree.Read("out"), "own x \n");
    Calls().Write = dos::RealHost().Write;
    dos::SetBuiltIn("Show", {});
    EXPECT_EQ(Run("show x").front(), '/');
}

TEST_F(SystemTest, AHostThatRefusesIsTold) {
    static int hostError = 0;
    Calls().Spawn = [](const dos::SpawnOrder&) {
        errno = hostError;
        return -1;
    };
    for (const auto& [error, code] : std::initializer_list<std::pair<int, long>>{{EAGAIN, -1},
                                                                                 {ENOMEM, -1},
                                                                                 {EMFILE, -1},
                                                                                 {ENOEXEC, 10},
                                                                                 {EACCES, 10},
                                                                                 {ENOENT, 10},
                                                                                 {E2BIG, 10}}) {
        hostError = error;
        EXPECT_EQ(dos::System("show"), code) << error;
        EXPECT_NE(dos::IoErr(), 0) << error;
    }
    Calls().Spawn = dos::RealHost().Spawn;
    Calls().Pipe = Failing<EMFILE>();
    EXPECT_TRUE(Run("show").ends_with("\n=10"));
    Calls().OpenProcess = Failing<ENOSYS>();
    EXPECT_EQ(dos::System("code 4"), 4) << "a kernel without process descriptors";
}

} // namespace
