#include "platform/dos/VolumeQuestions.h"

#include "tests/platform/dos/DosTest.h"

#include <atomic>
#include <sys/statvfs.h>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr auto Patience = 60s; // far beyond any real answer

class VolumeQuestionsTest : public DosTest {
protected:
    // The volume Test: hangs until Held is taken back, others answer.
    VolumeQuestionsTest() {
        Held = true;
        Calls().Fstatvfs = [](int descriptor, struct statvfs* result) {
            while (Held && IsTest(descriptor))
                std::this_thread::sleep_for(1ms);
            return dos::RealHost().Fstatvfs(descriptor, result);
        };
        TestRoot = std::filesystem::canonical(Tree.Root());
    }
    ~VolumeQuestionsTest() override { Held = false; }

    static bool IsTest(int descriptor) {
        return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)) == TestRoot;
    }

    static inline std::atomic<bool> Held = false;
    static inline std::filesystem::path TestRoot;
};

TEST_F(VolumeQuestionsTest, VolumeThatHangsHoldsNobodyUpAndIsHeardOfLater) {
    const int signal = exec::AllocSignal();
    const exec::SignalMask mask = exec::SignalMask{1} << signal;
    dos::VolumeQuestions questions;
    questions.SetListener(exec::FindTask(), mask);
    auto answers = questions.Ask({{"TD0", "Test:"}, {"DH2"}}, 300ms);
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].Device, "DH2");
    EXPECT_GT(answers[0].Info.value_or(dos::InfoData()).Blocks, 0U);
    EXPECT_TRUE(questions.Ask({{"TD0", "Other:"}}, Patience).empty()) << "asked already, and not waited for";
    Held = false;
    EXPECT_EQ(exec::Wait(mask), mask);
    answers = questions.Take();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].Device, "TD0");
    EXPECT_EQ(answers[0].Volume, "Test:") << "that of the question that was answered";
    EXPECT_TRUE(answers[0].Info.has_value());
    exec::FreeSignal(signal);
}

TEST_F(VolumeQuestionsTest, VolumeThatIsNotThereIsUnknown) {
    dos::VolumeQuestions questions;
    const auto answers = questions.Ask({{"Nowhere"}}, Patience);
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_FALSE(answers[0].Info.has_value());
}

TEST_F(VolumeQuestionsTest, DrivesWithoutMediumAreKnownByTheirBus) {
    const auto drive = [this](const std::string& name, const std::string& bus, const std::string& size) {
        Tree.Write("devices/" + bus + name + "/size", size + "\n");
        Tree.Write("devices/" + bus + name + "/removable", "1\n");
        Tree.Drawer("block");
        std::filesystem::create_directory_symlink(Tree.Path("devices/" + bus + name),
                                                  Tree.Path("block/" + name));
    };
    drive("sr0", "pci0/", "0");
    drive("sdb", "pci0/usb1/", "0");
    drive("sdc", "pci0/usb1/", "1000"); // has one
    drive("fd0", "platform/", "8");
    dos::Places().Blocks = Tree.Path("block");
    const auto found = TextsOf(dos::EmptyDrives(), [](const dos::VolumeInfo& empty) {
        return empty.Device + " " + empty.ExecDevice;
    });
    EXPECT_EQ(found, (Names{"DF0 ", "USB0 usbdisk.device", "CD0 "}));
}

} // namespace
