#include "platform/datatypes/TypeRegistry.h"

#include "platform/datatypes/ContentTable.h"
#include "platform/datatypes/KnownNames.h"
#include "platform/datatypes/MimeTypes.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace {

using datatypes::DataType, datatypes::GroupId;

std::vector<DataType> AllTypes() {
    std::vector<DataType> types;
    for (const auto& rows :
         {datatypes::AmigaFormats(), datatypes::MediaFormats(), datatypes::GeneralFormats()})
        std::ranges::transform(rows, std::back_inserter(types), &datatypes::ContentRow::Type);
    std::ranges::copy(datatypes::KnownTypes(), std::back_inserter(types));
    std::ranges::transform(datatypes::MimeRows(), std::back_inserter(types), &datatypes::MimeRow::Type);
    return types;
}

std::string Upper(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

// Other modules find types by these words in a name, in upper case or not.
const std::vector<std::string> Looked = {"MP3", "FLAC", "WAV",  "AIFF", "LHA",  "ASCII", "ILBM",
                                         "GIF", "PNG",  "JPEG", "BMP",  "TIFF", "BINARY"};

bool HidesAnother(const std::string& name) {
    return std::ranges::any_of(Looked, [&](const std::string& word) {
        return name != word && name.find(word) != std::string::npos;
    });
}

TEST(TypeRegistry, NamesFitBecomeIconNamesAndHoldNoneThatOthersLookFor) {
    for (const DataType& type : AllTypes()) {
        EXPECT_FALSE(HidesAnother(Upper(type.Name))) << type.Name;
        EXPECT_LE(type.Name.size(), datatypes::NameSize) << type.Name;
        EXPECT_EQ(type.Name.find_first_of("/:%"), std::string_view::npos) << type.Name;
        EXPECT_EQ(type.Id.size(), 4U) << type.Name;
    }
}

TEST(TypeRegistry, TablesAgreeOnTheGroupOfAType) {
    std::map<std::string, GroupId> groups;
    for (const DataType& type : AllTypes()) {
        const auto place = groups.emplace(Upper(type.Name), type.Group).first;
        EXPECT_EQ(place->second, type.Group) << type.Name;
    }
}

TEST(TypeRegistry, TypesOfDatabasesGetNamesOfTheSameForm) {
    struct Row {
        const char *Given, *Name;
    };
    for (const Row& row : {Row{"3dm/a:b", "3DM A B"},
                           {"x-wavelet", "IMAGE"},
                           {"", "IMAGE"},
                           {"a-very-long-name-of-some-vendor", "A-VERY-LONG-NAME-OF-SOME"},
                           {"netpbm", "Netpbm"}})
        EXPECT_EQ(datatypes::RegisterType(row.Given, GroupId::Picture)->Name, row.Name);
    EXPECT_EQ(datatypes::RegisterType("another", GroupId::Text),
              datatypes::RegisterType("ANOTHER", GroupId::Text));
}

// Whatever is installed: each type that the host's database knows by a name has a proper name.
TEST(TypeRegistry, ExtensionsOfTheHostGiveProperTypes) {
    for (const char* extension : {"jpg", "odt", "blend", "dng", "wv", "ogg", "mkv", "rom", "ttf", "xcf",
                                  "cbz", "bin", "aac", "wbmp", "mjpeg"}) {
        const auto meaning = datatypes::MeaningOfExtension(extension);
        std::vector<const DataType*> types(meaning.Inside.begin(), meaning.Inside.end());
        types.insert(types.end(), {meaning.Text, meaning.Other});
        for (const DataType* type : types) {
            if (type != nullptr) {
                EXPECT_FALSE(HidesAnother(Upper(type->Name))) << extension << " " << type->Name;
                EXPECT_LE(type->Name.size(), datatypes::NameSize);
            }
        }
    }
}

// Names are looked up in the plain list of patterns before the database itself is asked.
TEST(TypeRegistry, ExtensionsInAnyPatternOfTheHostAreKnown) {
    for (const char* extension : {"jpg", "JPG", "c", "C", "1", "anim3", "blend"})
        EXPECT_TRUE(datatypes::MeaningOfExtension(extension).Known) << extension;
    for (const char* extension : {"q1", "zzzz", "jpgjpg", "anim0"})
        EXPECT_FALSE(datatypes::MeaningOfExtension(extension).Known) << extension;
}

TEST(TypeRegistry, GroupsHaveNamesAndTheirCodesAsNumbers) {
    EXPECT_EQ(datatypes::GroupName(GroupId::Instrument), "Instrument");
    EXPECT_EQ(static_cast<std::uint32_t>(GroupId::Picture), 0x70696374U);
    EXPECT_EQ(datatypes::GroupName(static_cast<GroupId>(0)), "System");
}

} // namespace
