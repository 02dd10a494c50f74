// What a window tells the program: event classes, the codes of keys and mouse buttons, and the qualifier
// bits. Values are those of the Amiga's input events, whatever keyboard the host has.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace intuition {

enum class EventClass : std::uint16_t {
    CloseWindow = 1,
    GadgetUp = 2, // Id: the gadget, Code: its value
    NewSize = 5,
    MenuPick = 6, // Code: the item
    MenuVerify =
        7,       // a context menu is wanted. Id: the gadget under the pointer or with the keyboard; 0: none
    RawKey = 11, // Code: the key; sent when it goes down, and when it repeats unless it is a command
    ChangeWindow = 13,
    IntuiTicks = 14,   // ten a second while SetTicks is on
    MouseButtons = 16, // Code: middle, fourth and fifth button and the wheel with Control held
    ScreenJump = 18,
    AppMessage = 19, // Objects: what was dropped on the window
};

struct WindowEvent {
    EventClass Class;
    std::uint16_t Id = 0;
    std::uint16_t Code = 0;
    std::uint16_t Qualifier = 0; // of user input: keys held at the moment
    std::string Text = {};       // RawKey: what the key types, UTF-8; empty for keys that type nothing
    std::vector<std::string> Objects = {}; // AppMessage: paths, volume paths where there is a volume
    int Left = 0, Top = 0;                 // MenuVerify: where in the window
};

namespace qualifier {
inline constexpr std::uint16_t LeftShift = 1, RightShift = 2, CapsLock = 4, Control = 8;
inline constexpr std::uint16_t LeftAlt = 0x10, RightAlt = 0x20;
inline constexpr std::uint16_t LeftAmiga = 0x40, RightAmiga = 0x80; // the host's Super keys
inline constexpr std::uint16_t AnyShift = LeftShift | RightShift, AnyAlt = LeftAlt | RightAlt;
} // namespace qualifier

// Keys by name; letters and digits have the codes of their place on a US keyboard. A letter that the user's
// keyboard has elsewhere keeps the code of the letter; what a US keyboard does not have keeps its place.
namespace rawkey {
inline constexpr std::uint16_t Space = 64, Backspace = 65, Tab = 66, Enter = 67, Return = 68, Escape = 69;
inline constexpr std::uint16_t Delete = 70, Insert = 71, PageUp = 72, PageDown = 73, F11 = 75, Up = 76;
inline constexpr std::uint16_t Down = 77, Right = 78, Left = 79, F1 = 80, F10 = 89, Help = 95, F12 = 111;
inline constexpr std::uint16_t Home = 112, End = 113;
inline constexpr std::uint16_t None = 127; // a key of no known place; its Text says what it types
} // namespace rawkey

namespace mousebutton {
inline constexpr std::uint16_t MiddleDown = 106, FourthDown = 126, FifthDown = 120;
inline constexpr std::uint16_t MiddleUp = 234, FourthUp = 254, FifthUp = 248;
inline constexpr std::uint16_t WheelUp = 122, WheelDown = 123;
} // namespace mousebutton

} // namespace intuition
