#include "platform/iffparse/IffReader.h"

#include "platform/iffparse/ByteReader.h"
#include "tests/support/Bytes.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using iffparse::IffChunk, iffparse::IffError, iffparse::IffReader, iffparse::MakeId;

// All chunks in order, "FORM:ILBM(" ... ")" as indents, with the bytes there are of each.
std::string Outline(std::string_view bytes, IffError& error) {
    IffReader reader(bytes);
    std::string outline;
    while (const IffChunk* chunk = reader.Step()) {
        outline += std::string(chunk->Depth, '.') + iffparse::IdText(chunk->Id);
        outline +=
            chunk->IsGroup() ? ":" + iffparse::IdText(chunk->Type) : std::to_string(chunk->Data.size());
        outline += chunk->IsCut() ? "! " : " ";
    }
    EXPECT_EQ(reader.Step(), nullptr);
    error = reader.Error();
    return outline;
}

TEST(IffReaderTest, ChunksOfRealFilesComeInOrder) {
    struct Row {
        const char* Name;
        std::string_view Outline;
        IffError Error = IffError::None;
    };
    const Row rows[] = {
        {"p3_71x28_brush.iff", "FORM:ILBM .BMHD20 .CMAP24 .GRAB4 .CAMG4 .BODY592 "},
        {"missing_body_chunk.iff", "FORM:ILBM! .BMHD20 .CMAP24 .CAMG4 .DPI 4 ", IffError::Truncated},
        {"gen_instrument_3oct_16726.8svx", "FORM:8SVX .VHDR20 .NAME13 .ATAK6 .RLSE6 .BODY5376 "},
        {"gen_list_with_shared_properties.iff",
         "LIST:ILBM .PROP:ILBM ..CMAP3 ..CAMG4 .FORM:ILBM ..BODY3 .FORM:ILBM ..CMAP3 ..BODY4 "
         ".CAT :ILBM ..FORM:ILBM ...BODY5 .FORM:ILBM ..    4 ..BODY4 "},
    };
    for (const Row& row : rows) {
        IffError error{};
        EXPECT_EQ(Outline(BytesOf(SOLVANE_TEST_DATA "/iff/" + std::string(row.Name)), error), row.Outline)
            << row.Name;
        EXPECT_EQ(iffparse::ErrorText(error), iffparse::ErrorText(row.Error)) << row.Name;
    }
}

TEST(IffReaderTest, BrokenStreamsAreUsableUpToTheBreak) {
    struct Row {
        std::string_view What;
        std::string Bytes;
        std::string_view Outline;
        IffError Error;
    };
    const std::string body = "BODY\0\0\0\2xy"s;
    const Row rows[] = {
        {"empty", "", "", IffError::NotIff},
        {"short", "FORM\0\0"s, "", IffError::NotIff},
        {"other file", "GIF89a, and more", "", IffError::NotIff},
        {"outer PROP", "PROP\0\0\0\4ILBM"s, "", IffError::NotIff},
        {"no type", "FORM\0\0\0\2ILBM"s, "", IffError::NotIff},
        {"ends in type", "FORM\0\0\0\4IL"s, "", IffError::Truncated},
        {"ends in header", "FORM\0\0\0\x0EILBMBODY"s, "FORM:ILBM! ", IffError::Truncated},
        {"ends in data", "FORM\0\0\0\x10ILBMBODY\0\0\0\4xy"s, "FORM:ILBM! .BODY2! ", IffError::Truncated},
        {"ends after a chunk", "FORM\0\0\0\x50ILBM"s + body, "FORM:ILBM! .BODY2 ", IffError::Truncated},
        {"no pad at the end", "FORM\0\0\0\x0DILBMBODY\0\0\0\1x"s, "FORM:ILBM .BODY1 ", IffError::None},
        {"zeros at the end", "FORM\0\0\0\x11ILBM"s + body + "\0\0\0"s, "FORM:ILBM .BODY2 ", IffError::None},
        {"rubbish at the end", "FORM\0\0\0\x11ILBM"s + body + "abc", "FORM:ILBM .BODY2 ", IffError::Mangled},
        {"behind the outer group", "FORM\0\0\0\4ILBM"s + body, "FORM:ILBM ", IffError::None},
        {"larger than its group", "FORM\0\0\0\x0EILBMBODY\0\0\0\4xy and more"s, "FORM:ILBM .BODY2! ",
         IffError::Mangled},
        {"huge size", "FORM\0\0\0\x0EILBMBODY\xFF\xFF\xFF\xFFxy"s, "FORM:ILBM .BODY2! ", IffError::Truncated},
        {"group larger than its group",
         "CAT \0\0\0\x1AILBMFORM\0\0\0\x70ILBM"s + body + std::string(200, 'x'),
         "CAT :ILBM .FORM:ILBM! ..BODY2 ", IffError::Mangled},
        {"bad id", "FORM\0\0\0\x0EILBMBO\1Y\0\0\0\2xy"s, "FORM:ILBM ", IffError::Mangled},
        {"blank inside an id", "FORM\0\0\0\x0EILBMB DY\0\0\0\2xy"s, "FORM:ILBM ", IffError::Mangled},
        {"data in a LIST", "LIST\0\0\0\x0EILBM"s + body, "LIST:ILBM ", IffError::Syntax},
        {"PROP in a FORM", "FORM\0\0\0\x10ILBMPROP\0\0\0\4ILBM"s, "FORM:ILBM ", IffError::Syntax},
        {"FORM in a PROP", "LIST\0\0\0\x1CILBMPROP\0\0\0\x10ILBMFORM\0\0\0\4ILBM"s, "LIST:ILBM .PROP:ILBM ",
         IffError::Syntax},
    };
    for (const Row& row : rows) {
        IffError error{};
        EXPECT_EQ(Outline(row.Bytes, error), row.Outline) << row.What;
        EXPECT_EQ(iffparse::ErrorText(error), iffparse::ErrorText(row.Error)) << row.What;
    }
}

