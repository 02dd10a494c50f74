// Requesters without a choice: over the main window, or the active one while it is closed, the user reads
// what happened and goes on ("_Continue").
#pragma once

#include "platform/dos/Errors.h"
#include "sak/Locale.h"
#include "sak/Requesters.h"

#include <cstdint>
#include <string_view>

namespace solvane {

enum MessageNumber : std::int32_t; // sak/Messages.h

// The text is complete already; a "%" in it is data.
void Tell(std::string_view text, RequesterImage image = RequesterImage::Information);
void Tell(MessageNumber text, RequesterImage image = RequesterImage::Information);

// A failed dos call: the text, then what the error means. SAK_IOErr becomes the error.
void TellDosError(std::string_view text, long error = dos::IoErr());
void TellDosError(MessageNumber text, long error = dos::IoErr());

// A failure that ends the program, or what the window was to do, with an error image and "_Terminate".
void TellTerminate(std::string_view text);
void TellTerminate(MessageNumber text);

} // namespace solvane
