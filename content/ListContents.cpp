#include "content/ListContents.h"

#include "content/EntryTexts.h"
#include "content/FileTypes.h"
#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/dos/DeviceProcs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <optional>
#include <string>
#include <utility>

namespace solvane {

namespace {

// Texts that all entries of a kind share.
struct KindTexts {
    Text<25> Group = SAK_LocaleString(MSG_GROUP_SYSTEM);
    Text<35> Drawer = SAK_LocaleString(MSG_DRAWER), File = SAK_LocaleString(MSG_FILE),
             SoftLink = SAK_LocaleString(MSG_SOFT_LINK), HardLink = SAK_LocaleString(MSG_HARD_LINK);
    Text<50> DrawerIcon = "def_drawer.info", FileIcon = "def_project.info";
};

// What the scan of one drawer carries along.
struct DrawerScan {
    const dos::FileLock& Drawer;
    EntryTexts Texts;
    TypeBatch Types;
    KindTexts Kinds{};
};

// What an object is; nothing for one that is neither drawer, file nor link.
std::optional<EntryKind> KindOf(const dos::ExamineData& object) {
    if ((object.Type & dos::TypeLinkFlag) == 0) {
        if (object.Type == dos::TypeDrawer) {
            return EntryKind::Drawer;
        }
        return object.Type == dos::TypeFile ? std::optional(EntryKind::File) : std::nullopt;
    }
    switch (object.Type & 0xFFU) {
    case dos::LinkSoft:
        return EntryKind::SoftLinkToDrawer; // until its target shows to be a file
    case dos::LinkHardFile:
        return EntryKind::HardLinkToFile;
    case dos::LinkHardDrawer:
        return EntryKind::HardLinkToDrawer;
    default:
        return std::nullopt;
    }
}

std::string InCurrentPath(std::string_view name) {
    return std::string(CurrentPath.View()).append(name);
}

// The target of a hard link. A link to a drawer whose name is found shows "???" and one whose name is not
// keeps the link's path; a link to a file does the opposite. Intended.
std::string HardLinkTarget(EntryKind kind, const std::string& linkPath) {
    const dos::FileLock lock = dos::Lock(linkPath);
    if (!lock) {
        return linkPath;
    }
    const std::string name = dos::NameFromLock(lock);
    if (kind == EntryKind::HardLinkToDrawer) {
        return name.empty() ? linkPath : "???";
    }
    return name.empty() ? "???" : name;
}

// The path that a soft link leads to: a target without a device counts from the drawer on show. A target
// without a text is the drawer itself ("."), or one that cannot be read: that one leads nowhere.
std::string SoftLinkTarget(const dos::ExamineData& object) {
    if (object.LinkTarget.empty() && !dos::Lock(InCurrentPath(object.Name))) {
        return std::string(PathTooLong);
    }
    const bool absolute = object.LinkTarget.find(':') != std::string::npos;
    return absolute ? object.LinkTarget : InCurrentPath(object.LinkTarget);
}

// A path that a record can hold is kept; one that cannot is never cut, since what is left of it may name
// another object. It becomes a path that leads nowhere.
std::string_view WholePath(std::string_view path) {
    return path.size() <= Text<1024>::Limit ? path : PathTooLong;
}

bool LeadsToFile(const Text<1024>& path) {
    return path.View() != PathTooLong && SAK_IsFileOrDrawer(path);
}

// Adds the record of a link and gives the entry its kind and its target as path.
bool AddLink(ContentNode& node, EntryKind kind, const dos::ExamineData& object) {
    NodePointer<LinksNode> link = SAK_CreateGenericListNode<LinksNode>();
    if (!link) {
        Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
        return false;
    }
    link->LinkPath = WholePath(InCurrentPath(object.Name));
    if (kind == EntryKind::SoftLinkToDrawer) {
        node.EntryPath = WholePath(SoftLinkTarget(object));
        kind = LeadsToFile(node.EntryPath) ? EntryKind::SoftLinkToFile : kind;
    } else {
        node.EntryPath = WholePath(HardLinkTarget(kind, InCurrentPath(object.Name)));
    }
    node.ObjectKind = kind;
    link->LinkKind = kind;
    link->LinkTarget = node.EntryPath;
    SAK_AddGenericListNode(*LinksList, std::move(link));
    return true;
}

void FillNames(ContentNode& node, const dos::ExamineData& object) {
    node.EntryName = object.Name;
    node.EntryDisplayName = node.EntryName;
    node.SortPrefix = SortPrefixOf(node.ObjectKind);
    if (!IsLinkKind(node.ObjectKind)) {
        node.EntryPath = WholePath(InCurrentPath(node.EntryName));
    }
    if (IsDrawerKind(node.ObjectKind)) {
        node.VersionNumber = -1.0F;
    }
}

void FillKindTexts(const KindTexts& texts, ContentNode& node) {
    node.DatatypeGroupName = texts.Group;
    node.DatatypeGroupValue = GroupSystem;
    node.DefaultIconName = IsDrawerKind(node.ObjectKind) ? texts.DrawerIcon : texts.FileIcon;
    switch (node.ObjectKind) {
    case EntryKind::Drawer:
        node.DatatypeName = texts.Drawer;
        break;
    case EntryKind::File:
        node.DatatypeName = texts.File;
        break;
    case EntryKind::SoftLinkToDrawer:
    case EntryKind::SoftLinkToFile:
        node.DatatypeName = texts.SoftLink;
        break;
    default:
        node.DatatypeName = texts.HardLink;
        break;
    }
}

void FillFile(DrawerScan& scan, ContentNode& node, const dos::ExamineData& object) {
    node.EntrySize = object.Size;
    TotalBytes += object.Size;
    node.EntrySizeText = scan.Texts.SizeText(object.Size);
    if (AtFTPMount != 0) {
        return; // nothing there is opened
    }
    if (Prefs.DetermineDatatype == 0) {
        scan.Types.Add(node);
    } else {
        CollectVersion(node);
    }
}

void FillAttributes(DrawerScan& scan, ContentNode& node, const dos::ExamineData& object) {
    node.ProtectionBits = object.Protection;
    node.ProtectionText = ProtectionTextOf(object.Protection);
    node.DateSeconds = object.Date;
    node.DateText = scan.Texts.DateText(object.Date);
    const bool keepsNote = !IsLinkKind(node.ObjectKind) && AtFTPMount == 0;
    if (keepsNote && object.Comment.size() > 1) { // a note of one character is not kept; intended
        node.Comment = object.Comment;
        node.CommentSize = static_cast<std::uint32_t>(node.Comment.Size()) + 1;
    }
}

// One object becomes one record; a socket or the like becomes a blank one. False: no memory for it.
bool AddEntry(DrawerScan& scan, const dos::ExamineData& object) {
    ContentNode* node = SAK_AddGenericListNode(*ContentList, SAK_CreateGenericListNode<ContentNode>());
    if (!node) {
        Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
        return false;
    }
    DefaultContentNode(*node);
    const std::optional<EntryKind> kind = KindOf(object);
    if (!kind) {
        return true;
    }
    node->ObjectKind = *kind;
    if (IsLinkKind(*kind) && !AddLink(*node, *kind, object)) {
        return false;
    }
    FillNames(*node, object);
    FillKindTexts(scan.Kinds, *node);
    if (node->ObjectKind == EntryKind::File) {
        FillFile(scan, *node, object);
    }
    FillAttributes(scan, *node, object);
    return true;
}

} // namespace

bool DoAllAssigns(std::string_view path, const std::function<bool(const dos::FileLock&)>& function) {
    bool complete = false;
    for (const dos::FileLock& lock : dos::LockAllTargets(path, &complete)) {
        if (!function(lock)) {
            return false;
        }
    }
    return complete;
}

std::vector<OpenedDrawer> OpenDrawers(std::string_view path) {
    std::vector<OpenedDrawer> opened;
    long refusal = 0;
    static_cast<void>(DoAllAssigns(path, [&](const dos::FileLock& lock) {
        if (dos::DirContext objects = dos::ObtainDirContext(lock)) {
            opened.push_back({lock, std::move(objects)});
        } else {
            refusal = dos::IoErr();
        }
        return true;
    }));
    if (refusal != 0) {
        dos::SetIoErr(refusal); // says more than the end of the walk
    }
    return opened;
}

void ListContents(OpenedDrawer& drawer) {
    SelectedBytes = 0;
    TotalBytes = 0;
    if (!ContentList || !LinksList) {
        return;
    }
    const WithoutRequesters quiet; // the drawer is there; its entries ask for nothing
    DrawerScan scan{drawer.Lock, {}, TypeBatch(drawer.Lock)};
    const dos::ExamineData* object = dos::ExamineDir(drawer.Objects);
    while (object && AddEntry(scan, *object)) {
        KeepWindowAlive();
        object = dos::ExamineDir(drawer.Objects);
    }
    scan.Types.Finish();
    TotalBytesBuffer = BytesToUnit(TotalBytes);
}

} // namespace solvane
