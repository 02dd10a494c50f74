#include "platform/dos/Notify.h"

#include "platform/exec/Timer.h"
#include "tests/platform/dos/DosTest.h"

namespace {

class NotifyTest : public DosTest {
protected:
    NotifyTest() : Number(exec::AllocSignal()) {}
    ~NotifyTest() override {
        Notice.End();
        exec::FreeSignal(Number);
    }

    [[nodiscard]] bool Watch(std::string_view path) { return Notice.Start(path, exec::FindTask(), Number); }
    [[nodiscard]] exec::SignalMask Mask() const { return exec::SignalMask{1} << Number; }
    void Await() const { EXPECT_EQ(exec::Wait(Mask()), Mask()); }
    // Whether a signal comes within a time in which any burst has ended.
    [[nodiscard]] bool ComesWithin(std::uint32_t milliseconds) const {
        exec::Timer timer;
        timer.Start(milliseconds);
        return (exec::Wait(Mask() | timer.Mask()) & Mask()) != 0;
    }

    int Number;
    dos::Notification Notice;
};

TEST_F(NotifyTest, DrawerTellsOfEveryKindOfChangeOncePerBurst) {
    Tree.Write("drawer/file", "");
    ASSERT_TRUE(Watch("Test:drawer"));
    Tree.Write("drawer/new", "");
    Await();
    std::filesystem::rename(Tree.Path("drawer/new"), Tree.Path("drawer/other"));
    Await();
    std::filesystem::rename(Tree.Path("drawer/other"), Tree.Path("outside"));
    Await();
    Tree.Write("drawer/file", "changed");
    Await();
    std::filesystem::remove(Tree.Path("drawer/file"));
    Await();
    for (int i = 0; i < 200; ++i)
        Tree.Write("drawer/" + std::to_string(i), "");
    Await();
    EXPECT_FALSE(ComesWithin(600));
    Tree.Write("elsewhere", ""); // beside the drawer, not in it
    EXPECT_FALSE(ComesWithin(600));
}

TEST_F(NotifyTest, FileTellsOfItsOwnChangesOnly) {
    Tree.Plant({"file", "other"});
    ASSERT_TRUE(Watch("Test:file"));
    Tree.Write("other", "x");
    EXPECT_FALSE(ComesWithin(600));
    Tree.Write("file", "x");
    Await();
    std::filesystem::rename(Tree.Path("other"), Tree.Path("file"));
    Await();
}

TEST_F(NotifyTest, PathWithoutDeviceLeadsOnFromTheDrawerOfTheStart) {
    Tree.Drawer("drawer");
    const dos::FileLock before = dos::CurrentDir(dos::Lock("Test:drawer"));
    ASSERT_TRUE(Watch("later"));
    dos::CurrentDir(before);
    Tree.Write("drawer/later", "");
    Await();
}

TEST_F(NotifyTest, VanishingDrawerGivesOneSignalAndItsReturnAnother) {
    Tree.Drawer("drawer");
    const dos::FileLock held = dos::Lock("Test:drawer"); // the host keeps a held drawer in being
    ASSERT_TRUE(Watch("Test:drawer"));
    std::filesystem::remove(Tree.Path("drawer"));
    Await();
    EXPECT_FALSE(ComesWithin(600));
    Tree.Drawer("drawer");
    Await();
    Tree.Write("drawer/file", "");
    Await();
}

TEST_F(NotifyTest, NameThatDoesNotExistYetTellsOfItsCreation) {
    ASSERT_TRUE(Watch("Test:later"));
    Tree.Write("other", "");
    EXPECT_FALSE(ComesWithin(600));
    Tree.Write("later", "");
    Await();
}

TEST_F(NotifyTest, EndedOrDestroyedWatchesAreSilent) {
    ASSERT_TRUE(Watch("Test:"));
    Notice.End();
    Tree.Write("a", "");
    EXPECT_FALSE(ComesWithin(600));
    {
        dos::Notification gone;
        ASSERT_TRUE(gone.Start("Test:", exec::FindTask(), Number));
    }
    Tree.Write("b", "");
    EXPECT_FALSE(ComesWithin(600));
    EXPECT_EQ(Refusal(Watch("Nobody:x")), dos::ErrorDeviceNotMounted);
}

TEST_F(NotifyTest, TwoWatchesOfOneDrawerAreApart) {
    dos::Notification second;
    const int number = exec::AllocSignal();
    ASSERT_TRUE(Watch("Test:"));
    ASSERT_TRUE(second.Start("Test:", exec::FindTask(), number));
    Notice.End();
    Tree.Write("a", "");
    EXPECT_EQ(exec::Wait(exec::SignalMask{1} << number), exec::SignalMask{1} << number);
    second.End();
    exec::FreeSignal(number);
}

TEST_F(NotifyTest, DrawerIsLookedAtWhereTheHostGivesNoNotices) {
    Calls().InotifyAddWatch = Failing<ENOSPC>();
    ASSERT_TRUE(Watch("Test:"));
    Tree.Write("a", "");
    Await();
    EXPECT_FALSE(ComesWithin(1500));
}

} // namespace
