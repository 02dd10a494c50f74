#include "content/FileTypes.h"

#include "interface/MainLayout.h"
#include "media/AudioTags.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/datatypes/DataTypes.h"
#include "platform/datatypes/Pictures.h"
#include "platform/dos/DeviceProcs.h"
#include "platform/dos/Examine.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"
#include "sak/Datatypes.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/StringFunctions.h"
#include "sak/Version.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace solvane {

namespace {

constexpr std::string_view IconDrawer = "ENVARC:Sys/";
constexpr std::size_t MostExtensions = 4096; // remembered at a time

// "jpg" and "jpeg" are one type under two names: the first counts as the second, whatever its case.
std::string WithJpeg(std::string_view text) {
    return SAK_FindAndReplace(text, "jpg", "jpeg", FindMode::FoldCase, ReplaceScope::First).Result;
}

std::string_view ExtensionWithoutDot(std::string_view name) {
    const std::string_view extension = ExtensionOf(name);
    return extension.empty() ? extension : extension.substr(1);
}

bool IsGifPath(std::string_view path) {
    return path.find(".gif") != std::string_view::npos && path.find(".info") == std::string_view::npos;
}

// The icon that stands for a whole group when the type has none of its own.
std::string_view GroupIcon(std::uint32_t group, std::string_view datatypeName) {
    switch (group) {
    case GroupSystem:
        return "def_system.info";
    case GroupSound:
        return "def_sound.info";
    case GroupPicture:
        return "def_picture.info";
    case GroupAnimation:
        return "def_anim.info";
    default:
        return datatypeName.find("BINARY") != std::string_view::npos ? "def_tool.info" : "def_project.info";
    }
}

void CollectDimensions(ContentNode& node) {
    if (node.EntryPath.View() == PathTooLong || SAK_IsInfoFile(node.EntryName)) {
        return;
    }
    if (const auto size = SAK_DatatypesPictureSize(node.EntryPath)) {
        node.Dimensions = *size;
    }
}

void CollectTags(ContentNode& node) {
    struct Reader {
        std::string_view Type;
        bool (*Read)(ContentNode&);
    };
    constexpr Reader Readers[] = {
        {"MP3", GetMP3Tags}, {"FLAC", GetFLACTags}, {"WAV", GetWAVTags}, {"AIFF", GetAIFFTags}};
    for (const Reader& reader : Readers) {
        if (node.DatatypeName.View().find(reader.Type) != std::string_view::npos) {
            reader.Read(node);
        }
    }
}

// What a shown Details column needs beyond the type.
void CollectFacts(ContentNode& node) {
    const std::uint32_t group = node.DatatypeGroupValue;
    if (ColInfo_GetDimensions != 0 && (group == GroupPicture || group == GroupAnimation)) {
        CollectDimensions(node);
    }
    if (ColInfo_GetMP3 != 0 && group == GroupSound) {
        CollectTags(node);
    }
}

// Versions count by their beginning: "47.12.3" is 47.12. What is no number is 0.
float NumberOf(std::string_view version) {
    float number = 0.0F;
    std::from_chars(version.data(), version.data() + version.size(), number, std::chars_format::fixed);
    return std::isfinite(number) ? number : 0.0F;
}

} // namespace

void DefaultIcons::ReadOnce() {
    if (std::exchange(Read, true)) {
        return;
    }
    bool complete = false;
    for (const dos::FileLock& target : dos::LockAllTargets(IconDrawer, &complete)) {
        dos::DirContext drawer = dos::ObtainDirContext(target);
        while (const dos::ExamineData* object = drawer ? dos::ExamineDir(drawer) : nullptr) {
            if (object->Type == dos::TypeFile || (object->Type & dos::TypeLinkFlag) != 0) {
                ByFoldedName.try_emplace(utility::Fold(object->Name), object->Name);
            }
        }
    }
}

std::string_view DefaultIcons::Find(std::string_view name) {
    ReadOnce();
    const auto found = ByFoldedName.find(utility::Fold(name));
    return found == ByFoldedName.end() ? std::string_view() : found->second;
}

std::string_view DefaultIcons::FindForExtension(std::string_view extension) {
    ReadOnce();
    if (ByFoldedName.empty() || extension.empty()) {
        return {};
    }
    if (ByExtension.size() > MostExtensions) { // names like "log.000001" are extensions without end
        ByExtension.clear();
    }
    const auto [at, isNew] = ByExtension.try_emplace(std::string(extension));
    if (isNew) {
        at->second = Find(FormatText("def_%s.info", WithJpeg(extension)));
    }
    return at->second;
}

