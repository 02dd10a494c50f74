#include "platform/datatypes/DecodePicture.h"

#include "tests/support/Bytes.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <zlib.h>

namespace {

using datatypes::AsBytes, datatypes::DecodedPicture, datatypes::DecodePicture, datatypes::Picture,
    datatypes::PictureFault;

std::uint32_t At(const Picture& picture, std::uint32_t x, std::uint32_t y) {
    return picture.Pixels.at(std::size_t{y} * picture.Width + x);
}

// Of pictures that were looked at; the pixels are what two other decoders give (HAM may differ a little).
struct Reference {
    std::string File;
    std::uint32_t Width, Height;
    std::array<std::uint32_t, 3> Pixels; // first, middle, last; 0xAARRGGBB
    std::uint32_t Digest;
};
TEST(DecodePicture, ReferencesDecodeToTheirPixels) {
    const Reference references[] = {
        {"gen_24bit_96x64.iff", 96, 64, {0xFF7F4000, 0xFFBC7E40, 0xFF00407F}, 0xE1E7F7DD},
        {"deep24_31x31.ilbm", 31, 31, {0xFFF8ECF8, 0xFFB0A0A0, 0xFF706060}, 0x2D15E1F2},
        {"small-24bit.iff", 10, 10, {0xFF76FE71, 0xFF010001, 0xFF010001}, 0xF6CB29D6},
        {"gen_ehb_64x32.iff", 64, 32, {0xFF00FF00, 0xFF443B00, 0xFF7F007F}, 0x012AB69A},
        {"gen_ham6_96x64.iff", 96, 64, {0xFF444444, 0xFFBB7744, 0xFF004477}, 0x354C351C},
        {"gen_ham8_96x64.iff", 96, 64, {0xFF4D4D4D, 0xFFBA7D41, 0xFF00417D}, 0x88202A21},
        {"gen_p1_96x64.iff", 96, 64, {0xFF37343F, 0xFFB79F7F, 0xFF37343F}, 0xBF3AA9AC},
        {"gen_p2_maskplane_21x13.iff", 21, 13, {0, 0, 0}, 0x963936AF},
        {"gen_p4_hires_lace_96x64.iff", 96, 64, {0xFF7A4A13, 0xFFAC6E31, 0xFF0C4573}, 0xD75E49CA},
        {"gen_p8_uncompressed_96x64.iff", 96, 64, {0xFF7F4000, 0xFFBA7C3F, 0xFF00407F}, 0x146B5029},
        {"gradient.iff", 320, 200, {0xFFCCCCCC, 0xFFEEBB00, 0xFFEEBB00}, 0x9D0B4102},
        {"p8_131x31.iff", 131, 31, {0xFFFFEFEF, 0xFFFFEFEF, 0xFF736363}, 0x33C4C3C1},
        // Drawn for pixels twice as high as wide, with a transparent colour.
        {"p3_71x28_brush.iff", 71, 56, {0xFF110000, 0xFFFFEEEE, 0}, 0xBB09BD84},
    };
    for (const Reference& row : references) {
        SCOPED_TRACE(row.File);
        const std::string file = BytesOf(SOLVANE_TEST_DATA "/pictures/" + row.File);
        const DecodedPicture decoded = DecodePicture(AsBytes(file));
        ASSERT_TRUE(decoded.Shown);
        const Picture& picture = *decoded.Shown;
        ASSERT_EQ(picture.Width, row.Width);
        ASSERT_EQ(picture.Height, row.Height);
        EXPECT_EQ(At(picture, 0, 0), row.Pixels[0]);
        EXPECT_EQ(At(picture, picture.Width / 2, picture.Height / 2), row.Pixels[1]);
        EXPECT_EQ(At(picture, picture.Width - 1, picture.Height - 1), row.Pixels[2]);
        const auto digest = crc32(0, reinterpret_cast<const Bytef*>(picture.Pixels.data()),
                                  static_cast<uInt>(picture.Pixels.size() * 4));
        EXPECT_EQ(digest, row.Digest);
    }
}

std::string Chunk(const std::string& id, const std::string& data) {
    const auto size = static_cast<std::uint32_t>(data.size());
    std::string chunk = id;
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        chunk += static_cast<char>(size >> shift & 0xFF);
    return chunk + data + std::string(size & 1, '\0');
}
std::string Header(int width, int height, int planes, int masking, int packing) {
    const auto word = [](int value) {
        return std::string{static_cast<char>(value >> 8), static_cast<char>(value)};
    };
    return word(width) + word(height) + std::string(4, '\0') +
           std::string{static_cast<char>(planes), static_cast<char>(masking), static_cast<char>(packing),
                       '\0'} +
           word(0) + std::string{10, 11} + std::string(4, '\0');
}
std::string Ilbm(const std::string& type, const std::string& header, const std::string& rest) {
    return "FORM" + std::string(4, '\0') + type + Chunk("BMHD", header) + rest;
}

TEST(DecodePicture, ChunkyPicturesRunsOverRowsAndLowNibblesAreUnderstood) {
    // 3 wide, so rows are padded to 4; one run goes over both rows. All colours have four bits.
    const std::string colours = Chunk("CMAP", {'\0', '\0', '\0', '\xF0', '\x80', '\x10'});
    const std::string file = Ilbm("PBM ", Header(3, 2, 8, 0, 1), colours + Chunk("BODY", {'\xF9', '\x01'}));
    const DecodedPicture decoded = DecodePicture(AsBytes(file));
    ASSERT_TRUE(decoded.Shown);
    EXPECT_EQ(decoded.Shown->Pixels, std::vector<std::uint32_t>(6, 0xFFFF8811));
}

TEST(DecodePicture, RowsBehindTheEndOfTheDataStayTransparent) {
    // The second row is there by half; of whole planes, one row of the second.
    const std::string body = Chunk("BODY", {'\xFF', '\0', '\xFF'});
    const std::string planes = Chunk("ABIT", {'\xFF', '\0', '\0', '\0', '\0', '\0', '\xFF'});
    const std::array<std::pair<std::string, std::array<std::uint32_t, 3>>, 2> files = {{
        {Ilbm("ILBM", Header(8, 3, 1, 0, 0), body), {0xFFFFFFFF, 0xFFFFFFFF, 0}},
        {Ilbm("ACBM", Header(8, 3, 2, 0, 0), planes), {0xFFFFFFFF, 0xFF000000, 0xFF000000}},
    }};
    for (const auto& [file, rows] : files) {
        const DecodedPicture decoded = DecodePicture(AsBytes(file));
        ASSERT_TRUE(decoded.Shown);
        for (std::uint32_t y = 0; y < 3; ++y)
            EXPECT_EQ(At(*decoded.Shown, 0, y), rows[y]) << y;
    }
}

std::string PngHeader(std::uint32_t side) {
    std::string ihdr = "IHDR";
    for (int i = 0; i < 2; ++i)
        for (const unsigned shift : {24U, 16U, 8U, 0U})
            ihdr += static_cast<char>(side >> shift & 0xFF);
    ihdr += std::string{8, 2, 0, 0, 0};
    const auto sum = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(ihdr.data()), static_cast<uInt>(ihdr.size())));
    std::string file("\x89PNG\r\n\x1A\n\0\0\0\x0D", 12);
    file += ihdr;
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        file += static_cast<char>(sum >> shift & 0xFF);
    return file;
}

