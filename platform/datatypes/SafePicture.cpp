#include "platform/datatypes/SafePicture.h"

#include "platform/datatypes/DecodePicture.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>
#include <zlib.h>

namespace datatypes {

namespace {

constexpr std::uint64_t MostJpegPixels = std::uint64_t{256} * 1024 * 1024; // decoded smaller, row by row
constexpr std::uint64_t MostScannedPixels = std::uint64_t{1024} * 1024 * 1024;
constexpr std::size_t MostDrawingBytes = std::size_t{8} * 1024 * 1024;
constexpr std::uint64_t MostDrawnElements = 100'000;
constexpr std::size_t MostDrawingDepth = 200;

struct JpegFacts {
    bool Progressive = false;
    std::uint64_t Scans = 0;
};

// Marks inside of other segments are counted too, which errs on the safe side.
JpegFacts ScanJpeg(Bytes file) {
    JpegFacts facts;
    const std::string_view text = AsText(file);
    for (std::size_t at = text.find('\xFF'); at != text.npos; at = text.find('\xFF', at + 1)) {
        const std::uint32_t marker = U8(file, at + 1);
        facts.Scans += marker == 0xDA ? 1 : 0;
        facts.Progressive = facts.Progressive || marker == 0xC2 || marker == 0xC6;
    }
    return facts;
}

// A picture in several scans is held whole in memory, and each scan goes over all of it.
bool IsSafeJpeg(Bytes file, std::uint64_t pixels) {
    const JpegFacts facts = ScanJpeg(file);
    if (!facts.Progressive && facts.Scans <= 4)
        return pixels <= MostJpegPixels;
    return pixels <= MostPixels && facts.Scans * pixels <= MostScannedPixels;
}

// What an element refers to, whatever the prefix: which spelling the reader follows is its own affair.
std::set<QString> TargetsOf(const QXmlStreamAttributes& attributes) {
    std::set<QString> targets;
    for (const QXmlStreamAttribute& attribute : attributes)
        if (attribute.name() == QStringLiteral("href"))
            targets.insert(attribute.value().toString());
    return targets;
}

// A drawing within a drawing would be read without a check, so only plain pictures may be embedded.
bool IsEmbeddedPicture(const QString& target) {
    const QString mark = QStringLiteral("base64,");
    const qsizetype at = target.lastIndexOf(mark);
    if (!target.startsWith(QStringLiteral("data:")) || at < 0)
        return false;
    const QByteArray data = QByteArray::fromBase64(target.mid(at + mark.size()).toLatin1());
    return data.startsWith("\x89PNG") || data.startsWith("\xFF\xD8\xFF") || data.startsWith("GIF8");
}

// A picture out of a drawer has no business with other files.
bool LoadsNoFile(const QXmlStreamReader& reader) {
    constexpr std::array<QStringView, 5> loading = {u"image", u"feImage", u"font-face-uri", u"audio",
                                                    u"video"};
    if (std::ranges::find(loading, QStringView(reader.name())) == loading.end())
        return true;
    const std::set<QString> targets = TargetsOf(reader.attributes());
    return !targets.empty() && std::ranges::all_of(targets, IsEmbeddedPicture);
}

// Instructions name style sheets, which the reader opens. The usual document type says nothing; one with
// declarations of its own may hide anything behind an entity.
bool IsSafeToken(const QXmlStreamReader& reader) {
    switch (reader.tokenType()) {
    case QXmlStreamReader::ProcessingInstruction:
        return false;
    case QXmlStreamReader::DTD:
        return !reader.text().contains(u'[');
    case QXmlStreamReader::StartElement:
        return LoadsNoFile(reader);
    default:
        return true;
    }
}

// Counts what a drawing draws when every "use" is followed, as the elements are met.
class DrawingCounter {
public:
    void Open(const QXmlStreamAttributes& attributes, bool isUse) {
        Element element{attributes.value(QStringLiteral("id")).toString().toStdString(), 1};
        if (isUse) {
            const std::set<QString> targets = TargetsOf(attributes);
            const auto known =
                targets.size() == 1 ? Weights.find(targets.begin()->mid(1).toStdString()) : Weights.end();
            // What comes later in the file, or holds this very element, is not known yet.
            if (known == Weights.end())
                Unknown = true;
            else
                element.Weight += known->second;
        }
        Stack.push_back(std::move(element));
    }
    void Close() {
        const Element element = std::move(Stack.back());
        Stack.pop_back();
        if (!element.Id.empty())
            Weights[element.Id] = element.Weight;
        if (!Stack.empty())
            Stack.back().Weight = std::min(Stack.back().Weight + element.Weight, MostDrawnElements + 1);
        Most = std::max(Most, element.Weight);
    }
    [[nodiscard]] bool IsSafe() const {
        return !Unknown && Most <= MostDrawnElements && Stack.size() <= MostDrawingDepth;
    }

private:
    struct Element {
        std::string Id;
        std::uint64_t Weight;
    };
    std::vector<Element> Stack;
    std::map<std::string, std::uint64_t> Weights;
    std::uint64_t Most = 0;
    bool Unknown = false;
};

bool IsSafeDrawing(Bytes file) {
    if (file.size() > MostDrawingBytes)
        return false;
    const std::string_view text = AsText(file);
    QXmlStreamReader reader(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size())));
    DrawingCounter counter;
    while (!reader.atEnd() && counter.IsSafe()) {
        reader.readNext();
        if (!IsSafeToken(reader))
            return false;
        if (reader.isStartElement()) {
            counter.Open(reader.attributes(), reader.name() == QStringLiteral("use"));
        } else if (reader.isEndElement()) {
            counter.Close();
        }
    }
    return !reader.hasError() && counter.IsSafe();
}

} // namespace

bool IsPacked(Bytes file) {
    return AsText(file).starts_with("\x1F\x8B");
}

std::string UnpackDrawing(Bytes file) {
    constexpr int WithGzipHeader = MAX_WBITS + 16;
    constexpr std::size_t Step = 64 * 1024;
    z_stream stream = {};
    if (file.size() > MostDrawingBytes || inflateInit2(&stream, WithGzipHeader) != Z_OK)
        return {};
    const std::unique_ptr<z_stream, int (*)(z_stream*)> open(&stream, inflateEnd);
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(file.data())); // read only
    stream.avail_in = static_cast<uInt>(file.size());
    std::string drawing;
    int outcome = Z_OK;
    while (outcome == Z_OK && drawing.size() <= MostDrawingBytes) {
        const std::size_t before = drawing.size();
        drawing.resize(before + Step);
        stream.next_out = reinterpret_cast<Bytef*>(drawing.data() + before);
        stream.avail_out = static_cast<uInt>(Step);
        outcome = inflate(&stream, Z_NO_FLUSH);
        drawing.resize(drawing.size() - stream.avail_out);
    }
    const bool isWhole = outcome == Z_STREAM_END && drawing.size() <= MostDrawingBytes;
    return isWhole && !IsPacked(AsBytes(drawing)) ? drawing : std::string();
}

bool IsSafePicture(Bytes file, std::string_view format, std::uint64_t pixels) {
    if (format == "jpeg" || format == "jpg")
        return IsSafeJpeg(file, pixels);
    if (format.starts_with("svg"))
        return IsSafeDrawing(file);
    return pixels <= MostPixels;
}

} // namespace datatypes
