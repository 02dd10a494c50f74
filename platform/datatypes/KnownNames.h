// Names that mean a type on an Amiga or in a program's drawer, whatever host databases say about
// them. A name alone never makes a type that its content would have shown.
#pragma once

#include "platform/datatypes/ContentTable.h"

#include <span>

namespace datatypes {

// Types that only names, or the words of a text, can tell.
[[nodiscard]] std::span<const DataType> KnownTypes() noexcept;

// What a text of that whole name, or with that extension (lower-case), is by our own tables; null
// when it is not in them.
[[nodiscard]] const DataType* TextTypeByWholeName(std::string_view name);
[[nodiscard]] const DataType* TextTypeByExtension(std::string_view extension);

// Whether the extension belongs to a format that is recognised by content only, so that a file of
// that name without the content has no type.
[[nodiscard]] bool IsContentExtension(std::string_view extension) noexcept;

} // namespace datatypes
