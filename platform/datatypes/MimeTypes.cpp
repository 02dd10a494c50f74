#include "platform/datatypes/MimeTypes.h"

#include "platform/datatypes/TypeRegistry.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QMimeDatabase>
#include <QMimeType>
#include <QStandardPaths>
#include <QString>

#include <algorithm>
#include <array>
#include <fnmatch.h>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

namespace datatypes {

namespace {

using namespace Qt::StringLiterals;

// One question to the database at a time. It locks for itself, but types read more of it later.
std::mutex& DatabaseLock() {
    static std::mutex lock;
    return lock;
}

// The patterns of the database as its plain list has them: a look there costs a fiftieth of a question, and
// most unknown extensions are in no pattern.
class NamePatterns {
public:
    NamePatterns() {
        const auto place = QStandardPaths::GenericDataLocation;
        const QStringList lists = QStandardPaths::locateAll(place, u"mime/globs2"_s);
        const auto drawers =
            QStandardPaths::locateAll(place, u"mime/packages"_s, QStandardPaths::LocateDirectory);
        Complete = !lists.isEmpty() && lists.size() >= drawers.size();
        for (const QString& list : lists) {
            Complete = Read(list) && Complete;
        }
    }

    // False only when the database surely has nothing for the extension.
    [[nodiscard]] bool MayMatch(std::string_view extension) const {
        const QByteArray lower =
            QByteArray(extension.data(), static_cast<qsizetype>(extension.size())).toLower();
        const QByteArray name = "x." + lower;
        return !Complete || Suffixes.contains(lower.toStdString()) ||
               std::ranges::any_of(Others, [&name](const QByteArray& pattern) {
                   return fnmatch(pattern.constData(), name.constData(), 0) == 0;
               });
    }

private:
    static constexpr qint64 Largest = 16 << 20; // bytes; real lists have a thousandth of it

    // Lines are "weight:type:pattern" with ":flags" behind some.
    bool Read(const QString& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly) || file.size() > Largest) {
            return false;
        }
        for (const QByteArray& line : file.read(Largest).split('\n')) {
            const QList<QByteArray> fields = line.split(':');
            if (fields.size() >= 3 && !line.startsWith('#')) {
                Add(fields[2].toLower());
            }
        }
        return true;
    }
    void Add(const QByteArray& pattern) {
        const std::string suffix = pattern.mid(2).toStdString();
        if (pattern.startsWith("*.") && suffix.find_first_of("*?[") == std::string::npos) {
            Suffixes.insert(suffix);
        } else if (pattern.startsWith('*') || pattern.startsWith('?') || pattern.startsWith('[')) {
            Others.push_back(pattern);
        }
    }

    std::unordered_set<std::string> Suffixes; // lower-case
    std::vector<QByteArray> Others;
    bool Complete = false;
};

const NamePatterns& Patterns() {
    static const NamePatterns patterns;
    return patterns;
}

// The parents of a MIME type that say what its files look like inside.
struct Family {
    Container Holds = Container::None;
    bool IsText = false;
};

Family FamilyOf(const QMimeType& mime) {
    if (mime.inherits(u"application/xml"_s)) {
        return {Container::Xml, true};
    }
    if (mime.inherits(u"text/plain"_s) || mime.name().startsWith(u"text/"_s)) {
        return {Container::None, true};
    }
    if (mime.inherits(u"application/zip"_s)) {
        return {Container::Zip, false};
    }
    if (mime.inherits(u"application/gzip"_s)) {
        return {Container::Gzip, false};
    }
    if (mime.inherits(u"application/x-ole-storage"_s)) {
        return {Container::Ole, false};
    }
    if (mime.inherits(u"image/tiff"_s)) {
        return {Container::Tiff, false};
    }
    return {};
}

bool SaysNothing(std::string_view mime) {
    return mime.empty() || mime == "application/octet-stream" || mime == "application/x-trash" ||
           mime.starts_with("inode/") || mime == "application/x-zerosize";
}

const DataType* TypeInRows(std::string_view mime) {
    const auto rows = MimeRows();
    const auto row = std::ranges::lower_bound(rows, mime, {}, &MimeRow::Mime);
    return row != rows.end() && row->Mime == mime ? FindType(row->Type.Name) : nullptr;
}

