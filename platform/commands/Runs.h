// What the commands do, one function each; the table of commands names them. Private to platform/commands.
#pragma once

#include "platform/commands/Command.h"

namespace commands {

int RunAssign(Context& context, const dos::ArgResults& arguments);
int RunCopy(Context& context, const dos::ArgResults& arguments);
int RunDate(Context& context, const dos::ArgResults& arguments);
int RunDelete(Context& context, const dos::ArgResults& arguments);
int RunDir(Context& context, const dos::ArgResults& arguments);
int RunEcho(Context& context, const dos::ArgResults& arguments);
int RunExecute(Context& context, const dos::ArgResults& arguments);
int RunFault(Context& context, const dos::ArgResults& arguments);
int RunFilenote(Context& context, const dos::ArgResults& arguments);
int RunGetEnv(Context& context, const dos::ArgResults& arguments);
int RunInfo(Context& context, const dos::ArgResults& arguments);
int RunJoin(Context& context, const dos::ArgResults& arguments);
int RunList(Context& context, const dos::ArgResults& arguments);
int RunMakeDir(Context& context, const dos::ArgResults& arguments);
int RunMakeLink(Context& context, const dos::ArgResults& arguments);
int RunProtect(Context& context, const dos::ArgResults& arguments);
int RunRelabel(Context& context, const dos::ArgResults& arguments);
int RunRename(Context& context, const dos::ArgResults& arguments);
int RunSearch(Context& context, const dos::ArgResults& arguments);
int RunSetDate(Context& context, const dos::ArgResults& arguments);
int RunSetEnv(Context& context, const dos::ArgResults& arguments);
int RunSort(Context& context, const dos::ArgResults& arguments);
int RunType(Context& context, const dos::ArgResults& arguments);
int RunUnSetEnv(Context& context, const dos::ArgResults& arguments);
int RunVersion(Context& context, const dos::ArgResults& arguments);
int RunWait(Context& context, const dos::ArgResults& arguments);
int RunWhich(Context& context, const dos::ArgResults& arguments);

} // namespace commands
