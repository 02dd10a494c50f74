#include "platform/datatypes/DecodePicture.h"

#include "platform/datatypes/IlbmPicture.h"
#include "platform/datatypes/SafePicture.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include <algorithm>
#include <array>
#include <mutex>

namespace datatypes {

namespace {

constexpr int FastQuality = 49; // below 50 the JPEG reader takes its quick ways, which nobody sees when small
constexpr std::array<int, 3> JpegDivisors{8, 4, 2};
constexpr std::uint64_t LargePixels = std::uint64_t{16} * 1024 * 1024;

// Large pictures are opened one at a time, so that a drawer full of them does not need the memory of as many
// as there are threads.
std::mutex LargePictures;

QSize FittedSize(const QSize& size, const PictureBox& box) {
    const int width = box.Width == 0 ? size.width() : static_cast<int>(std::min(box.Width, 65535U));
    const int height = box.Height == 0 ? size.height() : static_cast<int>(std::min(box.Height, 65535U));
    const bool fits = size.width() <= width && size.height() <= height;
    if (fits && (!box.Enlarge || (box.Width == 0 && box.Height == 0)))
        return size;
    // A side without a limit follows the other one.
    const QSize room(box.Width == 0 ? 1 << 24 : width, box.Height == 0 ? 1 << 24 : height);
    return size.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
}

Picture FromImage(const QImage& image) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    Picture picture{
        static_cast<std::uint32_t>(plain.width()), static_cast<std::uint32_t>(plain.height()), {}};
    picture.Pixels.resize(std::size_t{picture.Width} * picture.Height);
    for (int y = 0; y < plain.height(); ++y)
        std::copy_n(reinterpret_cast<const std::uint32_t*>(plain.constScanLine(y)), picture.Width,
                    picture.Pixels.begin() + std::ptrdiff_t{y} * static_cast<std::ptrdiff_t>(picture.Width));
    return picture;
}

// Shares the pixels, which must stay.
QImage AsImage(const Picture& picture) {
    const int width = static_cast<int>(picture.Width);
    return {reinterpret_cast<const uchar*>(picture.Pixels.data()), width, static_cast<int>(picture.Height),
            static_cast<qsizetype>(picture.Width) * 4, QImage::Format_ARGB32};
}

QImage Scaled(const QImage& image, const QSize& size) {
    if (image.isNull() || image.size() == size)
        return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

bool SwapsSides(const QImageReader& reader) {
    return (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
}

// Decodes no finer than needed. The JPEG reader divides by powers of two for next to nothing; drawings have
// no size of their own.
void ChooseScale(QImageReader& reader, const QSize& size, const QSize& wanted) {
    if (reader.format() == "svg") {
        reader.setScaledSize(wanted);
        return;
    }
    if (reader.format() != "jpeg")
        return;
    const auto wide = [&](int divisor) {
        return size.width() / divisor >= wanted.width() && size.height() / divisor >= wanted.height();
    };
    const auto divisor = std::ranges::find_if(JpegDivisors, wide);
    if (divisor == JpegDivisors.end())
        return;
    reader.setScaledSize({size.width() / *divisor, size.height() / *divisor});
    reader.setQuality(FastQuality);
}

DecodedPicture Refused(PictureFault fault) {
    DecodedPicture answer;
    answer.Fault = fault;
    return answer;
}

DecodedPicture Finish(const QImage& image, const QSize& full, const PictureBox& box) {
    if (image.isNull()) {
        // Readers do not tell a broken picture from one that there is no memory for, so that is tried here.
        if (!full.isEmpty() && QImage(full, QImage::Format_RGB32).isNull())
            throw std::bad_alloc();
        return Refused(PictureFault::Broken);
    }
    const QSize size = full.isEmpty() ? image.size() : full;
    const QImage fitted = Scaled(image, FittedSize(size, box));
    if (fitted.isNull())
        throw std::bad_alloc();
    return {FromImage(fitted), PictureFault::None, static_cast<std::uint32_t>(size.width()),
            static_cast<std::uint32_t>(size.height())};
}

DecodedPicture DecodeIlbm(Bytes file, const PictureBox& box) {
    std::unique_lock<std::mutex> alone(LargePictures, std::defer_lock);
    if (IlbmPixels(file) > LargePixels / 2) // squared, they are twice as many
        alone.lock();
    const std::optional<Picture> picture = ParseIlbm(file, MostPixels);
    return picture ? Finish(AsImage(*picture), {}, box) : Refused(PictureFault::Broken);
}

DecodedPicture DecodeByReader(Bytes file, const PictureBox& box) {
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                               static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QImageReader::setAllocationLimit(static_cast<int>(MostPixels * 4 / (1024 * 1024)));
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return Refused(PictureFault::Unknown);
    // The reader of drawings reads all of one to tell its size, and with it what it names.
    if (reader.format().startsWith("svg") && !IsSafePicture(file, "svg", 0))
        return Refused(PictureFault::Broken);
    const QSize stored = reader.size();
    const auto pixels = static_cast<std::uint64_t>(std::max(stored.width(), 0)) *
                        static_cast<std::uint64_t>(std::max(stored.height(), 0));
    if (!IsSafePicture(file, reader.format().toStdString(), pixels))
        return Refused(PictureFault::Broken);
    const bool swaps = SwapsSides(reader);
    const QSize full = swaps ? stored.transposed() : stored;
    if (!stored.isEmpty()) {
        const QSize wanted = FittedSize(full, box);
        ChooseScale(reader, stored, swaps ? wanted.transposed() : wanted);
    }
    std::unique_lock<std::mutex> alone(LargePictures, std::defer_lock);
    if (pixels > LargePixels || stored.isEmpty())
        alone.lock();
    return Finish(reader.read(), full, box);
}

} // namespace

DecodedPicture DecodePicture(Bytes file, const PictureBox& box) {
    if (file.size() > MostPictureBytes)
        return Refused(PictureFault::Broken);
    if (IsPacked(file)) {
        const std::string drawing = UnpackDrawing(file);
        return drawing.empty() ? Refused(PictureFault::Broken) : DecodeByReader(AsBytes(drawing), box);
    }
    return IsIlbm(file) ? DecodeIlbm(file, box) : DecodeByReader(file, box);
}

Picture FitPicture(const Picture& picture, const PictureBox& box) {
    const QImage image = AsImage(picture);
    const QSize size = FittedSize(image.size(), box);
    return size == image.size() ? picture : FromImage(Scaled(image, size));
}

std::string EncodePng(const Picture& picture, const PictureTexts& texts) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image = AsImage(picture);
    // Most pictures have no transparent pixel; without the channel the file is smaller.
    if (std::ranges::all_of(picture.Pixels, [](std::uint32_t pixel) { return pixel >> 24 == 0xFF; }))
        image = image.convertToFormat(QImage::Format_RGB32);
    for (const auto& [keyword, value] : texts)
        image.setText(QString::fromStdString(keyword), QString::fromStdString(value));
    QImageWriter writer(&buffer, "png");
    return writer.write(image) ? bytes.toStdString() : std::string();
}

std::optional<TextedPicture> DecodePng(Bytes file, std::uint32_t mostSide) {
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                               static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (size.isEmpty() || std::max(size.width(), size.height()) > static_cast<int>(mostSide))
        return std::nullopt;
    const QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    TextedPicture picture{FromImage(image), {}};
    for (const QString& keyword : image.textKeys())
        picture.Texts.emplace_back(keyword.toStdString(), image.text(keyword).toStdString());
    return picture;
}

} // namespace datatypes
