#include "platform/intuition/KeyNames.h"

#include "platform/intuition/Events.h"
#include "platform/intuition/HotKey.h"
#include "platform/intuition/Native.h"
#include "platform/utility/Text.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace intuition {

namespace {

struct NamedKey {
    std::string_view Name;
    int HostKey;
    std::uint32_t Symbol;
};
constexpr std::array NamedKeys = {
    NamedKey{"space", Qt::Key_Space, 0x20},      NamedKey{"backspace", Qt::Key_Backspace, 0xFF08},
    NamedKey{"tab", Qt::Key_Tab, 0xFF09},        NamedKey{"return", Qt::Key_Return, 0xFF0D},
    NamedKey{"enter", Qt::Key_Enter, 0xFF8D},    NamedKey{"esc", Qt::Key_Escape, 0xFF1B},
    NamedKey{"del", Qt::Key_Delete, 0xFFFF},     NamedKey{"insert", Qt::Key_Insert, 0xFF63},
    NamedKey{"home", Qt::Key_Home, 0xFF50},      NamedKey{"end", Qt::Key_End, 0xFF57},
    NamedKey{"page_up", Qt::Key_PageUp, 0xFF55}, NamedKey{"page_down", Qt::Key_PageDown, 0xFF56},
    NamedKey{"up", Qt::Key_Up, 0xFF52},          NamedKey{"down", Qt::Key_Down, 0xFF54},
    NamedKey{"left", Qt::Key_Left, 0xFF51},      NamedKey{"right", Qt::Key_Right, 0xFF53},
    NamedKey{"help", Qt::Key_Help, 0xFF6A},      NamedKey{"f1", Qt::Key_F1, 0xFFBE},
    NamedKey{"f2", Qt::Key_F2, 0xFFBF},          NamedKey{"f3", Qt::Key_F3, 0xFFC0},
    NamedKey{"f4", Qt::Key_F4, 0xFFC1},          NamedKey{"f5", Qt::Key_F5, 0xFFC2},
    NamedKey{"f6", Qt::Key_F6, 0xFFC3},          NamedKey{"f7", Qt::Key_F7, 0xFFC4},
    NamedKey{"f8", Qt::Key_F8, 0xFFC5},          NamedKey{"f9", Qt::Key_F9, 0xFFC6},
    NamedKey{"f10", Qt::Key_F10, 0xFFC7},        NamedKey{"f11", Qt::Key_F11, 0xFFC8},
    NamedKey{"f12", Qt::Key_F12, 0xFFC9},
};

struct NamedQualifier {
    std::string_view Name;
    unsigned Bits;
};
namespace bits = qualifier;
constexpr std::array NamedQualifiers = {
    NamedQualifier{"lshift", bits::LeftShift},  NamedQualifier{"rshift", bits::RightShift},
    NamedQualifier{"shift", bits::LeftShift},   NamedQualifier{"capslock", bits::CapsLock},
    NamedQualifier{"ctrl", bits::Control},      NamedQualifier{"control", bits::Control},
    NamedQualifier{"lalt", bits::LeftAlt},      NamedQualifier{"ralt", bits::RightAlt},
    NamedQualifier{"alt", bits::LeftAlt},       NamedQualifier{"lcommand", bits::LeftAmiga},
    NamedQualifier{"lamiga", bits::LeftAmiga},  NamedQualifier{"rcommand", bits::RightAmiga},
    NamedQualifier{"ramiga", bits::RightAmiga},
};

constexpr unsigned ShiftBits = bits::LeftShift | bits::RightShift;

// A keyboard may name a character by its own symbol or by its number; here both are one.
std::uint32_t Plain(std::uint32_t symbol) {
    constexpr std::uint32_t firstByNumber = 0x01000100, lastByNumber = 0x0110FFFF;
    return symbol >= firstByNumber && symbol <= lastByNumber
               ? xkb_utf32_to_keysym(xkb_keysym_to_utf32(symbol))
               : symbol;
}

std::vector<std::string_view> WordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t first = text.find_first_not_of(" \t", at);
        if (first == std::string_view::npos) {
            break;
        }
        at = std::min(text.find_first_of(" \t", first), text.size());
        words.push_back(text.substr(first, at - first));
    }
    return words;
}

