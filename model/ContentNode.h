// Records of the entries of a drawer: what a scan finds out about each object, already as text.
// No behaviour beyond defaults and find walkers; content/ fills the records and draws from them.
#pragma once

#include "model/Devices.h"
#include "model/LocationKind.h"
#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace solvane {

// What an entry is. Even numbers are drawers or lead to drawers, odd numbers are or lead to files.
enum class EntryKind : std::uint32_t {
    Drawer = 0,
    File = 1,
    SoftLinkToDrawer = 2,
    SoftLinkToFile = 3,
    HardLinkToDrawer = 4,
    HardLinkToFile = 5,
};

// Stands in EntryPath for a path that is longer than the record holds: no device is called so, and every
// operation on it fails with a message.
inline constexpr std::string_view PathTooLong = "(path too long):";

// Accepts any kind in FindContentNode.
inline constexpr std::uint32_t AnyKind = 99;

// Small numbers of the datatype groups; a group outside the table keeps its four-character id as number.
enum DatatypeGroup : std::uint32_t {
    GroupSystem = 0,
    GroupText = 1,
    GroupDocument = 2,
    GroupSound = 3,
    GroupInstrument = 4,
    GroupMusic = 5,
    GroupPicture = 6,
    GroupAnimation = 7,
    GroupMovie = 8,
};

// What a sound file tells about itself. Few entries have it, so it is kept beside the record.
struct AudioTags {
    Text<128> TagComment, TagAlbum, TagComposer, TagGenre;
    Text<50> TagEncoder;
    Text<128> TagTitle, TagArtist, TagAlbumArtist;
    Text<10> TagDisc, TagTrack, TagYear;
    std::uint32_t TagTimeSeconds = 0;
    Text<10> TagTime;
    std::uint32_t TagBitRate = 0; // kbit/s
    Text<10> TagBitRateText;
    std::uint32_t TagSampleRate = 0; // Hz
    Text<10> TagSampleRateText;
    Text<20> TagMode, TagCodec;
};

// One entry of ContentList: an object of a drawer. In the lists of places (bookmarks, favorites, devices,
// assigns, sites) it is one place: EntryName is what its row shows, EntryPath where it leads, and
// EntryDisplayName the key by which the place is found again ("[Fav]Work:Games").
// What lists are sorted by stands close to the links, so that a sort, which looks at all records, fetches few
// pieces of each.
struct ContentNode : ListNode {
    std::uint16_t Selected = 0;      // copied from the list browser before a rebuild
    std::uint16_t DuplicateBand = 0; // band of a row in the Duplicate File Finder's results
    EntryKind ObjectKind = EntryKind::Drawer;
    std::uint64_t EntrySize = 0;     // bytes; 0 for anything but a plain file
    std::unique_ptr<AudioTags> Tags; // null: no tags were read
    std::uint32_t DateSeconds = 0;   // Amiga seconds of the last change
    float VersionNumber = 0.0F;      // -1 for drawers and links to them, which keeps them together
    Text<128> EntryName;
    char SortPrefix = 0; // EntrySortName is this character with EntryName behind it; no text of its own
    LocationKind LeadsTo = LocationKind::Drawer; // of a bookmark or favorite
    std::uint32_t DatatypeGroupValue = GroupSystem;
    Text<1024> EntryPath;        // full path; for a link that of its target
    Text<1024> EntryDisplayName; // key that ties the entry to its row
    Text<25> DatatypeGroupName;
    Text<35> DatatypeName;
    Text<50> DefaultIconName;
    Text<15> EntrySizeText;
    Text<10> ProtectionText;
    Text<35> DateText;
    Text<4096> Comment; // the filenote
    Text<66> DuplicateHash;
    Text<20> Dimensions; // "width x height x depth" without the blanks
    Text<20> VersionText;
    std::unique_ptr<PlaceRecord> PlaceFacts; // of a device or assign; null: another entry
    std::uint32_t ProtectionBits = 0;
    std::uint32_t CommentSize = 0; // bytes with the terminator, 0 without a filenote
};

// One link found by a scan; lives as long as ContentList.
struct LinksNode : ListNode {
    EntryKind LinkKind = EntryKind::SoftLinkToDrawer;
    Text<1024> LinkPath;   // path of the link itself
    Text<1024> LinkTarget; // path of what it leads to
};

// One object found by the recursive walk that file operations use.
struct DOSNode : ListNode {
    std::uint16_t ClipAction = 0; // GlobalClipAction at the time of the walk
    std::uint16_t FileFlag = 0;
    std::uint16_t DrawerFlag = 0;
    EntryKind ObjectKind = EntryKind::Drawer;
    Text<128> EntryName;
    Text<1024> EntryPath;
    Text<50> DefaultIconName;
    Text<15> EntrySizeText;
    Text<10> ProtectionText;
    Text<35> DateText;
    Text<4096> Comment;
    std::uint64_t EntrySize = 0;
    std::uint32_t ProtectionBits = 0;
    std::uint32_t DateSeconds = 0;
    std::uint32_t CommentSize = 0;
};

// Sets every field to its empty value, then the group to "System" and the protection to "--------".
void DefaultContentNode(ContentNode& node);

// The tags of an entry, or empty ones that belong to nobody.
[[nodiscard]] const AudioTags& TagsOf(const ContentNode& node);

// The device or assign that an entry stands for; null when it stands for something else.
[[nodiscard]] const DevicesNode* DeviceOf(const ContentNode& node);
[[nodiscard]] DevicesNode* DeviceOf(ContentNode& node);
[[nodiscard]] const AssignsNode* AssignOf(const ContentNode& node);

[[nodiscard]] constexpr bool IsDrawerKind(EntryKind kind) {
    return (static_cast<std::uint32_t>(kind) & 1U) == 0;
}
[[nodiscard]] constexpr bool IsLinkKind(EntryKind kind) {
    return static_cast<std::uint32_t>(kind) >= 2;
}

// The entry of that name in ContentList; the exact name is preferred to one that differs in case.
// kind AnyKind takes any, a drawer kind any drawer kind, a file kind any file kind. Moves the cursor.
[[nodiscard]] ContentNode* FindContentNode(std::string_view name, std::uint32_t kind);

// First entry of ContentList with the selected flag; the second takes files and links to files only.
[[nodiscard]] ContentNode* FindFirstSelectedContentNode();
[[nodiscard]] ContentNode* FindFirstSelectedFileContentNode();

// The link of that kind and target in LinksList.
[[nodiscard]] LinksNode* FindLinksNode(EntryKind kind, std::string_view path);

} // namespace solvane
