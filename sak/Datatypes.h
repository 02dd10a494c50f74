// What the system's datatypes say about a file, in the program's own small numbers. It opens files only
// through platform/datatypes and shows nothing.
#pragma once

#include "platform/datatypes/DataType.h"
#include "sak/Text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace solvane {

// A file's type as the lists show it. As it stands it means that no datatype was found.
struct IdentifiedType {
    std::uint32_t GroupValue = 0;  // 0 system to 8 movie; a group outside the table keeps its four letters
    Text<25> GroupName = "System"; // in the user's language: to ask for a group, compare GroupValue
    Text<25> Name = "BINARY";      // upper case
};

// --- State: the result of the last SAK_Identify or SAK_NoteIdentified ---

extern std::uint32_t SAK_DTGroupIDValue;
extern Text<25> SAK_DTGroupID;
extern Text<25> SAK_DTName;

// What a datatype says; null means none was found.
[[nodiscard]] IdentifiedType IdentifyDataType(const datatypes::DataType* type);

// Asks for the type of a file into the three variables. True when a datatype was found.
bool SAK_Identify(std::string_view path);

// Makes that the last result, where the type of a file is known already.
void SAK_NoteIdentified(const IdentifiedType& identified);

// "640x480x24": width, height and depth. Nothing when the file is no picture that can be read.
[[nodiscard]] std::optional<std::string> SAK_DatatypesPictureSize(std::string_view path);

} // namespace solvane
