// The streams of a command that is about to be started: descriptors for the child, and pipes to what is no
// file of the host. Private to platform/dos.
#pragma once

#include "platform/dos/Children.h"
#include "platform/dos/System.h"

#include <map>
#include <memory>
#include <string>

namespace dos {

// Whose the handles and sinks of the options are: the caller's who waits, the command's, or the caller's who
// does not wait. Those a child cannot use by itself give way to NIL: in the last case.
enum class Ownership { Caller, Taken, Lent };

class StreamPlumber {
public:
    explicit StreamPlumber(Ownership handles) : Handles(handles) {}

    // Connects all three in order; false with IoErr, and Culprit() then names the stream. isOneStream: input
    // and output have one name and are opened once, to read and write from the same place.
    [[nodiscard]] bool Connect(const SystemStream& input, const SystemStream& output,
                               const std::optional<SystemStream>& errorOutput, ChildOrder& order,
                               bool isOneStream);
    [[nodiscard]] const std::string& Culprit() const noexcept { return FailedName; }

private:
    [[nodiscard]] bool ConnectInput(const SystemStream& stream, ChildOrder& order);
    [[nodiscard]] HostFd ConnectOutput(const SystemStream& stream, int ownNumber, ChildOrder& order);
    [[nodiscard]] bool ReadFrom(std::shared_ptr<FileHandle> handle, ChildOrder& order);
    [[nodiscard]] HostFd WriteTo(const std::shared_ptr<FileHandle>& handle, ChildOrder& order);
    [[nodiscard]] HostFd WriteTo(ByteSink sink, ChildOrder& order) const;
    [[nodiscard]] std::shared_ptr<FileHandle> HandleOf(FileHandle* handle);
    [[nodiscard]] std::shared_ptr<FileHandle> OpenNamed(const std::string& name, OpenMode mode);

    Ownership Handles;
    std::map<const FileHandle*, std::shared_ptr<FileHandle>> Given; // one entry per handle of the options
    std::map<std::string, std::shared_ptr<FileHandle>> Opened;      // so that one console serves all streams
    std::shared_ptr<FileHandle> Console;                            // the input, when it is one
    std::string FailedName;
};

// Writes text where an output leads, outside of any command. False with IoErr when not all of it went there.
[[nodiscard]] bool WriteMessage(const SystemStream& output, const SystemStream& input, std::string_view text);

// Writes text over the beginning of a file, which keeps what stands behind it, or to a device. False with
// IoErr.
[[nodiscard]] bool WriteAtStart(const std::string& name, std::string_view text);

} // namespace dos
