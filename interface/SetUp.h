// Parts of the interface that an instance sets up once: input device, hooks, choosers, file, font and screen
// mode requesters. The toolkit brings the first two along; the others come with the features that use them.
#pragma once

namespace solvane {

[[nodiscard]] bool SAK_OpenInputDevice();
void SAK_CloseInputDevice();
[[nodiscard]] bool SetUpOtherLists();
void FreeOtherLists();
[[nodiscard]] bool SetUpHooks();
void FreeHooks();
[[nodiscard]] bool SetUpChooserLists();
void FreeChooserLists();
void DisposeHiddenChoosers();
[[nodiscard]] bool AllocateFileRequester();
[[nodiscard]] bool AllocateFontRequester();
[[nodiscard]] bool AllocateScreenModeRequester();
void FreeRequesters();

} // namespace solvane
