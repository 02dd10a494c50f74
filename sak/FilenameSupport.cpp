#include "sak/FilenameSupport.h"

#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Paths.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"

#include <optional>
#include <string>

namespace solvane {

namespace {

std::string_view DeviceRootOf(std::string_view path) {
    const std::size_t colon = path.find(':');
    return colon == std::string_view::npos ? path : path.substr(0, colon + 1);
}

bool StoreWhole(std::string_view name, Text<1024>& out) {
    const bool fits = name.size() <= out.Limit;
    if (!fits) {
        dos::SetIoErr(dos::ErrorLineTooLong);
    }
    out = fits ? name : std::string_view();
    return !out.Empty();
}

bool SaferName(const dos::FileLock& lock, dos::DevName form, Text<1024>& out) {
    std::string name = dos::NameFromLock(lock);
    if (!name.empty() && !dos::SameLock(dos::Lock(name), lock)) {
        name = dos::DevNameFromLock(lock, form);
    }
    return StoreWhole(name, out);
}

bool IsOfType(std::string_view path, std::uint32_t type) {
    const std::optional<dos::ExamineData> data = dos::ExamineObject(path);
    return data && data->Type == type;
}

} // namespace

void SAK_SplitFilename(std::string_view path, Text<1024>& drawer, Text<128>& file) {
    const Text<1024> pathPart = dos::PathPart(path);
    file = dos::FilePart(path);
    drawer = pathPart;
}

bool SAK_JoinFilename(Text<1024>& out, std::string_view drawer, std::string_view file) {
    const std::optional<std::string> whole = dos::AddPart(drawer, file, out.Limit + 1);
    out = whole ? std::string_view(*whole) : std::string_view();
    return whole.has_value();
}

bool SAK_GetDeviceRoot(std::string_view path, Text<1024>& out) {
    const bool found = path.find(':') != std::string_view::npos;
    out = DeviceRootOf(path);
    return found;
}

bool SAK_RemoveDeviceRoot(std::string_view path, Text<128>& out) {
    const std::size_t colon = path.find(':');
    out = colon == std::string_view::npos ? std::string_view() : path.substr(colon + 1);
    return !out.Empty();
}

void SAK_GetParent(Text<1024>& path, Text<1024>& out) {
    if (path.View().ends_with('/')) {
        path = path.View().substr(0, path.Size() - 1);
    }
    out = dos::PathPart(path);
}

std::string_view ExtensionOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot);
}

bool SAK_IsInfoFile(std::string_view name) {
    return utility::Stricmp(ExtensionOf(name), ".info") == 0;
}

bool SAK_GetFileExtension(std::string_view name, Text<128>& out) {
    out = ExtensionOf(name);
    return !out.Empty();
}

bool SAK_GetFileNoExtension(std::string_view name, Text<128>& out) {
    const std::size_t extension = ExtensionOf(name).size();
    out = name.substr(0, name.size() - extension);
    return extension > 0;
}

bool SAK_GetNameFromLock(std::string_view path, Text<128>& out) {
    const dos::FileLock lock = dos::Lock(path);
    if (!lock) {
        return false;
    }
    std::string name = dos::NameFromLock(lock);
    if (name.empty()) {
        return false;
    }
    if (!name.ends_with(':')) {
        name += ':';
    }
    out = name;
    return true;
}

bool SAK_SaferNameFromLockVolumeFromDevice(const dos::FileLock& lock, Text<1024>& out) {
    return SaferName(lock, dos::DevName::FullPath, out);
}

bool SAK_SaferNameFromLockDeviceFromVolume(const dos::FileLock& lock, Text<1024>& out) {
    return SaferName(lock, dos::DevName::DeviceOnly, out);
}

bool SAK_SaferSameVolume(std::string_view path1, std::string_view path2) {
    const dos::FileLock root1 = dos::Lock(DeviceRootOf(path1));
    const dos::FileLock root2 = dos::Lock(DeviceRootOf(path2));
    return !root1 || !root2 || dos::SameLock(root1, root2);
}

bool SAK_FileExists(std::string_view path) {
    return IsOfType(path, dos::TypeFile);
}

bool SAK_DrawerExists(std::string_view path) {
    return IsOfType(path, dos::TypeDrawer);
}

bool SAK_IsFileOrDrawer(std::string_view path) {
    return SAK_FileExists(path);
}

std::int64_t SAK_GetFileSize(std::string_view path) {
    const std::optional<dos::ExamineData> data = dos::ExamineObject(path);
    if (!data || (data->Type != dos::TypeFile && data->Type != dos::TypeDrawer)) {
        return 0;
    }
    return data->Type == dos::TypeDrawer ? -1 : static_cast<std::int64_t>(data->Size);
}

std::uint32_t SAK_GetFileDate(std::string_view path, std::string_view format, Text<35>& text) {
    const std::optional<dos::ExamineData> data = dos::ExamineObject(path);
    if (!data) {
        return 0;
    }
    if (data->Type != dos::TypeFile) {
        text.Clear();
        return 0;
    }
    text = locale::FormatDate(format, data->Date);
    return data->Date;
}

std::uint32_t SAK_GetFileDateJulian(std::string_view path, Text<35>& text) {
    return SAK_GetFileDate(path, "%-j", text);
}

} // namespace solvane
