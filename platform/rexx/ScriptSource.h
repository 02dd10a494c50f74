// The words in which ARexx differs from the interpreter of the host, changed in a script's text before it
// runs. Lines stay lines, so that messages name the right ones.
#pragma once

#include <string>
#include <string_view>

namespace rexx {

// "ECHO" becomes SAY and "SHELL" ADDRESS where they begin a clause; "ADDRESS COMMAND" and the other names
// under which the interpreter would run commands itself get a "." behind them, which WithoutMark takes off
// again; "SIGNAL ON BREAK_C" waits for a halt, "SIGNAL ON IOERR" for a stream that is not ready, under their
// own labels. Comments and texts stay as they are.
[[nodiscard]] std::string TranslateSource(std::string_view source);

// The name of a host as the script has it.
[[nodiscard]] std::string_view WithoutMark(std::string_view host);

// What a script says anywhere.
struct ScriptWishes {
    bool WantsResults = false; // OPTIONS RESULTS
    bool WantsErrors = false;  // SIGNAL ON ERROR or CALL ON ERROR
    bool WantsFailures = false;
};
[[nodiscard]] ScriptWishes WishesOf(std::string_view source);

} // namespace rexx
