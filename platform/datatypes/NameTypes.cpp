#include "platform/datatypes/NameTypes.h"

#include "platform/datatypes/KnownNames.h"
#include "platform/datatypes/MimeTypes.h"

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>

namespace datatypes {

namespace {

// Answers for extensions as they stand (".C" is not ".c"). Drawers of numbered files must not fill
// the memory.
struct Answers {
    static constexpr std::size_t Most = 4096;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept {
            return std::hash<std::string_view>{}(text);
        }
    };
    std::unordered_map<std::string, NameMeaning, Hash, std::equal_to<>> ByExtension;
    std::shared_mutex Lock;
};

Answers& Kept() {
    static Answers answers;
    return answers;
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
    Answers& answers = Kept();
    {
        const std::shared_lock guard(answers.Lock);
        if (const auto known = answers.ByExtension.find(raw); known != answers.ByExtension.end()) {
            return known->second;
        }
    }
    const NameMeaning meaning = FindMeaning(raw, specimen.Extension);
    const std::unique_lock guard(answers.Lock);
    if (answers.ByExtension.size() < Answers::Most) {
        answers.ByExtension.emplace(raw, meaning);
    }
    return meaning;
}

} // namespace datatypes
