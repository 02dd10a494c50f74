#include "model/ContentNode.h"

#include "model/Content.h"

namespace solvane {

namespace {

// One block of text each, shared by all entries.
const Text<25> SystemGroup = "System";
const Text<10> NoProtection = "--------";

} // namespace

void DefaultContentNode(ContentNode& node) {
    node.Tags.reset();
    node.PlaceFacts.reset();
    node.Selected = 0;
    node.DuplicateBand = 0;
    node.ObjectKind = EntryKind::Drawer;
    node.EntryName.Clear();
    node.EntryPath.Clear();
    node.EntryDisplayName.Clear();
    node.DatatypeGroupName = SystemGroup;
    node.DatatypeName.Clear();
    node.DefaultIconName.Clear();
    node.EntrySizeText.Clear();
    node.ProtectionText = NoProtection;
    node.DateText.Clear();
    node.Comment.Clear();
    node.DuplicateHash.Clear();
    node.Dimensions.Clear();
    node.VersionText.Clear();
    node.EntrySize = 0;
    node.DatatypeGroupValue = GroupSystem;
    node.ProtectionBits = 0;
    node.DateSeconds = 0;
    node.CommentSize = 0;
    node.VersionNumber = 0.0F;
    node.SortPrefix = 0;
}

const AudioTags& TagsOf(const ContentNode& node) {
    static const AudioTags NoTags;
    return node.Tags ? *node.Tags : NoTags;
}

const DevicesNode* DeviceOf(const ContentNode& node) {
    return node.PlaceFacts ? std::get_if<DevicesNode>(&node.PlaceFacts->Of) : nullptr;
}

DevicesNode* DeviceOf(ContentNode& node) {
    return node.PlaceFacts ? std::get_if<DevicesNode>(&node.PlaceFacts->Of) : nullptr;
}

const AssignsNode* AssignOf(const ContentNode& node) {
    return node.PlaceFacts ? std::get_if<AssignsNode>(&node.PlaceFacts->Of) : nullptr;
}

} // namespace solvane
