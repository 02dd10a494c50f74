#include "platform/dos/CommandStreams.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/SidecarFiles.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace dos {

namespace {

// A handle that is closed, and so what was written kept, when the last who uses it is done.
struct ClosingHandle {
    FileHandle File;
    explicit ClosingHandle(FileHandle file) : File(std::move(file)) {}
    ClosingHandle(const ClosingHandle&) = delete;
    ClosingHandle& operator=(const ClosingHandle&) = delete;
    ~ClosingHandle() {
        if (File)
            static_cast<void>(Close(File));
    }
};

std::shared_ptr<FileHandle> Share(FileHandle file) {
    if (!file)
        return nullptr;
    auto closing = std::make_shared<ClosingHandle>(std::move(file));
    return {closing, &closing->File};
}

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

HostFd FailHost(int error, Operation operation) {
    SetIoErr(ErrorFromErrno(error, operation));
    return HostFd();
}

HostFd Nothing() {
    HostFd nothing(OpenNothing());
    return nothing ? std::move(nothing) : FailHost(errno, Operation::Write);
}

bool IsOnHost(const std::string& path) {
    DeviceWalk walk(path);
    return walk.Next() && &walk.Owner() == &HostHandler;
}

// Opens the object itself, under whatever name it is known by then.
HostFd OpenObject(const FileLock& lock, int flags, Operation operation) {
    if (!lock)
        return HostFd();
    const HostLockRef object = AsHostLock(lock.Body());
    if (!IsFileMode(object->Facts.Mode)) {
        SetIoErr(ErrorObjectWrongType);
        return HostFd();
    }
    const auto opened = OnHost<std::shared_ptr<HostFd>>(
        object, [object, flags, operation](WalkMode&) -> std::shared_ptr<HostFd> {
            if ((flags & O_ACCMODE) != O_WRONLY && !LetsRead(object->Object))
                return nullptr;
            HostFd file(Host().Openat(AT_FDCWD, DescriptorPath(object->Object.Get()).c_str(),
                                      flags | O_CLOEXEC | O_NOCTTY, 0));
            if (file)
                return std::make_shared<HostFd>(std::move(file));
            static_cast<void>(FailHost(errno, operation));
            return nullptr;
        });
    return opened ? std::move(*opened) : HostFd();
}

// A new file is empty from the start, as a redirection makes it; an old one keeps its bits and comment.
bool PrepareFile(const SystemStream& stream) {
    if (!stream.Append)
        return WriteWhole(stream.Name, {});
    const std::optional<ExamineData> old = ExamineObject(stream.Name);
    if (!old)
        return IoErr() == ErrorObjectNotFound && WriteWhole(stream.Name, {});
    if ((old->Protection & ProtectWrite) == 0)
        return true;
    SetIoErr(ErrorWriteProtected);
    return false;
}

HostFd OpenOutputFile(const SystemStream& stream) {
    if (!PrepareFile(stream))
        return HostFd();
    return OpenObject(Lock(stream.Name), O_WRONLY | O_APPEND, Operation::Write);
}

// One place in the file for reading and writing; what stands there is kept.
HostFd OpenToUpdate(const std::string& name) {
    if (!PrepareFile({.Name = name, .Append = true}))
        return HostFd();
    return OpenObject(Lock(name), O_RDWR, Operation::Write);
}

bool IsSet(const SystemStream& stream) {
    return stream.Own || stream.Handle || stream.Sink || !stream.Name.empty();
}

bool IsSameFile(const SystemStream& a, const SystemStream& b) {
    const auto isNamed = [](const SystemStream& stream) {
        return !stream.Own && !stream.Handle && !stream.Sink && !stream.Name.empty();
    };
    return isNamed(a) && isNamed(b) && a.Name == b.Name;
}

std::string NameOf(const SystemStream& stream) {
    return stream.Own || stream.Handle || stream.Sink ? "stream" : stream.Name;
}

} // namespace

std::shared_ptr<FileHandle> StreamPlumber::HandleOf(FileHandle* handle) {
    std::shared_ptr<FileHandle>& known = Given[handle];
    if (!known && Handles == Ownership::Taken)
        known = Share(std::move(*handle));
    else if (!known && *handle)
        known = std::shared_ptr<FileHandle>(std::shared_ptr<FileHandle>(), handle);
    if (!known)
        SetIoErr(ErrorInvalidLock);
    return known;
}

std::shared_ptr<FileHandle> StreamPlumber::OpenNamed(const std::string& name, OpenMode mode) {
    std::shared_ptr<FileHandle>& known = Opened[name];
    if (!known)
        known = Share(Open(name, mode));
    return known;
}

bool StreamPlumber::ReadFrom(std::shared_ptr<FileHandle> handle, ChildOrder& order) {
    if (!handle)
        return false;
    order.Terminal = StreamOf(*handle)->Terminal();
    if (!order.Terminal.empty()) {
        order.Company = ChildCompany::Session;
        Console = std::move(handle);
        return true;
    }
    order.Input = HostFd(StreamOf(*handle)->ForReader());
    std::array<int, 2> ends = {NoDescriptor, NoDescriptor};
    if (order.Input)
        return true;
    if (Host().Pipe(ends.data()) != 0) {
        SetIoErr(ErrorFromErrno(errno, Operation::Read));
        return false;
    }
    order.Input = HostFd(ends[0]);
    order.Inputs.push_back({HostFd(ends[1]), std::move(handle)});
    return true;
}