const IdentifiedType& FileTyper::Identify(const datatypes::DataType* type) {
    const auto [at, isNew] = Identities.try_emplace(type);
    if (isNew) {
        at->second = IdentifyDataType(type);
    }
    return at->second;
}

// The names when the extension has no icon of its own: by the datatype, else by the group.
FileTyper::Naming FileTyper::NamingByType(const IdentifiedType& identified, std::uint32_t group) {
    const Text<35> name = FormatText("%s %s", identified.Name, identified.GroupName);
    const std::string ownIcon = FormatText("def_%s.info", identified.Name);
    if (const std::string_view icon = Icons.Find(ownIcon); !icon.empty()) {
        return {name, icon};
    }
    const std::string_view icon = Icons.Find(GroupIcon(group, identified.Name));
    if (icon.empty()) {
        return {name, std::string_view("def_project.info")};
    }
    return {name, std::string(IconDrawer).append(icon)};
}

const FileTyper::Naming& FileTyper::NamingFor(const datatypes::DataType* type, std::uint32_t group,
                                              std::string_view extension) {
    const std::string_view icon = Icons.FindForExtension(extension);
    const auto [at, isNew] = Namings.try_emplace({type, group, icon.empty() ? nullptr : icon.data()});
    if (isNew) {
        const IdentifiedType& identified = Identify(type);
        at->second =
            icon.empty()
                ? NamingByType(identified, group)
                : Naming{FormatText("%s %s", locale::ToUpper(WithJpeg(extension)), identified.GroupName),
                         icon};
    }
    return at->second;
}

void FileTyper::Type(ContentNode& node, const datatypes::DataType* type) {
    if (type == nullptr) {
        return;
    }
    const IdentifiedType& identified = Identify(type);
    node.DatatypeGroupName = identified.GroupName;
    node.DatatypeGroupValue = identified.GroupValue;
    if (identified.GroupValue == GroupPicture && IsGifPath(node.EntryPath) &&
        datatypes::CountFrames(node.EntryPath, 2).value_or(0) > 1) {
        node.DatatypeGroupValue = GroupAnimation;
    }
    const Naming& naming = NamingFor(type, node.DatatypeGroupValue, ExtensionWithoutDot(node.EntryName));
    node.DatatypeName = naming.DatatypeName;
    node.DefaultIconName = naming.DefaultIconName;
}

TypeBatch::TypeBatch(const dos::FileLock& drawer) {
    static_cast<void>(SAK_SaferNameFromLockVolumeFromDevice(drawer, Drawer));
}

void TypeBatch::Add(ContentNode& node) {
    Nodes.push_back(&node);
    if (Nodes.size() == Limit) {
        Finish();
    }
}

void TypeBatch::ObtainTypes() {
    Types.assign(Nodes.size(), nullptr);
    Names.clear();
    for (const ContentNode* node : Nodes) {
        Names.push_back(node->EntryName);
    }
    if (!Drawer.Empty()) {
        datatypes::ObtainDataTypes(Drawer, Names, Types);
    }
}

void TypeBatch::Finish() {
    ObtainTypes();
    for (std::size_t at = 0; at < Nodes.size(); ++at) {
        Typer.Type(*Nodes[at], Types[at]);
        if (Prefs.WhenScanningADrawer == 0) {
            CollectFacts(*Nodes[at]);
        }
        CollectVersion(*Nodes[at]);
        KeepWindowAlive();
    }
    Nodes.clear();
}

void CollectVersion(ContentNode& node) {
    const bool wanted = ColInfo_GetVersion != 0 && node.DatatypeGroupValue == GroupSystem;
    if (wanted && node.EntryPath.View() != PathTooLong && SAK_GetVersion(node.EntryPath)) {
        node.VersionText = SAK_GetVersionVersion;
        node.VersionNumber = NumberOf(node.VersionText);
    }
}

void CollectOwnFacts(ContentNode& node) {
    if (node.DatatypeGroupValue == GroupPicture || node.DatatypeGroupValue == GroupAnimation) {
        CollectDimensions(node);
    } else if (node.DatatypeGroupValue == GroupSound) {
        CollectTags(node);
    }
}

void GetFileType(ContentNode& node) {
    const datatypes::DataType* type = datatypes::ObtainDataType(node.EntryPath);
    SAK_NoteIdentified(IdentifyDataType(type));
    FileTyper().Type(node, type);
}

} // namespace solvane
