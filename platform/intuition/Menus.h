// Menus: the strip of a window, and menus that pop up in it. Items are known by number, a pick comes to the
// window as MenuPick with that number; no code of the program runs before it fetches the event.
#pragma once

#include "platform/intuition/Images.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace intuition {

class Gadget;
class Window;

enum class MenuMark : std::uint8_t {
    None,
    Check,
    Choice, // one of its neighbours with the same kind of mark
};

// Where an item's text comes from. Names are data and get no key of their own; the others get one, as far as
// their letters last.
enum class MenuText : std::uint8_t { Own, Name };

struct MenuItem {
    std::uint16_t Id = 0; // 0 is a line between items
    std::string Label = {};
    std::string Key = {};     // told at the right; the program serves the key itself
    std::string Image = {};   // file; empty: none
    std::string Ghosted = {}; // of the image where the item cannot be picked; empty or missing: greyed
    MenuMark Mark = MenuMark::None;
    std::optional<bool> Checked = {}; // nothing: as an item of that number was before
    MenuText Text = MenuText::Own;
    bool IsHead = false;              // opens a menu of its own, also without items
    std::vector<MenuItem> Items = {}; // of a head
};

// What an item is to look like; what is not named stays.
struct MenuAttrs {
    std::uint16_t Id = 0;
    std::optional<bool> Disabled = {}, Checked = {};
};

struct MenuSpec {
    bool IsStrip = false;        // else a menu that pops up
    std::vector<MenuItem> Items; // of a strip: heads
    int ImageSize = 16;          // layout units
    std::string NotKeys = {};    // letters that no title of a strip takes, since they are keys of the program
};

// Dies before the display is closed. A strip may go while its window is open, and the other way round.
class Menu {
public:
    explicit Menu(const MenuSpec& spec);
    ~Menu();
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    // Replaces all items of a head; those that were there before keep their state, apart from marks
    // that the new ones bring.
    void SetItems(std::uint16_t head, const std::vector<MenuItem>& items);

    // Items of one number look alike; nothing where there is none.
    void SetAttrs(const MenuAttrs& attrs);

    // The state of an item, for the first one of that number; nothing where there is none.
    struct Look {
        std::string Label, Key;
        bool Disabled = false, Checked = false;
    };
    [[nodiscard]] std::optional<Look> LookOf(std::uint16_t id) const;
    [[nodiscard]] std::vector<std::uint16_t> Ids() const; // in order, 0 for lines, heads before their items

    // Shows the menu as the strip of that window. Another strip that the window had goes out of it.
    void AttachTo(Window& window);
    // Pops the menu up, at a place in the window. It reports to the window and closes by itself.
    void PopUp(Window& window, int left, int top);
    [[nodiscard]] bool IsUp() const;

private:
    struct Native;
    std::unique_ptr<Native> Host;
};

} // namespace intuition
