#include "platform/dos/CopyTree.h"
#include "platform/dos/DeviceWalk.h"
#include "platform/dos/Examine.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostWatch.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/Metadata.h"
#include "platform/dos/MetadataWriting.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/dos/TreeDrawer.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <span>
#include <sys/stat.h>
#include <utility>

namespace dos {

namespace {

// A drawer that is emptied. What is not atomic belongs to the caller's thread.
struct Node {
    std::shared_ptr<Node> Parent;
    std::string Name; // for people; empty for the top
    TreeEntry Entry;  // in the parent
    SharedFd Open;    // empty while its level is closed
    ObjectId Id;
    Attributes Kept = Attributes::Asked;
    std::optional<unsigned> Lent; // the modes to go back to where it stays
    std::vector<TreeEntry> Drawers;
    std::size_t NextDrawer = 0;
    bool IsSettled = false;
    std::size_t Children = 0;        // drawers in it that were entered and are not done with
    std::atomic<int> Users{1};       // the walk, the jobs, the problems
    std::atomic<bool> IsKept{false}; // something in it stays

    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() { FreeUpwards(Parent); }
};
using NodeRef = std::shared_ptr<Node>;

struct Problem {
    NodeRef In;
    SharedFd Open;
    TreeEntry Entry;
    long Error;
};

// Of what has to be lent its owner's permission to read before the host tells an attribute.
long ProtectionOfUnreadable(int drawer, const TreeEntry& entry) {
    Spot spot;
    StoredMetadata stored;
    spot.Object = HostFd(Host().Openat(drawer, entry.Name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!spot.Object || !FactsOf(spot.Object.Get(), spot.Facts) || !ReadStored(spot, stored))
        return ErrorFromErrno(errno, Operation::Delete);
    return (stored.Bits & ProtectDelete) != 0 ? ErrorDeleteProtected : 0;
}

class TreeDeleter {
public:
    TreeDeleter(Protected rule, const TreeControl& control, TreeTally& tally)
        : Rule(rule), Tally(tally), Talk(control, Tally) {}

    TreeResult Run(const Spot& spot);

private:
    void Walk(const NodeRef& above, const TreeEntry& entry);
    void Enter(const NodeRef& in, const TreeEntry& entry);
    long OpenNode(const NodeRef& in, const TreeEntry& entry, Node& node, bool isForced);
    void List(const NodeRef& node);
    void Leave();
    void PushJobs(const NodeRef& node, std::vector<TreeEntry>&& entries);
    void DeleteEntries(const NodeRef& node, const SharedFd& open, std::span<const TreeEntry> entries);
    long DeleteEntry(const Node& node, int drawer, const TreeEntry& entry, bool isForced);
    long ProtectionOf(const Node& node, int drawer, const TreeEntry& entry) const;
    void NoteProblem(const NodeRef& node, const SharedFd& open, const TreeEntry& entry, long error);
    void Release(const NodeRef& node);
    void Settle(NodeRef node);
    void RemoveDrawer(Node& node);
    static void TakeBack(Node& node);
    void Done(const Node& node, const std::string& name, bool isDrawer);

    void Poll();
    void SolveOne(const Problem& problem);
    bool AskTrouble(const std::string& path, bool isDrawer, TreeStep step, long error, bool& isForced);
    std::string PathOf(const Node& node, const std::string& name) const {
        return node.Parent ? TreePath(node, OwnNameOf(Names, name)) : std::string();
    }

    Protected Rule;
    MetadataRule Names = MetadataRule::Xattr; // of the volume
    TreeTally& Tally;
    TreeTalk Talk;
    std::vector<NodeRef> Way;
    std::mutex Guard; // over the next two
    std::vector<Problem> Problems;
    std::vector<NodeRef> Ready; // whose last job is done
    std::atomic<bool> HasNews{false};
    std::unique_ptr<TreeQueue> Queue;
};

TreeResult TreeDeleter::Run(const Spot& spot) {
    Names = spot.On->Info.Metadata;
    auto above = std::make_shared<Node>();
    above->Open = std::make_shared<const HostFd>(DuplicateFd(spot.Drawer));
    TreeEntry entry{spot.Name, TreeKind::File, false};
    entry.Kind = IsDrawerMode(spot.Facts.Mode) ? TreeKind::Drawer
                 : IsLinkMode(spot.Facts.Mode) ? TreeKind::Link
                                               : TreeKind::File;
    SidecarFile sidecar;
    ObjectFacts facts;
    if (!*above->Open || !FindSidecar(spot.Drawer.Get(), spot.Name, sidecar) ||
        !FactsOf(spot.Drawer.Get(), facts)) {
        Refuse(errno, Operation::Delete);
        Tally.Skip(IoErr());
        return Tally.Result();
    }
    above->Id = facts.Id;
    above->Lent = LendForRemoval(above->Open->Get());
    entry.HasSidecar = sidecar.State == SidecarState::Ours;
    sidecar = SidecarFile();
    Queue = std::make_unique<TreeQueue>();
    Walk(above, entry);
    do
        Queue->Drain([this] { Poll(); });
    while (HasNews && (Poll(), true));
    Queue.reset();
    TakeBack(*above);
    Talk.Poll();
    return Tally.Result();
}

void TreeDeleter::Walk(const NodeRef& above, const TreeEntry& entry) {
    if (entry.Kind != TreeKind::Drawer) {
        DeleteEntries(above, above->Open, std::span(&entry, 1));
        Poll();
        return;
    }
    Enter(above, entry);
    while (!Way.empty()) {
        const NodeRef node = Way.back();
        Poll();
        if (!Tally.IsStopped && node->NextDrawer < node->Drawers.size())
            Enter(node, node->Drawers[node->NextDrawer++]);
        else
            Leave();
    }
}

// 0, or the reason why the drawer is not to be entered.
long TreeDeleter::OpenNode(const NodeRef& in, const TreeEntry& entry, Node& node, bool isForced) {
    if (Rule == Protected::Respected && !isForced)
        if (const long error = ProtectionOf(*in, in->Open->Get(), entry))
            return error;
    node.Open = OpenTreeDrawer(in->Open->Get(), entry.Name);
    struct statx raw {};
    ObjectFacts facts;
    if (!node.Open || !FactsOf(node.Open->Get(), facts) ||
        Host().Statx(node.Open->Get(), "", AT_EMPTY_PATH, STATX_TYPE, &raw) != 0)
        return ErrorFromErrno(errno, Operation::Read);
    // Another disk is in use there; its contents are none of this drawer's.
    if ((raw.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0)
        return ErrorObjectInUse;
    node.Id = facts.Id;
    node.Kept = Rule == Protected::Respected ? AttributesOf(node.Open->Get()) : Attributes::None;
    node.Lent = LendForRemoval(node.Open->Get());
    return 0;
}

void TreeDeleter::Enter(const NodeRef& in, const TreeEntry& entry) {
    auto node = std::make_shared<Node>();
    node->Parent = in;
    node->Entry = entry;
    node->Name = in->Parent ? OwnNameOf(Names, entry.Name) : std::string();
    bool isForced = false;
    while (const long error = OpenNode(in, entry, *node, isForced)) {
        // One that is empty goes even where it cannot be looked into.
        if (error != ErrorDeleteProtected && error != ErrorObjectInUse && !Tally.IsStopped &&
            Host().Unlinkat(in->Open->Get(), entry.Name.c_str(), AT_REMOVEDIR) == 0) {
            ForgetDrawer(in->Id);
            return Done(*node, "", true);
        }
        if (!AskTrouble(PathOf(*in, entry.Name), true, TreeStep::Examine, error, isForced)) {
            in->IsKept = true;
            return;
        }
    }
    ++in->Children;
    if (Way.size() >= OpenLevels)
        Way[Way.size() - OpenLevels]->Open = nullptr;
    Way.push_back(node);
    List(node);
}

void TreeDeleter::List(const NodeRef& node) {
    TreeContents contents;
    bool isForced = false;
    while (!ReadTreeDrawer(node->Open->Get(), Temporaries::Listed, contents)) {
        const long error = ErrorFromErrno(errno, Operation::Read);
        contents = TreeContents();
        node->IsKept = true;
        if (!AskTrouble(PathOf(*node, ""), true, TreeStep::Examine, error, isForced))
            return;
        if (Host().Lseek(node->Open->Get(), 0, SEEK_SET) < 0)
            return Tally.Skip(error);
        node->IsKept = false;
    }
    node->Drawers = std::move(contents.Drawers);
    PushJobs(node, std::move(contents.Others));
}

void TreeDeleter::PushJobs(const NodeRef& node, std::vector<TreeEntry>&& entries) {
    const auto shared = std::make_shared<const std::vector<TreeEntry>>(std::move(entries));
    const std::size_t share = ShareOf(shared->size());
    for (std::size_t at = 0; at < shared->size(); at += share) {
        ++node->Users;
        Queue->Push([this, node, shared, at, share, open = node->Open](Worker who) {
            const std::size_t count = std::min(share, shared->size() - at);
            DeleteEntries(node, open, std::span(*shared).subspan(at, count));
            Release(node);
            if (who == Worker::Caller)
                Talk.Poll();
        });
    }
}

void TreeDeleter::DeleteEntries(const NodeRef& node, const SharedFd& open,
                                std::span<const TreeEntry> entries) {
    for (const TreeEntry& entry : entries) {
        if (Tally.IsStopped) {
            node->IsKept = true;
            break;
        }
        if (const long error = DeleteEntry(*node, open->Get(), entry, false))
            NoteProblem(node, open, entry, error);
    }
    ForgetDrawer(node->Id);
}

void TreeDeleter::NoteProblem(const NodeRef& node, const SharedFd& open, const TreeEntry& entry, long error) {
    ++node->Users;
    const std::lock_guard hold(Guard);
    Problems.push_back({node, open, entry, error});
    HasNews = true;
}

// 222 for what is protected, 0 for what is not, else why that cannot be told.
long TreeDeleter::ProtectionOf(const Node& node, int drawer, const TreeEntry& entry) const {
    if (entry.HasSidecar) {
        SidecarFile sidecar;
        if (!FindSidecar(drawer, entry.Name, sidecar))
            return ErrorFromErrno(errno, Operation::Delete);
        if (sidecar.State == SidecarState::Ours)
            return (*sidecar.Facts.Protection & ProtectDelete) != 0 ? ErrorDeleteProtected : 0;
    }
    if (node.Kept == Attributes::None || (entry.Kind != TreeKind::File && entry.Kind != TreeKind::Drawer))
        return 0;
    std::array<char, 9> letters{};
    const long length =
        Host().Getxattr(drawer, entry.Name.c_str(), ProtectionAttribute, letters.data(), letters.size());
    if (length < 0 && errno == EACCES)
        return ProtectionOfUnreadable(drawer, entry);
    if (length < 0)
        return errno == ENODATA || errno == ENOTSUP || errno == ENOENT || errno == ERANGE
                   ? 0
                   : ErrorFromErrno(errno, Operation::Delete);
    const auto bits = length < 8 ? std::nullopt : ProtectionFromLetters({letters.data(), 8});
    return bits && (*bits & ProtectDelete) != 0 ? ErrorDeleteProtected : 0;
}

// 0, or the reason why it stays.
long TreeDeleter::DeleteEntry(const Node& node, int drawer, const TreeEntry& entry, bool isForced) {
    if (Rule == Protected::Respected && !isForced)
        if (const long error = ProtectionOf(node, drawer, entry))
            return error;
    if (Tally.IsStopped) // the disk may have taken long to answer
        return ErrorBreak;
    if (Host().Unlinkat(drawer, entry.Name.c_str(), 0) != 0 && errno != ENOENT)
        return ErrorFromErrno(errno, Operation::Delete);
    // A cancel does not part an object from its sidecar.
    if (!IsAwaited())
        return ErrorBreak;
    if (entry.HasSidecar && Host().Unlinkat(drawer, SidecarNameOf(entry.Name).c_str(), 0) != 0 &&
        errno != ENOENT)
        return ErrorFromErrno(errno, Operation::Delete);
    Done(node, entry.Name, false);
    return 0;
}

void TreeDeleter::Done(const Node& node, const std::string& name, bool isDrawer) {
    ++Tally.Objects;
    if (Talk.WantsNames())
        Talk.NoteFinished(PathOf(node, name), isDrawer);
}

void TreeDeleter::Leave() {
    const NodeRef node = std::move(Way.back());
    Way.pop_back();
    if (!Way.empty() && !Way.back()->Open)
        Way.back()->Open = OpenParent(node->Open->Get(), Way.back()->Id);
    const bool isLost = !Way.empty() && !Way.back()->Open;
    if (isLost || node->NextDrawer < node->Drawers.size())
        node->IsKept = true;
    if (isLost) { // the tree was moved meanwhile
        Tally.Skip(ErrorObjectNotFound);
        Tally.IsStopped = true;
        Way.clear();
    }
    // A drawer in it that is done later opens this one again.
    if (node->Children > 0)
        node->Open = nullptr;
    Release(node);
    Poll();
}

void TreeDeleter::Release(const NodeRef& node) {
    if (node->Users.fetch_sub(1) != 1)
        return;
    const std::lock_guard hold(Guard);
    Ready.push_back(node);
    HasNews = true;
}

// Removes a drawer that is empty by now, and those above it that wait for nothing else.
void TreeDeleter::Settle(NodeRef node) {
    while (node->Parent && !node->IsSettled && node->Users == 0 && node->Children == 0) {
        Node& parent = *node->Parent;
        node->IsSettled = true;
        if (!parent.Open && node->Open)
            parent.Open = OpenParent(node->Open->Get(), parent.Id);
        if (node->IsKept || !parent.Open)
            parent.IsKept = true;
        else
            RemoveDrawer(*node);
        if (parent.IsKept)
            TakeBack(*node);
        node->Open = nullptr;
        --parent.Children;
        node = node->Parent;
    }
}

// What was lent of a drawer that may have stayed; one that is gone feels nothing of it.
void TreeDeleter::TakeBack(Node& node) {
    SharedFd open = node.Open;
    ObjectFacts facts;
    if (!open && node.Lent && node.Parent && node.Parent->Open) {
        open = OpenTreeDrawer(node.Parent->Open->Get(), node.Entry.Name);
        if (!open || !FactsOf(open->Get(), facts) || facts.Id != node.Id)
            return;
    }
    if (open && node.Lent)
        GiveBackModes(open->Get(), *std::exchange(node.Lent, {}));
}

void TreeDeleter::RemoveDrawer(Node& node) {
    Node& parent = *node.Parent;
    bool isForced = false;
    const auto isGone = [&] {
        return Host().Unlinkat(parent.Open->Get(), node.Entry.Name.c_str(), AT_REMOVEDIR) == 0 ||
               errno == ENOENT;
    };
    bool isKept = Tally.IsStopped;
    while (!isKept && !isGone()) {
        const long error = ErrorFromErrno(errno == EEXIST ? ENOTEMPTY : errno, Operation::Delete);
        isKept = !AskTrouble(PathOf(node, ""), true, TreeStep::Delete, error, isForced) || Tally.IsStopped;
    }
    if (isKept) {
        parent.IsKept = true;
        return;
    }
    if (node.Entry.HasSidecar && IsAwaited() &&
        Host().Unlinkat(parent.Open->Get(), SidecarNameOf(node.Entry.Name).c_str(), 0) != 0 &&
        errno != ENOENT) {
        Tally.Skip(ErrorFromErrno(errno, Operation::Delete));
        parent.IsKept = true;
    }
    ForgetDrawer(parent.Id);
    Done(node, "", true);
}

// News from the jobs: problems to ask about, drawers that are empty.
void TreeDeleter::Poll() {
    Talk.Poll();
    while (HasNews) {
        std::vector<Problem> problems;
        std::vector<NodeRef> ready;
        {
            const std::lock_guard hold(Guard);
            problems.swap(Problems);
            ready.swap(Ready);
            HasNews = false;
        }
        for (const Problem& problem : problems) {
            SolveOne(problem);
            Release(problem.In);
        }
        for (const NodeRef& node : ready)
            Settle(node);
    }
}

void TreeDeleter::SolveOne(const Problem& problem) {
    Node& node = *problem.In;
    bool isForced = false;
    long error = problem.Error;
    while (error != 0) {
        if (Tally.IsStopped ||
            !AskTrouble(PathOf(node, problem.Entry.Name), false, TreeStep::Delete, error, isForced)) {
            node.IsKept = true;
            return;
        }
        error = DeleteEntry(node, problem.Open->Get(), problem.Entry, isForced);
        ForgetDrawer(node.Id);
    }
}

// True to try again. What was forced once is not forced a second time.
bool TreeDeleter::AskTrouble(const std::string& path, bool isDrawer, TreeStep step, long error,
                             bool& isForced) {
    const TroubleAnswer answer = Talk.Ask(TreeTrouble{path, step, error, CopyEnd::SourceRefused, isDrawer});
    if (answer == TroubleAnswer::Retry)
        return true;
    if (answer == TroubleAnswer::Force && !isForced) {
        isForced = true;
        return true;
    }
    Tally.Skip(error);
    return false;
}

using SpotRef = std::shared_ptr<Spot>;

SpotRef FindTop(const DeviceWalk& walk) {
    if (&walk.Owner() != &HostHandler) {
        SetIoErr(ErrorActionNotKnown);
        return nullptr;
    }
    const HostLockRef from = AsHostLock(walk.Start());
    if (!IsMounted(*from))
        return nullptr;
    return OnHost<SpotRef>(from, [from, rest = std::string(walk.Rest())](WalkMode& mode) -> SpotRef {
        auto spot = std::make_shared<Spot>();
        if (!FindEntry(*from, rest, LastLink::Keep, mode, *spot))
            return nullptr;
        return mode.Commit() ? spot : nullptr;
    });
}

} // namespace

TreeResult DeleteTree(std::string_view path, Protected rule, const TreeControl& control) {
    const SpotRef spot = AtEachPlaceToChange(path, FindTop);
    if (!spot) {
        TreeResult result;
        result.FirstError = IoErr();
        result.Skipped = 1;
        return result;
    }
    const TreeResult result = RunTree(MayHang(*spot) ? Disks::MayHang : Disks::Answer, TreeStep::Delete,
                                      control, [spot, rule](const TreeControl& talk, TreeTally& tally) {
                                          return TreeDeleter(rule, talk, tally).Run(*spot);
                                      });
    SetIoErr(result.IsCancelled ? ErrorBreak : result.FirstError);
    return result;
}

} // namespace dos
