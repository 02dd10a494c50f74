#include "interface/TabBar.h"

#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "model/Tabs.h"

#include <map>
#include <string>
#include <vector>

namespace solvane {

void AttachTabs() {
    FillInTabItems();
    if (Objects.Tabs == nullptr || !tabslist || !TabsList) {
        return;
    }
    std::map<std::uint32_t, const TabsNode*> records;
    for (const TabsNode& node : *TabsList) {
        records[node.TabUserData] = &node;
    }
    std::vector<intuition::ClickTabLook> looks;
    for (const ClickTabNode& tab : *tabslist) {
        const auto record = records.find(tab.TabUserData);
        const bool extra = tab.TabUserData == ExtraTab;
        looks.push_back({.UserData = tab.TabUserData,
                         .Text = std::string(tab.Label.View()),
                         .Hint = extra || record == records.end() ? std::string()
                                                                  : std::string(record->second->Path.View()),
                         .Extra = extra});
    }
    Objects.Tabs->Attach(looks, currTab != nullptr ? currTab->TabUserData : 0);
}

void DetachTabs() {
    if (Objects.Tabs != nullptr) {
        Objects.Tabs->Detach();
    }
}

void SetTabLabel(std::string_view label, std::string_view path) {
    if (currTab == nullptr || currTab->TabUserData == ExtraTab) {
        return;
    }
    currTab->Label = label;
    FillInTabItems();
    if (Objects.Tabs != nullptr) {
        Objects.Tabs->SetText(currTab->TabUserData, label, path);
    }
}

} // namespace solvane
