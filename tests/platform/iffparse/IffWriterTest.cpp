#include "platform/iffparse/IffWriter.h"

#include "platform/iffparse/ByteReader.h"
#include "platform/iffparse/IffReader.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace std::string_literals;
using iffparse::IdForm, iffparse::IdList, iffparse::IdProp, iffparse::IffWriter, iffparse::MakeId;

TEST(IffWriterTest, SizesAndPaddingComeByThemselves) {
    IffWriter writer;
    writer.PushChunk(MakeId("FTXT"), IdForm);
    writer.PushChunk(MakeId("CHRS"));
    writer.Write("odd");
    writer.PopChunk();
    writer.PushChunk(MakeId("NUMS"));
    writer.WriteByte(1);
    writer.WriteWord(0x0203);
    writer.WriteLong(0x04050607);
    writer.WriteQuad(0x08090A0B0C0D0E0F);
    writer.PopChunk();
    writer.PopChunk();
    EXPECT_EQ(writer.Finish(),
              "FORM\0\0\0\x28"
              "FTXTCHRS\0\0\0\3odd\0NUMS\0\0\0\x0F\1\2\3\4\5\6\7\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F\0"s);
    EXPECT_FALSE(writer.Finish());
}

TEST(IffWriterTest, FieldsAreWholeAndCutAtWholeCharacters) {
    IffWriter writer;
    writer.PushChunk(MakeId("TEST"), IdForm);
    writer.PushChunk(MakeId("TEXT"));
    writer.WriteField("ab", 4);
    writer.WriteField("abcdef", 4);
    writer.WriteField("abä", 4); // the last character would leave no room for the zero
    writer.WriteField("x", 0);
    writer.PopChunk();
    writer.PopChunk();
    const std::string bytes = writer.Finish().value_or("");
    EXPECT_EQ(bytes.substr(20), "ab\0\0abc\0ab\0\0"s);
}

TEST(IffWriterTest, WhatIsWrittenIsReadBack) {
    IffWriter writer;
    writer.PushChunk(MakeId("TEST"), IdList);
    writer.PushChunk(MakeId("TEST"), IdProp);
    writer.PushChunk(MakeId("NAME"));
    writer.Write("shared");
    writer.PopChunk();
    writer.PopChunk();
    for (std::size_t size = 0; size < 5; ++size) {
        writer.PushChunk(MakeId("TEST"), IdForm);
        writer.PushChunk(MakeId("DATA"));
        writer.Write(std::string(size, 'x'));
        writer.PopChunk();
        writer.PopChunk();
    }
    writer.PopChunk();
    const std::optional<std::string> bytes = writer.Finish();
    ASSERT_TRUE(bytes);
    iffparse::IffReader reader(*bytes);
    reader.PropChunk(MakeId("TEST"), MakeId("NAME"));
    reader.StopChunk(MakeId("TEST"), MakeId("DATA"));
    for (std::size_t size = 0; size < 5; ++size) {
        const iffparse::IffChunk* chunk = reader.Scan();
        ASSERT_NE(chunk, nullptr);
        EXPECT_EQ(chunk->Data, std::string(size, 'x'));
        EXPECT_EQ(reader.FindProp(MakeId("TEST"), MakeId("NAME")), "shared");
    }
    EXPECT_EQ(reader.Scan(), nullptr);
    EXPECT_EQ(reader.Error(), iffparse::IffError::None);
}

TEST(IffWriterTest, WrongStepsGiveNothing) {
    const auto pushForm = [](IffWriter& writer) { writer.PushChunk(MakeId("TEST"), IdForm); };
    const auto pushData = [](IffWriter& writer) { writer.PushChunk(MakeId("DATA")); };
    const auto pop = [](IffWriter& writer) { writer.PopChunk(); };
    using Step = std::function<void(IffWriter&)>;
    struct Row {
        std::string_view What;
        std::vector<Step> Steps;
    };
    const Row rows[] = {
        {"nothing", {}},
        {"left open", {pushForm}},
        {"closed twice", {pushForm, pop, pop}},
        {"two outer groups", {pushForm, pop, pushForm, pop}},
        {"outer data", {pushData, pop}},
        {"outer PROP", {[](IffWriter& writer) { writer.PushChunk(MakeId("TEST"), IdProp); }, pop}},
        {"data in data", {pushForm, pushData, pushData, pop, pop, pop}},
        {"group in data", {pushForm, pushData, pushForm, pop, pop, pop}},
        {"bytes in a group", {pushForm, [](IffWriter& writer) { writer.Write("x"); }, pop}},
        {"group id for data", {pushForm, [](IffWriter& writer) { writer.PushChunk(IdForm); }, pop, pop}},
        {"bad id", {pushForm, [](IffWriter& writer) { writer.PushChunk(MakeId("A\1BC")); }, pop, pop}},
        {"bad type", {[](IffWriter& writer) { writer.PushChunk(MakeId(" AB "), IdForm); }, pop}},
        {"data in a LIST",
         {[](IffWriter& writer) { writer.PushChunk(MakeId("TEST"), IdList); }, pushData, pop, pop}},
    };
    for (const Row& row : rows) {
        IffWriter writer;
        for (const Step& step : row.Steps)
            step(writer);
        EXPECT_FALSE(writer.Finish()) << row.What;
    }
}

TEST(IffWriterTest, NothingGrowsBeyondTheLimit) {
    for (std::size_t limit = 0; limit < 30; ++limit) {
        IffWriter writer(limit);
        writer.PushChunk(MakeId("TEST"), IdForm);
        writer.PushChunk(MakeId("DATA"));
        writer.Write("12345");
        writer.PopChunk();
        writer.PopChunk();
        EXPECT_EQ(writer.Finish().has_value(), limit >= 26) << limit;
    }
}

} // namespace
