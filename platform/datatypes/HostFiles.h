// Typing files by host path: reading their heads safely and spreading many over the cores. For
// AmigaDOS paths see DataTypes.h.
#pragma once

#include "platform/datatypes/DataType.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace datatypes {

// The type of the host file; null with IoErr as in DataTypes.h.
[[nodiscard]] const DataType* ObtainHostFileType(std::string_view hostPath);

// Whether a soft link lies there; what it leads to is not looked at.
[[nodiscard]] bool IsHostLink(const std::string& hostPath) noexcept;

// The types of the named files of a host drawer, on several threads. The names are those of regular files in
// a listing: they are opened without a further question, which would wake a device. results has one place per
// name, null for what cannot be examined.
struct DrawerTyping {
    // Types a name that is not there or is a soft link; without it links are followed as they stand.
    std::function<const DataType*(std::string_view name)> Otherwise{};
    std::function<void()> Typed{}; // after each file, for who waits only as long as it goes on
};                                 // both are called on any thread
void ObtainHostDrawerTypes(const std::string& hostDrawer, std::span<const std::string_view> names,
                           std::span<const DataType*> results, const DrawerTyping& typing = {});

} // namespace datatypes
