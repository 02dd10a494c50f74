#include "tests/platform/icon/IconSamples.h"

#include <functional>
#include <zlib.h>

namespace {

using icon::DiskObject, icon::IconState;

// What the object's file is after a change, and the object read from it.
struct Written {
    std::string Bytes;
    DiskObject Object;
};

Written Change(std::string_view file, const std::function<void(DiskObject&)>& change) {
    auto object = Parse(file);
    EXPECT_TRUE(object);
    change(*object);
    const auto bytes = icon::WriteDiskObject(*object);
    EXPECT_TRUE(bytes);
    auto again = Parse(bytes.value_or(std::string()));
    EXPECT_TRUE(again);
    return {bytes.value_or(std::string()), again.value_or(DiskObject{})};
}

void ExpectSame(const DiskObject& a, const DiskObject& b, const std::string& what) {
    EXPECT_EQ(a.Type, b.Type) << what;
    EXPECT_EQ(a.DefaultTool, b.DefaultTool) << what;
    EXPECT_EQ(a.ToolTypes, b.ToolTypes) << what;
    EXPECT_EQ(a.ImageToolTypes, b.ImageToolTypes) << what;
    EXPECT_EQ(a.ToolWindow, b.ToolWindow) << what;
    EXPECT_EQ(a.StackSize, b.StackSize) << what;
    EXPECT_EQ(a.CurrentX, b.CurrentX) << what;
    EXPECT_EQ(a.CurrentY, b.CurrentY) << what;
    EXPECT_TRUE(a.Drawer == b.Drawer) << what;
}

TEST(WriteIconTest, AnUnchangedIconIsTheSameFile) {
    for (const SampleRow& row : SampleRows) {
        const std::string file = Sample(row.Name);
        EXPECT_EQ(Change(file, [](DiskObject&) {}).Bytes, file) << row.Name;
    }
    for (const std::string& odd :
         {ProjectIcon({}), ProjectIcon({"A", "IM1=x", "B"}),
          Sample("newicon_project_11col") + std::string(6, '\0'),
          Sample("gen_png_single_rgba").substr(0, 100), std::string("\x89PNG\r\n\x1A\n")})
        EXPECT_EQ(Change(odd, [](DiskObject&) {}).Bytes, odd);
}

// Every change to every sample is read back, the pictures stay, and undoing it gives the object that was.
TEST(WriteIconTest, AChangeDisturbsNothingElse) {
    struct Row {
        const char* What;
        std::function<void(DiskObject&)> Do;
    };
    const Row rows[] = {
        {"tool type added", [](DiskObject& o) { icon::SetToolType(o, "NEW", "Größe"); }},
        {"tool types removed", [](DiskObject& o) { o.ToolTypes.clear(); }},
        {"tool types turned round",
         [](DiskObject& o) {
             o.ToolTypes = {o.ToolTypes.rbegin(), o.ToolTypes.rend()};
         }},
        {"default tool", [](DiskObject& o) { o.DefaultTool = "SYS:Utilities/More"; }},
        {"no default tool", [](DiskObject& o) { o.DefaultTool.clear(); }},
        {"tool window", [](DiskObject& o) { o.ToolWindow = "CON:"; }},
        {"stack", [](DiskObject& o) { o.StackSize = 123456; }},
        {"type", [](DiskObject& o) { o.Type = icon::IconType::Kick; }},
        {"position", [](DiskObject& o) { o.CurrentX = -7, o.CurrentY = 1234; }},
        {"free position", [](DiskObject& o) { o.CurrentX = o.CurrentY = icon::NoIconPosition; }},
        {"drawer", [](DiskObject& o) { o.Drawer = icon::DrawerData{1, 2, 300, 400, -5, 6, 2, 3}; }},
        {"no drawer", [](DiskObject& o) { o.Drawer.reset(); }},
        {"view mode", [](DiskObject& o) { o.Drawer = icon::DrawerData{9, 9, 9, 9, 0, 0, 1, 4}; }},
    };
    for (const SampleRow& sample : SampleRows) {
        const std::string file = Sample(sample.Name);
        const DiskObject original = *Parse(file);
        for (const Row& row : rows) {
            const std::string what = std::string(sample.Name) + ", " + row.What;
            DiskObject expected = original;
            row.Do(expected);
            const Written written = Change(file, row.Do);
            ExpectSame(written.Object, expected, what);
            EXPECT_EQ(written.Object.Format, original.Format) << what;
            for (const IconState state : {IconState::Normal, IconState::Selected}) {
                const auto picture = icon::GetIconPicture(written.Object, state);
                ASSERT_TRUE(picture) << what;
                EXPECT_EQ(picture->Pixels, icon::GetIconPicture(original, state)->Pixels) << what;
            }
            const Written undone = Change(written.Bytes, [&](DiskObject& object) {
                const auto bytes = object.File;
                object = original;
                object.File = bytes;
            });
            ExpectSame(undone.Object, original, what);
        }
    }
}

TEST(WriteIconTest, APositionChangesItsBytesAlone) {
    const std::string file = Sample("os35_project_name_with_blanks");
    std::string expected = file;
    expected.replace(0x3A, 8, Long(17) + Long(0xFFFFFFFE));
    EXPECT_EQ(Change(file, [](DiskObject& object) { object.CurrentX = 17, object.CurrentY = -2; }).Bytes,
              expected);
}

TEST(WriteIconTest, AToolTypeComesBeforeThePicturesOfANewIcon) {
    const std::string file = Sample("newicon_project_11col");
    std::string expected = file;
    const std::size_t warning = file.find(Text(" "));
    expected.insert(warning, Text("ABC"));
    const std::size_t count = warning - 4;
    expected[count + 3] = static_cast<char>(expected[count + 3] + 4);
    EXPECT_EQ(Change(file, [](DiskObject& object) { object.ToolTypes = {"ABC"}; }).Bytes, expected);
}

// The data of the chunk of that name in a PNG stream; every checksum on the way must be right.
std::string ChunkOf(const std::string& png, std::string_view name) {
    for (std::size_t at = 8; at + 12 <= png.size();) {
        std::size_t size = 0;
        for (std::size_t i = 0; i < 4; ++i)
            size = size << 8 | static_cast<std::uint8_t>(png[at + i]);
        const std::string summed = png.substr(at + 4, size + 4);
        const auto sum =
            crc32(0, reinterpret_cast<const Bytef*>(summed.data()), static_cast<uInt>(summed.size()));
        EXPECT_EQ(png.substr(at + 8 + size, 4), Long(static_cast<std::uint32_t>(sum)));
        if (summed.starts_with(name))
            return summed.substr(4);
        at += size + 12;
    }
    return {};
}

TEST(WriteIconTest, PngChunksOfOthersStay) {
    const std::string file = Sample("png_icon_with_icon_chunk");
    const std::string items = ChunkOf(file, "icOn");
    const std::string written =
        Change(file, [](DiskObject& object) { object.CurrentX = 7, object.StackSize = 9999; }).Bytes;
    std::string expected = items + Long(0x80001001) + Long(7);
    expected.replace(expected.find(Long(0x80001009)) + 4, 4, Long(9999));
    EXPECT_EQ(ChunkOf(written, "icOn"), expected);
    const std::size_t place = file.find("icOn") - 4;
    EXPECT_EQ(written.substr(0, place), file.substr(0, place));
    EXPECT_TRUE(written.ends_with(file.substr(place + 12 + items.size())));

    const std::string plain = Sample("gen_png_two_images");
    const std::string added = Change(plain, [](DiskObject& object) { object.DefaultTool = "T"; }).Bytes;
    EXPECT_EQ(ChunkOf(added, "icOn"), Long(0x8000100A) + std::string("T\0", 2));
    EXPECT_EQ(added.size(), plain.size() + 12 + 6);
}

std::string PngIconOf(const std::string& items) {
    std::string file = Sample("gen_png_single_rgba");
    return file.insert(file.find("IEND") - 4,
                       Long(static_cast<std::uint32_t>(items.size())) + "icOn" + items + Long(0));
}

TEST(WriteIconTest, ItemsBehindAnUnknownOneStayAtTheEnd) {
    const std::string unknown = Long(0x80009999) + "anything" + Long(0x80001001) + Long(5);
    const std::string file = PngIconOf(Long(0x80001002) + Long(3) + unknown);
    EXPECT_EQ(Parse(file)->CurrentX, icon::NoIconPosition);
    const std::string written = Change(file, [](DiskObject& changed) { changed.StackSize = 5000; }).Bytes;
    EXPECT_EQ(ChunkOf(written, "icOn"), Long(0x80001002) + Long(3) + Long(0x80001009) + Long(5000) + unknown);
}

TEST(WriteIconTest, UnknownZerosDoNotBecomeThePaddingOfANewText) {
    const std::string file = PngIconOf(Long(0x80001002) + Long(3) + Long(0) + Long(0x80001001) + Long(5));
    const auto change = [](DiskObject& object) { object.DefaultTool = "Tool"; };
    DiskObject expected = *Parse(file);
    change(expected);
    ExpectSame(Change(file, change).Object, expected, "zeros");
}

TEST(WriteIconTest, TextsThatTheFileCannotHoldAreRefusedAndNeverReplaced) {
    const std::string classic = ProjectIcon({"Grüße \xFF"});
    const std::string png = Sample("gen_png_single_rgba");
    struct Row {
        const char* Text;
        bool FitsClassic, FitsPng;
    };
    const Row rows[] = {{"Grüße", true, true},
                        {"Ã©", true, true}, // its ISO 8859-1 bytes look like UTF-8
                        {"日本 – €", false, true},
                        {"broken \xFF", false, false}};
    for (const Row& row : rows) {
        for (const std::string& file : {classic, png}) {
            DiskObject object = *Parse(file);
            object.DefaultTool = row.Text;
            object.ToolTypes.emplace_back(row.Text);
            const bool fits = file == png ? row.FitsPng : row.FitsClassic;
            EXPECT_EQ(icon::FitsIcon(object, row.Text), fits) << row.Text;
            const auto bytes = icon::WriteDiskObject(object);
            EXPECT_EQ(bytes.has_value(), fits) << row.Text;
            if (bytes)
                ExpectSame(*Parse(*bytes), object, row.Text);
        }
    }
    DiskObject nul;
    EXPECT_FALSE(icon::FitsIcon(nul, std::string_view("a\0b", 3)));
}

TEST(WriteIconTest, ABrokenPngHasNoPlaceForAChange) {
    DiskObject object = *Parse(Sample("gen_png_single_rgba").substr(0, 100));
    object.CurrentX = 1;
    EXPECT_FALSE(icon::WriteDiskObject(object));
}

TEST(WriteIconTest, AnIconOfTheFirstSystemGetsANewRevisionOnlyForAViewMode) {
    const std::string tail(6, '\0'); // stray bytes that some files have
    const auto withDrawer = [&](std::uint16_t viewModes) {
        return Change(ProjectIcon({"A"}) + tail,
                      [&](DiskObject& o) { o.Drawer = icon::DrawerData{1, 2, 3, 4, 5, 6, 0, viewModes}; });
    };
    EXPECT_EQ(withDrawer(0).Object.Revision, 0);
    EXPECT_EQ(withDrawer(0).Bytes.size(), ProjectIcon({"A"}).size() + 56 + tail.size());
    EXPECT_EQ(withDrawer(2).Object.Revision, 1);
    EXPECT_EQ(withDrawer(2).Object.Drawer->ViewModes, 2);
}

TEST(WriteIconTest, ATextThatWasCutOffDoesNotHideWhatIsAdded) {
    std::string file = ProjectIcon({"A"}) + Long(1000) + "cut";
    file[0x2F] = 1; // revision
    file[0x46] = 1; // the tool window is said to be there
    const Written drawer =
        Change(file, [](DiskObject& o) { o.Drawer = icon::DrawerData{1, 2, 3, 4, 5, 6, 2, 3}; });
    EXPECT_EQ(drawer.Object.Drawer->ViewModes, 3);
    EXPECT_EQ(Change(file, [](DiskObject& o) { o.ToolWindow = "CON:"; }).Object.ToolWindow, "CON:");
}

TEST(WriteIconTest, AnObjectThatWasNeverAFileBecomesAClassicIcon) {
    DiskObject object;
    EXPECT_FALSE(icon::WriteDiskObject(object)); // of no type
    object.Type = icon::IconType::Drawer;
    object.ToolTypes = {"A=1"};
    object.CurrentY = 5;
    object.Drawer = icon::DrawerData{1, 2, 300, 200, 0, 0, 2, 1};
    const auto bytes = icon::WriteDiskObject(object);
    ASSERT_TRUE(bytes);
    const auto again = Parse(*bytes);
    ASSERT_TRUE(again);
    ExpectSame(*again, object, "new");
    EXPECT_EQ(again->Revision, 1);
}

} // namespace
