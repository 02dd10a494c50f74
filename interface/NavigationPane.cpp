#include "interface/NavigationPane.h"

#include "interface/MainLayout.h"
#include "model/Devices.h"
#include "sak/FilenameSupport.h"
#include "sak/Text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace solvane {

std::int32_t OldSelected = NothingSelected;

namespace {

constexpr std::string_view FavoriteMark = "[Fav]", DeviceMark = "[Dev]", SiteMark = "[FTP]";

// The text of the row of a place; empty for one without a row.
std::string WordOf(LocationKind location) {
    std::string word(location == LocationKind::Bookmarks ? std::string_view() : WordOfLocation(location));
    if (location == LocationKind::OS4Depot || location == LocationKind::Aminet) {
        const bool isRecent = (location == LocationKind::OS4Depot ? WhichOS4Depot : WhichAminet) == 0;
        word += isRecent ? "Recent" : "Full";
    }
    return word;
}

std::string OldText; // of the selected row, which finds it again among rows that were made anew

void SelectRow(std::size_t row) {
    Objects.Navigation->SetSelected(row);
    const std::size_t selected = Objects.Navigation->Selected();
    const bool isNone = selected == intuition::NoRow;
    OldSelected = isNone ? NothingSelected : static_cast<std::int32_t>(selected);
    OldText = isNone ? std::string() : Objects.Navigation->Rows()[selected].UserData;
}

template <class Fits>
void SelectFirst(Fits fits) {
    const auto& rows = Objects.Navigation->Rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (fits(Text<1024>(rows[row].UserData))) {
            SelectRow(row);
            return;
        }
    }
}

std::string_view WithoutSlash(std::string_view path) {
    return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

// The path on show lies in the device of that row.
void SelectDrawer() {
    Text<1024> root;
    SAK_GetDeviceRoot(CurrentPath, root);
    const DevicesNode* device = FindMasterDevicesNode(root);
    const Text<1024> deviceRow =
        device != nullptr ? std::string(DeviceMark).append(device->DeviceName.View()) : std::string();
    const Text<1024> path = WithoutSlash(CurrentPath);
    SelectFirst([&](const Text<1024>& text) {
        const bool isFavorite = text.View().starts_with(FavoriteMark);
        return isFavorite ? path == WithoutSlash(text.View().substr(FavoriteMark.size()))
                          : !deviceRow.Empty() && text == deviceRow;
    });
}

} // namespace

void SetNavigationSelected(LocationKind location) {
    if (Objects.Navigation == nullptr) {
        return;
    }
    if (AtFTPMount != 0) {
        const Text<1024> site = std::string(SiteMark).append(FTPMountSiteName.View());
        SelectFirst([&](const Text<1024>& text) { return text == site; });
    } else if (location == LocationKind::Bookmarks) {
        SelectRow(intuition::NoRow);
    } else if (location == LocationKind::Drawer) {
        SelectDrawer();
    } else if (const std::string word = WordOf(location); !word.empty()) {
        SelectFirst([word](const Text<1024>& text) { return text == word; });
    }
}

void FindOldRow() {
    if (Objects.Navigation == nullptr) {
        return;
    }
    const auto& rows = Objects.Navigation->Rows();
    const auto found = std::find_if(rows.begin(), rows.end(), [](const intuition::TreeRow& row) {
        return !OldText.empty() && row.UserData == OldText;
    });
    SelectRow(found != rows.end() ? static_cast<std::size_t>(found - rows.begin()) : intuition::NoRow);
}

void ForgetOldRow() {
    OldSelected = NothingSelected;
    OldText.clear();
}

void SelectOldRow() {
    if (Objects.Navigation != nullptr) {
        SelectRow(OldSelected < 0 ? intuition::NoRow : static_cast<std::size_t>(OldSelected));
    }
}

} // namespace solvane
