#include "platform/dos/Examine.h"

#include "platform/dos/DeviceWalk.h"

namespace dos {

std::optional<ExamineData> ExamineObject(const FileLock& lock) {
    if (!lock || !lock.Body()->Owner->Examine) {
        SetIoErr(lock ? ErrorActionNotKnown : ErrorInvalidLock);
        return {};
    }
    ExamineData object;
    if (!lock.Body()->Owner->Examine(lock.Body(), object))
        return {};
    return object;
}

std::optional<ExamineData> ExamineObject(std::string_view path) {
    const MountLook look;
    const FileLock lock = Lock(path);
    return lock ? ExamineObject(lock) : std::nullopt;
}

DirContext::DirContext() = default;
DirContext::DirContext(std::unique_ptr<Lister> source) : Source(std::move(source)) {}
DirContext::DirContext(DirContext&&) noexcept = default;
DirContext& DirContext::operator=(DirContext&&) noexcept = default;
DirContext::~DirContext() = default;

DirContext ObtainDirContext(const FileLock& drawer) {
    if (!drawer || !drawer.Body()->Owner->List) {
        SetIoErr(drawer ? ErrorActionNotKnown : ErrorInvalidLock);
        return DirContext();
    }
    return DirContext(drawer.Body()->Owner->List(drawer.Body()));
}

DirContext ObtainDirContext(std::string_view path) {
    const MountLook look;
    const FileLock drawer = Lock(path);
    return drawer ? ObtainDirContext(drawer) : DirContext();
}

const ExamineData* ExamineDir(DirContext& context) {
    if (!context.Source) {
        SetIoErr(ErrorInvalidLock);
        return nullptr;
    }
    return context.Source->Next(context.Object) ? &context.Object : nullptr;
}

} // namespace dos