GroupId GroupOf(const QMimeType& mime) {
    struct IconRow {
        std::string_view Start;
        GroupId Group;
    };
    constexpr std::array<IconRow, 6> icons = {{
        {"text-", GroupId::Text},
        {"audio-", GroupId::Sound},
        {"video-", GroupId::Movie},
        {"image-", GroupId::Picture},
        {"x-office-", GroupId::Document},
        {"font-", GroupId::System},
    }};
    const std::string icon = mime.genericIconName().toStdString();
    const auto row = std::ranges::find_if(icons, [&](const IconRow& r) { return icon.starts_with(r.Start); });
    return row == icons.end() ? GroupId::System : row->Group;
}

// A short name out of "application/x-some.vendor.thing+zip": "THING".
std::string NameOf(std::string_view mime) {
    std::string_view name = mime.substr(mime.find('/') + 1);
    name = name.substr(0, name.find('+'));
    for (const std::string_view prefix : {"x-", "x.", "vnd.", "prs."}) {
        if (name.starts_with(prefix) && name.size() > prefix.size()) {
            name.remove_prefix(prefix.size());
        }
    }
    if (const std::size_t dot = name.rfind('.'); dot != name.npos && name.size() - dot > 3) {
        name.remove_prefix(dot + 1);
    }
    return std::string(name);
}

const DataType* TypeOf(const QMimeType& mime) {
    const std::string name = mime.name().toStdString();
    if (SaysNothing(name)) {
        return nullptr;
    }
    const DataType* type = TypeInRows(name);
    return type != nullptr ? type : RegisterType(NameOf(name), GroupOf(mime));
}

void AddMeaning(NameMeaning& meaning, const QMimeType& mime) {
    const DataType* type = TypeOf(mime);
    if (type == nullptr) {
        return;
    }
    meaning.Known = true;
    const Family family = FamilyOf(mime);
    if (family.Holds != Container::None) {
        const DataType*& inside = meaning.Inside[static_cast<std::size_t>(family.Holds)];
        inside = inside == nullptr ? type : inside;
    }
    if (family.IsText) {
        meaning.Text = meaning.Text == nullptr ? type : meaning.Text;
    } else if (family.Holds == Container::None && meaning.Other == nullptr && !IsKnownByContent(type)) {
        meaning.Other = type;
    }
}

} // namespace

NameMeaning MeaningOfExtension(std::string_view extension) {
    if (!Patterns().MayMatch(extension)) {
        return {};
    }
    const std::lock_guard guard(DatabaseLock());
    const QMimeDatabase database;
    const QString name =
        u"x."_s + QString::fromLatin1(extension.data(), static_cast<qsizetype>(extension.size()));
    NameMeaning meaning;
    const QList<QMimeType> types = database.mimeTypesForFileName(name);
    for (const bool inTable : {true, false}) { // types of our table go first
        for (const QMimeType& mime : types) {
            if ((TypeInRows(mime.name().toStdString()) != nullptr) == inTable) {
                AddMeaning(meaning, mime);
            }
        }
    }
    return meaning;
}

const DataType* TypeForMime(std::string_view mime) {
    if (SaysNothing(mime)) {
        return nullptr;
    }
    if (const DataType* type = TypeInRows(mime)) {
        return type;
    }
    const std::lock_guard guard(DatabaseLock());
    const QMimeDatabase database;
    const QMimeType known =
        database.mimeTypeForName(QString::fromLatin1(mime.data(), static_cast<qsizetype>(mime.size())));
    if (known.isValid()) {
        return TypeOf(known);
    }
    const bool picture = mime.starts_with("image/"), sound = mime.starts_with("audio/");
    const bool movie = mime.starts_with("video/"), text = mime.starts_with("text/");
    return RegisterType(NameOf(mime), picture ? GroupId::Picture
                                      : sound ? GroupId::Sound
                                      : movie ? GroupId::Movie
                                      : text  ? GroupId::Text
                                              : GroupId::System);
}

} // namespace datatypes
