// The one place where every type has its address: types of the tables and types that the host's
// databases bring along. A name stands for one type only.
#pragma once

#include "platform/datatypes/DataType.h"

#include <string_view>

namespace datatypes {

// The registered type of that name, null when there is none. May be called from any thread, as all
// of this module.
[[nodiscard]] const DataType* FindType(std::string_view name);

// Whether the type has rows in the tables of contents: a file without such a mark is not of it.
[[nodiscard]] bool IsKnownByContent(const DataType* type);

// The registered type of that name, made when it is new. The name is brought into the form that
// DataType asks for; one that holds the name of a type that others look for is replaced by a
// general one.
[[nodiscard]] const DataType* RegisterType(std::string_view name, GroupId group);

} // namespace datatypes
