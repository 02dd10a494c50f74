// The tab bar of the window: shows tabslist, and what each tab is called. Which tabs there are is decided in
// locations/.
#pragma once

#include <string_view>

namespace solvane {

// Shows tabslist with currTab picked; nothing without a window.
void AttachTabs();
// Until then no click on the bar is heard, so that tabs can come and go.
void DetachTabs();

// What the active tab is called; path is its hint.
void SetTabLabel(std::string_view label, std::string_view path);

} // namespace solvane
