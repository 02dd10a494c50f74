#include "content/DiscoverDrawersFiles.h"

#include "content/EntryTexts.h"
#include "interface/MainLayout.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/locale/Locale.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Numbers.h"
#include "sak/Requesters.h"
#include "sak/StringFunctions.h"

#include <optional>

namespace solvane {

namespace {

void TellProgress(const DiscoverWalk& walk) {
    if (walk.Progress) {
        const std::uint32_t count = SAK_GenericListCount(*walk.Found);
        walk.Progress(FormatText("%s %s", SAK_LocalizeNumber(count), count == 1 ? "item" : "items"));
    }
}

// The path as the record is to tell it.
Text<1024> PathToTell(const DiscoverWalk& walk, const Text<1024>& path) {
    Text<1024> told = DeviceNameToVolumeName(path);
    if (walk.ForPaste) {
        SAK_FindAndReplace(told, walk.SourceRoot, walk.DestinationRoot, FindMode::FoldCase,
                           ReplaceScope::First);
    }
    return told;
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

// Adds the record of one object. False after a requester.
bool AddRecord(DiscoverWalk& walk, EntryKind kind, const Text<1024>& path, const dos::ExamineData& object) {
    NodePointer<DOSNode> node = SAK_CreateGenericListNode<DOSNode>();
    if (!node) {
        SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Error,
                        "Could not create Exec list node.", "_Continue");
        return false;
    }
    node->ClipAction = walk.ClipAction;
    node->ObjectKind = kind;
    node->EntryName = object.Name;
    node->EntryPath = IsLinkKind(kind) ? path : PathToTell(walk, path);
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
    if (!AddRecord(walk, *kind, path, object)) {
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
    const bool complete = dos::IoErr() == dos::ErrorNoMoreEntries;
    TellProgress(walk);
    return complete;
}

} // namespace solvane
