// Delete: files, drawers and, with ALL, what is in them. A link is removed itself, never what it leads to.
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Changes.h"
#include "platform/dos/Errors.h"

#include <algorithm>

namespace commands {

namespace {

constexpr std::uint32_t AmigaBits = 0xff; // without those of group and others

struct DeleteOptions {
    bool IsAll = false, IsQuiet = false, IsForced = false;
};

// Removes an object; with FORCE one whose bits protect it as well.
bool Remove(const Found& object, bool isForced) {
    if (dos::Delete(object.Path))
        return true;
    if (!isForced || dos::IoErr() != dos::ErrorDeleteProtected)
        return false;
    const auto data = dos::ExamineObject(object.Path);
    return data && dos::SetProtection(object.Path, data->Protection & AmigaBits & ~dos::ProtectDelete) &&
           dos::Delete(object.Path);
}

int DeleteOne(Context& context, const DeleteOptions& options, const Found& object) {
    if (!Remove(object, options.IsForced))
        return Complain(context, object.Text);
    if (!options.IsQuiet)
        PrintLine(context, Shown(context, object.Text) + "  Deleted");
    return ReturnOk;
}

// An object and, when it is a full drawer and that is wanted, first what is in it.
int DeleteTree(Context& context, const DeleteOptions& options, const Found& object) {
    const InDrawer current(object);
    if (Remove(object, options.IsForced)) {
        if (!options.IsQuiet)
            PrintLine(context, Shown(context, object.Text) + "  Deleted");
        return ReturnOk;
    }
    if (!options.IsAll || dos::IoErr() != dos::ErrorDirectoryNotEmpty)
        return Complain(context, object.Text);
    const int code = ForEachBelow(context, object, Order::DrawersLast,
                                  [&](const Found& inner) { return DeleteOne(context, options, inner); });
    return code != ReturnOk ? code : DeleteOne(context, options, object);
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
            const int one = DeleteTree(context, options, object);
            isAny = true;
            // Nothing to delete is a warning, so that a script goes on.
            const bool isMissing =
                one == ReturnError && !object.Data && dos::IoErr() == dos::ErrorObjectNotFound;
            code = std::max(code, isMissing ? ReturnWarn : one);
        }
    }
    if (isAny || code != ReturnOk)
        return code;
    PrintLine(context, "No file to delete");
    return ReturnWarn;
}

} // namespace commands
