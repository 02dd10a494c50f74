#include "platform/dos/CopyTree.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/HostCopy.h"
#include "platform/dos/HostFiles.h"
#include "platform/dos/HostNames.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/MetadataWriting.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/ObjectCopier.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/dos/TreeDrawer.h"
#include "platform/utility/Text.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unordered_set>

namespace dos {

namespace {

// Both sides of a drawer that is copied, open.
struct Sides {
    SharedFd From;
    SharedFd To;
};

struct Node {
    std::shared_ptr<Node> Parent;
    std::string Name; // of the source, for people
    Sides Open;       // the walk's; empty while its level is closed
    ObjectId FromId;
    ObjectId ToId;
    VolumeRef FromOn;
    VolumeRef ToOn;
    SidecarOutcome Sidecar;       // of the copy that is new
    bool IsNew = false;           // made by this copy
    bool HandsDownAccess = false; // of the copy
    bool IsInOrder = false;       // names that the target may not tell apart: one after another
    bool HasTwinDrawers = false;  // two of its drawers have such names, and may become one
    bool IsBelowTwins = false;    // it lies in such a drawer
    std::vector<TreeEntry> Drawers;
    std::size_t NextDrawer = 0;
    std::atomic<int> Users{1}; // the walk and the jobs
    std::atomic<int> Parts{1}; // that are not done: what is in itself, and the drawers in it

    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() { FreeUpwards(Parent); }
};
using NodeRef = std::shared_ptr<Node>;

// What the caller has to ask about.
struct Problem {
    NodeRef In;
    Sides Open;
    TreeEntry Entry;
    CopyEnd End;
    long Error;
};

struct IdHash {
    std::size_t operator()(const ObjectId& id) const noexcept {
        return std::hash<std::uint64_t>()(id.Inode) ^ (std::hash<std::uint64_t>()(id.Device) << 1);
    }
};

// Copied on the caller's thread, each copy remembered.
bool IsRemembered(const Node& node) {
    return node.IsInOrder || node.IsBelowTwins;
}

// For people: what the entry of a source is called.
std::string SourceName(const Node& node, const TreeEntry& entry) {
    return OwnNameOf(node.FromOn->Info.Metadata, entry.Name);
}

// What the host is to call the copy of an entry. Between volumes of one rule that stays as it is.
std::string TargetName(const Node& node, const TreeEntry& entry) {
    const MetadataRule rule = node.ToOn->Info.Metadata;
    return rule == node.FromOn->Info.Metadata ? entry.Name : HostNameFor(rule, SourceName(node, entry));
}

// Equal for names that a disk may not tell apart. The host folds on some disks and does not say so; some
// drop what stands at the end.
std::string TwinKey(std::string_view name) {
    const std::size_t last = name.find_last_not_of(". ");
    return utility::Fold(last == std::string_view::npos ? name : name.substr(0, last + 1));
}

// Finds names in a source that become one in the target, or may do so.
void FindTwins(const TreeContents& contents, Node& node) {
    std::unordered_set<std::string> seen;
    for (const TreeEntry& entry : contents.Drawers)
        node.HasTwinDrawers |= !seen.insert(TwinKey(SourceName(node, entry))).second;
    node.IsInOrder = node.HasTwinDrawers;
    for (const TreeEntry& entry : contents.Others)
        node.IsInOrder |= !seen.insert(TwinKey(SourceName(node, entry))).second;
}

enum class Look { AsNeeded, Always }; // for what has the name already

constexpr int MostTries = 10; // while another process makes and removes what has the name

bool Fails(long error) {
    SetIoErr(error);
    return false;
}

// Opens a file or a link of a drawer, if its bits let us; empty with IoErr.
HostFd OpenEntry(int drawer, const TreeEntry& entry) {
    if (entry.Kind == TreeKind::Other) {
        SetIoErr(ErrorObjectWrongType);
        return HostFd();
    }
    SidecarFile sidecar;
    if (entry.HasSidecar && entry.Kind == TreeKind::File && !LetsRead(drawer, entry.Name, sidecar))
        return HostFd();
    const int flags = entry.Kind == TreeKind::Link ? O_PATH : O_RDONLY | O_NONBLOCK | O_NOCTTY;
    HostFd object(Host().Openat(drawer, entry.Name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!object)
        Refuse(errno, Operation::Read);
    return object;
}

// Opens the drawer that a copy is to become one with; false with IoErr.
bool OpenMerged(const Node& in, const std::string& name, Node& node) {
    ObjectFacts facts;
    node.Open.To = OpenTreeDrawer(in.Open.To->Get(), name);
    if (!node.Open.To || !FactsOf(node.Open.To->Get(), facts))
        return Refuse(errno, Operation::Write);
    node.ToId = facts.Id;
    node.HandsDownAccess = HandsDownAccess(node.Open.To->Get());
    return true;
}

class TreeCopier {
public:
    TreeCopier(const TreeOptions& options, const TreeControl& control, TreeTally& tally)
        : Options(options),
          Tally(tally),
          Talk(control, Tally),
          Copiers{MakeCopier(Worker::Caller), MakeCopier(Worker::Helper)} {}

    TreeResult Run(const CopyPlan& plan);

private:
    ObjectCopier MakeCopier(Worker who);
    ObjectCopier& CopierOf(Worker who) { return Copiers[static_cast<std::size_t>(who)]; }

    bool Begin(const CopyPlan& plan);
    void Walk();
    void Enter(const NodeRef& in, const TreeEntry& entry);
    bool OpenCopy(const NodeRef& in, const TreeEntry& entry, Node& node);
    bool MakeCopy(const NodeRef& in, const TreeEntry& entry, const std::string& name, Node& node);
    ConflictReply AskMerge(const Node& in, const TreeEntry& entry, const std::string& existing,
                           const HostFd& there);
    void List(const NodeRef& node);
    void Leave();
    void PushJobs(const NodeRef& node, std::vector<TreeEntry>&& entries);
    void CopyEntries(const NodeRef& node, const Sides& open, std::span<const TreeEntry> entries, Worker who);
    void CopyEntry(const NodeRef& node, const Sides& open, const TreeEntry& entry, Worker who);
    bool FindPlace(const Node& node, const Sides& open, const HostFd& object, bool replaces, Look look,
                   Spot& there);
    CopyResult Try(const Node& node, const Sides& open, const TreeEntry& entry, const std::string& name,
                   bool replaces, ObjectCopier& copier);
    void Release(const NodeRef& node, const Sides& open, Worker who);
    void CountDrawers(Node& node);
    void Done(const Node& node, const std::string& name, bool isDrawer, unsigned lost);

    void Solve();
    void SolveOne(const Problem& problem);
    bool AskTrouble(const Problem& problem, TreeStep step, bool& isForced);
    ConflictReply AskConflict(const Problem& problem, const std::string& name);
    void Remember(const Node& node, const Sides& open, const std::string& name);
    void Unprotect(const Problem& problem, const std::string& name);
    std::string NameThere(const Node& node, int to, const std::string& name, HostFd& object);
    void Poll();

    TreeOptions Options;
    TreeTally& Tally;
    TreeTalk Talk;
    std::array<ObjectCopier, WorkerCount> Copiers;
    std::vector<NodeRef> Way; // from the top to where the walk is
    ObjectId Target;
    std::unordered_set<ObjectId, IdHash> Ours; // copies that a twin could meet; the caller's thread alone
    std::mutex Guard;                          // over the problems
    std::vector<Problem> Problems;
    std::atomic<bool> HasProblems{false};
    std::unique_ptr<TreeQueue> Queue;
};

ObjectCopier TreeCopier::MakeCopier(Worker who) {
    return ObjectCopier(Options.Copy, [this, who](std::uint64_t bytes) {
        Tally.Bytes += bytes;
        if (who == Worker::Caller)
            Talk.Poll();
        return !Tally.IsStopped;
    });
}

void TreeCopier::Poll() {
    Talk.Poll();
    if (HasProblems)
        Solve();
}

TreeResult TreeCopier::Run(const CopyPlan& plan) {
    if (Begin(plan)) {
        Queue = std::make_unique<TreeQueue>();
        Walk();
        // A problem that is solved can make no new job, but a new problem.
        do
            Queue->Drain([this] { Poll(); });
        while (HasProblems && (Solve(), HasProblems));
        Queue.reset();
        Talk.Poll();
    }
    return Tally.Result();
}

bool TreeCopier::Begin(const CopyPlan& plan) {
    auto top = std::make_shared<Node>();
    top->FromOn = plan.Source.On;
    top->ToOn = plan.Target.On;
    top->FromId = plan.Source.Facts.Id;
    top->IsNew = !plan.IsMerge;
    top->Open.From = std::make_shared<const HostFd>(OpenObject(plan.Source));
    if (!*top->Open.From) {
        Refuse(errno, Operation::Read);
        Tally.Skip(IoErr());
        return false;
    }
    const CopySource source{.Object = top->Open.From->Get(),
                            .Drawer = plan.Source.Drawer ? plan.Source.Drawer.Get() : NoDescriptor,
                            .On = plan.Source.On,
                            .Name = plan.Source.Name};
    HostFd made;
    if (plan.IsMerge) {
        made = OpenObject(plan.Target);
        if (!made)
            Refuse(errno, Operation::Write);
    } else {
        CopyPlace place{.Drawer = plan.Target.Drawer.Get(), .On = plan.Target.On, .Name = plan.Target.Name};
        place.HandsDownAccess = HandsDownAccess(place.Drawer);
        if (CopierOf(Worker::Caller).MakeDrawer(place, made))
            top->Sidecar = CopierOf(Worker::Caller).KeepSidecar(source, place, made.Get());
    }
    ObjectFacts facts;
    if (!made || !(FactsOf(made.Get(), facts) || Refuse(errno, Operation::Write))) {
        Tally.Skip(IoErr());
        return false;
    }
    top->HandsDownAccess = HandsDownAccess(made.Get());
    Target = top->ToId = facts.Id;
    top->Open.To = std::make_shared<const HostFd>(std::move(made));
    Way.push_back(top);
    return true;
}

void TreeCopier::Walk() {
    List(Way.back());
    while (!Way.empty()) {
        const NodeRef node = Way.back();
        Poll();
        if (!Tally.IsStopped && node->NextDrawer < node->Drawers.size())
            Enter(node, node->Drawers[node->NextDrawer++]);
        else
            Leave();
    }
}

// Goes back up; the level there may have been closed.
void TreeCopier::Leave() {
    const NodeRef node = std::move(Way.back());
    Way.pop_back();
    if (!Way.empty() && !Way.back()->Open.From) {
        Node& up = *Way.back();
        up.Open.From = OpenParent(node->Open.From->Get(), up.FromId);
        up.Open.To = up.Open.From ? OpenParent(node->Open.To->Get(), up.ToId) : nullptr;
        if (!up.Open.To) { // what is left up there cannot be reached any more
            Tally.Skip(ErrorObjectNotFound);
            Tally.IsStopped = true;
            Way.clear();
        }
    }
    Release(node, node->Open, Worker::Caller);
    node->Open = Sides();
}

void TreeCopier::Release(const NodeRef& node, const Sides& open, Worker who) {
    if (node->Users.fetch_sub(1) != 1)
        return;
    const CopySource source{.Object = open.From->Get()};
    if (node->IsNew)
        Tally.Lost |= node->Sidecar.After(CopierOf(who).FinishDrawer(source, open.To->Get()));
    CountDrawers(*node);
}

// Counts a drawer of which another part is done, and those above that wait for nothing else.
void TreeCopier::CountDrawers(Node& node) {
    for (Node* at = &node; at && at->Parts.fetch_sub(1) == 1; at = at->Parent.get())
        if (!Tally.IsStopped) // else something in it can be missing
            Done(*at, "", true, 0);
}

void TreeCopier::Done(const Node& node, const std::string& name, bool isDrawer, unsigned lost) {
    ++Tally.Objects;
    if (lost != 0)
        Tally.Lost |= lost;
    if (Talk.WantsNames())
        Talk.NoteFinished(TreePath(node, name), isDrawer);
}

void TreeCopier::Enter(const NodeRef& in, const TreeEntry& entry) {
    auto node = std::make_shared<Node>();
    node->Parent = in;
    node->Name = SourceName(*in, entry);
    node->FromOn = in->FromOn;
    node->ToOn = in->ToOn;
    node->IsBelowTwins = in->IsBelowTwins || in->HasTwinDrawers;
    bool isForced = false;
    while (!Tally.IsStopped) {
        node->Open.From = OpenTreeDrawer(in->Open.From->Get(), entry.Name);
        ObjectFacts facts;
        long error = 0;
        if (!node->Open.From || !FactsOf(node->Open.From->Get(), facts))
            error = ErrorFromErrno(errno, Operation::Read);
        else if (facts.Id == Target)
            error = ErrorObjectInUse;
        if (error == 0) {
            node->FromId = facts.Id;
            break;
        }
        if (!AskTrouble({in, in->Open, entry, CopyEnd::SourceRefused, error}, TreeStep::Examine, isForced))
            return;
    }
    if (Tally.IsStopped || !OpenCopy(in, entry, *node))
        return;
    ++in->Parts;
    if (Way.size() >= OpenLevels)
        Way[Way.size() - OpenLevels]->Open = Sides();
    Way.push_back(node);
    List(node);
}

// Makes the copy of a drawer or, where one is there, finds what is to become of both.
bool TreeCopier::OpenCopy(const NodeRef& in, const TreeEntry& entry, Node& node) {
    std::string name = TargetName(*in, entry);
    bool isForced = false;
    while (!Tally.IsStopped) {
        HostFd there;
        if (!in->IsNew || in->IsInOrder)
            name = NameThere(*in, in->Open.To->Get(), name, there);
        if (!there && MakeCopy(in, entry, name, node))
            return true;
        if (Tally.IsStopped)
            return false;
        long error = IoErr();
        if (!there && error == ErrorObjectExists)
            name = NameThere(*in, in->Open.To->Get(), name, there);
        if (there) {
            const ConflictReply reply = AskMerge(*in, entry, name, there);
            if (reply.Answer == ConflictAnswer::Rename) {
                name = HostNameFor(in->ToOn->Info.Metadata, reply.NewName);
                continue;
            }
            if (reply.Answer != ConflictAnswer::Replace) {
                Tally.Skip(ErrorObjectExists);
                return false;
            }
            if (OpenMerged(*in, name, node))
                return true;
            error = IoErr();
        }
        if (!AskTrouble({in, in->Open, entry, CopyEnd::TargetRefused, error}, TreeStep::MakeDrawer, isForced))
            return false;
    }
    return false;
}

// What is to become of a drawer and of what has its name: Replace makes two drawers one.
ConflictReply TreeCopier::AskMerge(const Node& in, const TreeEntry& entry, const std::string& existing,
                                   const HostFd& there) {
    ObjectFacts facts;
    const bool isDrawer = FactsOf(there.Get(), facts) && IsDrawerMode(facts.Mode);
    // Two drawers of the source that nobody took for twins are not made one unasked.
    const bool isUnknownTwin = in.IsNew && !in.IsInOrder;
    if (isDrawer && Options.MergesDrawers && !isUnknownTwin)
        return {ConflictAnswer::Replace};
    if (!Talk.AsksConflicts())
        return {};
    ConflictReply reply = Talk.Ask(TreeConflict{TreePath(in, SourceName(in, entry)),
                                                OwnNameOf(in.ToOn->Info.Metadata, existing), true, isDrawer});
    if (reply.Answer == ConflictAnswer::Replace && !isDrawer)
        reply.Answer = ConflictAnswer::Skip;
    return reply;
}

bool TreeCopier::MakeCopy(const NodeRef& in, const TreeEntry& entry, const std::string& name, Node& node) {
    ObjectCopier& copier = CopierOf(Worker::Caller);
    const CopySource source{.Object = node.Open.From->Get(),
                            .Drawer = in->Open.From->Get(),
                            .On = in->FromOn,
                            .Name = entry.Name,
                            .MayHaveSidecar = entry.HasSidecar};
    const CopyPlace place{.Drawer = in->Open.To->Get(),
                          .On = in->ToOn,
                          .Name = name,
                          .HandsDownAccess = in->HandsDownAccess,
                          .IsNew = in->IsNew && !in->IsInOrder,
                          .MayHaveSidecar = !in->IsNew};
    HostFd made;
    ObjectFacts facts;
    if (!copier.MakeDrawer(place, made))
        return false;
    if (!FactsOf(made.Get(), facts))
        return Refuse(errno, Operation::Write);
    node.Sidecar = copier.KeepSidecar(source, place, made.Get());
    node.IsNew = true;
    node.ToId = facts.Id;
    node.HandsDownAccess = in->HandsDownAccess && !Options.Copy.Protection;
    node.Open.To = std::make_shared<const HostFd>(std::move(made));
    return true;
}

void TreeCopier::List(const NodeRef& node) {
    TreeContents contents;
    bool isForced = false;
    while (!ReadTreeDrawer(node->Open.From->Get(), Temporaries::LeftOut, contents)) {
        const long error = ErrorFromErrno(errno, Operation::Read);
        contents = TreeContents();
        if (!AskTrouble({node, node->Open, {"", TreeKind::Drawer}, CopyEnd::SourceRefused, error},
                        TreeStep::Examine, isForced))
            return;
        if (Host().Lseek(node->Open.From->Get(), 0, SEEK_SET) < 0)
            return Tally.Skip(error);
    }
    FindTwins(contents, *node);
    node->Drawers = std::move(contents.Drawers);
    if (IsRemembered(*node))
        CopyEntries(node, node->Open, contents.Others, Worker::Caller);
    else
        PushJobs(node, std::move(contents.Others));
}

void TreeCopier::PushJobs(const NodeRef& node, std::vector<TreeEntry>&& entries) {
    const auto shared = std::make_shared<const std::vector<TreeEntry>>(std::move(entries));
    const std::size_t share = ShareOf(shared->size());
    for (std::size_t at = 0; at < shared->size(); at += share) {
        ++node->Users;
        Queue->Push([this, node, shared, at, share, open = node->Open](Worker who) {
            const std::size_t count = std::min(share, shared->size() - at);
            CopyEntries(node, open, std::span(*shared).subspan(at, count), who);
            Release(node, open, who);
        });
    }
}

void TreeCopier::CopyEntries(const NodeRef& node, const Sides& open, std::span<const TreeEntry> entries,
                             Worker who) {
    for (const TreeEntry& entry : entries) {
        if (Tally.IsStopped)
            return;
        CopyEntry(node, open, entry, who);
        if (who == Worker::Caller)
            Talk.Poll();
    }
}

void TreeCopier::CopyEntry(const NodeRef& node, const Sides& open, const TreeEntry& entry, Worker who) {
    const bool replaces = Options.Copy.Replaces && !Talk.AsksConflicts();
    const std::string name = TargetName(*node, entry);
    const CopyResult result = Try(*node, open, entry, name, replaces, CopierOf(who));
    if (result) {
        Remember(*node, open, name);
        Done(*node, SourceName(*node, entry), false, result.Lost);
        return;
    }
    if (result.End == CopyEnd::Cancelled)
        return;
    const long error = IoErr();
    ++node->Users; // the drawer is not finished before it is solved
    const std::lock_guard hold(Guard);
    Problems.push_back({node, open, entry, result.End, error});
    HasProblems = true;
}

// The name that an entry of the target has, and what it is; the name as given when there is none.
std::string TreeCopier::NameThere(const Node& node, int to, const std::string& name, HostFd& object) {
    const MetadataRule rule = node.ToOn->Info.Metadata;
    const auto look = [&](const std::string& as) {
        object = HostFd(Host().Openat(to, as.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
        return static_cast<bool>(object);
    };
    const auto isSidecar = [&](const std::string& as) {
        return rule == MetadataRule::Uaem && IsSidecarInUse(to, as);
    };
    // An object of a name like that of another one's sidecar has it as an escape.
    if (isSidecar(name))
        return NameThere(node, to, HostNameFor(rule, OwnNameOf(rule, name)), object);
    if (look(name) || errno != ENOENT)
        return name;
    // One that was given without an escape is meant too, unless the source has it for itself.
    std::string own = OwnNameOf(rule, name);
    if (own != name && !node.IsInOrder && !IsEscape(own) && !isSidecar(own) && look(own))
        return own;
    if (node.ToOn->Info.Names != NameRule::Fold)
        return name;
    // Entries that are kept apart are told apart by what the host calls them, so "a*" is not "a%2a".
    const auto real = node.IsInOrder ? FindRealName(to, name, NameMatch::Folded, MetadataRule::Xattr)
                                     : FindRealName(to, own, NameMatch::Folded, rule);
    return real && !isSidecar(*real) && look(*real) ? *real : name;
}

// What has the name of a copy already, and whether it may go; false with IoErr.
bool TreeCopier::FindPlace(const Node& node, const Sides& open, const HostFd& object, bool replaces,
                           Look look, Spot& there) {
    if (!node.IsNew || node.IsInOrder || look == Look::Always)
        there.Name = NameThere(node, open.To->Get(), there.Name, there.Object);
    if (!there.Object)
        return true;
    if (!replaces)
        return Fails(ErrorObjectExists);
    ObjectFacts facts;
    there.Drawer = HostFd(Host().Duplicate(open.To->Get()));
    there.On = node.ToOn;
    if (!there.Drawer || !FactsOf(there.Object.Get(), there.Facts) || !FactsOf(object.Get(), facts))
        return Refuse(errno, Operation::Write);
    if (facts.Id == there.Facts.Id)
        return Fails(ErrorObjectInUse);
    // In a drawer that this work has made nothing is older than it.
    if (node.IsNew || (IsRemembered(node) && Ours.contains(there.Facts.Id)))
        return Fails(ErrorObjectExists);
    return IsLinkMode(there.Facts.Mode) || IsReplaceable(there);
}

CopyResult TreeCopier::Try(const Node& node, const Sides& open, const TreeEntry& entry,
                           const std::string& name, bool replaces, ObjectCopier& copier) {
    for (int i = 1;; ++i) {
        const HostFd object = OpenEntry(open.From->Get(), entry);
        if (!object)
            return {CopyEnd::SourceRefused, 0};
        Spot there;
        there.Name = name;
        if (!FindPlace(node, open, object, replaces, i == 1 ? Look::AsNeeded : Look::Always, there))
            return {CopyEnd::TargetRefused, 0};
        const CopySource source{.Object = object.Get(),
                                .Drawer = open.From->Get(),
                                .On = node.FromOn,
                                .Name = entry.Name,
                                .MayHaveSidecar = entry.HasSidecar};
        const CopyPlace place{.Drawer = open.To->Get(),
                              .On = node.ToOn,
                              .Name = there.Name,
                              .Old = there.Object ? there.Object.Get() : NoDescriptor,
                              .HandsDownAccess = node.HandsDownAccess,
                              .IsNew = node.IsNew && !node.IsInOrder,
                              .MayHaveSidecar = !node.IsNew};
        const CopyResult result =
            entry.Kind == TreeKind::Link ? copier.CopyLink(source, place) : copier.CopyFile(source, place);
        // Somebody made one of that name meanwhile; or it is a twin, where the host itself folds.
        if (!replaces || i == MostTries || result.End != CopyEnd::TargetRefused ||
            IoErr() != ErrorObjectExists)
            return result;
    }
}

void TreeCopier::Solve() {
    std::vector<Problem> problems;
    {
        const std::lock_guard hold(Guard);
        problems.swap(Problems);
        HasProblems = false;
    }
    for (const Problem& problem : problems) {
        if (!Tally.IsStopped)
            SolveOne(problem);
        Release(problem.In, problem.Open, Worker::Caller);
    }
}

// Asks until the entry is copied or given up.
void TreeCopier::SolveOne(const Problem& first) {
    Problem problem = first;
    std::string name = TargetName(*problem.In, problem.Entry);
    bool replaces = Options.Copy.Replaces && !Talk.AsksConflicts();
    bool isForced = false;
    while (!Tally.IsStopped) {
        const bool isConflict = problem.End == CopyEnd::TargetRefused && problem.Error == ErrorObjectExists;
        if (isConflict && Talk.AsksConflicts() && !replaces) {
            const ConflictReply reply = AskConflict(problem, name);
            if (reply.Answer == ConflictAnswer::Skip || reply.Answer == ConflictAnswer::Abort) {
                Tally.Skip(ErrorObjectExists);
                return;
            }
            replaces = reply.Answer == ConflictAnswer::Replace;
            if (!replaces)
                name = HostNameFor(problem.In->ToOn->Info.Metadata, reply.NewName);
        } else if (!AskTrouble(problem, TreeStep::Copy, isForced)) {
            return;
        } else if (isForced && problem.End == CopyEnd::TargetRefused) {
            Unprotect(problem, name);
        }
        const CopyResult result =
            Try(*problem.In, problem.Open, problem.Entry, name, replaces, CopierOf(Worker::Caller));
        if (result) {
            Remember(*problem.In, problem.Open, name);
            Done(*problem.In, SourceName(*problem.In, problem.Entry), false, result.Lost);
            return;
        }
        problem.End = result.End;
        problem.Error = IoErr();
    }
}

ConflictReply TreeCopier::AskConflict(const Problem& problem, const std::string& name) {
    HostFd there;
    ObjectFacts facts;
    const std::string existing = NameThere(*problem.In, problem.Open.To->Get(), name, there);
    const bool isDrawer = there && FactsOf(there.Get(), facts) && IsDrawerMode(facts.Mode);
    return Talk.Ask(TreeConflict{TreePath(*problem.In, SourceName(*problem.In, problem.Entry)),
                                 OwnNameOf(problem.In->ToOn->Info.Metadata, existing), false, isDrawer});
}

// What this work made is never replaced by a twin of its source: that would be a source without a copy.
void TreeCopier::Remember(const Node& node, const Sides& open, const std::string& name) {
    HostFd made;
    ObjectFacts facts;
    if (!IsRemembered(node))
        return;
    static_cast<void>(NameThere(node, open.To->Get(), name, made));
    if (made && FactsOf(made.Get(), facts))
        Ours.insert(facts.Id);
}

// True to try again. What was forced once is not forced a second time.
bool TreeCopier::AskTrouble(const Problem& problem, TreeStep step, bool& isForced) {
    const bool isDrawer = problem.Entry.Kind == TreeKind::Drawer;
    const TroubleAnswer answer =
        Talk.Ask(TreeTrouble{TreePath(*problem.In, SourceName(*problem.In, problem.Entry)), step,
                             problem.Error, problem.End, isDrawer});
    if (answer == TroubleAnswer::Retry)
        return true;
    if (answer == TroubleAnswer::Force && !isForced) {
        isForced = true;
        return true;
    }
    Tally.Skip(problem.Error);
    return false;
}

void TreeCopier::Unprotect(const Problem& problem, const std::string& name) {
    Spot spot;
    spot.On = problem.In->ToOn;
    spot.Drawer = HostFd(Host().Duplicate(problem.Open.To->Get()));
    spot.Name = NameThere(*problem.In, problem.Open.To->Get(), name, spot.Object);
    if (spot.Drawer && spot.Object && FactsOf(spot.Object.Get(), spot.Facts) &&
        !IsLinkMode(spot.Facts.Mode) && !Tally.IsStopped)
        static_cast<void>(ChangeStored(spot, {.Protection = 0}));
}

TreeResult Refusal() {
    TreeResult result;
    result.FirstError = IoErr();
    result.Skipped = 1;
    return result;
}

TreeResult CopySingle(std::string_view from, std::string_view to, const TreeOptions& options,
                      const TreeControl& control) {
    TreeResult result;
    CopyOptions single = options.Copy;
    single.Moves = single.FollowsLink = false;
    const CopyResult copied = Copy(from, to, single, [&](std::uint64_t bytes) {
        result.Done.Bytes += bytes;
        return !control.Progress || control.Progress(result.Done);
    });
    result.Lost = copied.Lost;
    result.IsWhole = static_cast<bool>(copied);
    result.IsCancelled = copied.End == CopyEnd::Cancelled;
    result.Done.Objects = copied ? 1 : 0;
    result.Skipped = copied ? 0 : 1;
    result.FirstError = copied ? 0 : IoErr();
    return result;
}

using PlanRef = std::shared_ptr<CopyPlan>;

PlanRef PlanBetween(const DeviceWalk& source, const DeviceWalk& target) {
    if (&source.Owner() != &HostHandler || &target.Owner() != &HostHandler) {
        SetIoErr(ErrorActionNotKnown);
        return nullptr;
    }
    const HostLockRef from = AsHostLock(source.Start());
    const HostLockRef to = AsHostLock(target.Start());
    if (!IsMounted(*from) || !IsMounted(*to))
        return nullptr;
    PlanRef plan = OnHost<PlanRef>(
        to->SlowMount.empty() ? from : to,
        [from, rest = std::string(source.Rest()), to, toRest = std::string(target.Rest())](WalkMode& mode) {
            return std::make_shared<CopyPlan>(
                PlanCopy(*from, rest, *to, toRest, {.Replaces = true}, DrawerThere::Merged, mode));
        });
    return plan && plan->End == CopyEnd::Done ? plan : nullptr;
}

} // namespace

TreeResult CopyTree(std::string_view from, std::string_view to, const TreeOptions& options,
                    const TreeControl& control) {
    const PlanRef plan = AtEachPlaceToChange(from, [&](const DeviceWalk& source) {
        return AtEachPlaceToChange(to, [&](const DeviceWalk& target) { return PlanBetween(source, target); });
    });
    if (!plan && IoErr() != ErrorActionNotKnown)
        return Refusal();
    if (!plan || !IsDrawerMode(plan->Source.Facts.Mode))
        return CopySingle(from, to, options, control);
    const Disks disks = MayHang(plan->Source) || MayHang(plan->Target) ? Disks::MayHang : Disks::Answer;
    const TreeResult result =
        RunTree(disks, TreeStep::Copy, control, [plan, options](const TreeControl& talk, TreeTally& tally) {
            return TreeCopier(options, talk, tally).Run(*plan);
        });
    SetIoErr(result.IsCancelled ? ErrorBreak : result.FirstError);
    return result;
}

} // namespace dos
