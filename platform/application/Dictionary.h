// A preferences document: numbers, booleans, texts and arrays under keys, kept as an XML property list.
// It knows no key of the program and touches no file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace application {

// Arrays nest at most this deep; what lies deeper in a document is left out.
inline constexpr int DeepestArray = 16;

struct PrefsValue;
using PrefsArray = std::vector<PrefsValue>;

struct PrefsValue {
    // Nothing stands in an array for an element of an unknown kind, so that those after it keep their places.
    std::variant<std::monostate, std::int64_t, bool, std::string, PrefsArray> Data;

    // The value in the wanted kind; a boolean and a number stand for each other. Nothing for another kind.
    [[nodiscard]] std::optional<std::int64_t> Number() const;
    [[nodiscard]] const std::string* String() const;
    [[nodiscard]] const PrefsArray* Array() const;
};

class Dictionary {
public:
    // Reads a document. Nothing when it is no property list; a key without a value, or with one of an unknown
    // kind, has one that is of no kind.
    [[nodiscard]] static std::optional<Dictionary> FromXml(std::string_view document);
    // Keys stand in the order in which they were set.
    [[nodiscard]] std::string ToXml() const;

    [[nodiscard]] std::int64_t Number(std::string_view key, std::int64_t fallback) const;
    [[nodiscard]] bool Boolean(std::string_view key, bool fallback) const;
    // The text stays the dictionary's, or is the fallback.
    [[nodiscard]] std::string_view String(std::string_view key, std::string_view fallback) const;
    [[nodiscard]] const PrefsArray* Array(std::string_view key) const; // null when there is none
    [[nodiscard]] bool Has(std::string_view key) const;                // whatever its value is

    void Set(std::string_view key, PrefsValue value);

private:
    [[nodiscard]] const PrefsValue* Find(std::string_view key) const;
    std::vector<std::pair<std::string, PrefsValue>> Entries;
    std::map<std::string, std::size_t, std::less<>> Places; // key to its entry
};

} // namespace application
