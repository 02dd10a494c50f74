// What tests of drawers start from: a volume "Test:" over a temporary directory of their own, the lists of
// the program, default preferences, and requesters that are noted instead of shown.
#pragma once

#include "content/ColumnInfo.h"
#include "content/Drawers.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "platform/dos/Volumes.h"
#include "platform/intuition/Requesters.h"
#include "sak/Memory.h"
#include "tests/support/TempTree.h"
#include "tests/support/Texts.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <sys/fsuid.h>
#include <vector>

namespace solvane {

// Makes its thread look at files as a user without rights, as long as it lives; it matters to root.
class PlainUser {
public:
    explicit PlainUser(const std::filesystem::path& root) {
        using std::filesystem::perms;
        std::filesystem::permissions(root, perms::owner_all | perms::group_all | perms::others_all);
        Before = static_cast<uid_t>(setfsuid(Nobody));
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;
    ~PlainUser() { setfsuid(Before); }

private:
    static constexpr uid_t Nobody = 65534;
    uid_t Before;
};

class DrawerTest : public testing::Test {
protected:
    DrawerTest() : HostRoot(Tree.Root()), Volume(NextVolume()) {
        EXPECT_TRUE(dos::AddVolume({.Device = "TD" + std::to_string(Count),
                                    .Volume = Volume.substr(0, Volume.size() - 1),
                                    .HostRoot = HostRoot.string()}));
        EXPECT_TRUE(SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize));
        ContentList = SAK_CreateGenericList<ContentNode>();
        LinksList = SAK_CreateGenericList<LinksNode>();
        ShowDetailsColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
        Prefs = PrefsRecord();
        Prefs.MonitorDrawer = 0;
        Prefs.EffectiveDateFormat = "%d-%b-%y %T";
        CurrentPath.Clear();
        PathUndoBuffer.Clear();
        LBLocation = LocationKind::None;
        EXPECT_TRUE(CreateColumnInfoAll());
        intuition::SetRequestHandler([this](const intuition::EasyRequestSpec& spec) {
            Requests.push_back(spec.Text);
            return 0;
        });
    }

    ~DrawerTest() override {
        intuition::SetRequestHandler({});
        FreeContentList(1);
        ContentList.reset();
        LinksList.reset();
        ShowDetailsColumnsList.reset();
        ExamineSingleList.reset();
        ExamineSingleNode = nullptr;
        MasterDevicesList.reset();
        NavDevicesList.reset();
        MasterAssignsList.reset();
    }

    // A file with its drawers, below the volume's root.
    void File(std::string_view path, std::string_view bytes = {}) const { Tree.Write(path, bytes); }
    void Drawer(std::string_view path) const { Tree.Drawer(path); }
    // Empty files, and drawers where a name ends in "/".
    void Plant(std::initializer_list<std::string_view> names) const { Tree.Plant(names); }
    // So many empty files "100", "101" ... behind the beginning of a path.
    void NumberedFiles(std::string_view path, int count) const {
        for (int number = 100; number < 100 + count; ++number)
            File(std::string(path) + std::to_string(number));
    }
    void SoftLink(std::string_view path, std::string_view target) const { Tree.Link(path, target); }
    [[nodiscard]] std::filesystem::path Host(std::string_view path) const { return HostRoot / path; }
    [[nodiscard]] std::string Path(std::string_view path) const { return Volume + std::string(path); }

    [[nodiscard]] bool Scan(std::string_view path = {}) const {
        CurrentPath = Path(path);
        return ScanDrawer();
    }

    // Names in the order of the records, and of the rows; the blank record of a socket is "".
    [[nodiscard]] static std::vector<std::string> Records() {
        return TextsOf(*ContentList, [](const ContentNode& node) { return node.EntryName.View(); });
    }
    [[nodiscard]] static std::vector<std::string> Rows() {
        return TextsOf(lblist2, [](const ListRow& row) {
            return row.Record != nullptr ? row.Record->EntryName.View() : "(empty row)";
        });
    }
    [[nodiscard]] static const ContentNode& Entry(std::string_view name) {
        static const ContentNode None;
        const ContentNode* node = FindContentNode(name, AnyKind);
        EXPECT_NE(node, nullptr) << name;
        return node != nullptr ? *node : None;
    }

    const TempTree Tree;
    const std::filesystem::path HostRoot;
    const std::string Volume; // with its colon
    std::vector<std::string> Requests;

private:
    static std::string NextVolume() { return "Test" + std::to_string(++Count) + ":"; }
    static inline int Count = 0;
};

} // namespace solvane
