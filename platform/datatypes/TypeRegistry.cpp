#include "platform/datatypes/TypeRegistry.h"

#include "platform/datatypes/ContentTable.h"
#include "platform/datatypes/KnownNames.h"
#include "platform/datatypes/MimeTypes.h"

#include <algorithm>
#include <array>
#include <deque>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace datatypes {

namespace {

constexpr DataType Binary{"BINARY", GroupId::System, "bina"};
constexpr DataType Ascii{"ASCII", GroupId::Text, "asci"};

// Parts of type names by which other modules find files of these types.
constexpr std::array<std::string_view, 13> Reserved = {"MP3", "FLAC", "WAV",  "AIFF", "LHA",  "ASCII", "ILBM",
                                                       "GIF", "PNG",  "JPEG", "BMP",  "TIFF", "BINARY"};

// A type that came from a database at run time, with the texts its record points into.
struct MadeType {
    std::string Name;
    std::string Id;
    DataType Record;
};

struct Registry {
    std::unordered_map<std::string, const DataType*> ByName; // names in upper case
    std::unordered_set<const DataType*> ByContent;           // with a row in the tables of contents
    std::deque<MadeType> Made;                               // addresses stay
    std::shared_mutex Lock;                                  // over ByName and Made once built
};

char UpperCase(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), [](char c) { return UpperCase(c); });
    return upper;
}

// The type of that name: the one given when it is the first.
const DataType* Add(Registry& registry, const DataType& type) {
    return registry.ByName.try_emplace(UpperCase(type.Name), &type).first->second;
}

void AddTables(Registry& registry) {
    for (const auto& rows : {AmigaFormats(), MediaFormats(), GeneralFormats()}) {
        for (const ContentRow& row : rows) {
            registry.ByContent.insert(Add(registry, row.Type));
        }
    }
    for (const DataType& type : KnownTypes()) {
        Add(registry, type);
    }
    for (const MimeRow& row : MimeRows()) {
        Add(registry, row.Type);
    }
}

Registry& Types() {
    static Registry registry;
    static std::once_flag once;
    std::call_once(once, [] {
        Add(registry, Binary);
        Add(registry, Ascii);
        AddTables(registry);
    });
    return registry;
}

bool IsReserved(std::string_view name) {
    return std::ranges::any_of(Reserved,
                               [name](std::string_view word) { return name.find(word) != name.npos; });
}

// Upper-case letters, digits and a few signs; blanks for all else.
std::string CleanName(std::string_view name) {
    std::string clean;
    for (const char c : name.substr(0, NameSize)) {
        const char upper = UpperCase(c);
        const bool plain = (upper >= 'A' && upper <= 'Z') || (c >= '0' && c <= '9') ||
                           std::string_view("+-.#").find(c) != std::string_view::npos;
        clean += plain ? upper : ' ';
    }
    clean.erase(clean.find_last_not_of(' ') + 1);
    return clean;
}

std::string_view GeneralName(GroupId group) {
    switch (group) {
    case GroupId::Picture:
        return "IMAGE";
    case GroupId::Sound:
    case GroupId::Music:
    case GroupId::Instrument:
        return "AUDIO";
    case GroupId::Animation:
    case GroupId::Movie:
        return "VIDEO";
    default:
        return "DATA";
    }
}

std::string IdFromName(std::string_view name) {
    std::string id(name.substr(0, 4));
    id.resize(4, ' ');
    std::ranges::transform(
        id, id.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return id;
}

} // namespace

const DataType& BinaryType() noexcept {
    return Binary;
}
const DataType& AsciiType() noexcept {
    return Ascii;
}

const DataType* FindType(std::string_view name) {
    Registry& registry = Types();
    const std::shared_lock guard(registry.Lock);
    const auto place = registry.ByName.find(UpperCase(name));
    return place == registry.ByName.end() ? nullptr : place->second;
}

bool IsKnownByContent(const DataType* type) {
    return Types().ByContent.contains(type);
}

const DataType* RegisterType(std::string_view name, GroupId group) {
    std::string clean = CleanName(name);
    if (clean.empty() || IsReserved(clean)) {
        clean = GeneralName(group);
    }
    Registry& registry = Types();
    const std::unique_lock guard(registry.Lock);
    if (const auto place = registry.ByName.find(clean); place != registry.ByName.end()) {
        return place->second;
    }
    MadeType& made = registry.Made.emplace_back(MadeType{clean, IdFromName(clean), {}});
    made.Record = {made.Name, group, made.Id};
    registry.ByName.emplace(made.Name, &made.Record);
    return &made.Record;
}

} // namespace datatypes
