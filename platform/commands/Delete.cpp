// Delete: files, drawers and, with ALL, what is in them. A link is removed itself, never what it leads to.
// What fails is told and the rest goes on, but nothing more is begun once a disk is gone or not to be
// written.
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Changes.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Errors.h"

#include <algorithm>

namespace commands {

namespace {

struct DeleteOptions {
    bool IsAll = false, IsQuiet = false, IsForced = false;
};

// Removes an object; with FORCE one whose bits protect it as well.
bool Remove(const Found& object, bool isForced) {
    if (dos::Delete(object.Path))
        return true;
    if (!isForced || dos::IoErr() != dos::ErrorDeleteProtected)
        return false;
    return dos::ChangeProtection(object.Path, 0, dos::ProtectDelete) && dos::Delete(object.Path);
}

// Is the reason of a failure that a path leads to nothing?
bool IsMissing(const Found& object) {
    return !object.Data && dos::IoErr() == dos::ErrorObjectNotFound;
}

// An object that is not there is a warning, so that a script goes on.
int Missing(Context& context, const Found& object) {
    const int code = Complain(context, object.Text);
    return code == ReturnError ? ReturnWarn : code;
}

Outcome DeleteOne(Context& context, const DeleteOptions& options, const Found& object) {
    if (!Remove(object, options.IsForced))
        return IsMissing(object) ? Missing(context, object) : FailedChange(context, object.Text);
    if (!options.IsQuiet)
        PrintLine(context, Shown(context, object.Text) + "  Deleted");
    return ReturnOk;
}

// An object with all that is in it. What could not be removed is told of and stays.
Outcome DeleteAll(Context& context, const DeleteOptions& options, const Found& object) {
    Outcome outcome = ReturnOk;
    const auto textOf = [&](const std::string& path) {
        return path.empty() ? object.Text : JoinText(object.Text, path);
    };
    dos::TreeControl control;
    control.Progress = [&](const dos::TreeProgress&) { return !IsStopped(context); };
    control.Finished = [&](const std::string& path, bool) {
        if (!options.IsQuiet)
            PrintLine(context, Shown(context, textOf(path)) + "  Deleted");
    };
    control.Trouble = [&](const dos::TreeTrouble& trouble) {
        dos::SetIoErr(trouble.Error);
        const Outcome one = FailedChange(context, textOf(trouble.Path));
        outcome = {std::max(outcome.Code, one.Code), one.IsLast};
        return one.IsLast ? dos::TroubleAnswer::Abort : dos::TroubleAnswer::Skip;
    };
    const auto rule = options.IsForced ? dos::Protected::Forced : dos::Protected::Respected;
    const dos::TreeResult result = dos::DeleteTree(object.Path, rule, control);
    if (result || outcome.Code != ReturnOk)
        return outcome;
    if (!IsStopped(context))
        dos::SetIoErr(result.FirstError);
    return IsMissing(object) && !result.IsCancelled ? Missing(context, object)
                                                    : FailedChange(context, object.Text);
}

} // namespace

int RunDelete(Context& context, const dos::ArgResults& arguments) {
    const DeleteOptions options{arguments.Flag("ALL"), arguments.Flag("QUIET"), arguments.Flag("FORCE")};
    int code = ReturnOk;
    bool isAny = false;
    for (const std::string& path : arguments.Multi("FILE")) {
        const Matches matches = Expand(context, path);
        code = std::max(code, matches.Code);
        for (const Found& object : matches.Objects) {
            if (IsStopped(context))
                return std::max(code, Complain(context));
            const InDrawer current(object);
            const Outcome one =
                options.IsAll ? DeleteAll(context, options, object) : DeleteOne(context, options, object);
            isAny = true;
            code = std::max(code, one.Code);
            if (one.IsLast)
                return code;
        }
    }
    if (isAny || code != ReturnOk)
        return code;
    PrintLine(context, "No file to delete");
    return ReturnWarn;
}

} // namespace commands