bool IsName(std::string_view word, std::string_view name) {
    return utility::Stricmp(word, name) == 0;
}

// Takes a qualifier's word into the combination; false when it is none.
bool TakeQualifier(std::string_view word, KeyCombination& keys) {
    const bool isIgnored = word.starts_with('-');
    const std::string_view name = isIgnored ? word.substr(1) : word;
    const auto* found = std::ranges::find_if(
        NamedQualifiers, [name](const NamedQualifier& each) { return IsName(name, each.Name); });
    if (found == NamedQualifiers.end()) {
        return false;
    }
    std::uint16_t& taken = isIgnored ? keys.Ignored : keys.Qualifiers;
    taken = static_cast<std::uint16_t>(taken | found->Bits);
    return true;
}

// The name of the key itself.
std::string NameOf(const QKeyEvent& event) {
    const auto* named = std::ranges::find(NamedKeys, event.key(), &NamedKey::HostKey);
    if (named != NamedKeys.end()) {
        return std::string(named->Name);
    }
    constexpr int firstOther = 0x01000000; // keys below it are the characters that they type
    if (event.key() <= Qt::Key_Space || event.key() >= firstOther) {
        return {};
    }
    return QString(QChar(static_cast<ushort>(event.key()))).toLower().toStdString();
}

} // namespace

std::uint32_t SymbolOfKeyName(std::string_view name) {
    for (const NamedKey& key : NamedKeys) {
        if (IsName(name, key.Name)) {
            return key.Symbol;
        }
    }
    const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).toLower();
    const std::uint32_t character = text.size() == 1 ? text.front().unicode() : 0;
    if (character <= Qt::Key_Space || !text.front().isPrint()) {
        return 0;
    }
    return xkb_utf32_to_keysym(character);
}

std::optional<std::size_t> FindKey(std::span<const std::uint32_t> table, std::size_t symbolsOfKey,
                                   const KeyCombination& keys) {
    constexpr std::size_t columns[] = {0, 2, 1, 3};
    const bool isShifted = (keys.Qualifiers & ShiftBits) != 0;
    for (const std::size_t column : columns) {
        if (column >= symbolsOfKey || (column % 2 == 1 && !isShifted)) {
            continue;
        }
        for (std::size_t at = column; at < table.size(); at += symbolsOfKey) {
            if (Plain(table[at]) == keys.Symbol) {
                return at / symbolsOfKey;
            }
        }
    }
    return std::nullopt;
}

std::optional<KeyCombination> ParseKeyCombination(std::string_view text) {
    KeyCombination keys;
    for (const std::string_view word : WordsOf(text)) {
        if (IsName(word, "rawkey") || TakeQualifier(word, keys)) {
            continue;
        }
        const std::uint32_t symbol = SymbolOfKeyName(word);
        if (symbol == 0 || keys.Symbol != 0) {
            return std::nullopt;
        }
        keys.Symbol = symbol;
    }
    return keys.Symbol != 0 ? std::optional(keys) : std::nullopt;
}

std::string CombinationOf(const QKeyEvent& event) {
    const std::string name = IsQualifierKey(event) ? std::string() : NameOf(event);
    if (name.empty()) {
        return {};
    }
    struct Held {
        Qt::KeyboardModifier Modifier;
        std::string_view Name;
    };
    constexpr std::array all = {Held{Qt::MetaModifier, "lcommand "}, Held{Qt::ControlModifier, "ctrl "},
                                Held{Qt::AltModifier, "alt "}, Held{Qt::ShiftModifier, "shift "}};
    std::string text;
    for (const Held& held : all) {
        if (event.modifiers().testFlag(held.Modifier)) {
            text += held.Name;
        }
    }
    return text + name;
}

} // namespace intuition
