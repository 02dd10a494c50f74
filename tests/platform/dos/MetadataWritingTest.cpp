#include "platform/dos/Changes.h"
#include "platform/dos/Copy.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Dates.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/Sidecar.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/support/Bytes.h"

#include <array>
#include <span>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

constexpr std::string_view Line = "-s--rwed 2001-02-03 04:05:06.08 note\n";

class MetadataWritingTest : public DosTest {
protected:
    MetadataWritingTest() {
        Tree.Drawer("amiga");
        AddDisk("TD1", "Amiga", Tree.Path("amiga"), dos::NameRule::Exact, dos::MetadataRule::Uaem);
    }
    [[nodiscard]] std::string Attribute(std::string_view name, const char* attribute) {
        std::array<char, 256> value{};
        const auto length = ::getxattr(Tree.Path(name).c_str(), attribute, value.data(), value.size());
        return length < 0 ? "none" : std::string(value.data(), static_cast<std::size_t>(length));
    }
    [[nodiscard]] unsigned Mode(std::string_view name) {
        struct stat about {};
        EXPECT_EQ(::stat(Tree.Path(name).c_str(), &about), 0);
        return about.st_mode & 07777;
    }
};

class AttributeWritingTest : public MetadataWritingTest {
    void SetUp() override {
        if (::setxattr(Tree.Root().c_str(), "user.test", "", 0, 0) != 0)
            GTEST_SKIP() << "no attributes here";
    }
};

TEST(SidecarTextTest, LinesComeBackByteForByte) {
    for (const std::string_view line :
         {"-s--rwed 2024-03-15 19:01:02.50 \n", "----rwed 2024-03-15 19:01:13.84 comment on file2\n",
          "hsparwed 1999-12-31 23:59:59.98 every bit\n", "-------- 2000-01-01 00:00:00.00 \n",
          "---arwed 2024-02-29 12:00:00.02 leap day\n",
          "----rwed 2013-02-12 21:20:52.02 Gr%f6%dfe 100%25 %2a%22%2f%5c%7c%3c%3e%3f%0a\n",
          "----rwed 2013-02-12 21:20:52.02 ends in a dot%2e\n", "----rwed 2013-02-12 21:20:52.02 AU%58\n",
          "----rwed 2013-02-12 21:20:52.02 co%6d1.txt\n", "----rwed 2013-02-12 21:20:52.02 auxiliary\n",
          "----rwed 2013-02-12 21:20:52.02 x.uae%6d\n", "----rwed 2013-02-12 21:20:52.02  two  blanks %20\n",
          "----rwed 2013-02-12 21:20:52.02 \xCE\xA9 beyond Latin-1\n"})
        EXPECT_EQ(dos::FormatSidecar(dos::ParseSidecar(line)), line);
    EXPECT_EQ(dos::SidecarCommentLength("Größe"), 5u);
}

TEST_F(AttributeWritingTest, BitsGoToModesAndTheRestToTheAttribute) {
    Tree.Write("file", "");
    const struct {
        std::uint32_t Bits;
        unsigned Mode;
        std::string_view Letters;
    } cases[] = {
        {0x00, 0744, "none"},     {0x02, 0644, "none"},     {0x4D, 0144, "-s----e-"},
        {0xF0, 0744, "hsparwed"}, {0x0F, 0044, "--------"}, {0x02, 0644, "none"},
        {0xAE02, 0675, "none"},   {0x02, 0675, "none"}, // without a bit of these, they stay
    };
    ASSERT_EQ(::chmod(Tree.Path("file").c_str(), 0644), 0);
    for (const auto& row : cases) {
        ASSERT_TRUE(dos::SetProtection("Test:file", row.Bits)) << row.Bits << " " << dos::IoErr();
        EXPECT_EQ(Mode("file"), row.Mode) << row.Bits;
        if (::geteuid() != 0 && (row.Mode & S_IRUSR) == 0)
            continue; // the host hides attributes of what the owner may not read
        EXPECT_EQ(Attribute("file", "user.amiga.protection"), row.Letters) << row.Bits;
        EXPECT_EQ(dos::ExamineObject("Test:file")->Protection & 0xFF, row.Bits & 0xFF);
    }
}

