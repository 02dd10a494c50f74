#include "content/ExamineSingle.h"

#include "content/EntryTexts.h"
#include "content/FileTypes.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/locale/Locale.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

namespace solvane {

namespace {

void FillFile(ContentNode& node, std::string_view path, const dos::ExamineData& object) {
    node.ObjectKind = EntryKind::File;
    node.EntryName = object.Name;
    node.EntryPath = path;
    node.EntrySize = object.Size;
    node.EntrySizeText = BytesToUnit(object.Size);
}

void FillDrawer(ContentNode& node, std::string_view path, const dos::ExamineData& object) {
    node.ObjectKind = EntryKind::Drawer;
    node.EntryName = object.Name;
    node.EntryPath = path;
    node.DatatypeName = SAK_LocaleString(MSG_DRAWER);
    node.DefaultIconName = "def_drawer.info";
}

// The new record in the list, or null.
ContentNode* NewRecord() {
    ExamineSingleNode = nullptr;
    if (!ExamineSingleList) {
        ExamineSingleList = SAK_CreateGenericList<ContentNode>();
    }
    if (!ExamineSingleList) {
        return nullptr;
    }
    SAK_ClearGenericList(*ExamineSingleList);
    return SAK_AddGenericListNode(*ExamineSingleList, SAK_CreateGenericListNode<ContentNode>());
}

// Builds the record of what is at the path. False: there is none.
bool BuildRecord(std::string_view path, const dos::ExamineData& object) {
    ContentNode* node = NewRecord();
    if (node == nullptr) {
        return false;
    }
    DefaultContentNode(*node);
    if (object.Type == dos::TypeFile) {
        FillFile(*node, path, object);
    } else if (object.Type == dos::TypeDrawer) {
        FillDrawer(*node, path, object);
    }
    node->DateText = locale::FormatDate(Prefs.EffectiveDateFormat, object.Date);
    ExamineSingleNode = node;
    return true;
}

std::optional<dos::ExamineData> ExamineWhole(std::string_view path) {
    ExamineSingleNode = nullptr;
    if (path.size() > Text<1024>::Limit) {
        dos::SetIoErr(dos::ErrorLineTooLong);
        return std::nullopt;
    }
    return dos::ExamineObject(path);
}

} // namespace

bool ExamineSingle(std::string_view path) {
    const auto object = ExamineWhole(path);
    return object && BuildRecord(path, *object);
}

bool ExamineSingleFull(std::string_view path, WithType getType) {
    const auto object = ExamineWhole(path);
    if (!object || !BuildRecord(path, *object)) {
        return false;
    }
    ContentNode& node = *ExamineSingleNode;
    node.DateSeconds = object->Date;
    node.ProtectionBits = object->Protection;
    node.ProtectionText = ProtectionTextOf(object->Protection);
    if (object->Comment.size() > 1) { // a note of one character is not kept; intended
        node.Comment = object->Comment;
        node.CommentSize = static_cast<std::uint32_t>(node.Comment.Size()) + 1;
    }
    if (getType == WithType::Yes && object->Type == dos::TypeFile) {
        node.DatatypeName = SAK_LocaleString(MSG_FILE); // until its type says more
        node.DefaultIconName = "def_project.info";
        GetFileType(node);
    }
    return true;
}

} // namespace solvane