bool StreamPlumber::ConnectInput(const SystemStream& stream, ChildOrder& order) {
    if (stream.Own) {
        order.Input = HostFd(Host().Duplicate(STDIN_FILENO));
        order.Company = ChildCompany::Caller;
    } else if (stream.Handle) {
        return ReadFrom(HandleOf(stream.Handle), order);
    } else if (stream.Name.empty()) {
        order.Input = HostFd(OpenNothing());
    } else if (IsOnHost(stream.Name)) {
        order.Input = OpenObject(Lock(stream.Name), O_RDONLY, Operation::Read);
        return static_cast<bool>(order.Input);
    } else {
        return ReadFrom(OpenNamed(stream.Name, OpenMode::Old), order);
    }
    if (!order.Input)
        SetIoErr(ErrorFromErrno(errno, Operation::Read));
    return static_cast<bool>(order.Input);
}

HostFd StreamPlumber::WriteTo(ByteSink sink, ChildOrder& order) const {
    if (Handles == Ownership::Lent)
        return Nothing();
    std::array<int, 2> ends = {NoDescriptor, NoDescriptor};
    if (Host().Pipe(ends.data()) != 0)
        return FailHost(errno, Operation::Write);
    order.Outputs.push_back({HostFd(ends[0]), std::move(sink)});
    return HostFd(ends[1]);
}

HostFd StreamPlumber::WriteTo(const std::shared_ptr<FileHandle>& handle, ChildOrder& order) {
    if (!handle)
        return HostFd();
    HostFd own(StreamOf(*handle)->ForChild());
    if (own)
        return own;
    return WriteTo([handle](std::string_view bytes) { return Write(*handle, BytesOf(bytes)) >= 0; }, order);
}

HostFd StreamPlumber::ConnectOutput(const SystemStream& stream, int ownNumber, ChildOrder& order) {
    if (stream.Own) {
        HostFd own(Host().Duplicate(ownNumber));
        return own ? std::move(own) : FailHost(errno, Operation::Write);
    }
    if (stream.Handle)
        return WriteTo(HandleOf(stream.Handle), order);
    if (stream.Sink)
        return WriteTo(stream.Sink, order);
    if (stream.Name.empty() && Console)
        return WriteTo(Console, order);
    if (stream.Name.empty())
        return Nothing();
    if (IsOnHost(stream.Name))
        return OpenOutputFile(stream);
    return WriteTo(OpenNamed(stream.Name, OpenMode::New), order);
}

bool StreamPlumber::Connect(const SystemStream& input, const SystemStream& output,
                            const std::optional<SystemStream>& errorOutput, ChildOrder& order,
                            bool isOneStream) {
    FailedName = NameOf(input);
    // Other devices give one stream for a name of themselves.
    const bool isOneFile = isOneStream && IsOnHost(input.Name);
    if (isOneFile)
        order.Input = OpenToUpdate(input.Name);
    if (isOneFile ? !order.Input : !ConnectInput(input, order))
        return false;
    FailedName = NameOf(output);
    order.Output = isOneFile ? DuplicateFd(order.Input) : ConnectOutput(output, STDOUT_FILENO, order);
    if (!order.Output)
        return isOneFile && static_cast<bool>(FailHost(errno, Operation::Write));
    // Opened a second time, one would take the place of what the other has written.
    if (!errorOutput || IsSameFile(*errorOutput, output)) {
        order.ErrorOutput = DuplicateFd(order.Output);
        return order.ErrorOutput || !FailHost(errno, Operation::Write).Get();
    }
    FailedName = NameOf(*errorOutput);
    order.ErrorOutput = ConnectOutput(*errorOutput, STDERR_FILENO, order);
    return static_cast<bool>(order.ErrorOutput);
}

bool WriteMessage(const SystemStream& output, const SystemStream& input, std::string_view text) {
    if (!IsSet(output)) {
        const bool isConsole = input.Handle && *input.Handle && !StreamOf(*input.Handle)->Terminal().empty();
        return !isConsole || Write(*input.Handle, BytesOf(text)) >= 0;
    }
    if (output.Own)
        return WriteAll(STDOUT_FILENO, text) || static_cast<bool>(FailHost(errno, Operation::Write));
    if (output.Handle)
        return Write(*output.Handle, BytesOf(text)) >= 0;
    if (output.Sink)
        return output.Sink(text);
    FileHandle file = Open(output.Name, output.Append ? OpenMode::ReadWrite : OpenMode::New);
    return file && (!output.Append || Seek(file, 0, SeekFrom::End) >= 0) && Write(file, BytesOf(text)) >= 0 &&
           Close(file);
}

bool WriteAtStart(const std::string& name, std::string_view text) {
    FileHandle file = Open(name, OpenMode::ReadWrite);
    return file && Write(file, BytesOf(text)) >= 0 && Close(file);
}

} // namespace dos
