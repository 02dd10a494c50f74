#include "sak/Datatypes.h"

#include "platform/datatypes/DataTypes.h"
#include "platform/datatypes/Pictures.h"
#include "platform/utility/Text.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <array>

namespace solvane {

std::uint32_t SAK_DTGroupIDValue = 0;
Text<25> SAK_DTGroupID = "System";
Text<25> SAK_DTName = "BINARY";

namespace {

// Groups in the order of the program's numbers for them.
constexpr std::array Groups = {
    datatypes::GroupId::System,  datatypes::GroupId::Text,       datatypes::GroupId::Document,
    datatypes::GroupId::Sound,   datatypes::GroupId::Instrument, datatypes::GroupId::Music,
    datatypes::GroupId::Picture, datatypes::GroupId::Animation,  datatypes::GroupId::Movie,
};

std::uint32_t GroupValueOf(datatypes::GroupId group) {
    for (std::uint32_t value = 0; value < Groups.size(); ++value) {
        if (Groups[value] == group) {
            return value;
        }
    }
    return static_cast<std::uint32_t>(group);
}

// Names of types are ASCII: their upper case is the same in every language.
std::string UpperName(std::string_view name) {
    std::string upper;
    for (const char character : name) {
        utility::AppendUtf8(upper, utility::ToUpper(static_cast<unsigned char>(character)));
    }
    return upper;
}

} // namespace

IdentifiedType IdentifyDataType(const datatypes::DataType* type) {
    IdentifiedType identified;
    if (type != nullptr) {
        identified.GroupValue = GroupValueOf(type->Group);
        identified.Name = UpperName(type->Name);
    }
    const bool isKnown = identified.GroupValue < Groups.size();
    identified.GroupName =
        isKnown ? SAK_LocaleString(MSG_GROUP_SYSTEM + static_cast<std::int32_t>(identified.GroupValue))
                : datatypes::GroupName(type->Group);
    return identified;
}

void SAK_NoteIdentified(const IdentifiedType& identified) {
    SAK_DTGroupIDValue = identified.GroupValue;
    SAK_DTGroupID = identified.GroupName;
    SAK_DTName = identified.Name;
}

bool SAK_Identify(std::string_view path) {
    const datatypes::DataType* type = datatypes::ObtainDataType(path);
    SAK_NoteIdentified(IdentifyDataType(type));
    return type != nullptr;
}

std::optional<std::string> SAK_DatatypesPictureSize(std::string_view path) {
    const auto size = datatypes::GetPictureSize(path);
    if (!size) {
        return std::nullopt;
    }
    return FormatText("%lux%lux%lu", size->Width, size->Height, size->Depth);
}

} // namespace solvane
