// Types by file name: our own table for Amiga names, then the host's MIME database. Answers are kept,
// so that each extension is looked up once.
#pragma once

#include "platform/datatypes/ContentTable.h"

#include <array>

namespace datatypes {

// What a name can mean, depending on what the content is; null where it means nothing.
struct NameMeaning {
    bool Known = false;              // the extension is known to somebody
    const DataType* Text = nullptr;  // when the file is a text
    const DataType* Other = nullptr; // when it is not, and nothing in the content denies the type
    std::array<const DataType*, ContainerCount> Inside = {}; // when the content is that container
};

// The meaning of the specimen's name. May be called from any thread.
[[nodiscard]] NameMeaning MeaningOfName(const Specimen& specimen);

} // namespace datatypes
