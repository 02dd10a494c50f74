#include "platform/icon/ByteWriter.h"
#include "platform/icon/ClassicParts.h"
#include "platform/icon/IconKinds.h"
#include "platform/icon/IconText.h"
#include "platform/utility/Text.h"

#include <map>

namespace icon {
namespace {

// Window record of a drawer that has none.
constexpr std::uint32_t WindowFlags = 0x0200127F;
constexpr std::uint16_t WindowMinWidth = 94, WindowMinHeight = 65, WindowMaxSide = 0xFFFF;
constexpr std::uint16_t WorkbenchScreen = 1;

std::string NewDrawerRecord() {
    std::string record(DrawerSize, '\0');
    PutWord(record, 0x08, 0xFFFF); // pens of the screen
    PutLong(record, 0x0E, WindowFlags);
    PutWord(record, 0x26, WindowMinWidth);
    PutWord(record, 0x28, WindowMinHeight);
    PutWord(record, 0x2A, WindowMaxSide);
    PutWord(record, 0x2C, WindowMaxSide);
    PutWord(record, 0x2E, WorkbenchScreen);
    return record;
}

// Pointers in a file only tell whether a part is there; one that does so already stays as it is.
void SetPointer(std::string& record, std::size_t offset, bool isThere) {
    if ((LongAt(record, offset) != 0) != isThere)
        PutLong(record, offset, isThere ? 1 : 0);
}

std::string TextPart(std::string_view classicText) {
    std::string part;
    AppendLong(part, static_cast<std::uint32_t>(classicText.size() + 1));
    return part.append(classicText).append(1, '\0');
}

// Writes one object against the file it was read from.
class ClassicWriter {
public:
    ClassicWriter(const ClassicParts& parts, const DiskObject& old, const DiskObject& object)
        : Parts(parts), Old(old), New(object), Record(parts.Record) {}

    std::optional<std::string> Write() {
        PatchRecord();
        const std::string drawer = Drawer();
        const std::string defaultTool =
            Text(Parts.DefaultTool, Old.DefaultTool, New.DefaultTool, RecordDefaultTool);
        const std::string toolTypes = ToolTypes();
        const std::string toolWindow =
            Text(Parts.ToolWindow, Old.ToolWindow, New.ToolWindow, RecordToolWindow);
        const std::string drawer2 = Drawer2();
        if (!TextsFit)
            return std::nullopt;
        std::string file = Record + drawer;
        file.append(Parts.Image).append(Parts.SecondImage);
        file.append(defaultTool).append(toolTypes).append(toolWindow).append(drawer2);
        return file.append(Parts.Rest);
    }

private:
    void PatchRecord() {
        if (New.Type != Old.Type)
            Record[RecordType] = static_cast<char>(New.Type);
        PatchLong(Record, RecordX, Old.CurrentX, New.CurrentX);
        PatchLong(Record, RecordY, Old.CurrentY, New.CurrentY);
        PatchLong(Record, RecordStack, Old.StackSize, New.StackSize);
    }

    // What is equal is left alone: the file may say the same in its own way.
    static void PatchLong(std::string& bytes, std::size_t offset, std::int32_t old, std::int32_t value) {
        if (old != value)
            PutLong(bytes, offset, static_cast<std::uint32_t>(value));
    }

    std::string Drawer() {
        if (New.Drawer == Old.Drawer)
            return std::string(Parts.Drawer);
        SetPointer(Record, RecordDrawer, New.Drawer.has_value());
        if (!New.Drawer)
            return {};
        std::string drawer = Old.Drawer ? std::string(Parts.Drawer) : NewDrawerRecord();
        std::size_t offset = 0;
        for (const std::int16_t side :
             {New.Drawer->Left, New.Drawer->Top, New.Drawer->Width, New.Drawer->Height}) {
            PutWord(drawer, offset, static_cast<std::uint16_t>(side));
            offset += 2;
        }
        PutLong(drawer, DrawerX, static_cast<std::uint32_t>(New.Drawer->CurrentX));
        PutLong(drawer, DrawerY, static_cast<std::uint32_t>(New.Drawer->CurrentY));
        return drawer;
    }

