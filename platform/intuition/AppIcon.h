// The program as an icon on the user's desktop: an item of the tray where there is one, else a small window
// of its own. All icons of the process share one such place; it shows the label and picture of the first of
// them by rank, and what the user does with it goes to that one's port.
#pragma once

#include "platform/exec/Ports.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace intuition {

// What the user did with an icon.
struct AppMessage : exec::Message {
    bool Quits = false;                   // he wants the program to end
    std::vector<std::string> Arguments{}; // paths of the objects that he dropped; none: he wants the program
};

enum class AppIconRank : std::uint8_t { Desktop, Menu, Dock };

struct AppIconSpec {
    AppIconRank Rank = AppIconRank::Desktop;
    std::string Label{};                 // data
    std::string QuitText{};              // of the menu's entry that ends the program; "_" marks its key
    std::uint32_t Width = 0, Height = 0; // of the picture, pixels
    std::vector<std::uint32_t> Pixels{}; // 0xAARRGGBB, row by row; fewer than Width * Height: no picture
    int Left = -1, Top = -1; // of the small window; -1, and what no screen shows: where the desktop puts it
    bool NeedsTray = false;  // shows nothing where there is no tray
};

class AppIcon {
public:
    // Needs an open display. The port must outlive the icon.
    AppIcon(AppIconSpec spec, exec::MsgPort& port);
    ~AppIcon();
    AppIcon(const AppIcon&) = delete;
    AppIcon& operator=(const AppIcon&) = delete;

    class Place; // on the desktop

private:
    std::shared_ptr<Place> Behind; // one for all icons
};

} // namespace intuition
