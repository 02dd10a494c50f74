// Host keys as Amiga raw key codes, and the qualifier bits.
#include "platform/intuition/Native.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <array>
#include <optional>

namespace intuition {

namespace {

struct KeyRow {
    int HostKey;
    std::uint16_t Code;
};

constexpr std::array NamedKeys = {
    KeyRow{Qt::Key_QuoteLeft, 0},
    KeyRow{Qt::Key_Minus, 11},
    KeyRow{Qt::Key_Equal, 12},
    KeyRow{Qt::Key_Backslash, 13},
    KeyRow{Qt::Key_BracketLeft, 26},
    KeyRow{Qt::Key_BracketRight, 27},
    KeyRow{Qt::Key_Semicolon, 41},
    KeyRow{Qt::Key_Apostrophe, 42},
    KeyRow{Qt::Key_Comma, 56},
    KeyRow{Qt::Key_Period, 57},
    KeyRow{Qt::Key_Slash, 58},
    KeyRow{Qt::Key_Space, rawkey::Space},
    KeyRow{Qt::Key_Backspace, rawkey::Backspace},
    KeyRow{Qt::Key_Tab, rawkey::Tab},
    KeyRow{Qt::Key_Backtab, rawkey::Tab},
    KeyRow{Qt::Key_Enter, rawkey::Enter},
    KeyRow{Qt::Key_Return, rawkey::Return},
    KeyRow{Qt::Key_Escape, rawkey::Escape},
    KeyRow{Qt::Key_Delete, rawkey::Delete},
    KeyRow{Qt::Key_Insert, rawkey::Insert},
    KeyRow{Qt::Key_PageUp, rawkey::PageUp},
    KeyRow{Qt::Key_PageDown, rawkey::PageDown},
    KeyRow{Qt::Key_Up, rawkey::Up},
    KeyRow{Qt::Key_Down, rawkey::Down},
    KeyRow{Qt::Key_Right, rawkey::Right},
    KeyRow{Qt::Key_Left, rawkey::Left},
    KeyRow{Qt::Key_F11, rawkey::F11},
    KeyRow{Qt::Key_F12, rawkey::F12},
    KeyRow{Qt::Key_Help, rawkey::Help},
    KeyRow{Qt::Key_Home, rawkey::Home},
    KeyRow{Qt::Key_End, rawkey::End},
};

// The number pad with Num Lock.
constexpr std::array PadKeys = {
    KeyRow{Qt::Key_0, 15},     KeyRow{Qt::Key_1, 29},      KeyRow{Qt::Key_2, 30},
    KeyRow{Qt::Key_3, 31},     KeyRow{Qt::Key_4, 45},      KeyRow{Qt::Key_5, 46},
    KeyRow{Qt::Key_6, 47},     KeyRow{Qt::Key_7, 61},      KeyRow{Qt::Key_8, 62},
    KeyRow{Qt::Key_9, 63},     KeyRow{Qt::Key_Period, 60}, KeyRow{Qt::Key_Comma, 60},
    KeyRow{Qt::Key_Minus, 74}, KeyRow{Qt::Key_Slash, 92},  KeyRow{Qt::Key_Asterisk, 93},
    KeyRow{Qt::Key_Plus, 94},
};

// The digits of the pad as they are without Num Lock. With Control they are digits all the same.
constexpr std::array PadDigits = {
    KeyRow{Qt::Key_Insert, 15},   KeyRow{Qt::Key_End, 29},  KeyRow{Qt::Key_Down, 30},
    KeyRow{Qt::Key_PageDown, 31}, KeyRow{Qt::Key_Left, 45}, KeyRow{Qt::Key_Clear, 46},
    KeyRow{Qt::Key_Right, 47},    KeyRow{Qt::Key_Home, 61}, KeyRow{Qt::Key_Up, 62},
    KeyRow{Qt::Key_PageUp, 63},
};

// Codes of A to Z.
constexpr std::array<std::uint8_t, 26> LetterCodes = {32, 53, 51, 34, 18, 35, 36, 37, 23, 38, 39, 40, 55,
                                                      54, 24, 25, 16, 19, 33, 20, 22, 52, 17, 50, 21, 49};

// Codes by place, for the host's key numbers 2 to 53 (the row of digits to the last letter of the lowest
// row).
constexpr int FirstPlace = 2;
constexpr std::array<std::uint8_t, 52> PlaceCodes = {
    1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 65, 66, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27,
    68, 99, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 0,  96, 13, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58};
constexpr int LessThanPlace = 86; // the key beside the left Shift that US keyboards lack
constexpr std::uint16_t LessThanCode = 48;
constexpr quint32 DisplayPlaceOffset = 8; // display servers number keys from 8

// Which of the pairs is held on the right side; the left side is what remains. Written by NoteQualifierKey.
struct QualifierState {
    std::uint16_t RightHeld = 0;
    bool CapsLock = false;
};
QualifierState Held;

template <std::size_t Count>
std::optional<std::uint16_t> Find(const std::array<KeyRow, Count>& table, int key) {
    for (const KeyRow& row : table) {
        if (row.HostKey == key)
            return row.Code;
    }
    return std::nullopt;
}

std::optional<std::uint16_t> CodeOnPad(int key, bool withControl) {
    const auto digit = withControl ? Find(PadDigits, key) : std::nullopt;
    return digit ? digit : Find(PadKeys, key);
}

std::optional<std::uint16_t> CodeByName(int key) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return LetterCodes[static_cast<std::size_t>(key - Qt::Key_A)];
    if (key >= Qt::Key_1 && key <= Qt::Key_9)
        return static_cast<std::uint16_t>(key - Qt::Key_1 + 1);
    if (key == Qt::Key_0)
        return std::uint16_t{10};
    if (key >= Qt::Key_F1 && key <= Qt::Key_F10)
        return static_cast<std::uint16_t>(rawkey::F1 + key - Qt::Key_F1);
    return Find(NamedKeys, key);
}

std::uint16_t CodeByPlace(quint32 scanCode) {
    const int place = static_cast<int>(scanCode) - static_cast<int>(DisplayPlaceOffset);
    if (place == LessThanPlace)
        return LessThanCode;
    if (place < FirstPlace || place >= FirstPlace + static_cast<int>(PlaceCodes.size()))
        return rawkey::None;
    return PlaceCodes[static_cast<std::size_t>(place - FirstPlace)];
}

// Right-hand keys by the symbols that display servers give them.
std::uint16_t RightBit(quint32 symbol) {
    switch (symbol) {
    case 0xFFE2:
        return qualifier::RightShift;
    case 0xFFEA:
        return qualifier::RightAlt;
    case 0xFFEC:
        return qualifier::RightAmiga;
    default:
        return 0;
    }
}

std::uint16_t Side(bool held, std::uint16_t left, std::uint16_t right) {
    if (!held)
        return 0;
    return (Held.RightHeld & right) != 0 ? right : left;
}

} // namespace