    // The record that revision 1 adds. An icon of an older revision that needs it becomes one. Where it
    // was cut off, a new text before it would make the rest of the file look like it.
    std::string Drawer2() {
        const bool stays = New.ToolWindow == Old.ToolWindow || !Parts.Drawer2.empty();
        if (New.Drawer == Old.Drawer && stays)
            return std::string(Parts.Drawer2);
        if (!New.Drawer)
            return {};
        const bool needed = New.Drawer->Flags != 0 || New.Drawer->ViewModes != 0;
        if (Old.Revision != 1 && !needed)
            return {};
        if (New.ToolWindow.empty() && Parts.ToolWindow.empty())
            SetPointer(Record, RecordToolWindow, false); // one that could not be read would hide this
        PutLong(Record, RecordUserData, (LongAt(Record, RecordUserData) & 0xFFFFFF00) | 1);
        std::string drawer2;
        AppendLong(drawer2, New.Drawer->Flags);
        AppendWord(drawer2, New.Drawer->ViewModes);
        return drawer2;
    }

    std::string Text(std::string_view part, std::string_view old, std::string_view text,
                     std::size_t pointer) {
        if (text == old)
            return std::string(part);
        SetPointer(Record, pointer, !text.empty());
        return text.empty() ? std::string() : NewText(text);
    }

    std::string NewText(std::string_view utf8) {
        const std::optional<std::string> text = ClassicText(utf8);
        TextsFit = TextsFit && text;
        return text ? TextPart(*text) : std::string();
    }

    // Lines that were there keep their bytes, wherever they have moved to.
    std::string ToolTypes() {
        if (New.ToolTypes == Old.ToolTypes && New.ImageToolTypes == Old.ImageToolTypes)
            return std::string(Parts.ToolTypes);
        const ToolTypeRecords records = SplitToolTypes(Parts.ToolTypes);
        const std::size_t count = New.ToolTypes.size() + New.ImageToolTypes.size();
        SetPointer(Record, RecordToolTypes, true);
        std::string part;
        AppendLong(part, static_cast<std::uint32_t>((count + 1) * 4));
        AppendShown(part, records.Shown);
        if (New.ImageToolTypes == Old.ImageToolTypes)
            for (const std::string_view record : records.Hidden)
                part.append(record);
        else
            for (const std::string& line : New.ImageToolTypes)
                part.append(TextPart(line));
        return part;
    }

    void AppendShown(std::string& part, const std::vector<std::string_view>& records) {
        std::multimap<std::string_view, std::string_view> unused;
        for (std::size_t i = 0; i < records.size(); ++i)
            unused.emplace(Old.ToolTypes[i], records[i]);
        for (const std::string& text : New.ToolTypes) {
            const auto found = unused.lower_bound(text);
            if (found != unused.end() && found->first == text) {
                part.append(found->second);
                unused.erase(found);
            } else {
                part.append(NewText(text));
            }
        }
    }

    const ClassicParts& Parts;
    const DiskObject& Old;
    const DiskObject& New;
    std::string Record;
    bool TextsFit = true;
};

} // namespace

std::string NewClassicIcon(IconType type) {
    std::string record(RecordSize, '\0');
    PutWord(record, 0, DiskMagic);
    PutWord(record, 2, 1);    // version
    PutWord(record, 0x12, 3); // acts when the mouse button goes down and up
    PutWord(record, 0x14, 1); // a gadget that is hit or not
    PutLong(record, RecordUserData, 1);
    record[RecordType] = static_cast<char>(type);
    PutLong(record, RecordX, static_cast<std::uint32_t>(NoIconPosition));
    PutLong(record, RecordY, static_cast<std::uint32_t>(NoIconPosition));
    PutLong(record, RecordStack, static_cast<std::uint32_t>(MinStackSize));
    return record;
}

std::optional<std::string> WriteClassicIcon(std::string_view file, const DiskObject& object) {
    const std::optional<ClassicParts> parts = SplitClassicIcon(file);
    const std::optional<DiskObject> old = ParseClassicIcon(file);
    if (!parts || !old || object.Type == IconType::None)
        return std::nullopt;
    return ClassicWriter(*parts, *old, object).Write();
}

} // namespace icon