TEST(IffReaderTest, DepthIsLimited) {
    std::string nest = "FORM\0\0\0\4ILBM"s;
    for (int level = 1; level < 40; ++level) {
        const auto size = static_cast<char>(nest.size() + 4); // as low bytes: 40 levels are 480 bytes
        const auto high = static_cast<char>((nest.size() + 4) >> 8);
        nest = "FORM\0\0"s + high + size + "ILBM" + nest;
    }
    IffReader reader(nest, 5);
    int groups = 0;
    while (reader.Step() != nullptr)
        ++groups;
    EXPECT_EQ(groups, 5);
    EXPECT_EQ(reader.Error(), IffError::TooDeep);
}

TEST(IffReaderTest, PropertiesHoldInTheirScope) {
    const std::string bytes = BytesOf(SOLVANE_TEST_DATA "/iff/gen_list_with_shared_properties.iff");
    IffReader reader(bytes);
    for (const auto id : {MakeId("CMAP"), MakeId("CAMG")})
        reader.PropChunk(MakeId("ILBM"), id);
    reader.StopChunk(MakeId("ILBM"), MakeId("BODY"));
    const std::pair<std::string_view, std::string_view> bodies[] = {{"one", "\x11\x22\x33"},
                                                                    {"two!", "\xFF\xEE\xDD"},
                                                                    {"three", "\x11\x22\x33"},
                                                                    {"last", "\x11\x22\x33"}};
    for (const auto& [body, colours] : bodies) {
        const IffChunk* chunk = reader.Scan();
        ASSERT_NE(chunk, nullptr) << body;
        EXPECT_EQ(chunk->Data, body);
        EXPECT_EQ(reader.FindProp(MakeId("ILBM"), MakeId("CMAP")), colours) << body;
        EXPECT_EQ(reader.FindProp(MakeId("ILBM"), MakeId("CAMG")), "\0\0\x08\0"s) << body;
        EXPECT_FALSE(reader.FindProp(MakeId("8SVX"), MakeId("CMAP")));
    }
    EXPECT_EQ(reader.Scan(), nullptr);
    EXPECT_EQ(reader.Error(), IffError::None);
    EXPECT_FALSE(reader.FindProp(MakeId("ILBM"), MakeId("CAMG")));
}

TEST(IffReaderTest, TheLastOfDoublePropertiesCounts) {
    IffReader reader("FORM\0\0\0\x18TESTNAME\0\0\0\1a\0NAME\0\0\0\1b\0"sv);
    reader.PropChunk(MakeId("TEST"), MakeId("NAME"));
    reader.StopChunk(MakeId("TEST"), MakeId("NAME"));
    EXPECT_NE(reader.Scan(), nullptr);
    EXPECT_NE(reader.Scan(), nullptr);
    EXPECT_EQ(reader.FindProp(MakeId("TEST"), MakeId("NAME")), "b");
}

TEST(IffReaderTest, GroupsCanBePassedOver) {
    const std::string bytes = BytesOf(SOLVANE_TEST_DATA "/iff/gen_list_with_shared_properties.iff");
    IffReader reader(bytes);
    std::string depths;
    while (const IffChunk* chunk = reader.Step()) {
        depths += std::to_string(chunk->Depth);
        if (chunk->IsGroup() && chunk->Depth == 1)
            reader.SkipGroup();
    }
    EXPECT_EQ(depths, "011111");
    EXPECT_EQ(reader.Error(), IffError::None);
}

TEST(ByteReaderTest, AReadThatDoesNotFitFailsForGood) {
    iffparse::ByteReader reader("\x81\x02\x03\x04\x05\x06\x07\x08Name\0\0\xFFrest"sv);
    EXPECT_EQ(reader.Word(), 0x8102);
    EXPECT_EQ(reader.Long(), 0x03040506U);
    EXPECT_EQ(reader.Word(), 0x0708);
    EXPECT_EQ(reader.Field(7), "Name");
    EXPECT_EQ(reader.Quad(), 0U);
    EXPECT_EQ(reader.Byte(), 0); // four bytes are left, but a record that has failed stays so
    EXPECT_TRUE(reader.Failed());
}

} // namespace
