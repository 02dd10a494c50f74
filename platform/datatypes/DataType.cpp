#include "platform/datatypes/DataType.h"

#include <algorithm>
#include <array>

namespace datatypes {

namespace {

struct GroupRow {
    GroupId Group;
    std::string_view Name;
};

constexpr std::array<GroupRow, 9> Groups = {{
    {GroupId::System, "System"},
    {GroupId::Text, "Text"},
    {GroupId::Document, "Document"},
    {GroupId::Sound, "Sound"},
    {GroupId::Instrument, "Instrument"},
    {GroupId::Music, "Music"},
    {GroupId::Picture, "Picture"},
    {GroupId::Animation, "Animation"},
    {GroupId::Movie, "Movie"},
}};

const GroupRow& RowOf(GroupId group) {
    const auto row = std::ranges::find(Groups, group, &GroupRow::Group);
    return row == Groups.end() ? Groups[0] : *row;
}

} // namespace

std::string_view GroupName(GroupId group) noexcept {
    return RowOf(group).Name;
}

} // namespace datatypes
