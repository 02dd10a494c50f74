#include "content/Status.h"

#include "interface/MainLayout.h"
#include "model/Content.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <string>
#include <string_view>

namespace solvane {

namespace {

std::string ItemCount() {
    return FormatText("%s %s", SAK_LocalizeNumber(TotalNodes),
                      SAK_LocaleString(TotalNodes == 1 ? MSG_ITEM : MSG_ITEMS));
}

} // namespace

void ShowContentStatus() {
    const std::string selected = NumSelected == 0 ? "0" : SAK_LocalizeNumber(NumSelected);
    const std::string selectedBytes =
        NumSelected == 0 ? FormatText("0 %s", SizeUnits.B) : std::string(SelectedBytesBuffer.View());
    SetStatusBar(FormatText("%s/%s %s | %s / %s", selected, SAK_LocalizeNumber(TotalNodes),
                            SAK_LocaleString(MSG_SELECTED), selectedBytes, TotalBytesBuffer),
                 ItemCount());
}

void ShowCountStatus() {
    const std::string selected = NumSelected == 0 ? "0" : SAK_LocalizeNumber(NumSelected);
    SetStatusBar(
        FormatText("%s/%s %s", selected, SAK_LocalizeNumber(TotalNodes), SAK_LocaleString(MSG_SELECTED)),
        ItemCount());
}

void ShowEnteredPathStatus() {
    SetStatusBar(FormatText("0/%s %s | 0 %s / 0 %s", SAK_LocalizeNumber(TotalNodes),
                            SAK_LocaleString(MSG_SELECTED), SizeUnits.B, SizeUnits.B),
                 ItemCount());
}

void RefreshBytes() {
    TotalBytes = 0;
    SelectedBytes = 0;
    if (ContentList) { // one walk: on a long list each costs a user's click some milliseconds
        for (const ContentNode& node : *ContentList) {
            TotalBytes += node.EntrySize;
            SelectedBytes += node.Selected != 0 ? node.EntrySize : 0;
        }
    }
    TotalBytesBuffer = BytesToUnit(TotalBytes);
    SelectedBytesBuffer = BytesToUnit(SelectedBytes);
}

void RefreshSelectedBytes() {
    SelectedBytes = 0;
    if (ContentList) {
        for (const ContentNode& node : *ContentList) {
            SelectedBytes += node.Selected != 0 ? node.EntrySize : 0;
        }
    }
    SelectedBytesBuffer = BytesToUnit(SelectedBytes);
}

} // namespace solvane