std::uint16_t RawKeyOf(const QKeyEvent& event) {
    if (event.modifiers().testFlag(Qt::KeypadModifier)) {
        if (const auto code = CodeOnPad(event.key(), event.modifiers().testFlag(Qt::ControlModifier)))
            return *code;
    }
    if (const auto code = CodeByName(event.key()))
        return *code;
    return CodeByPlace(event.nativeScanCode());
}

bool IsQualifierKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
        return true;
    default:
        return false;
    }
}

bool IsReturn(const QKeyEvent& event) {
    const bool isPlain = (event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) == Qt::NoModifier;
    return isPlain && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter);
}

bool IsMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

void NoteQualifierKey(const QKeyEvent& event) {
    constexpr quint32 lockBit = 2;
    if (event.spontaneous())
        Held.CapsLock = (event.nativeModifiers() & lockBit) != 0;
    const std::uint16_t bit = RightBit(event.nativeVirtualKey());
    if (event.type() == QEvent::KeyPress)
        Held.RightHeld = static_cast<std::uint16_t>(Held.RightHeld | bit);
    else if (event.type() == QEvent::KeyRelease)
        Held.RightHeld = static_cast<std::uint16_t>(Held.RightHeld & ~bit);
}

std::uint16_t CurrentQualifier() {
    const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
    unsigned bits = Held.CapsLock ? qualifier::CapsLock : 0U;
    bits |= Side(modifiers.testFlag(Qt::ShiftModifier), qualifier::LeftShift, qualifier::RightShift);
    bits |= modifiers.testFlag(Qt::ControlModifier) ? qualifier::Control : 0U;
    bits |= Side(modifiers.testFlag(Qt::AltModifier), qualifier::LeftAlt, qualifier::RightAlt);
    bits |= Side(modifiers.testFlag(Qt::MetaModifier), qualifier::LeftAmiga, qualifier::RightAmiga);
    return static_cast<std::uint16_t>(bits);
}

} // namespace intuition
