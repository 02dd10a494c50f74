#include "platform/icon/PngItems.h"

#include "platform/icon/ByteReader.h"
#include "platform/icon/ByteWriter.h"

namespace icon {
namespace {

bool IsNumberTag(IconTag tag) {
    return !IsTextTag(tag) &&
           ((tag >= IconTag::X && tag <= IconTag::Frameless) || tag == IconTag::DrawerFlags2);
}

std::string_view ReadText(ByteReader& reader) {
    const std::string_view text = reader.UntilNul();
    // Some writers pad texts with zeros; a tag never begins with one.
    while (!reader.Failed() && reader.Left() > 0 && reader.Peek() == 0)
        reader.Skip(1);
    return text;
}

} // namespace

bool IsTextTag(IconTag tag) {
    return tag == IconTag::ToolWindowText || tag == IconTag::DefaultToolText || tag == IconTag::ToolTypeText;
}

PngItems SplitPngItems(std::string_view chunk) {
    PngItems items;
    ByteReader reader(chunk);
    std::size_t start = 0;
    while (reader.Left() >= 4 && items.Items.size() <= MaxPngItems) {
        PngItem item{};
        item.Tag = static_cast<IconTag>(reader.Long());
        if (IsTextTag(item.Tag))
            item.Text = ReadText(reader);
        else if (IsNumberTag(item.Tag))
            item.Number = reader.Long();
        else
            break;
        if (reader.Failed())
            break;
        item.Whole = chunk.substr(start, reader.Position() - start);
        items.Items.push_back(item);
        start = reader.Position();
    }
    items.Rest = chunk.substr(start);
    return items;
}

std::string NumberItem(IconTag tag, std::uint32_t number) {
    std::string item;
    AppendLong(item, static_cast<std::uint32_t>(tag));
    AppendLong(item, number);
    return item;
}

std::string TextItem(IconTag tag, std::string_view bytes) {
    std::string item;
    AppendLong(item, static_cast<std::uint32_t>(tag));
    return item.append(bytes).append(1, '\0');
}

} // namespace icon
