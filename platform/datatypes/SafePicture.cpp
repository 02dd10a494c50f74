#include "platform/datatypes/SafePicture.h"

#include "platform/datatypes/DecodePicture.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

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

// What an element refers to, in the old spelling or the new one.
QString TargetOf(const QXmlStreamAttributes& attributes) {
    const QString target = attributes.value(QStringLiteral("href")).toString();
    return target.isEmpty()
               ? attributes.value(QStringLiteral("http://www.w3.org/1999/xlink"), QStringLiteral("href"))
                     .toString()
               : target;
}

// Counts what a drawing draws when every "use" is followed, as the elements are met.
class DrawingCounter {
public:
    void Open(const QXmlStreamAttributes& attributes, bool isUse) {
        Element element{attributes.value(QStringLiteral("id")).toString().toStdString(), 1};
        if (isUse) {
            const QString target = TargetOf(attributes);
            const auto known = Weights.find(target.mid(1).toStdString());
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
        if (reader.isStartElement()) {
            // A picture out of a drawer has no business with other files.
            if (reader.name() == QStringLiteral("image") &&
                !TargetOf(reader.attributes()).startsWith(QStringLiteral("data:")))
                return false;
            counter.Open(reader.attributes(), reader.name() == QStringLiteral("use"));
        } else if (reader.isEndElement()) {
            counter.Close();
        }
    }
    return !reader.hasError() && counter.IsSafe();
}

} // namespace

bool IsSafePicture(Bytes file, std::string_view format, std::uint64_t pixels) {
    if (format == "jpeg" || format == "jpg")
        return IsSafeJpeg(file, pixels);
    if (format.starts_with("svg"))
        return IsSafeDrawing(file);
    return pixels <= MostPixels;
}

} // namespace datatypes
