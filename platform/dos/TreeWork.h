// What copying and deleting of trees share: two threads that work through jobs, and the talk with
// the control record. Private to platform/dos.
#pragma once

#include "platform/dos/CopyTree.h"
#include "platform/dos/HostFd.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace dos {

struct Spot;

// A descriptor that jobs hold as long as they need it.
using SharedFd = std::shared_ptr<const HostFd>;

// Levels of a tree whose drawers stay open; those above are opened again on the way back.
inline constexpr std::size_t OpenLevels = 64;

enum class Worker : std::size_t { Caller, Helper };
inline constexpr std::size_t WorkerCount = 2;

// Counted by both threads.
struct TreeTally {
    std::atomic<std::uint64_t> Objects{0};
    std::atomic<std::uint64_t> Bytes{0};
    std::atomic<std::uint64_t> Skipped{0};
    std::atomic<unsigned> Lost{0};
    std::atomic<long> FirstError{0};
    std::atomic<bool> IsStopped{false};

    void Skip(long error);
    [[nodiscard]] TreeResult Result() const;
};

// Is the object on a disk that may not answer, or can there be one in it?
[[nodiscard]] bool MayHang(const Spot& spot);

// Runs the work on a tree: at once or, where a disk may not answer, on a thread of its own that asks
// the calling one what it has to ask. Such work owns what it uses. Before it is left behind trouble
// 226 is told, unless it was cancelled, and its tally is stopped.
using TreeDeed = std::function<TreeResult(const TreeControl& control, TreeTally& tally)>;
enum class Disks { Answer, MayHang };
[[nodiscard]] TreeResult RunTree(Disks disks, TreeStep step, const TreeControl& control, TreeDeed deed);

// Jobs of any order, done by a helper and, when there are many or none is left to make, by the
// caller.
class TreeQueue {
public:
    using Job = std::function<void(Worker)>;

    TreeQueue();
    TreeQueue(const TreeQueue&) = delete;
    TreeQueue& operator=(const TreeQueue&) = delete;
    ~TreeQueue();

    // For the caller: adds a job; does one itself when enough are waiting.
    void Push(Job job);
    // For the caller: does jobs until none is left and none is being done; between them, and at
    // times while it waits, poll is called.
    void Drain(const std::function<void()>& poll);

private:
    void Serve();
    bool DoOne(std::unique_lock<std::mutex>& hold, Worker who);

    std::mutex Guard;
    std::condition_variable Changed;
    std::deque<Job> Waiting;
    std::size_t Running = 0;
    bool IsEnding = false;
    std::thread Thread;
};

// The caller's side of the control record.
class TreeTalk {
public:
    TreeTalk(const TreeControl& control, TreeTally& tally) : Control(control), Tally(tally) {}

    // Tells of progress; a cancel stops the tally.
    void Poll();
    [[nodiscard]] TroubleAnswer Ask(const TreeTrouble& trouble);
    [[nodiscard]] ConflictReply Ask(const TreeConflict& conflict);
    [[nodiscard]] bool AsksConflicts() const { return static_cast<bool>(Control.Conflict); }
    [[nodiscard]] bool WantsNames() const { return static_cast<bool>(Control.Finished); }
    // From either thread; told by the next Poll.
    void NoteFinished(std::string path, bool isDrawer);

private:
    const TreeControl& Control;
    TreeTally& Tally;
    std::mutex Guard;
    std::vector<std::pair<std::string, bool>> Names;
};

// Cuts the entries of a drawer into jobs for both threads.
[[nodiscard]] std::size_t ShareOf(std::size_t entries);

} // namespace dos
