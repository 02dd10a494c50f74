#include "platform/datatypes/Recognise.h"

#include "platform/datatypes/ContentTable.h"
#include "platform/datatypes/Magic.h"
#include "platform/datatypes/NameTypes.h"
#include "platform/datatypes/TextForms.h"

#include <algorithm>
#include <array>

namespace datatypes {

namespace {

// Extensions that can mean a type: short, of letters and digits, behind a name.
class Extension {
public:
    explicit Extension(std::string_view name) {
        const std::size_t dot = name.rfind('.');
        if (dot == name.npos || dot == 0 || name.size() - dot - 1 > Longest) {
            return;
        }
        for (const char c : name.substr(dot + 1)) {
            const bool upper = c >= 'A' && c <= 'Z';
            if (!upper && !(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9') && c != '+') {
                Length = 0;
                return;
            }
            Text[Length++] = upper ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    [[nodiscard]] std::string_view View() const noexcept { return {Text.data(), Length}; }

private:
    static constexpr std::size_t Longest = 15;
    std::array<char, Longest> Text = {};
    std::size_t Length = 0;
};

const DataType* TypeInside(const ContentMatch& match, const Specimen& specimen) {
    if (match.Holds == Container::None) {
        return match.Type;
    }
    const DataType* inside = MeaningOfName(specimen).Inside[static_cast<std::size_t>(match.Holds)];
    return inside != nullptr ? inside : match.Type;
}

const DataType* TypeOfText(const Specimen& specimen) {
    if (const ContentMatch match = MatchText(specimen); match.Type != nullptr) {
        return TypeInside(match, specimen);
    }
    if (const DataType* named = MeaningOfName(specimen).Text) {
        return named;
    }
    const DataType* guess = GuessText(specimen);
    return guess != nullptr ? guess : &AsciiType();
}

const DataType* TypeOfOther(const Specimen& specimen) {
    const NameMeaning meaning = MeaningOfName(specimen);
    if (specimen.Head.empty()) {
        return meaning.Text != nullptr ? meaning.Text : &BinaryType();
    }
    if (meaning.Other != nullptr) {
        return meaning.Other;
    }
    // Where the name has a meaning that the content denies, nothing better is to be found.
    const DataType* type = meaning.Known ? nullptr : TypeByMagic(specimen.Head);
    return type == nullptr || type->Group == GroupId::Text ? &BinaryType() : type;
}

} // namespace

const DataType* Recognise(std::span<const std::byte> head, std::string_view name, std::uint64_t size) {
    const Extension extension(name);
    const Specimen specimen{head.first(std::min(head.size(), HeadSize)), name, extension.View(), size};
    if (const ContentMatch match = MatchContent(specimen); match.Type != nullptr) {
        return TypeInside(match, specimen);
    }
    return IsText(specimen.Head) ? TypeOfText(specimen) : TypeOfOther(specimen);
}

const DataType* RecogniseByContent(std::span<const std::byte> head, std::string_view name,
                                   std::uint64_t size) {
    const Extension extension(name);
    const Specimen specimen{head.first(std::min(head.size(), HeadSize)), name, extension.View(), size};
    if (const ContentMatch match = MatchContent(specimen); match.Type != nullptr) {
        return match.Type;
    }
    return IsText(specimen.Head) ? MatchText(specimen).Type : nullptr;
}

} // namespace datatypes
