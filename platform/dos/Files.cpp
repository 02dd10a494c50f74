#include "platform/dos/Files.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/Paths.h"

#include <algorithm>
#include <array>

namespace dos {

namespace {

constexpr std::size_t ReadStep = 1u << 16; // bytes

// Is what has the name a drawer? False with IoErr.
bool IsDrawer(std::string_view path) {
    const auto object = ExamineObject(path);
    if (!object || object->Type == TypeDrawer)
        return object.has_value();
    SetIoErr(ErrorObjectWrongType);
    return false;
}

std::int64_t RefuseHandle() {
    SetIoErr(ErrorInvalidLock);
    return -1;
}

} // namespace

FileHandle::FileHandle() = default;
FileHandle::FileHandle(std::unique_ptr<Stream> source) : Source(std::move(source)) {}
FileHandle::FileHandle(FileHandle&&) noexcept = default;
FileHandle& FileHandle::operator=(FileHandle&&) noexcept = default;
FileHandle::~FileHandle() = default;

Stream* StreamOf(FileHandle& file) noexcept {
    return file.Source.get();
}

FileHandle Open(std::string_view path, OpenMode mode) {
    const auto open = [mode](const DeviceWalk& walk) -> std::unique_ptr<Stream> {
        if (walk.Owner().Open)
            return walk.Owner().Open(walk.Start(), walk.Rest(), mode);
        RefuseAction();
        return nullptr;
    };
    return FileHandle(mode == OpenMode::Old ? AtEachPlace(path, open) : AtEachPlaceToChange(path, open));
}

FileHandle OpenOld(std::string_view path) {
    return Open(path, OpenMode::Old);
}

std::int64_t Read(FileHandle& file, std::span<std::byte> buffer) {
    return file.Source ? file.Source->Read(buffer) : RefuseHandle();
}

std::int64_t Write(FileHandle& file, std::span<const std::byte> bytes) {
    return file.Source ? file.Source->Write(bytes) : RefuseHandle();
}

std::int64_t Seek(FileHandle& file, std::int64_t offset, SeekFrom from) {
    return file.Source ? file.Source->Seek(offset, from) : RefuseHandle();
}

std::int64_t SetFileSize(FileHandle& file, std::int64_t offset, SeekFrom from) {
    return file.Source ? file.Source->SetSize(offset, from) : RefuseHandle();
}

bool Close(FileHandle& file) {
    if (!file.Source)
        return RefuseHandle() == 0;
    const bool isClosed = file.Source->Close();
    const long error = IoErr();
    file.Source.reset();
    SetIoErr(error);
    return isClosed;
}

std::optional<std::string> ReadWhole(std::string_view path, std::size_t limit) {
    FileHandle file = OpenOld(path);
    if (!file)
        return {};
    std::string bytes;
    std::array<std::byte, ReadStep> step;
    while (bytes.size() <= limit) {
        // One byte more than the limit tells a file of that size from a larger one.
        const std::size_t room = limit - bytes.size();
        const std::size_t wanted = room < step.size() ? room + 1 : step.size();
        const std::int64_t got = Read(file, std::span(step).first(wanted));
        if (got < 0)
            return {};
        if (got == 0)
            return bytes;
        bytes.append(reinterpret_cast<const char*>(step.data()), static_cast<std::size_t>(got));
    }
    SetIoErr(ErrorObjectTooLarge);
    return {};
}

bool WriteWhole(std::string_view path, std::string_view bytes) {
    return AtEachPlaceToChange(path, [&](const DeviceWalk& walk) {
        if (walk.Owner().WriteWhole)
            return walk.Owner().WriteWhole(walk.Start(), walk.Rest(), bytes);
        RefuseAction();
        return false;
    });
}

bool CreateDir(std::string_view path) {
    return AtEachPlaceToChange(path, [](const DeviceWalk& walk) {
        if (walk.Owner().CreateDrawer)
            return walk.Owner().CreateDrawer(walk.Start(), walk.Rest());
        RefuseAction();
        return false;
    });
}

bool CreateDirs(std::string_view path) {
    if (path.size() > LongestPath) {
        SetIoErr(ErrorLineTooLong);
        return false;
    }
    bool isNew = true;
    for (std::size_t at = 0; at <= path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string_view drawer = path.substr(0, end);
        at = end + 1;
        if (drawer.empty() || drawer.ends_with(':') || drawer.ends_with('/'))
            continue;
        isNew = CreateDir(drawer);
        if (!isNew && IoErr() != ErrorObjectExists)
            return false;
    }
    return isNew || IsDrawer(path);
}

} // namespace dos
