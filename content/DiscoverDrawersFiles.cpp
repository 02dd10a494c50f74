#include "content/DiscoverDrawersFiles.h"

#include "content/EntryTexts.h"
#include "interface/Tell.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <optional>
#include <string>

namespace solvane {

namespace {

void TellProgress(const DiscoverWalk& walk) {
    if (walk.Progress) {
        const std::uint32_t count = SAK_GenericListCount(*walk.Found);
        walk.Progress(FormatText("%s %s", SAK_LocalizeNumber(count),
                                 SAK_LocaleString(count == 1 ? MSG_ITEM : MSG_ITEMS)));
    }
}

std::string_view WithoutFinalSlash(std::string_view path) {
    return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

// How much of the path the root takes: all of it, or up to the end of a component. Case does not count.
std::optional<std::size_t> LengthOfRoot(std::string_view path, std::string_view root) {
    for (std::size_t end = 1; end <= path.size(); ++end) {
        const bool isBoundary = end == path.size() || path[end] == '/' || path[end - 1] == ':';
        if (isBoundary && utility::Stricmp(path.substr(0, end), root) == 0) {
            return end;
        }
    }
    return std::nullopt;
}

// The path with the source root, which it must begin with, replaced by the destination root.
std::optional<std::string> MovedPath(const DiscoverWalk& walk, std::string_view path) {
    if (walk.SourceRoot.size() > Text<1024>::Limit) {
        return std::nullopt;
    }
    const Text<1024> source = DeviceNameToVolumeName(walk.SourceRoot);
    const auto length = LengthOfRoot(path, WithoutFinalSlash(source));
    if (!length) {
        return std::nullopt;
    }
    std::string_view rest = path.substr(*length);
    rest.remove_prefix(rest.starts_with('/') ? 1 : 0);
    std::string moved(WithoutFinalSlash(walk.DestinationRoot));
    if (!rest.empty()) {
        moved.append(moved.ends_with(':') ? "" : "/").append(rest);
    }
    return moved;
}

// The path as the record is to tell it; nothing when there is no such path or no room for it.
std::optional<Text<1024>> PathToTell(const DiscoverWalk& walk, const Text<1024>& path) {
    const Text<1024> named = DeviceNameToVolumeName(path);
    if (!walk.ForPaste) {
        return named;
    }
    const std::optional<std::string> moved = MovedPath(walk, named);
    if (!moved || moved->size() > Text<1024>::Limit) {
        return std::nullopt;
    }
    return Text<1024>(*moved);
}

// A link as it stands in its drawer: 2 or 3 by what a soft one leads to, 4 or 5 for a hard one.
std::optional<EntryKind> LinkKindOf(const dos::ExamineData& object, const Text<1024>& path) {
    switch (object.Type & 0xFFU) {
    case dos::LinkSoft:
        return SAK_IsFileOrDrawer(path) ? EntryKind::SoftLinkToFile : EntryKind::SoftLinkToDrawer;
    case dos::LinkHardDrawer:
        return EntryKind::HardLinkToDrawer;
    case dos::LinkHardFile:
        return EntryKind::HardLinkToFile;
    default:
        return std::nullopt;
    }
}

// Nothing for what the walk passes over: sockets, pipes, devices.
std::optional<EntryKind> KindOf(const dos::ExamineData& object, const Text<1024>& path) {
    if ((object.Type & dos::TypeLinkFlag) != 0) {
        return LinkKindOf(object, path);
    }
    if (object.Type == dos::TypeDrawer) {
        return EntryKind::Drawer;
    }
    return object.Type == dos::TypeFile ? std::optional(EntryKind::File) : std::nullopt;
}

void FillAttributes(DOSNode& node, const dos::ExamineData& object) {
    node.ProtectionBits = object.Protection;
    node.ProtectionText = ProtectionTextOf(object.Protection);
    node.DateSeconds = object.Date;
    node.DateText = locale::FormatDate(Prefs.EffectiveDateFormat, object.Date);
    if (object.Comment.size() > 1) {
        node.Comment = object.Comment;
        node.CommentSize = static_cast<std::uint32_t>(node.Comment.Size()) + 1;
    }
}

void FillFile(DiscoverWalk& walk, DOSNode& node, const dos::ExamineData& object) {
    node.EntrySize = object.Size;
    node.EntrySizeText = BytesToUnit(object.Size);
    node.DefaultIconName = "def_project.info";
    walk.TotalBytes += object.Size;
}

// Adds the record of one object under the path that it tells. False after a requester.
bool AddRecord(DiscoverWalk& walk, EntryKind kind, const Text<1024>& told, const dos::ExamineData& object) {
    NodePointer<DOSNode> node = SAK_CreateGenericListNode<DOSNode>();
    if (!node) {
        Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
        return false;
    }
    node->ClipAction = walk.ClipAction;
    node->ObjectKind = kind;
    node->EntryName = object.Name;
    node->EntryPath = told;
    if (!IsLinkKind(kind)) {
        FillAttributes(*node, object);
    }
    if (kind == EntryKind::File) {
        FillFile(walk, *node, object);
    } else if (kind == EntryKind::Drawer) {
        node->EntrySizeText = FormatText("0 %s", SizeUnits.B);
        node->DefaultIconName = "def_drawer.info";
    }
    SAK_AddGenericListNode(*walk.Found, std::move(node), walk.Position);
    return true;
}

// One object and, for a drawer, all below it.
bool DiscoverObject(DiscoverWalk& walk, std::string_view drawer, const dos::ExamineData& object) {
    Text<1024> path;
    if (!SAK_JoinFilename(path, drawer, object.Name)) {
        return false;
    }
    const std::optional<EntryKind> kind = KindOf(object, path);
    if (!kind) {
        return true;
    }
    const std::optional<Text<1024>> told = IsLinkKind(*kind) ? path : PathToTell(walk, path);
    if (!told) {
        dos::SetIoErr(dos::ErrorLineTooLong);
        return false;
    }
    if (!AddRecord(walk, *kind, *told, object)) {
        dos::SetIoErr(dos::ErrorNoFreeStore);
        return false;
    }
    if (*kind != EntryKind::Drawer) {
        return true;
    }
    TellProgress(walk);
    return DiscoverDrawersFiles(walk, path);
}

} // namespace

bool DiscoverDrawersFiles(DiscoverWalk& walk, std::string_view path) {
    dos::DirContext context = dos::ObtainDirContext(path);
    if (!context) {
        return false;
    }
    while (const dos::ExamineData* object = dos::ExamineDir(context)) {
        if (!DiscoverObject(walk, path, *object)) {
            return false;
        }
    }
    const long reason = dos::IoErr();
    TellProgress(walk);
    dos::SetIoErr(reason); // whatever the progress window did
    return reason == dos::ErrorNoMoreEntries;
}

} // namespace solvane
