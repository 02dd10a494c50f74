#include "platform/datatypes/DataType.h"

#include <algorithm>
#include <array>

namespace datatypes {

namespace {

struct GroupRow {
    GroupId Group;
    std::string_view Code;
    std::string_view Name;
};

constexpr std::array<GroupRow, 9> Groups = {{
    {GroupId::System, "syst", "System"},
    {GroupId::Text, "text", "Text"},
    {GroupId::Document, "docu", "Document"},
    {GroupId::Sound, "soun", "Sound"},
    {GroupId::Instrument, "inst", "Instrument"},
    {GroupId::Music, "musi", "Music"},
    {GroupId::Picture, "pict", "Picture"},
    {GroupId::Animation, "anim", "Animation"},
    {GroupId::Movie, "movi", "Movie"},
}};

const GroupRow& RowOf(GroupId group) {
    const auto row = std::ranges::find(Groups, group, &GroupRow::Group);
    return row == Groups.end() ? Groups[0] : *row;
}

} // namespace

std::string_view GroupName(GroupId group) noexcept {
    return RowOf(group).Name;
}
std::string_view GroupCode(GroupId group) noexcept {
    return RowOf(group).Code;
}

} // namespace datatypes
