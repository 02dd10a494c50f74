#include "Images/render/Pictures.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QtEndian>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <array>

namespace {

constexpr std::array ThemeSizes{16, 24, 32, 48, 64, 96, 128};
constexpr quint32 IconTypeTag = 0x8000100F;
constexpr int EndChunkSize = 12; // the length, name and checksum of the empty last chunk of a PNG

QImage DrawOwn(const QString& path, int size) {
    QSvgRenderer renderer(path);
    if (!renderer.isValid()) {
        return {};
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

// Pictures of the theme are not always square (a small folder is wider than high): they stand in
// the middle.
QImage Squared(const QImage& picture, int size) {
    QImage fitted = picture;
    if (picture.width() > size || picture.height() > size) {
        fitted = picture.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage((size - fitted.width()) / 2, (size - fitted.height()) / 2, fitted);
    return image;
}

// Nothing in the theme is larger than its largest size: pictures beyond it are that one, grown.
QImage LoadFromTheme(const QString& theme, const QString& category, const QString& name, int size) {
    QImage largest;
    for (const int stored : ThemeSizes) {
        const QString path = QStringLiteral("%1/%2/%3/%4.png").arg(theme, category).arg(stored).arg(name);
        if (QFile::exists(path) && (stored >= size || size > ThemeSizes.back())) {
            largest = QImage(path);
            if (stored >= size) {
                return Squared(largest, size);
            }
        }
    }
    return largest.isNull()
               ? largest
               : Squared(largest.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation), size);
}

quint32 Checksum(const QByteArray& bytes) {
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~sum;
}

QByteArray BigEndian(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray PngBytes(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

} // namespace

QImage LoadPicture(const Sources& sources, const QString& source, int size) {
    const auto slash = source.indexOf(QLatin1Char('/'));
    if (slash < 0) {
        return DrawOwn(QStringLiteral("%1/%2.svg").arg(sources.Own, source), size);
    }
    return LoadFromTheme(sources.Theme, source.left(slash), source.mid(slash + 1), size);
}

QImage WithBadge(QImage picture, const Sources& sources, const QString& badge) {
    const int side = picture.width() * 9 / 16;
    const QImage drawn = DrawOwn(QStringLiteral("%1/%2.svg").arg(sources.Own, badge), side);
    if (drawn.isNull()) {
        return {};
    }
    QPainter painter(&picture);
    painter.drawImage(picture.width() - side, picture.height() - side, drawn);
    return picture;
}

QImage InState(const QImage& picture, State state) {
    if (state == State::Plain) {
        return picture;
    }
    QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const int grey = qGray(pixel);
            image.setPixel(x, y,
                           state == State::Ghosted ? qRgba(grey, grey, grey, qAlpha(pixel) * 2 / 5)
                                                   : qRgba(qRed(pixel) * 3 / 4, qGreen(pixel) * 3 / 4,
                                                           qBlue(pixel) * 3 / 4, qAlpha(pixel)));
        }
    }
    return image;
}

QByteArray IconFile(const QImage& picture, quint32 iconType) {
    const QByteArray data = BigEndian(IconTypeTag) + BigEndian(iconType);
    const QByteArray named = QByteArray("icOn") + data;
    const QByteArray chunk =
        BigEndian(static_cast<quint32>(data.size())) + named + BigEndian(Checksum(named));
    QByteArray plain = PngBytes(picture);
    plain.insert(plain.size() - EndChunkSize, chunk);
    return plain + PngBytes(InState(picture, State::Selected));
}
