// The type of files by AmigaDOS path, one or many at once. Only regular files are ever opened, each
// once and without waiting; their contents are not changed and nothing is shown to the user.
#pragma once

#include "platform/datatypes/DataType.h"

#include <span>
#include <string>
#include <string_view>

namespace datatypes {

// The type of the file that the path leads to, soft links followed; "BINARY" in group System when
// nothing fits. Null with IoErr when there is no such file, when it is no regular file (212) or
// when it may not be read. May be called from any thread.
[[nodiscard]] const DataType* ObtainDataType(std::string_view path);

// The types of many files, on several threads; returns when all are known. results has one place
// per path; a file that cannot be examined gets null there.
void ObtainDataTypes(std::span<const std::string> paths, std::span<const DataType*> results);

// The same for objects of one drawer, which is found once: for a drawer of a multi-assign the
// path is what NameFromLock gives for the target. names are those of its regular files, as ExamineDir
// has just given them. This is the fastest way to type a whole drawer.
void ObtainDataTypes(std::string_view drawer, std::span<const std::string_view> names,
                     std::span<const DataType*> results);

} // namespace datatypes
