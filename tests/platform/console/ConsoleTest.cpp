#include "platform/dos/Console.h"

#include "platform/dos/HostPaths.h"
#include "platform/dos/System.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/utility/ScopedVariable.h"

namespace {

class ConsoleTest : public DosTest {
protected:
    ConsoleTest() { dos::SetProgramDrawer(dos::FromHostPath(SOLVANE_BUILD_DIR "/share/solvane")); }
};

TEST_F(ConsoleTest, TheNameOfAConsoleSaysHowItsWindowIs) {
    const std::pair<std::string, std::string> rows[] = {
        {"0/25/640/200/My title/auto/Wait/CLOSE", "0 25 640 200 My title AUTO WAIT CLOSE"},
        {"", "    "},
        {"//", "    "},
        {"////T/NoClose/SCREENWorkbench/SMART/INACTIVE", "    T NOCLOSE INACTIVE"},
        {"-1/0/1/1/T", "206"},
        {"1/2/x", "206"},
        {"999999", "206"},
        {"0/0/1/1/T/AUTOX", "206"},
    };
    for (const auto& [text, result] : rows) {
        const auto spec = dos::ParseConsoleSpec(text);
        std::string told = std::to_string(dos::IoErr());
        if (spec)
            told = spec->Left + " " + spec->Top + " " + spec->Width + " " + spec->Height + " " + spec->Title;
        for (const std::string& option : spec ? spec->Options : Names())
            told += " " + option;
        EXPECT_EQ(told, result) << text;
    }
    EXPECT_EQ(Refusal(dos::Open("CON:a", dos::OpenMode::New)), dos::ErrorBadStreamName);
}

TEST_F(ConsoleTest, ACommandRunsInItsConsole) {
    dos::FileHandle console = dos::Open("CON:////Test/AUTO", dos::OpenMode::ReadWrite);
    ASSERT_TRUE(console) << dos::IoErr();
    const std::string text = "hello\n";
    EXPECT_EQ(dos::Write(console, std::as_bytes(std::span(text))), 6);
    // Input and, where nothing else is said, output are the terminal, which is that of the command.
    EXPECT_EQ(dos::System("test -t 0 -a -t 1 -a -t 2 -a -c NIL:", {.Input = {.Handle = &console}}), 0);
    EXPECT_EQ(dos::System("dd if=/dev/tty of=/dev/tty count=0", {.Input = {.Handle = &console}}), 0);
    // Output alone stays within the caller's session.
    EXPECT_EQ(dos::System("test -t 1", {.Output = {.Handle = &console}}), 0);
    EXPECT_TRUE(dos::Close(console));
}

TEST_F(ConsoleTest, WithoutADisplayThereIsNoConsole) {
    const ScopedVariable platform("QT_QPA_PLATFORM", "xcb");
    const ScopedVariable display("DISPLAY", ":4711");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Refusal(dos::Open("CON:", dos::OpenMode::New)), dos::ErrorDeviceNotMounted);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("conwindow: "), std::string::npos);
}

} // namespace
