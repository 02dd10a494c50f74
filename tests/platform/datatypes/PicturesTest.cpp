#include "platform/datatypes/Pictures.h"

#include "platform/datatypes/ByteSource.h"
#include "platform/dos/Errors.h"
#include "tests/support/TempTree.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using datatypes::PictureSize;

std::optional<PictureSize> SizeOf(std::string bytes, std::string_view name = "x") {
    bytes.resize(std::max<std::size_t>(bytes.size(), 128), '\0');
    return datatypes::ParsePictureSize(*datatypes::SourceFromMemory(datatypes::AsBytes(bytes)), name);
}

std::optional<std::uint32_t> FramesOf(const std::string& bytes,
                                      std::uint32_t limit = datatypes::NoFrameLimit) {
    return datatypes::ParseFrameCount(*datatypes::SourceFromMemory(datatypes::AsBytes(bytes)), "x", limit);
}

const std::string Bmhd = "BMHD\0\0\0\x14\1\x40\1\0\0\0\0\0\5\0\1\0\0\0\x0A\x0B\1\x40\1\0"s;

std::string Jpeg(const std::string& segments) {
    return "\xFF\xD8"s + segments + "\xFF\xC0\0\x11\x08\0\x30\0\x50\3"s;
}

TEST(Pictures, TellTheirSizeInTheirHeaders) {
    struct Row {
        const char* Kind;
        std::string Bytes;
        PictureSize Size;
        const char* Name = "x";
    };
    const std::string tiff = "II*\0\x08\0\0\0\3\0"
                             "\0\1\3\0\1\0\0\0\x40\0\0\0"
                             "\1\1\4\0\1\0\0\0\x30\0\0\0"
                             "\2\1\3\0\3\0\0\0\x32\0\0\0\0\0\0\0\x08\0\x08\0\x08\0"s;
    for (const Row& row : {
             Row{"ILBM", "FORM\0\0\0\x50ILBM"s + Bmhd, {320, 256, 5}},
             {"ILBM after an odd chunk", "FORM\0\0\0\x50ILBMANNO\0\0\0\1x\0"s + Bmhd, {320, 256, 5}},
             {"ANIM",
              "FORM\0\0\0\x60"s
              "ANIMFORM\0\0\0\x50ILBM"s +
                  Bmhd,
              {320, 256, 5}},
             {"GIF", "GIF89a\x40\1\0\1\xF7\0\0"s, {320, 256, 8}},
             {"PNG with alpha",
              "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x40\0\0\0\x20\x08\6\0\0\0"s,
              {64, 32, 32}},
             {"PNG of 16 grey bits",
              "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x40\0\0\0\x20\x10\0\0\0\0"s,
              {64, 32, 16}},
             {"JPEG", Jpeg(""), {80, 48, 24}},
             {"JPEG with segments and filling",
              Jpeg("\xFF\xE0\0\6abcd\xFF\xFF\xFF\xFE\0\3x\xFF\x01\xFF\xC4\0\4ab"s),
              {80, 48, 24}},
             {"BMP from the top down",
              "BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x40\0\0\0\xE0\xFF\xFF\xFF\1\0\x18\0"s,
              {64, 32, 24}},
             {"BMP of OS/2", "BM\0\0\0\0\0\0\0\0\x1A\0\0\0\x0C\0\0\0\x40\0\x20\0\1\0\x08\0"s, {64, 32, 8}},
             {"WEBP with alpha", "RIFF\x40\0\0\0WEBPVP8X\x0A\0\0\0\x10\0\0\0\x3F\0\0\x1F\0\0"s, {64, 32, 32}},
             {"WEBP", "RIFF\x40\0\0\0WEBPVP8 \x20\0\0\0\0\0\0\x9D\1\x2A\x40\0\x20\0"s, {64, 32, 24}},
             {"TIFF", tiff, {64, 48, 24}},
             {"PCX", "\x0A\5\1\x08\0\0\0\0\x3F\0\x1F\0"s + std::string(53, '\0') + "\3"s, {64, 32, 24}},
             {"PPM", "P6\n# comment 12\n64 32\n255\n"s, {64, 32, 24}},
             {"PBM", "P4 64 32\n"s, {64, 32, 1}},
             {"FLC", "\0\1\0\0\x12\xAF\2\0\x40\1\xC8\0\x08\0"s, {320, 200, 8}},
             {"TGA", "\0\0\2\0\0\0\0\0\0\0\0\0\x40\0\x20\0\x20\0"s, {64, 32, 32}, "x.tga"},
         }) {
        const auto size = SizeOf(row.Bytes, row.Name);
        ASSERT_TRUE(size) << row.Kind;
        EXPECT_EQ(*size, row.Size) << row.Kind << " " << size->Width << "x" << size->Height << "x"
                                   << size->Depth;
    }
}

