// Makes all pictures of the run-time drawer: reads Images/pictures.list and writes PNG files and
// icons.
//
// usage: solvane_render_pictures LIST THEME OWN IMAGES ICONS HICOLOR
#include "Images/render/Pictures.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

struct Places {
    Sources From;
    QString Images;  // the root of PNG files
    QString Icons;   // the drawer of default icons
    QString Hicolor; // the root of the desktop's icons
};

// One line of the list: kind, name, source[+badge], sizes separated by commas.
struct Row {
    QString Kind;
    QString Name;
    QString Source;
    QString Badge;
    QList<int> Sizes;
};

std::optional<Row> ParseRow(const QString& line) {
    const QStringList words = line.simplified().split(QLatin1Char(' '));
    if (words.size() != 4) {
        return std::nullopt;
    }
    Row row{words[0],
            words[1],
            words[2].section(QLatin1Char('+'), 0, 0),
            words[2].section(QLatin1Char('+'), 1),
            {}};
    for (const QString& size : words[3].split(QLatin1Char(','))) {
        row.Sizes.append(size.toInt());
    }
    return row.Sizes.contains(0) ? std::nullopt : std::optional(row);
}

bool WriteBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size();
}

bool SavePng(const QImage& picture, const QString& path) {
    return QDir().mkpath(QFileInfo(path).path()) && picture.save(path, "PNG");
}

QImage Picture(const Row& row, const Places& places, int size) {
    QImage picture = LoadPicture(places.From, row.Source, size);
    return picture.isNull() || row.Badge.isEmpty() ? picture : WithBadge(picture, places.From, row.Badge);
}

// The first size stands under the plain name, further ones in a drawer named by the size.
QString ImagePath(const Row& row, const Places& places, int size, const char* mark) {
    const QFileInfo name(places.Images + QLatin1Char('/') + row.Name);
    const QString drawer =
        size == row.Sizes.first() ? name.path() : name.path() + QLatin1Char('/') + QString::number(size);
    return drawer + QLatin1Char('/') + name.fileName() + QLatin1String(mark);
}

bool MakeImage(const Row& row, const Places& places, int size, State state, const char* mark) {
    const QString path = ImagePath(row, places, size, mark);
    const QImage once = Picture(row, places, size);
    const QImage twice = Picture(row, places, 2 * size);
    return !once.isNull() && !twice.isNull() && SavePng(InState(once, state), path + QLatin1String(".png")) &&
           SavePng(InState(twice, state), path + QLatin1String("@2x.png"));
}

bool MakeDesktopIcon(const Row& row, const Places& places, int size) {
    const QImage picture = Picture(row, places, size);
    return !picture.isNull() &&
           SavePng(picture,
                   QStringLiteral("%1/%2x%2/apps/%3.png").arg(places.Hicolor).arg(size).arg(row.Name));
}

// The icon types that default icons need, by the kind's word in the list.
quint32 IconType(const QString& kind) {
    static const QStringList kinds{QStringLiteral("disk"),     QStringLiteral("drawer"),
                                   QStringLiteral("tool"),     QStringLiteral("project"),
                                   QStringLiteral("trashcan"), QStringLiteral("device"),
                                   QStringLiteral("kick")};
    return static_cast<quint32>(kinds.indexOf(kind) + 1);
}

bool MakeRow(const Row& row, const Places& places) {
    if (const quint32 type = IconType(row.Kind); type != 0) {
        const QImage picture = Picture(row, places, row.Sizes.first());
        return !picture.isNull() &&
               WriteBytes(places.Icons + QLatin1Char('/') + row.Name + QLatin1String(".info"),
                          IconFile(picture, type));
    }
    if (row.Kind == QLatin1String("app")) {
        return std::ranges::all_of(row.Sizes, [&](int size) { return MakeDesktopIcon(row, places, size); });
    }
    const bool button = row.Kind == QLatin1String("button");
    bool made = button || row.Kind == QLatin1String("image");
    for (const int size : row.Sizes) {
        made = made && MakeImage(row, places, size, State::Plain, "");
        made = made && (!button || (MakeImage(row, places, size, State::Selected, "_s") &&
                                    MakeImage(row, places, size, State::Ghosted, "_g")));
    }
    return made;
}

// False after the first row that cannot be made, which is named on the error output.
bool MakeAll(QFile& list, const Places& places) {
    while (!list.atEnd()) {
        const QString line = QString::fromUtf8(list.readLine()).section(QLatin1Char('#'), 0, 0).trimmed();
        const std::optional<Row> row = ParseRow(line);
        if (!line.isEmpty() && (!row || !MakeRow(*row, places))) {
            std::fprintf(stderr, "cannot make \"%s\" from the theme in %s\n", qPrintable(line),
                         qPrintable(places.From.Theme));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 7) {
        std::fputs("usage: solvane_render_pictures LIST THEME OWN IMAGES ICONS HICOLOR\n", stderr);
        return 2;
    }
    QFile list(QString::fromLocal8Bit(argv[1]));
    if (!list.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 1;
    }
    const Places places{{QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3])},
                        QString::fromLocal8Bit(argv[4]),
                        QString::fromLocal8Bit(argv[5]),
                        QString::fromLocal8Bit(argv[6])};
    return MakeAll(list, places) ? 0 : 1;
}
