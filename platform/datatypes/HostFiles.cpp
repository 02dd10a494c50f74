#include "platform/datatypes/HostFiles.h"

#include "platform/datatypes/Recognise.h"
#include "platform/dos/Errors.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace datatypes {

namespace {

constexpr std::size_t FilesPerTurn = 64;    // taken by a thread at a time
constexpr std::size_t FilesPerThread = 256; // fewer are not worth a thread
constexpr unsigned MostThreads = 4;

class Descriptor {
public:
    explicit Descriptor(int descriptor) noexcept : Value(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (Value >= 0) {
            close(Value);
        }
    }
    [[nodiscard]] int Get() const noexcept { return Value; }

private:
    int Value;
};

const DataType* Fail(long code) {
    dos::SetIoErr(code);
    return nullptr;
}
const DataType* FailWithErrno() {
    return Fail(dos::ErrorFromErrno(errno, dos::Operation::Read));
}

std::string_view NameOf(const std::string& path) {
    return std::string_view(path).substr(path.rfind('/') + 1);
}

constexpr int ReadWithoutWaiting = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

const DataType* TypeOpened(const Descriptor& file, std::string_view name, off_t size) {
    std::array<std::byte, HeadSize> head;
    const ssize_t got = read(file.Get(), head.data(), head.size());
    if (got < 0) {
        return FailWithErrno();
    }
    return Recognise(std::span(head).first(static_cast<std::size_t>(got)), name,
                     static_cast<std::uint64_t>(size));
}

// The kind of object is asked before it is opened: opening alone can start or block a device.
// Should it turn into something else in between, the open and the read still do not wait.
const DataType* TypeAt(int drawer, const std::string& path) {
    struct stat facts = {};
    if (fstatat(drawer, path.c_str(), &facts, 0) != 0) {
        return FailWithErrno();
    }
    if (!S_ISREG(facts.st_mode)) {
        return Fail(dos::ErrorObjectWrongType);
    }
    if (facts.st_size == 0) {
        return Recognise({}, NameOf(path), 0);
    }
    const Descriptor file(openat(drawer, path.c_str(), ReadWithoutWaiting));
    return file.Get() < 0 ? FailWithErrno() : TypeOpened(file, NameOf(path), facts.st_size);
}

// A listing has just said that this is a regular file, so it is opened at once: asking by name first would be
// a seventh of the whole time. What does not open this way, a link above all, takes the careful road.
const DataType* TypeListed(int drawer, const std::string& name, const DrawerTyping& typing) {
    const Descriptor file(openat(drawer, name.c_str(), ReadWithoutWaiting | O_NOFOLLOW));
    if (file.Get() < 0) {
        const bool elsewhere = errno == ELOOP || errno == ENOENT;
        return elsewhere && typing.Otherwise ? typing.Otherwise(name) : TypeAt(drawer, name);
    }
    struct stat facts = {};
    if (fstat(file.Get(), &facts) != 0) {
        return FailWithErrno();
    }
    if (!S_ISREG(facts.st_mode)) {
        return Fail(dos::ErrorObjectWrongType);
    }
    // Files that the kernel makes up have no size: reading them costs time, some of them wait or act.
    return facts.st_size == 0 ? Recognise({}, name, 0) : TypeOpened(file, name, facts.st_size);
}

// Names of a drawer's objects have no part that leads elsewhere.
bool IsObjectName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos &&
           name.find('\0') == name.npos;
}

std::size_t ThreadsFor(std::size_t files) {
    const std::size_t cores = std::clamp(std::thread::hardware_concurrency(), 1U, MostThreads);
    return std::clamp<std::size_t>(files / FilesPerThread, 1, cores);
}

// Fills results by calling typeOf with every index, on several threads for more than a few.
void TypeOnAllCores(std::span<const DataType*> results,
                    const std::function<const DataType*(std::size_t)>& typeOf) {
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t from = next.fetch_add(FilesPerTurn); from < results.size();
             from = next.fetch_add(FilesPerTurn)) {
            const std::size_t end = std::min(from + FilesPerTurn, results.size());
            for (std::size_t i = from; i < end; ++i) {
                results[i] = typeOf(i);
            }
        }
    };
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < ThreadsFor(results.size()); ++i) {
        try {
            helpers.emplace_back(work);
        } catch (const std::system_error&) {
            break; // no more threads to be had: those at work do it all
        }
    }
    work();
}

} // namespace

const DataType* ObtainHostFileType(std::string_view hostPath) {
    if (hostPath.empty() || hostPath.find('\0') != hostPath.npos) {
        return Fail(dos::ErrorObjectNotFound);
    }
    return TypeAt(AT_FDCWD, std::string(hostPath));
}

bool IsHostLink(const std::string& hostPath) noexcept {
    struct stat facts = {};
    return lstat(hostPath.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode);
}

void ObtainHostDrawerTypes(const std::string& hostDrawer, std::span<const std::string_view> names,
                           std::span<const DataType*> results, const DrawerTyping& typing) {
    const std::size_t count = std::min(names.size(), results.size());
    std::ranges::fill(results, nullptr);
    if (count == 0) {
        return;
    }
    const Descriptor drawer(open(hostDrawer.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (drawer.Get() < 0) {
        FailWithErrno();
        return;
    }
    TypeOnAllCores(results.first(count), [&](std::size_t i) -> const DataType* {
        if (!IsObjectName(names[i])) {
            return Fail(dos::ErrorObjectNotFound);
        }
        const DataType* type = TypeListed(drawer.Get(), std::string(names[i]), typing);
        if (typing.Typed) {
            typing.Typed();
        }
        return type;
    });
}

} // namespace datatypes
