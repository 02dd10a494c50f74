#include "platform/iffparse/Clipboard.h"

#include "platform/iffparse/IffFile.h"
#include "platform/iffparse/IffReader.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/exec/Processes.h"

#include <thread>

namespace {

using exec_tests::Channel, exec_tests::Process, iffparse::OpenClipboard;

constexpr std::uint32_t Unit = 42;

// RAM: is a drawer of the test's tree, the runtime directory another.
class ClipboardTest : public DosTest {
protected:
    ClipboardTest() {
        Tree.Drawer("ram");
        EXPECT_TRUE(exec::UseRuntimeDirectory(Tree.Path("runtime")));
        AddDisk("RAM", "RAM Disk", Tree.Path("ram"), dos::NameRule::Fold);
    }
    ~ClipboardTest() override { exec::UseRuntimeDirectory({}); }
};

TEST_F(ClipboardTest, AUnitKeepsWhatWasWritten) {
    {
        const auto clip = OpenClipboard(Unit);
        ASSERT_TRUE(clip);
        EXPECT_EQ(Refusal(clip->Read()), dos::ErrorObjectNotFound);
        EXPECT_TRUE(clip->Write("first"));
        EXPECT_TRUE(clip->Write("second"));
    }
    EXPECT_EQ(Tree.Read("ram/Clipboards/42"), "second");
    const auto clip = OpenClipboard(Unit);
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->Read(), "second");
    const auto other = OpenClipboard(0); // units are apart
    ASSERT_TRUE(other);
    EXPECT_FALSE(other->Read());
    EXPECT_EQ(NamesIn("RAM:Clipboards"), Names{"42"});
}

TEST_F(ClipboardTest, AnOpenUnitIsInUseForAllOthers) {
    auto clip = OpenClipboard(Unit);
    ASSERT_TRUE(clip);
    EXPECT_EQ(Refusal(OpenClipboard(Unit, 20)), dos::ErrorObjectInUse);
    long error = 0;
    std::thread([&error] { error = OpenClipboard(Unit, 0) ? 0 : dos::IoErr(); }).join();
    EXPECT_EQ(error, dos::ErrorObjectInUse);
    Process process([] { return OpenClipboard(Unit, 0) ? 0 : static_cast<int>(dos::IoErr()); });
    EXPECT_EQ(process.Join(), dos::ErrorObjectInUse);
    clip.reset();
    EXPECT_TRUE(OpenClipboard(Unit, 0));
}

TEST_F(ClipboardTest, AnOpenerWaitsForItsTurn) {
    auto clip = OpenClipboard(Unit);
    ASSERT_TRUE(clip);
    const Channel ready;
    std::thread waiter([&ready] {
        ready.Send();
        const auto waited = OpenClipboard(Unit, 60000);
        ASSERT_TRUE(waited);
        EXPECT_EQ(waited->Read(), "written before");
    });
    ready.Receive();
    EXPECT_TRUE(clip->Write("written before"));
    clip.reset();
    waiter.join();
}

TEST_F(ClipboardTest, ACrashedOwnerHoldsNothing) {
    const Channel holds;
    Process process([&holds] {
        const auto clip = OpenClipboard(Unit, 0);
        holds.Send();
        while (clip)
            ::pause();
        return 1;
    });
    holds.Receive();
    EXPECT_FALSE(OpenClipboard(Unit, 0));
    process.Kill();
    EXPECT_TRUE(OpenClipboard(Unit, 0));
}

TEST_F(ClipboardTest, ManyTasksAppendWithoutLoss) {
    const auto append = [] {
        for (int turn = 0; turn < 20; ++turn) {
            const auto clip = OpenClipboard(Unit, 60000);
            ASSERT_TRUE(clip);
            ASSERT_TRUE(clip->Write(clip->Read().value_or("") + '+'));
        }
    };
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back(append);
    threads.clear();
    EXPECT_EQ(Tree.Read("ram/Clipboards/42"), std::string(60, '+'));
}

TEST_F(ClipboardTest, AReaderComesInBetweenABusyWriterAndSeesWholeUnits) {
    constexpr std::size_t Size = 100'001;
    ASSERT_TRUE(OpenClipboard(Unit)->Write(std::string(Size, 'x')));
    const Channel writes;
    Process writer([&writes] {
        for (int turn = 0;; ++turn) {
            const auto clip = OpenClipboard(Unit);
            if (!clip || !clip->Write(std::string(Size, static_cast<char>('a' + turn % 26))))
                return 1;
            if (turn == 0)
                writes.Send();
        }
    });
    writes.Receive();
    for (int i = 0; i < 100; ++i) {
        const auto clip = OpenClipboard(Unit, 60000);
        ASSERT_TRUE(clip) << i;
        const std::string bytes = clip->Read().value_or("");
        EXPECT_EQ(bytes, std::string(Size, bytes.empty() ? '?' : bytes.front())) << i;
    }
    writer.Kill();
}

TEST_F(ClipboardTest, WhatCannotBeOpenedOrWrittenTellsWhy) {
    EXPECT_EQ(Refusal(OpenClipboard(256)), dos::ErrorObjectNotFound);
    {
        const auto clip = OpenClipboard(Unit);
        ASSERT_TRUE(clip);
        Tree.Write("ram/Clipboards", "a file in the drawer's place");
        EXPECT_FALSE(clip->Write("x"));
        EXPECT_FALSE(clip->Read());
    }
    EXPECT_EQ(Tree.Read("ram/Clipboards"), "a file in the drawer's place");
    std::filesystem::permissions(Tree.Path("runtime"), std::filesystem::perms::all);
    EXPECT_FALSE(exec::UseRuntimeDirectory(Tree.Path("runtime")));
    EXPECT_EQ(Refusal(OpenClipboard(Unit, 0)), dos::ErrorDeviceNotMounted);
}

TEST_F(ClipboardTest, AFullDiskLeavesTheOldClip) {
    ASSERT_TRUE(OpenClipboard(Unit)->Write("old"));
    Calls().Write = Failing<ENOSPC>();
    EXPECT_EQ(Refusal(OpenClipboard(Unit)->Write("new")), dos::ErrorDiskFull);
    dos::Host() = dos::RealHost();
    EXPECT_EQ(OpenClipboard(Unit)->Read(), "old");
    EXPECT_EQ(NamesIn("RAM:Clipboards"), Names{"42"});
}

TEST_F(ClipboardTest, StreamsGoToFilesAndComeBack) {
    iffparse::IffWriter writer;
    writer.PushChunk(iffparse::MakeId("FTXT"), iffparse::IdForm);
    writer.PopChunk();
    ASSERT_TRUE(iffparse::WriteIff("Test:clip.iff", writer));
    EXPECT_EQ(iffparse::ReadIff("Test:clip.iff"), Tree.Read("clip.iff"));
    EXPECT_FALSE(iffparse::WriteIff("Test:clip.iff", writer)); // spent
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectTooLarge);
    EXPECT_EQ(Tree.Read("clip.iff").size(), 12U);
    Tree.Write("text", "no stream at all");
    EXPECT_EQ(Refusal(iffparse::ReadIff("Test:text")), dos::ErrorObjectWrongType);
}

} // namespace
