// Opening and writing files of the host. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"

#include <memory>
#include <string>
#include <string_view>

namespace dos {

// As the entries of the handler record.
[[nodiscard]] std::unique_ptr<Stream> OpenHostFile(const LockRef& start, std::string_view rest,
                                                   OpenMode openMode);
[[nodiscard]] bool CreateHostDrawer(const LockRef& start, std::string_view rest);
[[nodiscard]] bool WriteHostFile(const LockRef& start, std::string_view rest, std::string_view bytes);

struct Spot;
// Whether the object of the spot may be replaced by a file, as its type and bits say; fills in its
// drawer and name. False with IoErr.
[[nodiscard]] bool IsReplaceable(Spot& spot);

struct SidecarFile;
// What an entry that was written or made where the spot is still needs: its sidecar, which was looked
// for before. False with errno.
[[nodiscard]] bool FinishSidecar(const Spot& spot, const SidecarFile& sidecar);

} // namespace dos
