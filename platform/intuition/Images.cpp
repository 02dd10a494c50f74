#include "platform/intuition/Images.h"

#include "platform/intuition/HostFile.h"
#include "platform/intuition/Native.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPixmap>

#include <optional>
#include <string>
#include <unordered_map>

namespace intuition {

namespace {

constexpr int MaximumSide = 16384;    // pixels
constexpr int MaximumMegabytes = 256; // of one decoded picture

struct CachedImage {
    std::string Path; // empty for the program's own pictures
    std::size_t Uses = 1;
    std::optional<QPixmap> Picture; // nothing before the first look at it; null when it cannot be shown
};

struct ImageCache {
    std::unordered_map<std::uint32_t, CachedImage> ById;
    std::unordered_map<std::string, std::uint32_t> ByPath;
    std::uint32_t LastId = 0; // ids are not used again
};
ImageCache Cache;

QString HostName(const std::string& file) {
    return QFile::decodeName(QByteArray::fromStdString(file));
}

QString DenseName(const QString& file) {
    const qsizetype dot = file.lastIndexOf(u'.');
    return dot < 0 ? file : file.left(dot) + QStringLiteral("@2x") + file.mid(dot);
}

// Regular files only: nothing here may wait for a pipe or a device.
QImage ReadImage(const QString& file, qreal scale) {
    if (!QFileInfo(file).isFile())
        return {};
    QImageReader reader(file);
    QImageReader::setAllocationLimit(MaximumMegabytes);
    const QSize size = reader.size();
    if (size.width() > MaximumSide || size.height() > MaximumSide)
        return {};
    if (scale > 1 && reader.format().startsWith("svg"))
        reader.setScaledSize(size * scale);
    QImage image = reader.read();
    if (scale > 1 && reader.format().startsWith("svg"))
        image.setDevicePixelRatio(scale);
    return image;
}

QPixmap LoadPixmap(const std::string& path) {
    const auto file = HostFile(path);
    if (!file)
        return {};
    const qreal scale = qGuiApp->devicePixelRatio();
    const QString name = HostName(*file);
    if (scale > 1) {
        if (QImage dense = ReadImage(DenseName(name), 1); !dense.isNull()) {
            dense.setDevicePixelRatio(2);
            return QPixmap::fromImage(std::move(dense));
        }
    }
    return QPixmap::fromImage(ReadImage(name, scale));
}

ImageId Keep(CachedImage image) {
    const std::uint32_t id = ++Cache.LastId;
    if (!image.Path.empty())
        Cache.ByPath.emplace(image.Path, id);
    Cache.ById.emplace(id, std::move(image));
    return static_cast<ImageId>(id);
}

} // namespace

ImageId ObtainImage(std::string_view path) {
    if (path.empty())
        return ImageId::None;
    const auto known = Cache.ByPath.find(std::string(path));
    if (known == Cache.ByPath.end())
        return Keep({std::string(path), 1, std::nullopt});
    ++Cache.ById.at(known->second).Uses;
    return static_cast<ImageId>(known->second);
}

ImageId CreateImage(int width, int height, std::span<const std::uint32_t> pixels) {
    if (width < 1 || height < 1 || width > MaximumSide || height > MaximumSide)
        return ImageId::None;
    if (pixels.size() < static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
        return ImageId::None;
    const QImage image(reinterpret_cast<const uchar*>(pixels.data()), width, height, QImage::Format_ARGB32);
    return Keep({{}, 1, QPixmap::fromImage(image)});
}

ImageId KeepPicture(QPixmap picture) {
    return Keep({{}, 1, std::move(picture)});
}

void RetainImage(ImageId image) {
    const auto known = Cache.ById.find(static_cast<std::uint32_t>(image));
    if (known != Cache.ById.end())
        ++known->second.Uses;
}

void ReleaseImage(ImageId image) {
    const auto known = Cache.ById.find(static_cast<std::uint32_t>(image));
    if (known == Cache.ById.end() || --known->second.Uses > 0)
        return;
    Cache.ByPath.erase(known->second.Path);
    Cache.ById.erase(known);
}

ImageSize SizeOfImage(ImageId image) {
    const QPixmap picture = PixmapOf(image);
    const QSizeF size = picture.deviceIndependentSize();
    return {static_cast<int>(size.width()), static_cast<int>(size.height())};
}

QPixmap PixmapOf(ImageId image) {
    const auto known = Cache.ById.find(static_cast<std::uint32_t>(image));
    if (known == Cache.ById.end())
        return {};
    CachedImage& cached = known->second;
    if (!cached.Picture)
        cached.Picture = LoadPixmap(cached.Path);
    return *cached.Picture;
}

QIcon IconOf(ImageId image, ImageId ghosted) {
    QIcon icon(PixmapOf(image));
    if (const QPixmap picture = PixmapOf(ghosted); !picture.isNull())
        icon.addPixmap(picture, QIcon::Disabled);
    return icon;
}

void ForgetImages() {
    ForgetWishedImages();
    Cache = {};
}

} // namespace intuition
