#include "platform/rexx/ScriptSource.h"

#include <gtest/gtest.h>

namespace rexx {
namespace {

TEST(ScriptSource, ChangesWordsThatBeginAClauseAndNothingElse) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"echo 'x'; Echo = 1; say echo 2", "SAY 'x'; Echo = 1; say echo 2"},
        {"if a then ECHO b", "if a then SAY b"},
        {"address command 'x'", "address command. 'x'"},
        {"ADDRESS 'COMMAND'; ADDRESS \"Command\"", "ADDRESS 'COMMAND.'; ADDRESS \"Command.\""},
        {"shell system", "ADDRESS system."},
        {"address value x; address SOLVANE.1; address", "address value x; address SOLVANE.1; address"},
        {"say address command", "say address command"},
        {"/* echo /* address command */ ' */ echo 1", "/* echo /* address command */ ' */ SAY 1"},
        {"'echo; address command'", "'echo; address command'"},
        {"x = 'it''s'; echo x", "x = 'it''s'; SAY x"},
        {"signal on break_c\nsignal off BREAK_C", "signal on HALT NAME break_c\nsignal off HALT"},
        {"signal on ioerr; signal on error", "signal on NOTREADY NAME ioerr; signal on error"},
        {"signal on break_c name x", "signal on HALT name x"},
        {"signal on failure; say failure", "signal on ERROR NAME failure; say failure"},
        {"call on failure; call on error", "call on failure; call on error"},
        {"echo: address command", "echo: address command."},
        {"/* never closed", "/* never closed"},
        {"say 'never closed\necho 1", "say 'never closed\nSAY 1"},
    };
    for (const auto& [source, expected] : rows)
        EXPECT_EQ(TranslateSource(source), expected) << source;
    EXPECT_EQ(WithoutMark("COMMAND."), "COMMAND");
    EXPECT_EQ(WithoutMark("HOST."), "HOST.");
}

TEST(ScriptSource, SeesWhetherResultsAreAskedFor) {
    EXPECT_TRUE(WishesOf("/* x */\nOptions FAILAT 10 results").WantsResults);
    for (const char* source :
         {"say results", "options prompt; results", "/* options results */", "'options results'"})
        EXPECT_FALSE(WishesOf(source).WantsResults) << source;
}

} // namespace
} // namespace rexx
