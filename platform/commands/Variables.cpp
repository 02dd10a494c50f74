// GetEnv, SetEnv, UnSetEnv: variables in ENV:, the saved ones in ENVARC:.
#include "platform/dos/Variables.h"

#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Changes.h"
#include "platform/dos/Errors.h"

#include <algorithm>

namespace commands {

namespace {

int PrintNames(Context& context) {
    return ForEach(context, "ENV:#?", Depth::Objects, [&](const Found& object) {
        if (object.Data->Type == dos::TypeFile)
            PrintLine(context, Shown(context, object.Data->Name));
        return ReturnOk;
    });
}

} // namespace

int RunGetEnv(Context& context, const dos::ArgResults& arguments) {
    const std::string name = *arguments.Text("NAME");
    const auto value = dos::GetVar(name);
    if (!value) {
        Complain(context, name);
        return ReturnWarn;
    }
    PrintLine(context, *value);
    return ReturnOk;
}

int RunSetEnv(Context& context, const dos::ArgResults& arguments) {
    const auto name = arguments.Text("NAME");
    if (!name)
        return PrintNames(context);
    const auto scope = arguments.Flag("SAVE") ? dos::VarScope::GlobalSaved : dos::VarScope::Global;
    std::string value = arguments.Text("STRING").value_or("");
    while (value.ends_with('\n'))
        value.pop_back();
    return dos::SetVar(*name, value, scope) ? ReturnOk : Complain(context, *name);
}

int RunUnSetEnv(Context& context, const dos::ArgResults& arguments) {
    const auto name = arguments.Text("NAME");
    if (!name)
        return PrintNames(context);
    if (!dos::GetVar(*name)) // also refuses what is no name of a variable
        return Complain(context, *name);
    int code = ReturnOk;
    for (const std::string_view device : {"ENV:", "ENVARC:"}) {
        if (device == "ENVARC:" && !arguments.Flag("SAVE"))
            continue;
        if (!dos::Delete(std::string(device) + *name) && dos::IoErr() != dos::ErrorObjectNotFound)
            code = std::max(code, Complain(context, *name));
    }
    return code;
}

} // namespace commands
