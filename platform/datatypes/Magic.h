// The host's magic database, the last to be asked: it is slow (0.2 ms a question, so the
// answers for heads seen lately are kept) and large. One mapping
// of it serves all threads, made at the first question.
#pragma once

#include "platform/datatypes/ContentTable.h"

namespace datatypes {

// Our type for what the magic database makes of the bytes; null when it knows nothing, when it is
// not installed, or when the bytes look like noise, which is not worth the question.
[[nodiscard]] const DataType* TypeByMagic(Bytes head);

// Whether the first bytes have the look of a header: letters in a row, zeros, repeated values.
// Compressed and random bytes do not.
[[nodiscard]] bool HasStructure(Bytes head) noexcept;

} // namespace datatypes
