// Keys of the whole desktop, by grabs of the X server. Other display servers give none to programs.
#include "platform/intuition/HotKey.h"

#include "platform/intuition/Events.h"
#include "platform/intuition/KeyNames.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

namespace intuition {

namespace {

// Frees what the library has allocated.
struct Freed {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Freed>;

constexpr std::uint16_t NumLock = XCB_MOD_MASK_2;
constexpr std::uint16_t Counting =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

xcb_connection_t* Connection() {
    if (qGuiApp == nullptr)
        return nullptr;
    const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native != nullptr ? native->connection() : nullptr;
}

xcb_window_t RootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

// The key of a combination; 0 for none.
xcb_keycode_t CodeOf(xcb_connection_t* connection, const KeyCombination& keys) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const Owned<xcb_get_keyboard_mapping_reply_t> map(xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, count), nullptr));
    if (!map || map->keysyms_per_keycode == 0)
        return 0;
    const auto length = static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(map.get()));
    const auto key =
        FindKey({xcb_get_keyboard_mapping_keysyms(map.get()), length}, map->keysyms_per_keycode, keys);
    return key ? static_cast<xcb_keycode_t>(setup->min_keycode + *key) : xcb_keycode_t{0};
}

// The qualifiers as the server has them; sides are one to it.
std::uint16_t ModifiersOf(std::uint16_t bits) {
    struct Pair {
        std::uint16_t Bits, Modifier;
    };
    constexpr Pair pairs[] = {{qualifier::LeftShift | qualifier::RightShift, XCB_MOD_MASK_SHIFT},
                              {qualifier::CapsLock, XCB_MOD_MASK_LOCK},
                              {qualifier::Control, XCB_MOD_MASK_CONTROL},
                              {qualifier::LeftAlt | qualifier::RightAlt, XCB_MOD_MASK_1},
                              {qualifier::LeftAmiga | qualifier::RightAmiga, XCB_MOD_MASK_4}};
    std::uint16_t modifiers = 0;
    for (const Pair& pair : pairs) {
        if ((bits & pair.Bits) != 0)
            modifiers = static_cast<std::uint16_t>(modifiers | pair.Modifier);
    }
    return modifiers;
}

// One grabbed combination, in each state of the qualifiers that do not matter.
class Grab : public QAbstractNativeEventFilter {
public:
    Grab(xcb_connection_t* connection, xcb_keycode_t code, const KeyCombination& keys, exec::Task* task,
         exec::SignalMask signals)
        : Server(connection), Code(code), Task(task), Signals(signals) {
        const unsigned wanted = ModifiersOf(keys.Qualifiers);
        const unsigned ignored = ModifiersOf(keys.Ignored) & ~wanted;
        for (unsigned held = ignored;; held = (held - 1) & ignored) { // each part of a set of bits
            States.push_back(static_cast<std::uint16_t>(wanted | held));
            if (held == 0)
                break;
        }
    }
    ~Grab() override {
        qGuiApp->removeNativeEventFilter(this);
        Release();
    }
    Grab(const Grab&) = delete;
    Grab& operator=(const Grab&) = delete;

    [[nodiscard]] bool Take() {
        for (const std::uint16_t state : States) {
            for (const std::uint16_t numLock : {std::uint16_t{0}, NumLock}) {
                const Owned<xcb_generic_error_t> error(xcb_request_check(
                    Server, xcb_grab_key_checked(Server, 1, RootOf(Server),
                                                 static_cast<std::uint16_t>(state | numLock), Code,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
                if (error)
                    return false;
            }
        }
        qGuiApp->installNativeEventFilter(this);
        return true;
    }

    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr*) override {
        if (kind != "xcb_generic_event_t")
            return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        // What a program has sent has one bit more here and is none of both.
        if (event->response_type != XCB_KEY_PRESS && event->response_type != XCB_KEY_RELEASE)
            return false;
        const auto* key =
            reinterpret_cast<const xcb_key_press_event_t*>(event); // a release has the same form
        if (key->detail != Code)
            return false;
        if (event->response_type == XCB_KEY_RELEASE) {
            IsDown = false;
            ReleaseTime = key->time;
            return false;
        }
        const auto state = static_cast<std::uint16_t>(key->state & Counting);
        if (std::find(States.begin(), States.end(), state) == States.end())
            return false;
        // A held key comes again, without releases or with one of the same moment before each press.
        if (!std::exchange(IsDown, true) && key->time != ReleaseTime)
            exec::Signal(Task, Signals);
        return true;
    }

private:
    void Release() {
        for (const std::uint16_t state : States) {
            xcb_ungrab_key(Server, Code, RootOf(Server), state);
            xcb_ungrab_key(Server, Code, RootOf(Server), static_cast<std::uint16_t>(state | NumLock));
        }
        xcb_flush(Server);
    }

    xcb_connection_t* Server;
    xcb_keycode_t Code;
    exec::Task* Task;
    exec::SignalMask Signals;
    std::vector<std::uint16_t> States;
    bool IsDown = false;
    std::optional<xcb_timestamp_t> ReleaseTime;
};

std::unique_ptr<Grab> Held; // gone before the display closes

} // namespace

bool DisplayHasHotKeys() {
    return Connection() != nullptr;
}

bool SetHotKey(const KeyCombination& keys, exec::Task* task, exec::SignalMask signals) {
    ClearHotKey();
    xcb_connection_t* connection = Connection();
    const xcb_keycode_t code = connection != nullptr ? CodeOf(connection, keys) : xcb_keycode_t{0};
    if (code == 0)
        return false;
    auto grab = std::make_unique<Grab>(connection, code, keys, task, signals);
    if (!grab->Take())
        return false;
    Held = std::move(grab);
    return true;
}

void ClearHotKey() {
    Held.reset();
}

} // namespace intuition
