// From the paths and patterns of a command line to objects, and on into their drawers. Patterns are those of
// dos, without regard to case, in any part of a path. Links are objects of their own and never walked into.
#pragma once

#include "platform/commands/Context.h"
#include "platform/dos/Examine.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace commands {

// An object to work on. Path counts from Drawer, or from the current drawer when that is empty; so a tree
// may be deeper than a path is long.
struct Found {
    dos::FileLock Drawer;
    std::string Path;
    std::string Text;                     // the path as the user would write it, for people
    std::optional<dos::ExamineData> Data; // not for a path that is no pattern; of a link itself
};

// Its path from the current drawer. Nothing with IoErr where that is too long.
[[nodiscard]] std::optional<std::string> FullPath(const Found& object);

// Makes the drawer of an object the current one while it lives.
class InDrawer {
public:
    explicit InDrawer(const Found& found);
    InDrawer(const InDrawer&) = delete;
    InDrawer& operator=(const InDrawer&) = delete;
    ~InDrawer();

private:
    dos::FileLock Before;
    bool IsSet;
};

struct Matches {
    std::vector<Found> Objects; // by name
    bool IsPattern = false;
    int Code = 0; // the worst return code of what was complained of on the way
};

// What an argument means. A path without wildcards stands for itself, whether it exists or not. A part that
// is the name of an object as it stands ("Notes (1)", "C#", even "#?"), in any case where the disk takes it
// in any, means that object alone, so that a line made of names never touches more than it names. Drawers
// that cannot be read are complained of and passed over.
[[nodiscard]] Matches Expand(Context& context, std::string_view argument);

// The objects of a drawer by name. What cannot be read is complained of and raises code; nothing when the
// drawer cannot be listed at all.
[[nodiscard]] std::optional<std::vector<dos::ExamineData>>
ReadDrawer(Context& context, const dos::FileLock& drawer, std::string_view text, int& code);

// What has become of an object.
struct Outcome {
    Outcome(int code, bool isLast = false) : Code(code), IsLast(isLast) {}
    int Code;
    bool IsLast; // nothing more is to be begun
};
// Complains of a change that failed with IoErr; the last one once the disk is full, gone or not to be
// written.
[[nodiscard]] Outcome FailedChange(Context& context, std::string_view about);

using Visit = std::function<Outcome(const Found& object)>;
enum class Depth { Objects, All }; // All: what is below a drawer as well
enum class Order { DrawersFirst, DrawersLast };
// Calls visit for every object that the argument means, with the drawer that holds it as the current one and
// a drawer before or behind what is in it; the worst return code. A link that is named itself counts as what
// it leads to. Ends early after a break and when visit says so. ReturnWarn and a message when there is no
// object.
int ForEach(Context& context, std::string_view argument, Depth depth, const Visit& visit,
            Order order = Order::DrawersFirst);

// Whether a path leads to a drawer; a link to one counts. Sets no error when it does not.
[[nodiscard]] bool IsDrawer(std::string_view path);

// The text of a path below another.
[[nodiscard]] std::string JoinText(std::string_view drawer, std::string_view name);

} // namespace commands
