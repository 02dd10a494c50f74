#include "platform/icon/IconKinds.h"
#include "platform/icon/IconText.h"
#include "platform/icon/PngChunks.h"
#include "platform/icon/PngItems.h"

#include <algorithm>
#include <map>

namespace icon {
namespace {

// The items of the chunk as they are to be written; what is not touched keeps its bytes and its place.
class ItemList {
public:
    explicit ItemList(const PngItems& items) : Rest(items.Rest) {
        for (const PngItem& item : items.Items)
            Entries.push_back({item.Tag, item.Number, std::string(item.Whole)});
    }

    void Remove(IconTag tag) {
        std::erase_if(Entries, [tag](const Entry& entry) { return entry.Tag == tag; });
    }
    void SetNumber(IconTag tag, std::uint32_t number) { Set({tag, number, NumberItem(tag, number)}); }
    void SetText(IconTag tag, std::string_view bytes) { Set({tag, 0, TextItem(tag, bytes)}); }
    // The last one of that tag counts; 0 when there is none.
    [[nodiscard]] std::uint32_t Number(IconTag tag) const {
        std::uint32_t number = 0;
        for (const Entry& entry : Entries)
            if (entry.Tag == tag)
                number = entry.Number;
        return number;
    }
    // Puts these in the place of the tool types.
    void SetToolTypes(const std::vector<std::string>& wholes) {
        const auto first = std::ranges::find(Entries, IconTag::ToolTypeText, &Entry::Tag);
        const auto place = first - Entries.begin();
        Remove(IconTag::ToolTypeText);
        std::vector<Entry> added;
        for (const std::string& whole : wholes)
            added.push_back({IconTag::ToolTypeText, 0, whole});
        Entries.insert(Entries.begin() + place, added.begin(), added.end());
    }
    [[nodiscard]] std::string Chunk() const {
        std::string chunk;
        for (const Entry& entry : Entries)
            chunk.append(entry.Whole);
        // A number keeps a text apart from zeros that would pass for its padding.
        if (!Entries.empty() && IsTextTag(Entries.back().Tag) && Rest.starts_with('\0'))
            chunk.append(NumberItem(IconTag::StackSize,
                                    std::max<std::uint32_t>(Number(IconTag::StackSize), MinStackSize)));
        return chunk.append(Rest);
    }

private:
    struct Entry {
        IconTag Tag;
        std::uint32_t Number;
        std::string Whole;
    };

    // In the place of the first of that tag; others of it would hide the new one.
    void Set(Entry entry) {
        const auto first = std::ranges::find(Entries, entry.Tag, &Entry::Tag);
        if (first == Entries.end()) {
            Entries.push_back(std::move(entry));
            return;
        }
        Entries.erase(std::remove_if(first + 1, Entries.end(),
                                     [&](const Entry& other) { return other.Tag == entry.Tag; }),
                      Entries.end());
        *std::ranges::find(Entries, entry.Tag, &Entry::Tag) = std::move(entry);
    }

