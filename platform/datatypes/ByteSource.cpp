#include "platform/datatypes/ByteSource.h"

#include "platform/dos/Errors.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace datatypes {

namespace {

class MemorySource : public ByteSource {
public:
    explicit MemorySource(Bytes bytes) : ByteSource(bytes.size()), All(bytes) {}

private:
    std::size_t Read(std::uint64_t offset, std::span<std::byte> into) override {
        const std::size_t from = static_cast<std::size_t>(std::min<std::uint64_t>(offset, All.size()));
        const Bytes part = All.subspan(from, std::min(into.size(), All.size() - from));
        std::ranges::copy(part, into.begin());
        return part.size();
    }

    Bytes All;
};

class HostFileSource : public ByteSource {
public:
    HostFileSource(int descriptor, std::uint64_t size) : ByteSource(size), File(descriptor) {}
    HostFileSource(const HostFileSource&) = delete;
    HostFileSource& operator=(const HostFileSource&) = delete;
    ~HostFileSource() override { close(File); }

private:
    std::size_t Read(std::uint64_t offset, std::span<std::byte> into) override {
        const ssize_t got = pread(File, into.data(), into.size(), static_cast<off_t>(offset));
        return got < 0 ? 0 : static_cast<std::size_t>(got);
    }

    int File;
};

} // namespace

Bytes ByteSource::At(std::uint64_t offset, std::size_t count) {
    count = std::min(count, WindowSize);
    const bool inside = offset >= WindowStart && offset - WindowStart <= Window.size() &&
                        Window.size() - (offset - WindowStart) >= count;
    if (!inside) {
        if (offset >= Length) {
            return {};
        }
        Window.resize(WindowSize);
        Window.resize(Read(offset, Window));
        WindowStart = offset;
    }
    const auto from = static_cast<std::size_t>(offset - WindowStart);
    return Bytes(Window).subspan(from, std::min(count, Window.size() - from));
}

std::unique_ptr<ByteSource> SourceFromMemory(Bytes bytes) {
    return std::make_unique<MemorySource>(bytes);
}

std::unique_ptr<ByteSource> SourceFromHostFile(const std::string& hostPath) {
    struct stat facts = {};
    if (hostPath.find('\0') != hostPath.npos || stat(hostPath.c_str(), &facts) != 0) {
        dos::SetIoErr(dos::ErrorFromErrno(errno, dos::Operation::Read));
        return nullptr;
    }
    if (!S_ISREG(facts.st_mode)) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
        return nullptr;
    }
    const int file = open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        dos::SetIoErr(dos::ErrorFromErrno(errno, dos::Operation::Read));
        return nullptr;
    }
    return std::make_unique<HostFileSource>(file, static_cast<std::uint64_t>(facts.st_size));
}

} // namespace datatypes
