// The interpreter of the host, with the rules and functions that ARexx scripts expect. All commands come to
// us first: none ever reaches a shell of the host.
#include "platform/rexx/ScriptFunctions.h"
#include "platform/rexx/ScriptSource.h"
#include "platform/rexx/Scripts.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#define INCL_RXFUNC
#define INCL_RXSHV
#define INCL_RXSUBCOM
#define INCL_RXSYSEXIT
#include <rexxsaa.h>

namespace rexx {

namespace {

constexpr int FailAt = 10; // from here on a return code raises FAILURE
constexpr int CodeOfFailedScript = 20;
constexpr std::size_t OwnReturnBuffer = 256; // bytes that the interpreter lends for a value
constexpr APIRET CallFailed = 40;            // "incorrect call to routine"

// Calls are parsed as ARexx writes them, unknown functions are errors and never programs of the host.
constexpr const char* Rules = "CALLS_AS_FUNCS NOEXT_COMMANDS_AS_FUNCS AREXX_BIFS AREXX_SEMANTICS";
constexpr const char* CommandExit = "SOLVANE_COMMANDS";

thread_local ScriptWishes Wishes; // of the script that runs

std::string_view ViewOf(const RXSTRING& text) {
    return text.strptr != nullptr ? std::string_view(text.strptr, text.strlength) : std::string_view();
}

// A value for the interpreter, in the memory that it lent where that is enough. False without memory.
bool GiveText(std::string_view text, RXSTRING& place) {
    if (text.size() > OwnReturnBuffer || place.strptr == nullptr) {
        place.strptr = static_cast<char*>(RexxAllocateMemory(static_cast<ULONG>(text.size()) + 1));
        if (place.strptr == nullptr) {
            return false;
        }
    }
    std::memcpy(place.strptr, text.data(), text.size());
    place.strlength = text.size();
    return true;
}

RXSTRING Borrow(std::string_view text) {
    RXSTRING lent{};
    lent.strptr = const_cast<char*>(text.data()); // the interpreter only reads it
    lent.strlength = text.size();
    return lent;
}

// RESULT has the text, or is dropped so that it reads as its own name.
void SetResult(const std::optional<std::string>& result) {
    SHVBLOCK request{};
    request.shvcode = result ? RXSHV_SYSET : RXSHV_SYDRO;
    request.shvname = Borrow("RESULT");
    request.shvnamelen = request.shvname.strlength;
    if (result) {
        request.shvvalue = Borrow(*result);
        request.shvvaluelen = result->size();
    }
    RexxVariablePool(&request);
}

LONG APIENTRY OnCommand(LONG code, LONG subcode, PEXIT parameters) {
    if (code != RXCMD || subcode != RXCMDHST) {
        return RXEXIT_NOT_HANDLED;
    }
    auto& call = *reinterpret_cast<RXCMDHST_PARM*>(parameters);
    const std::string_view host(reinterpret_cast<const char*>(call.rxcmd_address), call.rxcmd_addressl);
    HostAnswer answer = SendToHost(WithoutMark(host), std::string(ViewOf(call.rxcmd_command)));
    if (!Wishes.WantsResults) {
        answer.Result.reset();
    }
    SetResult(answer.Result);
    call.rxcmd_flags.rxfcfail = answer.Rc >= FailAt ? 1 : 0;
    // Where a script waits for failures alone they are raised as errors, and nothing else is.
    const bool raisesErrors = Wishes.WantsErrors || !Wishes.WantsFailures;
    call.rxcmd_flags.rxfcerr = raisesErrors && answer.Rc != 0 && answer.Rc < FailAt ? 1 : 0;
    return GiveText(std::to_string(answer.Rc), call.rxcmd_retc) ? RXEXIT_HANDLED : RXEXIT_RAISE_ERROR;
}

// The exit has every command before this.
APIRET APIENTRY OnOwnCommand(PRXSTRING, PUSHORT flags, PRXSTRING) {
    *flags = RXSUBCOM_FAILURE;
    return 0;
}

APIRET APIENTRY OnFunction(PCSZ name, ULONG count, PRXSTRING words, PCSZ, PRXSTRING value) {
    const ScriptFunction* function = FindScriptFunction(name);
    if (function == nullptr || count < function->Least || count > function->Most) {
        return CallFailed;
    }
    std::vector<std::optional<std::string_view>> arguments(count);
    for (std::size_t at = 0; at < count; ++at) {
        if (words[at].strptr != nullptr) {
            arguments[at] = ViewOf(words[at]);
        }
    }
    if (count < function->Least || (function->Least > 0 && !arguments[0])) {
        return CallFailed;
    }
    const auto result = function->Run(FunctionArguments(arguments));
    return result && GiveText(*result, *value) ? 0 : CallFailed;
}

// Once for each thread, as the interpreter keeps them.
void SetUpInterpreter() {
    static thread_local bool isReady = false;
    if (std::exchange(isReady, true)) {
        return;
    }
    ::setenv("REGINA_OPTIONS", Rules, 1);
    RexxRegisterExitExe(CommandExit, OnCommand, nullptr);
    RexxRegisterSubcomExe("REXX", OnOwnCommand, nullptr); // a name of the interpreter's own otherwise
    for (const auto table : {SystemFunctions(), FileFunctions(), StreamFunctions()}) {
        for (const ScriptFunction& function : table) {
            RexxRegisterFunctionExe(std::string(function.Name).c_str(), OnFunction);
        }
    }
}

} // namespace

int RunScript(const Script& script) {
    SetUpInterpreter();
    std::array<RXSYSEXIT, 2> exits = {RXSYSEXIT{const_cast<char*>(CommandExit), RXCMD},
                                      RXSYSEXIT{nullptr, RXENDLST}};
    const std::string source = TranslateSource(script.Source);
    const std::string words = script.Arguments.value_or("");
    std::array<RXSTRING, 2> program = {Borrow(source), RXSTRING{}};
    RXSTRING argument = Borrow(words);
    RXSTRING result{};
    SHORT code = 0;
    const ScriptWishes outer = std::exchange(Wishes, WishesOf(script.Source));
    // Restricted: a name of a shell that a script makes up as it runs is refused.
    const APIRET failure =
        RexxStart(script.Arguments ? 1 : 0, &argument, script.Name.c_str(), program.data(),
                  script.Host.c_str(), RXCOMMAND | RXRESTRICTED, exits.data(), &code, &result);
    Wishes = outer;
    if (result.strptr != nullptr) {
        RexxFreeMemory(result.strptr);
    }
    if (program[1].strptr != nullptr) {
        RexxFreeMemory(program[1].strptr);
    }
    return failure != 0 ? CodeOfFailedScript : code;
}

} // namespace rexx
