// The message of a failure that ends the program, and of one after which it goes on.
#pragma once

#include <string_view>

namespace solvane {

// Shows the text with an error image and the one gadget "_Terminate".
void Terminate(std::string_view text);

// Shows the text with an information image and the one gadget "_Continue".
void TellAndContinue(std::string_view text);

} // namespace solvane
