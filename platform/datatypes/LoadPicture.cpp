#include "platform/datatypes/LoadPicture.h"

#include "platform/datatypes/PictureFile.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/utility/Text.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace datatypes {

namespace {

constexpr std::size_t ReadStep = std::size_t{1} << 20; // bytes between two signs of life

class OpenFile {
public:
    explicit OpenFile(const std::string& hostPath)
        : Number(open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() {
        if (Number >= 0)
            close(Number);
    }
    [[nodiscard]] int Get() const { return Number; }

private:
    int Number;
};

bool Fail(long error) {
    dos::SetIoErr(error);
    return false;
}

bool CheckRegular(const struct stat& facts) {
    return S_ISREG(facts.st_mode) || Fail(dos::ErrorObjectWrongType);
}

// The bytes from the start on until the end or the length.
bool ReadBytes(int file, std::string& bytes, dos::Progress& progress) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = read(file, bytes.data() + done, std::min(ReadStep, bytes.size() - done));
        if (got < 0)
            return Fail(dos::ErrorFromErrno(errno, dos::Operation::Read));
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
        progress.Beat();
    }
    bytes.resize(done);
    return true;
}

std::optional<FileFacts> HostFacts(const std::string& hostPath) {
    struct stat facts = {};
    if (stat(hostPath.c_str(), &facts) != 0) {
        (void)Fail(dos::ErrorFromErrno(errno, dos::Operation::Read));
        return std::nullopt;
    }
    if (!CheckRegular(facts))
        return std::nullopt;
    return FileFacts{facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec, static_cast<std::uint64_t>(facts.st_size)};
}

std::optional<std::string> ReadHostFile(const std::string& hostPath, dos::Progress& progress) {
    // A look before the opening: that alone can do something to a device.
    if (!HostFacts(hostPath))
        return std::nullopt;
    struct stat facts = {};
    const OpenFile file(hostPath);
    if (file.Get() < 0 || fstat(file.Get(), &facts) != 0) {
        (void)Fail(dos::ErrorFromErrno(errno, dos::Operation::Read));
        return std::nullopt;
    }
    if (!CheckRegular(facts))
        return std::nullopt;
    if (static_cast<std::uint64_t>(facts.st_size) > MostPictureBytes) {
        (void)Fail(dos::ErrorObjectTooLarge);
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(facts.st_size), '\0');
    return ReadBytes(file.Get(), bytes, progress) ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<Picture> DrawIconFile(const std::string& bytes, const PictureBox& box) {
    const std::optional<icon::DiskObject> object = icon::ParseDiskObject(AsBytes(bytes));
    if (!object)
        return std::nullopt;
    if (box.Width == 0 || box.Height == 0)
        return icon::GetIconPicture(*object, icon::IconState::Normal);
    return icon::DrawIcon(*object, box.Width, box.Height, icon::IconState::Normal);
}

} // namespace

std::optional<FileFacts> FactsOf(const HostPlace& place) {
    return AskAt<std::optional<FileFacts>>(
        place, [](const std::string& hostPath, dos::Progress&) { return HostFacts(hostPath); });
}

std::optional<std::string> ReadPictureFile(const HostPlace& place) {
    try {
        return AskAt<std::optional<std::string>>(place, ReadHostFile);
    } catch (const std::bad_alloc&) {
        dos::SetIoErr(dos::ErrorNoFreeStore);
        return std::nullopt;
    }
}

DecodedPicture DecodeFile(const std::string& bytes, const PictureBox& box) {
    try {
        DecodedPicture decoded = DecodePicture(AsBytes(bytes), box);
        if (!decoded.Shown)
            dos::SetIoErr(dos::ErrorObjectWrongType);
        return decoded;
    } catch (const std::bad_alloc&) {
        dos::SetIoErr(dos::ErrorNoFreeStore);
        return {};
    }
}

std::optional<Picture> LoadPicture(std::string_view path, const PictureBox& box) {
    const std::optional<HostPlace> place = FindObject(path);
    const std::optional<std::string> bytes = place ? ReadPictureFile(*place) : std::nullopt;
    return bytes ? DecodeFile(*bytes, box).Shown : std::nullopt;
}

std::optional<Picture> LoadImageFile(std::string_view path, const PictureBox& box) {
    constexpr std::string_view suffix = ".info";
    const bool isIcon = path.size() > suffix.size() &&
                        utility::Stricmp(path.substr(path.size() - suffix.size()), suffix) == 0;
    if (!isIcon)
        return LoadPicture(path, box);
    const std::optional<HostPlace> place = FindObject(path);
    const std::optional<std::string> bytes = place ? ReadPictureFile(*place) : std::nullopt;
    if (!bytes)
        return std::nullopt;
    std::optional<Picture> picture =
        bytes->size() > icon::MaxIconFile ? std::nullopt : DrawIconFile(*bytes, box);
    if (!picture)
        dos::SetIoErr(dos::ErrorObjectWrongType);
    return picture;
}

std::string StateOfFile(std::string_view path) {
    const std::optional<HostPlace> place = FindObject(path);
    const std::optional<FileFacts> facts = place ? FactsOf(*place) : std::nullopt;
    return facts ? std::to_string(facts->Modified) + '.' + std::to_string(facts->Nanoseconds) + '/' +
                       std::to_string(facts->Size)
                 : std::string();
}

bool SavePicture(std::string_view path, const Picture& picture) {
    const std::string bytes = EncodePng(picture);
    if (bytes.empty())
        return Fail(dos::ErrorNoFreeStore);
    return dos::WriteWhole(path, bytes);
}

} // namespace datatypes
