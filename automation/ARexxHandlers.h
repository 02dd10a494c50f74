// The handlers of the ARexx commands. Each finds the return code 0 and an empty result, acts only while the
// window is open unless it says otherwise, does nothing when an argument that it needs is missing, and tells
// of no failure of what it did. Private to this folder.
#pragma once

#include "interface/MainLayout.h"
#include "platform/rexx/ARexxPort.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace solvane {

// A number that is not below 0, nothing where it was not given.
[[nodiscard]] std::optional<std::uint32_t> CountOf(const rexx::CommandCall& call, std::string_view name);

// A command that is a call without arguments.
template <auto Deed>
void WhenOpen(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        static_cast<void>(Deed());
    }
}

// A command whose feature is still to come: it reports success.
inline void rexx_Accept(rexx::CommandCall&) {}

// --- ARexxProgram: the program and its windows ---

void rexx_Version(rexx::CommandCall& call); // also without a window
void rexx_Activate(rexx::CommandCall& call);
void rexx_Deactivate(rexx::CommandCall& call);
void rexx_Iconify(rexx::CommandCall& call);
void rexx_Uniconify(rexx::CommandCall& call);
void rexx_LoadPrefs(rexx::CommandCall& call);
void rexx_SavePrefs(rexx::CommandCall& call);
void rexx_UnlockGui(rexx::CommandCall& call);
void rexx_QuitNoSave(rexx::CommandCall& call);
void rexx_Quit(rexx::CommandCall& call);
void rexx_QuitAll(rexx::CommandCall& call); // not in the background
void rexx_NewWindow(rexx::CommandCall& call);
void rexx_MoveWindow(rexx::CommandCall& call);
void rexx_SizeWindow(rexx::CommandCall& call);
void rexx_ChangeWindow(rexx::CommandCall& call);
void rexx_WindowToFront(rexx::CommandCall& call);
void rexx_WindowToBack(rexx::CommandCall& call);
void rexx_ZoomWindow(rexx::CommandCall& call);
void rexx_UnzoomWindow(rexx::CommandCall& call);
void rexx_PasteStatus(rexx::CommandCall& call);
void rexx_ActivateWindow(rexx::CommandCall& call);
void rexx_JumpToScreen(rexx::CommandCall& call);

// --- ARexxNavigation: places, tabs, view ---

void rexx_Parent(rexx::CommandCall& call);
void rexx_ChangePath(rexx::CommandCall& call);
void rexx_SwitchTab(rexx::CommandCall& call);
void rexx_OpenNewTab(rexx::CommandCall& call);
void rexx_CloseTab(rexx::CommandCall& call);
void rexx_ViewStyle(rexx::CommandCall& call);
void rexx_Layout(rexx::CommandCall& call);
void rexx_DrawersOrder(rexx::CommandCall& call);
void rexx_AddBookmark(rexx::CommandCall& call);
void rexx_SelectBookmark(rexx::CommandCall& call);
void rexx_AddFavorite(rexx::CommandCall& call);
void rexx_SelectFavorite(rexx::CommandCall& call);
void rexx_SelectFTPSite(rexx::CommandCall& call);
void rexx_GetVersion(rexx::CommandCall& call);

// --- ARexxSelection: what is selected, and what is done to it ---

void rexx_SelectDrawer(rexx::CommandCall& call);
void rexx_SelectFile(rexx::CommandCall& call);
void rexx_SelectByType(rexx::CommandCall& call);
void rexx_Pattern(rexx::CommandCall& call); // acts only when CASE is given too
void rexx_Rename(rexx::CommandCall& call);

// --- ARexxQueries: answers; all but the first two also without a window ---

void rexx_GetPubScreenName(rexx::CommandCall& call);
void rexx_GetCurrentPath(rexx::CommandCall& call);
void rexx_GetNumDrawers(rexx::CommandCall& call);
void rexx_GetNumFiles(rexx::CommandCall& call);
void rexx_GetNumEntries(rexx::CommandCall& call);
void rexx_GetNumDrawersSelected(rexx::CommandCall& call);
void rexx_GetNumFilesSelected(rexx::CommandCall& call);
void rexx_GetNumEntriesSelected(rexx::CommandCall& call);
void rexx_GetBytesSelected(rexx::CommandCall& call);
void rexx_GetTotalBytes(rexx::CommandCall& call);

} // namespace solvane
