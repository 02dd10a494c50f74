#include "platform/icon/ByteReader.h"
#include "platform/icon/ClassicParts.h"
#include "platform/icon/FormIcon.h"
#include "platform/icon/IconKinds.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <iterator>

namespace icon {
namespace {

bool ReadRecord(std::string_view record, DiskObject& object) {
    object.Width = static_cast<std::int16_t>(WordAt(record, RecordWidth));
    object.Height = static_cast<std::int16_t>(WordAt(record, RecordHeight));
    object.Revision = static_cast<std::uint8_t>(LongAt(record, RecordUserData) & 0xFF);
    object.CurrentX = static_cast<std::int32_t>(LongAt(record, RecordX));
    object.CurrentY = static_cast<std::int32_t>(LongAt(record, RecordY));
    object.StackSize = std::max(static_cast<std::int32_t>(LongAt(record, RecordStack)), MinStackSize);
    const auto type = static_cast<std::uint8_t>(record[RecordType]);
    object.Type = static_cast<IconType>(type);
    return type >= static_cast<std::uint8_t>(IconType::Disk) &&
           type <= static_cast<std::uint8_t>(IconType::AppIcon);
}

DrawerData ReadDrawerData(const ClassicParts& parts) {
    ByteReader reader(parts.Drawer);
    DrawerData drawer{};
    drawer.Left = reader.SignedWord();
    drawer.Top = reader.SignedWord();
    drawer.Width = reader.SignedWord();
    drawer.Height = reader.SignedWord();
    drawer.CurrentX = static_cast<std::int32_t>(LongAt(parts.Drawer, DrawerX));
    drawer.CurrentY = static_cast<std::int32_t>(LongAt(parts.Drawer, DrawerY));
    if (!parts.Drawer2.empty()) {
        drawer.Flags = LongAt(parts.Drawer2, 0);
        drawer.ViewModes = WordAt(parts.Drawer2, 4);
    }
    return drawer;
}

IconFormat FormatOf(const DiskObject& object, const FormIcon& form) {
    if (!form.Argb[0].empty() || !form.Png[0].empty())
        return IconFormat::Argb;
    if (!form.Colour[0].empty())
        return IconFormat::Colour;
    return std::ranges::any_of(object.ImageToolTypes, IsImageLine) ? IconFormat::NewIcon : IconFormat::Planar;
}

} // namespace

std::optional<DiskObject> ParseClassicIcon(std::string_view file) {
    const std::optional<ClassicParts> parts = SplitClassicIcon(file);
    DiskObject object;
    if (!parts || !ReadRecord(parts->Record, object))
        return std::nullopt;
    if (!parts->Drawer.empty())
        object.Drawer = ReadDrawerData(*parts);
    object.DefaultTool = utility::Utf8FromLatin1(TextOf(parts->DefaultTool));
    object.ToolWindow = utility::Utf8FromLatin1(TextOf(parts->ToolWindow));
    const ToolTypeRecords records = SplitToolTypes(parts->ToolTypes);
    for (const std::string_view record : records.Shown)
        object.ToolTypes.push_back(utility::Utf8FromLatin1(TextOf(record)));
    for (const std::string_view record : records.Hidden)
        object.ImageToolTypes.emplace_back(TextOf(record));
    object.Format = FormatOf(object, FindFormIcon(parts->Rest));
    return object;
}

} // namespace icon