    std::vector<Entry> Entries;
    std::string_view Rest;
};

void SetPosition(ItemList& items, IconTag tag, std::int32_t old, std::int32_t value) {
    if (old == value)
        return;
    if (value == NoIconPosition)
        items.Remove(tag);
    else
        items.SetNumber(tag, static_cast<std::uint32_t>(value));
}

// False when the text cannot be written.
bool SetText(ItemList& items, IconTag tag, std::string_view old, std::string_view text) {
    if (text == old)
        return true;
    const std::optional<std::string> bytes = PngText(text);
    if (!bytes)
        return false;
    if (bytes->empty())
        items.Remove(tag);
    else
        items.SetText(tag, *bytes);
    return true;
}

// Lines that were there keep their bytes, wherever they have moved to.
bool SetToolTypes(ItemList& items, const PngItems& oldItems, const DiskObject& old,
                  const DiskObject& object) {
    if (object.ToolTypes == old.ToolTypes)
        return true;
    std::multimap<std::string_view, std::string_view> unused;
    std::size_t index = 0;
    for (const PngItem& item : oldItems.Items)
        if (item.Tag == IconTag::ToolTypeText)
            unused.emplace(old.ToolTypes[index++], item.Whole);
    std::vector<std::string> wholes;
    for (const std::string& text : object.ToolTypes) {
        const std::optional<std::string> bytes = PngText(text);
        const auto found = unused.lower_bound(text);
        if (found != unused.end() && found->first == text) {
            wholes.emplace_back(found->second);
            unused.erase(found);
        } else if (bytes) {
            wholes.push_back(TextItem(IconTag::ToolTypeText, *bytes));
        } else {
            return false;
        }
    }
    items.SetToolTypes(wholes);
    return true;
}

// The numbers of a drawer's window, as the items have them; default ones for an icon that has none.
void SetDrawer(ItemList& items, const DrawerData& old, const DrawerData& drawer, bool isNew) {
    const auto set = [&](IconTag tag, std::int32_t before, std::int32_t value) {
        if (isNew || before != value)
            items.SetNumber(tag, static_cast<std::uint32_t>(value));
    };
    set(IconTag::DrawerX, old.Left, drawer.Left);
    set(IconTag::DrawerY, old.Top, drawer.Top);
    set(IconTag::DrawerWidth, old.Width, drawer.Width);
    set(IconTag::DrawerHeight, old.Height, drawer.Height);
    set(IconTag::ScrollX, old.CurrentX, drawer.CurrentX);
    set(IconTag::ScrollY, old.CurrentY, drawer.CurrentY);
    if (isNew || old.Flags != drawer.Flags) {
        const std::uint32_t others = items.Number(IconTag::DrawerFlags) & ~ShowAllFlag;
        items.SetNumber(IconTag::DrawerFlags, others | (drawer.Flags >= 2 ? ShowAllFlag : 0));
    }
    // Flags that come into being would tell a view of their own.
    if (isNew || old.ViewModes != drawer.ViewModes || old.Flags != drawer.Flags)
        items.SetNumber(IconTag::ViewModes, drawer.ViewModes);
}

void RemoveDrawer(ItemList& items) {
    for (const IconTag tag :
         {IconTag::DrawerX, IconTag::DrawerY, IconTag::DrawerWidth, IconTag::DrawerHeight, IconTag::ScrollX,
          IconTag::ScrollY, IconTag::DrawerFlags, IconTag::DrawerFlags2, IconTag::ViewModes})
        items.Remove(tag);
}

// The icon chunk with what differs in the object.
std::optional<std::string> RewriteChunk(std::string_view chunk, const DiskObject& old,
                                        const DiskObject& object) {
    const PngItems oldItems = SplitPngItems(chunk);
    ItemList items(oldItems);
    SetPosition(items, IconTag::X, old.CurrentX, object.CurrentX);
    SetPosition(items, IconTag::Y, old.CurrentY, object.CurrentY);
    if (object.StackSize != old.StackSize)
        items.SetNumber(IconTag::StackSize, static_cast<std::uint32_t>(object.StackSize));
    if (object.Type == IconType::None && old.Type != IconType::None)
        items.Remove(IconTag::Type);
    else if (object.Type != old.Type && object.Type != object.GuessedType)
        items.SetNumber(IconTag::Type, static_cast<std::uint32_t>(object.Type));
    if (object.Drawer && object.Drawer != old.Drawer)
        SetDrawer(items, old.Drawer.value_or(DrawerData{}), *object.Drawer, !old.Drawer);
    else if (!object.Drawer && old.Drawer)
        RemoveDrawer(items);
    if (!SetText(items, IconTag::DefaultToolText, old.DefaultTool, object.DefaultTool) ||
        !SetText(items, IconTag::ToolWindowText, old.ToolWindow, object.ToolWindow) ||
        !SetToolTypes(items, oldItems, old, object))
        return std::nullopt;
    return items.Chunk();
}

} // namespace

std::optional<std::string> WritePngIcon(std::string_view file, const DiskObject& object) {
    const std::optional<DiskObject> old = ParsePngIcon(file);
    if (!old)
        return std::nullopt;
    PngChunkReader reader(file);
    std::optional<PngChunk> place = reader.Next();
    while (place && place->Id != IconChunk && place->Id != LastChunk)
        place = reader.Next();
    const bool isIconChunk = place && place->Id == IconChunk;
    const std::string_view oldChunk = isIconChunk ? place->Data : std::string_view();
    const std::optional<std::string> chunk = RewriteChunk(oldChunk, *old, object);
    if (chunk && *chunk == oldChunk)
        return std::string(file);
    if (!chunk || !place)
        return std::nullopt;
    const auto start = static_cast<std::size_t>(place->Whole.data() - file.data());
    const std::size_t size = isIconChunk ? place->Whole.size() : 0;
    return std::string(file).replace(start, size, MakePngChunk(IconChunk, *chunk));
}

} // namespace icon
