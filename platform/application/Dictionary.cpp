#include "platform/application/Dictionary.h"

#include <charconv>
#include <pugixml.hpp>
#include <sstream>

namespace application {

namespace {

std::optional<PrefsValue> ReadValue(const pugi::xml_node& node, int depth);

PrefsArray ReadArray(const pugi::xml_node& node, int depth) {
    PrefsArray array;
    if (depth < DeepestArray) {
        for (const pugi::xml_node& element : node.children()) {
            if (element.type() == pugi::node_element) {
                array.push_back(ReadValue(element, depth + 1).value_or(PrefsValue()));
            }
        }
    }
    return array;
}

// All text of an element: comments and sections may split it.
std::string TextOf(const pugi::xml_node& node) {
    std::string text;
    for (const pugi::xml_node& part : node.children()) {
        text += part.value();
    }
    return text;
}

std::optional<PrefsValue> ReadInteger(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    text = text.substr(first, text.find_last_not_of(blanks) + 1 - first);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return PrefsValue{number};
}

std::optional<PrefsValue> ReadValue(const pugi::xml_node& node, int depth) {
    const std::string_view kind = node.name();
    if (kind == "integer") {
        return ReadInteger(TextOf(node));
    }
    if (kind == "true" || kind == "false") {
        return PrefsValue{kind == "true"};
    }
    if (kind == "string") {
        return PrefsValue{TextOf(node)};
    }
    if (kind == "array") {
        return PrefsValue{ReadArray(node, depth)};
    }
    return std::nullopt;
}

void WriteText(pugi::xml_node& parent, const char* kind, const std::string& text) {
    parent.append_child(kind).append_child(pugi::node_pcdata).set_value(text.c_str());
}

void WriteValue(pugi::xml_node& parent, const PrefsValue& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value.Data)) {
        WriteText(parent, "integer", std::to_string(*number));
    } else if (const auto* flag = std::get_if<bool>(&value.Data)) {
        parent.append_child(*flag ? "true" : "false");
    } else if (const auto* text = std::get_if<std::string>(&value.Data)) {
        WriteText(parent, "string", *text);
    } else if (const auto* array = std::get_if<PrefsArray>(&value.Data)) {
        pugi::xml_node node = parent.append_child("array");
        for (const PrefsValue& element : *array) {
            WriteValue(node, element);
        }
    } else {
        parent.append_child("data"); // of no kind that is read
    }
}

} // namespace

std::optional<std::int64_t> PrefsValue::Number() const {
    if (const auto* flag = std::get_if<bool>(&Data)) {
        return *flag ? 1 : 0;
    }
    const auto* number = std::get_if<std::int64_t>(&Data);
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

const std::string* PrefsValue::String() const {
    return std::get_if<std::string>(&Data);
}

const PrefsArray* PrefsValue::Array() const {
    return std::get_if<PrefsArray>(&Data);
}

std::optional<Dictionary> Dictionary::FromXml(std::string_view document) {
    pugi::xml_document xml;
    // White space is data in texts such as formats and separators, and names may hold any line end.
    constexpr unsigned flags = (pugi::parse_default & ~pugi::parse_eol) | pugi::parse_ws_pcdata_single;
    const auto result = xml.load_buffer(document.data(), document.size(), flags, pugi::encoding_utf8);
    const pugi::xml_node root = xml.child("plist").child("dict");
    if (!result || !root) {
        return std::nullopt;
    }
    Dictionary dictionary;
    for (const pugi::xml_node& key : root.children("key")) {
        pugi::xml_node valueNode = key.next_sibling();
        while (valueNode && valueNode.type() != pugi::node_element) {
            valueNode = valueNode.next_sibling();
        }
        dictionary.Set(TextOf(key), ReadValue(valueNode, 0).value_or(PrefsValue()));
    }
    return dictionary;
}

std::string Dictionary::ToXml() const {
    pugi::xml_document xml;
    pugi::xml_node declaration = xml.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node plist = xml.append_child("plist");
    plist.append_attribute("version") = "1.0";
    pugi::xml_node dict = plist.append_child("dict");
    for (const auto& [key, value] : Entries) {
        WriteText(dict, "key", key);
        WriteValue(dict, value);
    }
    std::ostringstream text;
    xml.save(text, "\t", pugi::format_indent, pugi::encoding_utf8);
    return text.str();
}

std::int64_t Dictionary::Number(std::string_view key, std::int64_t fallback) const {
    const PrefsValue* value = Find(key);
    return value != nullptr ? value->Number().value_or(fallback) : fallback;
}

bool Dictionary::Boolean(std::string_view key, bool fallback) const {
    return Number(key, fallback ? 1 : 0) != 0;
}

std::string_view Dictionary::String(std::string_view key, std::string_view fallback) const {
    const PrefsValue* value = Find(key);
    const std::string* text = value != nullptr ? value->String() : nullptr;
    return text != nullptr ? std::string_view(*text) : fallback;
}

const PrefsArray* Dictionary::Array(std::string_view key) const {
    const PrefsValue* value = Find(key);
    return value != nullptr ? value->Array() : nullptr;
}

bool Dictionary::Has(std::string_view key) const {
    return Find(key) != nullptr;
}

void Dictionary::Set(std::string_view key, PrefsValue value) {
    const auto [place, isNew] = Places.try_emplace(std::string(key), Entries.size());
    if (isNew) {
        Entries.emplace_back(key, std::move(value));
    } else {
        Entries[place->second].second = std::move(value);
    }
}

const PrefsValue* Dictionary::Find(std::string_view key) const {
    const auto place = Places.find(key);
    return place != Places.end() ? &Entries[place->second].second : nullptr;
}

} // namespace application
