#include "platform/datatypes/HostFiles.h"

#include "platform/datatypes/Pictures.h"
#include "platform/dos/Errors.h"
#include "tests/support/TempTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

using namespace std::string_literals;
using datatypes::DataType;

const std::string Gif = "GIF89a\1\0\1\0\0\0\0;"s;

std::vector<const DataType*> TypesIn(const std::string& drawer, const std::vector<std::string_view>& names) {
    static const DataType untouched{};
    std::vector<const DataType*> results(names.size(), &untouched);
    datatypes::ObtainHostDrawerTypes(drawer, names, results);
    return results;
}

TEST(HostFiles, OnlyRegularFilesHaveATypeAndNothingWaits) {
    const TempTree drawer;
    ASSERT_EQ(mkfifo(drawer.Path("fifo").c_str(), 0600), 0);
    drawer.Socket("socket");
    drawer.Drawer("sub");
    drawer.Link("to fifo", "fifo");
    drawer.Link("to device", "/dev/zero");
    drawer.Link("dangling", "nowhere");
    drawer.Link("circle", "circle");
    struct Row {
        const char* Name;
        long Error;
    };
    for (const Row& row : {Row{"fifo", dos::ErrorObjectWrongType},
                           {"socket", dos::ErrorObjectWrongType},
                           {"sub", dos::ErrorObjectWrongType},
                           {"to fifo", dos::ErrorObjectWrongType},
                           {"to device", dos::ErrorObjectWrongType},
                           {"dangling", dos::ErrorObjectNotFound},
                           {"missing", dos::ErrorObjectNotFound},
                           {"circle", dos::ErrorTooManyLevels}}) {
        dos::SetIoErr(0);
        EXPECT_EQ(datatypes::ObtainHostFileType(drawer.Path(row.Name)), nullptr) << row.Name;
        EXPECT_EQ(dos::IoErr(), row.Error) << row.Name;
        dos::SetIoErr(0);
        EXPECT_FALSE(datatypes::HostPictureSize(drawer.Path(row.Name))) << row.Name;
        EXPECT_EQ(dos::IoErr(), row.Error) << row.Name;
    }
}

TEST(HostFiles, LinksToFilesHaveTheTypeOfTheirTarget) {
    const TempTree drawer;
    drawer.Write("picture", Gif);
    drawer.Link("link.txt", "picture");
    const DataType* type = datatypes::ObtainHostFileType(drawer.Path("link.txt"));
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->Name, "GIF");
}

// Everything is readable to root, who becomes nobody for a while.
class Nobody {
public:
    Nobody() : Before(geteuid()) { Became = Before != 0 || seteuid(65534) == 0; }
    Nobody(const Nobody&) = delete;
    Nobody& operator=(const Nobody&) = delete;
    ~Nobody() { Restored = seteuid(Before); }
    bool Became = false;

private:
    uid_t Before;
    int Restored = 0;
};

TEST(HostFiles, UnreadableFilesHaveNoType) {
    const TempTree drawer;
    chmod(drawer.Root().c_str(), 0755);
    chmod(drawer.Write("secret", Gif).c_str(), 0);
    const Nobody nobody;
    ASSERT_TRUE(nobody.Became);
    EXPECT_EQ(datatypes::ObtainHostFileType(drawer.Path("secret")), nullptr);
    EXPECT_EQ(dos::IoErr(), dos::ErrorReadProtected);
}

TEST(HostFiles, PathsWithNulOrNothingAreRefused) {
    EXPECT_EQ(datatypes::ObtainHostFileType(""), nullptr);
    EXPECT_EQ(datatypes::ObtainHostFileType("/etc/passwd\0x"s), nullptr);
}

// A drawer large enough for several threads, with all kinds of names and contents.
struct MixedDrawer {
    TempTree Drawer;
    std::vector<std::string> Files;
    std::vector<std::string_view> Names;

    MixedDrawer() {
        const std::vector<std::string> kinds = {Gif, "text\n", "FORM\0\0\0\4ILBM"s, "",
                                                "\1\2\3\4\0\0\0\0\0\0\0\0"s};
        const std::vector<std::string> ends = {"", ".txt", ".gif", ".c", ".blend", ".qq"};
        for (std::size_t i = 0; i < 1500; ++i) {
            Files.push_back("f" + std::to_string(i) + ends[i % ends.size()]);
            Drawer.Write(Files.back(), kinds[i % kinds.size()]);
        }
        Files.push_back("missing");
        Names.assign(Files.begin(), Files.end());
    }
};

TEST(HostFiles, WholeDrawerGivesWhatSingleFilesGive) {
    const MixedDrawer mixed;
    const auto results = TypesIn(mixed.Drawer.Root(), mixed.Names);
    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i], datatypes::ObtainHostFileType(mixed.Drawer.Path(mixed.Names[i])))
            << mixed.Names[i];
    }
    EXPECT_EQ(results.back(), nullptr);
}

TEST(HostFiles, FilesThatTheKernelMakesUpAreNotRead) {
    EXPECT_EQ(TypesIn("/proc/self", {"status", "maps"}),
              std::vector<const DataType*>(2, &datatypes::BinaryType()));
    EXPECT_EQ(datatypes::ObtainHostFileType("/proc/self/status"), &datatypes::BinaryType());
}

TEST(HostFiles, SeveralThreadsMayTypeAtOnce) {
    const MixedDrawer mixed;
    std::vector<std::vector<const DataType*>> results(4);
    std::vector<std::jthread> threads;
    for (auto& one : results)
        threads.emplace_back([&mixed, &one] { one = TypesIn(mixed.Drawer.Root(), mixed.Names); });
    threads.clear();
    for (const auto& one : results)
        EXPECT_EQ(one, results[0]);
}

TEST(HostFiles, NamesNeverLeadOutOfTheDrawer) {
    const TempTree drawer;
    drawer.Write("picture", Gif);
    drawer.Drawer("sub");
    EXPECT_EQ(TypesIn(drawer.Path("sub"), {"../picture", "", ".", "..", "sub/../picture"}),
              std::vector<const DataType*>(5, nullptr));
}

TEST(HostFiles, MissingDrawerGivesNoTypes) {
    const TempTree drawer;
    EXPECT_EQ(TypesIn(drawer.Path("missing"), {"a"}), std::vector<const DataType*>{nullptr});
}

TEST(HostFiles, NamesThatAreNoFilesOfTheDrawerAreLeftToTheCaller) {
    const TempTree drawer;
    drawer.Write("real", "text");
    drawer.Link("link", "real");
    const std::vector<std::string_view> names = {"the~1", "missing", "link", "real"};
    std::vector<const DataType*> results(names.size());
    int typed = 0;
    datatypes::ObtainHostDrawerTypes(
        drawer.Root(), names, results,
        {.Otherwise =
             [](std::string_view name) { return name == "missing" ? nullptr : &datatypes::BinaryType(); },
         .Typed = [&typed] { ++typed; }});
    EXPECT_EQ(results, (std::vector<const DataType*>{&datatypes::BinaryType(), nullptr,
                                                     &datatypes::BinaryType(), &datatypes::AsciiType()}));
    EXPECT_EQ(typed, 4);
}

} // namespace
