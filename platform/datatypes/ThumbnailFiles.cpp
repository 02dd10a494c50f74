#include "platform/datatypes/ThumbnailFiles.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace datatypes {

namespace {

constexpr std::size_t MostCachedBytes = std::size_t{8} * 1024 * 1024; // larger files are none of the cache's
// The drawer of failures. The number grows when more kinds of pictures are understood.
constexpr std::string_view FailDrawer = "/fail/solvane-1";
constexpr mode_t PrivateDrawer = 0700, PrivateFile = 0600;

struct SizeClass {
    std::uint32_t Side;
    std::string_view Drawer;
};
constexpr std::array<SizeClass, 4> SizeClasses = {
    {{128, "/normal"}, {256, "/large"}, {512, "/x-large"}, {LargestSide, "/xx-large"}}};

// The root of the cache; empty when the user has none.
std::string CacheRoot() {
    const char* cache = std::getenv("XDG_CACHE_HOME");
    if (cache != nullptr && *cache == '/')
        return std::string(cache) + "/thumbnails";
    const char* home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.cache/thumbnails" : std::string();
}

std::string_view DrawerOf(std::uint32_t side) {
    const auto row = std::ranges::find(SizeClasses, side, &SizeClass::Side);
    return row == SizeClasses.end() ? FailDrawer : row->Drawer;
}

std::string NameOf(const std::string& uri) {
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray::fromRawData(uri.data(), static_cast<qsizetype>(uri.size())), QCryptographicHash::Md5);
    return '/' + digest.toHex().toStdString() + ".png";
}

std::optional<std::string> ReadSmall(const std::string& path) {
    struct stat facts = {};
    if (stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return std::nullopt;
    QFile file(QFile::decodeName(QByteArray::fromStdString(path)));
    if (!file.open(QIODevice::ReadOnly) || file.size() > static_cast<qint64>(MostCachedBytes))
        return std::nullopt;
    return file.read(static_cast<qint64>(MostCachedBytes)).toStdString();
}

std::string_view TextOf(const TextedPicture& picture, std::string_view keyword) {
    const auto row = std::ranges::find(picture.Texts, keyword, &PictureTexts::value_type::first);
    return row == picture.Texts.end() ? std::string_view() : std::string_view(row->second);
}

// A record of this very state of the file.
std::optional<TextedPicture> FindRecord(std::string_view drawer, const std::string& uri,
                                        std::int64_t modified) {
    const std::string root = CacheRoot();
    const auto bytes = root.empty() ? std::nullopt : ReadSmall(root + std::string(drawer) + NameOf(uri));
    std::optional<TextedPicture> record = bytes ? DecodePng(AsBytes(*bytes), LargestSide) : std::nullopt;
    if (record &&
        (TextOf(*record, "Thumb::URI") != uri || TextOf(*record, "Thumb::MTime") != std::to_string(modified)))
        record.reset();
    return record;
}

bool MakeDrawers(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != path.npos; slash = path.find('/', slash + 1))
        if (mkdir(path.substr(0, slash).c_str(), PrivateDrawer) != 0 && errno != EEXIST)
            return false;
    return mkdir(path.c_str(), PrivateDrawer) == 0 || errno == EEXIST;
}

bool WriteNew(const std::string& path, std::string_view bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, PrivateFile);
    if (file < 0)
        return false;
    bool written = true;
    while (written && !bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        written = count > 0 || (count < 0 && errno == EINTR);
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return close(file) == 0 && written;
}

// Readers see the old file or the new one, never a part.
bool Replace(const std::string& drawer, const std::string& name, std::string_view bytes) {
    static std::atomic<unsigned> last{0};
    const std::string temporary =
        drawer + "/.solvane-" + std::to_string(getpid()) + '-' + std::to_string(++last);
    if (WriteNew(temporary, bytes) && rename(temporary.c_str(), (drawer + name).c_str()) == 0)
        return true;
    if (errno != EEXIST)
        unlink(temporary.c_str());
    return false;
}

} // namespace

// Letters, digits and these stay; the rest is escaped byte by byte, as the desktops do it.
std::string UriOf(std::string_view hostPath) {
    constexpr std::string_view plain = "!$&'()*+,-./:=@_~", digits = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char letter : hostPath) {
        const auto byte = static_cast<unsigned char>(letter);
        const bool isPlain = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
                             (letter >= '0' && letter <= '9') || plain.find(letter) != plain.npos;
        if (isPlain)
            uri += letter;
        else
            (uri += '%').append({digits[byte >> 4], digits[byte & 15]});
    }
    return uri;
}

std::uint32_t SideFor(const PictureBox& box) {
    const std::uint32_t side = std::max(box.Width, box.Height);
    if (box.Width == 0 || box.Height == 0)
        return 0;
    const auto row = std::ranges::lower_bound(SizeClasses, side, {}, &SizeClass::Side);
    return row == SizeClasses.end() ? 0 : row->Side;
}

std::optional<Picture> FindThumbnail(const std::string& uri, std::int64_t modified, std::uint32_t side) {
    std::optional<TextedPicture> record = FindRecord(DrawerOf(side), uri, modified);
    return record ? std::optional(std::move(record->Shown)) : std::nullopt;
}

bool IsKnownBroken(const std::string& uri, std::int64_t modified) {
    return FindRecord(FailDrawer, uri, modified).has_value();
}

bool IsInCache(std::string_view hostPath) {
    const std::string root = CacheRoot();
    return !root.empty() && hostPath.starts_with(root + '/');
}

bool StoreThumbnail(const NewThumbnail& thumbnail) {
    const std::string root = CacheRoot();
    if (root.empty())
        return false;
    const Picture nothing{1, 1, {0}};
    const std::string bytes = EncodePng(thumbnail.Shown ? *thumbnail.Shown : nothing,
                                        {{"Thumb::URI", thumbnail.Uri},
                                         {"Thumb::MTime", std::to_string(thumbnail.Modified)},
                                         {"Thumb::Size", std::to_string(thumbnail.FileSize)},
                                         {"Software", "Solvane"}});
    const std::string drawer = root + std::string(thumbnail.Shown ? DrawerOf(thumbnail.Side) : FailDrawer);
    return !bytes.empty() && MakeDrawers(drawer) && Replace(drawer, NameOf(thumbnail.Uri), bytes);
}

} // namespace datatypes
