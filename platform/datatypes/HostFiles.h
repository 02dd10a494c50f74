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

// The types of the named files of a host drawer, on several threads. The names are those of regular files in
// a listing: they are opened without a further question, which would wake a device. results has one place per
// name, null for what cannot be examined. A name that is not there is looked for once more at the
// host path that otherPath gives for it, where one is given; otherPath is called on any thread.
using OtherPath = std::function<std::string(std::string_view name)>;
void ObtainHostDrawerTypes(const std::string& hostDrawer, std::span<const std::string_view> names,
                           std::span<const DataType*> results, const OtherPath& otherPath = {});

// Fills results by calling typeOf with every index, on several threads for more than a few.
void TypeOnAllCores(std::span<const DataType*> results,
                    const std::function<const DataType*(std::size_t)>& typeOf);

} // namespace datatypes
