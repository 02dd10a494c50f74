// Texts: whether bytes are text at all, and the kinds of text that their own words give away.
#pragma once

#include "platform/datatypes/ContentTable.h"

namespace datatypes {

// Whether the head of a file reads as text in ASCII, UTF-8, UTF-16 with a byte order mark or an
// 8-bit character set; escape sequences of consoles are text. Nothing at all is no text.
[[nodiscard]] bool IsText(Bytes head) noexcept;

// A kind of text that its beginning proves, whatever its name; for texts only.
[[nodiscard]] ContentMatch MatchText(const Specimen& specimen);

// A kind that the text makes likely, to be asked when the name says nothing: interpreter lines,
// scripts. Null when it is just text.
[[nodiscard]] const DataType* GuessText(const Specimen& specimen);

} // namespace datatypes
