// The type of files by AmigaDOS path, one or many at once. Only regular files are ever opened, each
// once and without waiting; their contents are not changed and nothing is shown to the user.
#pragma once

#include "platform/datatypes/DataType.h"

#include <span>
#include <string>
#include <string_view>

namespace datatypes {

// The type of the file that the path leads to, soft links followed; "BINARY" in group System when
// nothing fits. Null with IoErr when there is no such file, when it is no regular file (212), when
// it may not be read or when its disk does not answer in time (226). May be called from any thread.
[[nodiscard]] const DataType* ObtainDataType(std::string_view path);

// The types of many files of one drawer, which is found once, on several threads; returns when all
// are known. For a drawer of a multi-assign the path is what NameFromLock gives for the target. names
// are those of its regular files, as ExamineDir has just given them. results has one place per name, null
// for a file that cannot be examined; a disk that stops answering leaves them all null.
void ObtainDataTypes(std::string_view drawer, std::span<const std::string_view> names,
                     std::span<const DataType*> results);

} // namespace datatypes
