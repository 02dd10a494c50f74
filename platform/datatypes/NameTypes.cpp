#include "platform/datatypes/NameTypes.h"

#include "platform/datatypes/KnownNames.h"
#include "platform/datatypes/MimeTypes.h"
#include "platform/datatypes/RecentAnswers.h"

#include <algorithm>
#include <memory>
#include <string>

namespace datatypes {

namespace {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>{}(text);
    }
};

// Meanings of extensions as they stand (".C" is not ".c"); null where nobody knows one, since those are many.
using Meanings = RecentAnswers<std::string, std::shared_ptr<const NameMeaning>, TextHash>;

Meanings& Kept() {
    static Meanings meanings;
    return meanings;
}

// Long numbers are parts of a series and no type.
bool IsSerialNumber(std::string_view extension) {
    return extension.size() >= 3 &&
           std::ranges::all_of(extension, [](char c) { return c >= '0' && c <= '9'; });
}

NameMeaning FindMeaning(std::string_view raw, std::string_view lower) {
    if (IsContentExtension(lower)) {
        NameMeaning meaning;
        meaning.Known = true;
        return meaning;
    }
    NameMeaning meaning = MeaningOfExtension(raw);
    if (const DataType* own = TextTypeByExtension(lower)) {
        meaning.Known = true;
        meaning.Text = own;
    }
    return meaning;
}

} // namespace

NameMeaning MeaningOfName(const Specimen& specimen) {
    if (const DataType* whole = TextTypeByWholeName(specimen.Name)) {
        NameMeaning meaning;
        meaning.Known = true;
        meaning.Text = whole;
        return meaning;
    }
    if (specimen.Extension.empty() || IsSerialNumber(specimen.Extension)) {
        return {};
    }
    const std::string_view raw = specimen.Name.substr(specimen.Name.size() - specimen.Extension.size());
    auto meaning = Kept().Find(raw);
    if (!meaning) {
        const NameMeaning found = FindMeaning(raw, specimen.Extension);
        meaning = found.Known ? std::make_shared<const NameMeaning>(found) : nullptr;
        Kept().Keep(std::string(raw), *meaning);
    }
    return *meaning != nullptr ? **meaning : NameMeaning{};
}

} // namespace datatypes