// Each element draws the one before it twice.
std::string UseBomb(int levels) {
    std::string file =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><g id="a0"><path d="M0 0h9"/></g>)";
    for (int level = 1; level <= levels; ++level) {
        const std::string use = "<use href=\"#a" + std::to_string(level - 1) + "\"/>";
        file += "<g id=\"a" + std::to_string(level) + "\">" + use + use + "</g>";
    }
    return file + "</svg>";
}

// A drawing of one path, with something before it and something within.
std::string Drawing(const std::string& before, const std::string& within) {
    return before +
           R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" xmlns:o="o:")"
           R"( width="9" height="9"><path id="a" d="M0 0h9"/><path id="b" d="M0 9h9"/>)" +
           within + "</svg>";
}

// A progressive picture of that many empty scans.
std::string ScanBomb(int scans) {
    const std::string frame("\xFF\xC2\0\x0B\x08\x40\0\x40\0\x01\x01\x11\0", 13);
    std::string file = "\xFF\xD8" + frame;
    for (int scan = 0; scan < scans; ++scan)
        file += std::string("\xFF\xDA\0\x08\x01\x01\0\0\0\0", 10);
    return file + "\xFF\xD9";
}

TEST(DecodePicture, RefusesWhatIsBrokenOrUnsafe) {
    const std::string body = Chunk("BODY", std::string(8, '\0'));
    const std::array<std::pair<const char*, std::string>, 20> files = {{
        {"no data", BytesOf(SOLVANE_TEST_DATA "/pictures/missing-body-chunk.iff")},
        {"colours that hide the data", BytesOf(SOLVANE_TEST_DATA "/pictures/incorrect-cmap-size.iff")},
        {"huge IFF", Ilbm("ILBM", Header(65535, 65535, 8, 0, 1), body)},
        {"no width", Ilbm("ILBM", Header(0, 8, 1, 0, 0), body)},
        {"no planes", Ilbm("ILBM", Header(8, 8, 0, 0, 0), body)},
        {"255 planes", Ilbm("ILBM", Header(8, 8, 255, 0, 0), body)},
        {"unknown packing", Ilbm("ILBM", Header(8, 8, 1, 0, 2), body)},
        {"data before the header", "FORM" + std::string(4, '\0') + "ILBM" + body},
        {"huge PNG", PngHeader(65535)},
        {"PNG without data", PngHeader(16)},
        {"drawing that swells", UseBomb(40)},
        {"IFF far too short for its size",
         Ilbm("ILBM", Header(5792, 5792, 8, 0, 1), Chunk("BODY", std::string(2000, '\0')))},
        {"drawing that names files", Drawing("", R"(<image href="/etc/a.png"/>)")},
        {"two names",
         Drawing("", R"(<image href="data:image/png;base64,iVBORw0KGgo=" xlink:href="/etc/a"/>)")},
        {"another prefix", Drawing("", R"(<image o:href="/etc/a.png"/>)")},
        {"a drawing within", Drawing("", R"(<image href="data:image/svg+xml;base64,PHN2Zz48L3N2Zz4="/>)")},
        {"two things to use", Drawing("", R"(<use href="#a" xlink:href="#b"/>)")},
        {"style sheet", Drawing(R"(<?xml-stylesheet type="text/css" href="/dev/null"?>)", "")},
        {"entities", Drawing(R"(<!DOCTYPE svg [<!ENTITY a "b">]>)", "")},
        {"scans without end", ScanBomb(2000)},
    }};
    for (const auto& [what, file] : files) {
        const DecodedPicture decoded = DecodePicture(AsBytes(file), {64, 64});
        EXPECT_FALSE(decoded.Shown) << what;
        EXPECT_EQ(decoded.Fault, PictureFault::Broken) << what;
    }
    EXPECT_TRUE(DecodePicture(AsBytes(UseBomb(5))).Shown) << "drawings that use others are fine";
    const std::string usual =
        R"(<?xml version="1.0"?><!DOCTYPE svg PUBLIC "-//W3C//DTD SVG 1.1//EN" "svg11.dtd">)";
    EXPECT_TRUE(DecodePicture(AsBytes(Drawing(usual, R"(<use xlink:href="#a"/>)"))).Shown);
    EXPECT_EQ(DecodePicture(AsBytes("a text")).Fault, PictureFault::Unknown);
}

std::string Packed(std::string text) {
    std::string packed(text.size() + 1024, '\0');
    z_stream stream = {};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, MAX_WBITS + 16, 9, Z_DEFAULT_STRATEGY), Z_OK);
    stream.next_in = reinterpret_cast<Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

TEST(DecodePicture, PackedDrawingsAreCheckedAsPlainOnes) {
    const std::string drawing = Packed(Drawing("", ""));
    EXPECT_TRUE(DecodePicture(AsBytes(drawing)).Shown);
    const std::array bad = {drawing.substr(0, drawing.size() / 2), Packed(drawing), Packed(UseBomb(40)),
                            Packed(Drawing("", R"(<image href="/etc/a.png"/>)")),
                            Packed(std::string(std::size_t{20} * 1024 * 1024, ' '))};
    for (const std::string& file : bad)
        EXPECT_EQ(DecodePicture(AsBytes(file)).Fault, PictureFault::Broken) << file.size();
}

TEST(DecodePicture, FitsTheBoxUprightAndNeverGrows) {
    const std::string turned = BytesOf(SOLVANE_TEST_DATA "/pictures/gen_orient_6.jpg");
    const DecodedPicture full = DecodePicture(AsBytes(turned));
    ASSERT_TRUE(full.Shown);
    EXPECT_EQ(full.Shown->Width, full.FullWidth);
    const DecodedPicture small = DecodePicture(AsBytes(turned), {20, 20});
    ASSERT_TRUE(small.Shown);
    EXPECT_EQ(std::max(small.Shown->Width, small.Shown->Height), 20U);
    EXPECT_EQ(small.Shown->Width > small.Shown->Height, full.FullWidth > full.FullHeight);
    EXPECT_EQ(small.FullWidth, full.FullWidth);
    const DecodedPicture boxed = DecodePicture(AsBytes(turned), {4000, 4000});
    ASSERT_TRUE(boxed.Shown);
    EXPECT_EQ(boxed.Shown->Width, full.FullWidth);
}

TEST(DecodePicture, PngFilesComeBackWithTransparencyAndTexts) {
    const Picture picture{2, 1, {0x80102030, 0xFF405060}};
    const std::string file =
        datatypes::EncodePng(picture, {{"Thumb::URI", "file:///%C3%A4"}, {"Software", "Solvane"}});
    const auto read = datatypes::DecodePng(AsBytes(file), 2);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Shown.Pixels, picture.Pixels);
    EXPECT_EQ(read->Texts.size(), 2U);
    EXPECT_NE(
        std::ranges::find(read->Texts, datatypes::PictureTexts::value_type("Thumb::URI", "file:///%C3%A4")),
        read->Texts.end());
    EXPECT_FALSE(datatypes::DecodePng(AsBytes(file), 1));
}

} // namespace