TEST_F(AttributeWritingTest, CommentsAndDatesAreKept) {
    Tree.Plant({"file", "drawer/"});
    Tree.Link("link", "file");
    for (const std::string_view path : {"Test:link", "Test:drawer", "Test:"}) {
        const std::string longNote(500, 'n');
        EXPECT_TRUE(dos::SetComment(path, longNote)) << path;
        EXPECT_EQ(dos::ExamineObject(path)->Comment, longNote) << path;
        EXPECT_TRUE(dos::SetComment(path, "")) << path;
        EXPECT_TRUE(dos::SetComment(path, "")) << path;
        EXPECT_EQ(dos::ExamineObject(path)->Comment, "") << path;
        for (const std::uint32_t date : {238464000u, 0u, 1'500'000'001u}) {
            EXPECT_TRUE(dos::SetDate(path, date)) << path << date;
            EXPECT_EQ(dos::ExamineObject(path)->Date, date) << path;
        }
    }
    EXPECT_EQ(Attribute("file", "user.xdg.comment"), "none");
    EXPECT_EQ(Refusal(dos::SetComment("Test:file", std::string(100'000, 'n'))), dos::ErrorCommentTooBig);
    EXPECT_EQ(Refusal(dos::SetComment("Test:none", "x")), dos::ErrorObjectNotFound);
}

TEST_F(MetadataWritingTest, SidecarIsKeptUpToDate) {
    Tree.Write("file", "");
    Tree.Write("file.uaem", Line);
    EXPECT_TRUE(dos::SetComment("Test:file", "Größe"));
    EXPECT_EQ(Tree.Read("file.uaem"), "-s--rwed 2001-02-03 04:05:06.08 Gr%f6%dfe\n");
    EXPECT_TRUE(dos::SetDate("Test:file", 238464000));
    EXPECT_EQ(Tree.Read("file.uaem"), "-s--rwed 1985-07-23 00:00:00.00 Gr%f6%dfe\n");
    EXPECT_TRUE(dos::SetProtection("Test:file", 0x95));
    EXPECT_EQ(Tree.Read("file.uaem"), "h--ar-e- 1985-07-23 00:00:00.00 Gr%f6%dfe\n");
    EXPECT_EQ(Mode("file") & 0700, 0500u); // the host's own follow
    EXPECT_EQ(Attribute("file", "user.xdg.comment"), "none");
    EXPECT_EQ(Refusal(dos::SetComment("Test:file", std::string(80, 'n'))), dos::ErrorCommentTooBig);
    EXPECT_TRUE(dos::SetComment("Test:file", "\xC3\xBC" + std::string(78, 'n')));
    EXPECT_TRUE(dos::SetProtection("Test:file", 0x90));
    EXPECT_TRUE(dos::WriteWhole("Test:file", "new"));
    const auto object = dos::ExamineObject("Test:file");
    EXPECT_EQ(object->Protection & 0xFF, 0x80u); // written to: not archived any more
    EXPECT_NEAR(object->Date, dos::CurrentAmigaSeconds(), 60);
}

TEST_F(MetadataWritingTest, LongerCommentOfAnotherWriterHindersNoOtherChange) {
    const std::string comment(90, 'd');
    Tree.Write("file", "");
    Tree.Write("file.uaem", "----rwed 2001-02-03 04:05:06.08 " + comment + "\n");
    EXPECT_TRUE(dos::SetProtection("Test:file", 0x40));
    EXPECT_TRUE(dos::SetDate("Test:file", 238464000));
    EXPECT_EQ(Tree.Read("file.uaem"), "-s--rwed 1985-07-23 00:00:00.00 " + comment + "\n");
}

// Files as emulators and other tools left them, shown and hidden as there.
TEST_F(MetadataWritingTest, SamplesComeBackByteForByte) {
    std::map<std::string, std::string> sidecars; // by owner
    for (const auto& entry : std::filesystem::directory_iterator(SOLVANE_TEST_DATA "/uaem")) {
        const std::string name = entry.path().filename();
        Tree.Write("amiga/" + name, BytesOf(SOLVANE_TEST_DATA "/uaem/" + name));
        if (name.ends_with(".uaem") && name != "gen_orphan.uaem" && name != "gen_bad.uaem") {
            const std::string owner = name.substr(0, name.size() - 5);
            sidecars[owner] = BytesOf(SOLVANE_TEST_DATA "/uaem/" + name);
            Tree.Write("amiga/" + owner, "text");
        }
    }
    Tree.Write("amiga/_UAEFSDB.___", "table");
    EXPECT_EQ(
        NamesIn("Amiga:"),
        (Names{"README.md",       "dir1*",          "file1*",           "file2<",          "file3",
               "file4.",          "file6.t",        "gen_all",          "gen_archived",    "gen_bad",
               "gen_bad.uaem",    "gen_comment_90", "gen_long_comment", "gen_no_line_end", "gen_none",
               "gen_orphan.uaem", "gen_pure",       "gen_readonly",     "gen_script",      "gen_short"}));
    EXPECT_EQ(dos::ExamineObject("Amiga:gen_short")->Protection & 0xFF, 0u);
    EXPECT_EQ(dos::CopyTree("Amiga:", "Test:copy").FirstError, dos::ErrorReadProtected);
    EXPECT_FALSE(Tree.Exists("copy/gen_none")); // the one that may not be read
    ASSERT_TRUE(dos::SetProtection("Amiga:gen_none", 0) && dos::Copy("Amiga:gen_none", "Test:copy/gen_none"));
    EXPECT_TRUE(dos::SetProtection("Amiga:gen_none", 0x0F) && dos::SetProtection("Test:copy/gen_none", 0x0F));
    EXPECT_EQ(Tree.Read("copy/_UAEFSDB.___"), "table");
    EXPECT_EQ(sidecars.size(), 16u);
    sidecars["gen_no_line_end"] += '\n';
    for (const auto& [owner, line] : sidecars) {
        const std::string name = dos::UnescapedName(owner);
        for (const char* drawer : {"Amiga:", "Test:copy/"}) {
            const std::string path = drawer + name;
            const bool takesDate = owner == "gen_short"; // which it has not
            EXPECT_TRUE(takesDate || dos::SetProtection(path, dos::ExamineObject(path)->Protection)) << path;
        }
        EXPECT_EQ(Tree.Read("amiga/" + owner + ".uaem"), line);
        EXPECT_TRUE(Tree.Read("copy/" + name + ".uaem") == line || owner == "gen_short") << owner;
    }
}

TEST_F(MetadataWritingTest, UaemVolumesGetSidecarsForAll) {
    Tree.Plant({"amiga/file", "amiga/drawer/", "amiga/taken"});
    Tree.Write("amiga/taken.uaem", "my own text");
    for (const std::string_view name : {"file", "drawer"}) {
        const std::string path = "Amiga:" + std::string(name);
        EXPECT_TRUE(dos::SetDate(path, 238464000));
        EXPECT_TRUE(dos::SetProtection(path, 0x40));
        EXPECT_TRUE(dos::SetComment(path, "note"));
        EXPECT_EQ(Tree.Read("amiga/" + std::string(name) + ".uaem"),
                  "-s--rwed 1985-07-23 00:00:00.00 note\n");
    }
    EXPECT_EQ(Attribute("amiga/file", "user.amiga.protection"), "none");
    // One whose sidecar would have too long a name does without.
    Tree.Write("amiga/" + std::string(255, 'l'), "");
    const std::string longest = "Amiga:" + NamesIn("Amiga:")[2];
    EXPECT_TRUE(dos::SetDate(longest, 238464000));
    EXPECT_TRUE(dos::SetProtection(longest, 0x40));
    EXPECT_TRUE(dos::SetComment(longest, "note"));
    EXPECT_EQ(dos::ExamineObject(longest)->Date, 238464000u);
    EXPECT_EQ(dos::ExamineObject(longest)->Comment, "note");
    EXPECT_EQ(dos::Copy(longest, "Amiga:drawer/" + longest.substr(6)).Lost, 0u);
    EXPECT_EQ(Refusal(dos::SetComment("Amiga:taken", "note")), dos::ErrorObjectExists);
    EXPECT_EQ(Tree.Read("amiga/taken.uaem"), "my own text");
}

TEST_F(MetadataWritingTest, ObjectsMadeOnUaemVolumesHaveASidecarThatStaysWithThem) {
    Tree.Drawer("amiga");
    ASSERT_TRUE(dos::WriteWhole("Amiga:whole", "text"));
    dos::FileHandle file = dos::Open("Amiga:opened", dos::OpenMode::New);
    ASSERT_TRUE(dos::Close(file));
    ASSERT_TRUE(dos::CreateDir("Amiga:drawer"));
    ASSERT_TRUE(dos::SetProtection("Amiga:whole", 0x40));
    ASSERT_TRUE(dos::MakeLink("Amiga:drawer/second", dos::Lock("Amiga:whole")));
    ASSERT_TRUE(dos::MakeLink("Amiga:soft", "whole"));
    const auto letters = [&](const std::string& name) {
        return Tree.Read("amiga/" + name + ".uaem").substr(0, 9);
    };
    EXPECT_EQ(letters("whole"), "-s--rwed ");
    EXPECT_EQ(letters("opened"), "----rwed ");
    EXPECT_EQ(letters("drawer"), "----rwed ");
    EXPECT_EQ(letters("drawer/second"), "-s--rwed ");
    EXPECT_FALSE(Tree.Exists("amiga/soft.uaem"));
    EXPECT_EQ(NamesIn("Amiga:"), (Names{"drawer", "opened", "soft", "whole"}));
    ASSERT_TRUE(dos::Rename("Amiga:drawer/second", "Amiga:third"));
    ASSERT_TRUE(dos::Rename("Amiga:drawer", "Amiga:place"));
    EXPECT_EQ(letters("third"), "-s--rwed ");
    EXPECT_EQ(letters("place"), "----rwed ");
    for (const std::string name : {"third", "place", "whole", "opened", "soft"})
        EXPECT_TRUE(dos::Delete("Amiga:" + name)) << name << dos::IoErr();
    EXPECT_TRUE(std::filesystem::is_empty(Tree.Path("amiga")));
}

TEST_F(MetadataWritingTest, ProtectionThatOnlyASidecarTellsIsObeyed) {
    Tree.Write("file", "text");
    const struct {
        std::string_view Letters;
        long Read, Write, Replace, Delete; // 0: done
    } cases[] = {{"-----wed", 224, 224, 0, 0}, {"----r-ed", 0, 223, 223, 0}, {"----rwe-", 0, 0, 222, 222}};
    for (const auto& row : cases) {
        Tree.Write("file", "text");
        Tree.Write("file.uaem", std::string(row.Letters) + " 2001-02-03 04:05:06.08 \n");
        EXPECT_EQ(Refusal(dos::ReadWhole("Test:file", 9)), row.Read) << row.Letters;
        dos::FileHandle file = dos::Open("Test:file", dos::OpenMode::ReadWrite);
        EXPECT_EQ(Refusal(file && dos::Write(file, std::as_bytes(std::span("x", 1))) == 1), row.Write)
            << row.Letters;
        file = {};
        EXPECT_EQ(Refusal(dos::WriteWhole("Test:file", "new")), row.Replace) << row.Letters;
        EXPECT_EQ(Refusal(dos::Delete("Test:file")), row.Delete) << row.Letters;
    }
}

TEST_F(AttributeWritingTest, ClearedCommentDoesNotComeBackFromTheAttribute) {
    Tree.Write("file", "");
    EXPECT_TRUE(dos::SetComment("Test:file", "old"));
    Tree.Write("file.uaem", Line);
    EXPECT_TRUE(dos::SetComment("Test:file", ""));
    EXPECT_EQ(dos::ExamineObject("Test:file")->Comment, "");
}

TEST_F(MetadataWritingTest, FileSystemWithNeitherRefusesAndChangesNothing) {
    Tree.Write("file", "");
    ASSERT_EQ(::chmod(Tree.Path("file").c_str(), 0644), 0);
    Calls().SetAttribute = Failing<ENOTSUP>();
    Calls().RemoveAttribute = Failing<ENOTSUP>();
    EXPECT_EQ(Refusal(dos::SetProtection("Test:file", 0x44)), dos::ErrorActionNotKnown);
    EXPECT_EQ(Mode("file"), 0644u);
    EXPECT_TRUE(dos::SetProtection("Test:file", 0x04));
    EXPECT_EQ(Mode("file"), 0544u);
    EXPECT_EQ(Refusal(dos::SetComment("Test:file", "note")), dos::ErrorActionNotKnown);
    EXPECT_TRUE(dos::SetComment("Test:file", ""));
}

// A disk that says yes to modes and times that it cannot keep.
TEST_F(MetadataWritingTest, WhatADiskForgetsIsAFailure) {
    Tree.Write("file", "");
    Calls().ChangeMode = [](int, unsigned) { return 0; };
    Calls().SetTime = [](int object, std::int64_t seconds, long nanoseconds) {
        return dos::RealHost().SetTime(object, std::max<std::int64_t>(seconds, 315532800), nanoseconds);
    };
    EXPECT_EQ(Refusal(dos::SetProtection("Test:file", 0)), dos::ErrorActionNotKnown);
    const std::uint32_t before = dos::ExamineObject("Test:file")->Date;
    EXPECT_EQ(Refusal(dos::SetDate("Test:file", 1000)), dos::ErrorActionNotKnown);
    EXPECT_EQ(dos::ExamineObject("Test:file")->Date, before);
}

// The host wants r and w for attributes; whoever is not root meets this with every protected file.
TEST_F(AttributeWritingTest, ProtectedFilesCanBeNotedAndSetFree) {
    Tree.Write("file", "");
    ASSERT_EQ(::chmod(Tree.Path("file").c_str(), 0444), 0);
    Calls().SetAttribute = [](int object, const char* name, const void* value, std::size_t size) {
        dos::ObjectFacts facts;
        if (dos::FactsOf(object, facts) && (facts.Mode & 0200) == 0) {
            errno = EACCES;
            return -1;
        }
        return dos::RealHost().SetAttribute(object, name, value, size);
    };
    Calls().Getxattr = [](int drawer, const char* name, const char* attribute, void* buffer,
                          std::size_t size) -> long {
        dos::ObjectFacts facts;
        if (*name == '\0' && dos::FactsOf(drawer, facts) && (facts.Mode & 0400) == 0) {
            errno = EACCES;
            return -1;
        }
        return dos::RealHost().Getxattr(drawer, name, attribute, buffer, size);
    };
    EXPECT_TRUE(dos::SetComment("Test:file", "note"));
    EXPECT_EQ(Mode("file"), 0444u);
    EXPECT_TRUE(dos::SetProtection("Test:file", 0x4F));
    EXPECT_EQ(Mode("file"), 0044u);
    EXPECT_FALSE(dos::Delete("Test:file"));
    EXPECT_EQ(Mode("file"), 0044u);
    EXPECT_TRUE(dos::SetProtection("Test:file", 0x44));
    EXPECT_EQ(Attribute("file", "user.amiga.protection"), "-s--r-ed");
    EXPECT_EQ(Mode("file"), 0544u);
    EXPECT_EQ(dos::ExamineObject("Test:file")->Comment, "note");
}

} // namespace
