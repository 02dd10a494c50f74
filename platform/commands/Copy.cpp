// Copy: files, what a pattern means, and with ALL whole drawers. A link that is named itself is copied as
// what it leads to, one that is come across as a link. Files that are there are replaced. What fails is told
// and the rest goes on, but nothing more is begun once a disk is full, gone or not to be written. BUF and
// NOREQ are taken from old scripts and mean nothing here.
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Paths.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace commands {

namespace {

std::string LostText(unsigned lost) {
    constexpr std::pair<unsigned, std::string_view> rows[] = {
        {dos::LostProtection, "protection"}, {dos::LostComment, "filenote"},   {dos::LostDate, "date"},
        {dos::LostAttributes, "attributes"}, {dos::LostAccess, "access list"},
    };
    std::string text;
    for (const auto& [bit, name] : rows)
        if ((lost & bit) != 0)
            text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

// One copy command under way.
class CopyRun {
public:
    CopyRun(Context& context, const dos::ArgResults& arguments)
        : Where(context),
          To(*arguments.Text("TO")),
          IsAll(arguments.Flag("ALL")),
          IsQuiet(arguments.Flag("QUIET")) {
        const bool isClone = arguments.Flag("CLONE");
        Options.Date = isClone || arguments.Flag("DATES");
        Options.Comment = isClone || arguments.Flag("COM");
        Options.Protection = isClone || !arguments.Flag("NOPRO");
        Options.Replaces = true;
    }

    int Run(const std::vector<std::string>& from) {
        for (const std::string& path : from) {
            if (IsStopped(Where))
                return std::max(Code, Complain(Where));
            Matches matches = Expand(Where, path);
            Raise(matches.Code);
            if (matches.Objects.empty() && matches.Code == ReturnOk) {
                ComplainWith(Where, path, "no object matches");
                Raise(ReturnWarn);
            }
            if ((matches.IsPattern || from.size() > 1) && !matches.Objects.empty() && !MakeTarget())
                return ReturnFail;
            for (const Found& object : matches.Objects)
                if (!CopyObject(object, from.size() > 1))
                    return IsOver ? Finish() : std::max(Code, Complain(Where));
        }
        return Finish();
    }

private:
    void Raise(int code) { Code = std::max(Code, code); }

    int Finish() {
        if (Lost != 0) {
            ComplainWith(Where, To, "cannot keep: " + LostText(Lost));
            Raise(ReturnWarn);
        }
        return Code;
    }

    // Makes TO a drawer for several objects.
    bool MakeTarget() {
        if (IsDrawer(To) || dos::CreateDir(To))
            return true;
        Complain(Where, To);
        return false;
    }

    // An object that was named or that matches; false after a break and when it is over.
    bool CopyObject(const Found& object, bool isOneOfMany) {
        const auto from = FullPath(object);
        if (!from)
            return Trouble(object.Text);
        const bool isDrawer = object.Data ? object.Data->Type == dos::TypeDrawer : IsDrawer(*from);
        const std::string_view path = *from;
        const std::string_view name =
            dos::FilePart(path.substr(0, path.size() - (path.ends_with('/') ? 1 : 0)));
        const bool isInto = object.Data || isOneOfMany;
        if (!isDrawer)
            return CopyFile(*from, object.Text, IsDrawer(To) ? JoinText(To, name) : To, !object.Data);
        if (IsAll)
            return CopyAll(*from, object.Text, isInto ? JoinText(To, name) : To);
        // Without ALL a drawer gives its files, one that a pattern means nothing.
        return object.Data || CopyFiles(*from, object.Text);
    }

    bool CopyFiles(const std::string& drawer, const std::string& text) {
        const dos::FileLock lock = dos::Lock(drawer);
        const auto objects = lock ? ReadDrawer(Where, lock, text, Code) : std::nullopt;
        if (!objects || !MakeTarget())
            return lock ? Raise(ReturnError), true : Trouble(text);
        return std::all_of(objects->begin(), objects->end(), [&](const dos::ExamineData& data) {
            return data.Type == dos::TypeDrawer ||
                   CopyFile(JoinText(drawer, data.Name), JoinText(text, data.Name), JoinText(To, data.Name),
                            false);
        });
    }

    bool CopyFile(const std::string& from, const std::string& text, const std::string& to, bool followsLink) {
        dos::CopyOptions options = Options;
        options.FollowsLink = followsLink;
        options.Replaces = !IsCopyOfTwin(to);
        const dos::CopyResult result =
            dos::Copy(from, to, options, [this](std::uint64_t) { return !IsStopped(Where); });
        Lost |= result.Lost;
        if (!result)
            return Trouble(result.End == dos::CopyEnd::TargetRefused ? to : text);
        Copied.try_emplace(utility::Fold(to), to);
        Tell(text, false);
        return !IsStopped(Where);
    }

    bool CopyAll(const std::string& from, const std::string& text, const std::string& to) {
        dos::TreeControl control;
        control.Progress = [this](const dos::TreeProgress&) { return !IsStopped(Where); };
        control.Finished = [&](const std::string& path, bool isDrawer) {
            Tell(path.empty() ? text : JoinText(text, path), isDrawer);
        };
        control.Trouble = [&](const dos::TreeTrouble& trouble) {
            dos::SetIoErr(trouble.Error);
            Raise(Complain(Where, trouble.Path.empty() ? text : JoinText(text, trouble.Path)));
            IsOver = IsOver || ConcernsDisk(trouble.Error);
            return IsOver ? dos::TroubleAnswer::Abort : dos::TroubleAnswer::Skip;
        };
        control.Conflict = [&](const dos::TreeConflict& conflict) {
            if (!conflict.IsDrawer && !conflict.IsDrawerThere)
                return dos::ConflictReply{dos::ConflictAnswer::Replace, {}};
            dos::SetIoErr(dos::ErrorObjectExists);
            Raise(Complain(Where, JoinText(text, conflict.Path)));
            return dos::ConflictReply{dos::ConflictAnswer::Skip, {}};
        };
        const int before = std::exchange(Code, ReturnOk);
        const dos::TreeResult result = dos::CopyTree(from, to, {.Copy = Options}, control);
        Lost |= result.Lost;
        if (IsStopped(Where))
            return false;
        if (!result && Code == ReturnOk) { // refused as a whole
            dos::SetIoErr(result.FirstError);
            Raise(Complain(Where, text));
        }
        Raise(before);
        return !IsOver;
    }

    // Where names fold, two sources that differ in case alone have one target; the copy of the first is not
    // given up for the second.
    bool IsCopyOfTwin(const std::string& to) {
        const auto twin = Copied.find(utility::Fold(to));
        return twin != Copied.end() && twin->second != to &&
               dos::SameLock(dos::Lock(twin->second), dos::Lock(to));
    }

    // After a failure with IoErr: false when it was a break or it is over.
    bool Trouble(const std::string& text) {
        if (dos::IoErr() == dos::ErrorBreak)
            return false;
        IsOver = IsOver || ConcernsDisk(dos::IoErr());
        Raise(Complain(Where, text));
        return !IsOver;
    }

    void Tell(const std::string& text, bool isDrawer) {
        if (!IsQuiet)
            PrintLine(Where, "   " + Shown(Where, text) + (isDrawer ? "     [created]" : "..copied"));
    }

    Context& Where;
    std::string To;
    dos::CopyOptions Options;
    bool IsAll, IsQuiet;
    bool IsOver = false;                       // the disk takes no more
    std::map<std::string, std::string> Copied; // paths of copies so far, by their folded forms
    unsigned Lost = 0;
    int Code = ReturnOk;
};

} // namespace

int RunCopy(Context& context, const dos::ArgResults& arguments) {
    std::vector<std::string> from = arguments.Multi("FROM");
    if (from.empty()) // the current drawer
        from.emplace_back();
    return CopyRun(context, arguments).Run(from);
}

} // namespace commands