TEST(Pictures, DamagedHeadersHaveNoSize) {
    const std::string longChunks = "FORM\0\0\0\x50ILBMANNO\xFF\xFF\xFF\xFF"s + Bmhd;
    std::string nested = "FORM\0\0\0\x50"s
                         "ANIM"s;
    for (int i = 0; i < 20000; ++i)
        nested += "FORM\0\0\0\x50ILBM"s;
    for (const std::string& bytes :
         {longChunks, nested, "GIF89a\0\0\0\0\xF7\0\0"s, "\xFF\xD8"s + std::string(9000, '\xFF'),
          "\xFF\xD8\xFF\xE0\0\0\xFF\xE0\0\0"s, "\xFF\xD8\xFF\xDA\0\4ab"s, "II*\0\xFF\xFF\xFF\xFF"s,
          "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x40\0\0\0\x20\x08\x7F"s, "FORM\0\0\0\x50ILBM"s, "P6"s,
          "no picture"s})
        EXPECT_FALSE(SizeOf(bytes)) << testing::PrintToString(bytes.substr(0, 20));
}

// Pictures whose header lies behind data that a file may have much of.
TEST(Pictures, HeadersFarInsideTheFileAreFound) {
    const std::string comment = "\xFF\xFE\xFF\xFF"s + std::string(0xFFFD, 'x');
    EXPECT_EQ(SizeOf(Jpeg(comment + comment + comment)), (PictureSize{80, 48, 24}));
}

std::string GifFrames(int frames) {
    std::string gif = "GIF89a\1\0\1\0\x80\0\0"s + std::string(6, '\0') + "!\xFF\x0BNETSCAPE2.0\3\1\0\0\0"s;
    for (int i = 0; i < frames; ++i)
        gif += "!\xF9\4\0\0\0\0\0"s + ",\0\0\0\0\1\0\1\0\0\2\2\x4C\1\0"s;
    return gif + ";";
}

TEST(Pictures, FramesAreCountedUpToTheLimit) {
    EXPECT_EQ(FramesOf(GifFrames(1)), 1);
    EXPECT_EQ(FramesOf(GifFrames(500)), 500);
    EXPECT_EQ(FramesOf(GifFrames(500), 2), 2);
    const std::string frame = "FORM\0\0\0\4ILBM"s;
    EXPECT_EQ(FramesOf("FORM\0\0\0\x28"
                       "ANIM"s +
                       frame + frame + frame),
              3);
    EXPECT_EQ(FramesOf("\x89PNG\r\n\x1A\n\0\0\0\x08"
                       "acTL\0\0\0\7\0\0\0\0xxxx"s),
              7);
    EXPECT_EQ(FramesOf("\x89PNG\r\n\x1A\n\0\0\0\0IDATxxxx"s), 1);
    EXPECT_FALSE(FramesOf("\xFF\xD8\xFF\xE0\0\x10JFIF"s));
}

TEST(Pictures, FramesOfCutFilesAreThoseThatBegin) {
    const std::string gif = GifFrames(3);
    EXPECT_EQ(FramesOf(gif.substr(0, gif.size() - 3)), 3);
    EXPECT_EQ(FramesOf(gif.substr(0, 13 + 6)), 0);
    EXPECT_EQ(FramesOf("GIF89a\1\0"s), 0);
}

TEST(Pictures, EndlessTinyBlocksAreNotFollowedToTheirEnd) {
    std::string tiny;
    for (int i = 0; i < 1'100'000; ++i)
        tiny += "\1x";
    const std::string image = ",\0\0\0\0\1\0\1\0\0\2"s;
    const std::string gif = "GIF89a\1\0\1\0\0\0\0"s + image + tiny + "\0"s + image + "\0;"s;
    EXPECT_EQ(FramesOf(gif), 1);
}

TEST(Pictures, FilesThatAreNoPictureFailWithWrongType) {
    const TempTree drawer;
    drawer.Write("text", "words");
    dos::SetIoErr(0);
    EXPECT_FALSE(datatypes::HostPictureSize(drawer.Path("text")));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectWrongType);
    dos::SetIoErr(0);
    EXPECT_FALSE(datatypes::HostFrameCount(drawer.Path("text")));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectWrongType);
}

} // namespace
