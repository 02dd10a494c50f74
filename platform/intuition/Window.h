// A window and its queue of events. What the user does is queued and sets a signal; no code of the program
// runs until it asks for the next event.
#pragma once

#include "platform/exec/Tasks.h"
#include "platform/intuition/Events.h"
#include "platform/intuition/Gadget.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace intuition {

class NativeWindow; // the host's side, NativeWindow.h

struct WindowSpec {
    std::string Title;
    int Left = -1, Top = -1;     // -1: where the desktop puts it
    int Width = -1, Height = -1; // inside of the frame; -1: what the gadgets need
    std::string Screen{};        // of FindScreen; empty, and one that there is not: where the place lies
};

class Window {
public:
    // Takes the gadgets over. The window is not shown yet.
    Window(const WindowSpec& spec, std::unique_ptr<Gadget> root);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Shows the window and takes a signal of the calling task. False when no signal is free.
    [[nodiscard]] bool Open();
    // Hides it, forgets waiting events and gives the signal back. The gadgets stay.
    void Close();
    [[nodiscard]] bool IsOpen() const;
    [[nodiscard]] Gadget* Root();
    // Has the Tab key go through the gadgets as they lie, row by row; asked for after gadgets came, and done
    // by Open.
    void ArrangeTabOrder();

    // The signal that is set while events wait; 0 when closed.
    [[nodiscard]] exec::SignalMask Mask() const;
    // The oldest event, nothing when none waits.
    [[nodiscard]] std::optional<WindowEvent> NextEvent();
    // Queues the pick of a menu item, as if the user had made it with these qualifiers held.
    void PostMenuPick(std::uint16_t item, std::uint16_t qualifier);
    // IntuiTicks on or off; off at first, since ticks keep the machine awake.
    void SetTicks(bool on);

    // 1 blocks, 0 ends one block, -1 ends all. Blocks nest. A blocked window shows the busy pointer, and
    // input made meanwhile is lost, even when it is read only afterwards; it still draws, and its close
    // gadget is still queued.
    void Block(int depth);
    [[nodiscard]] bool IsBlocked() const;

    void SetTitle(std::string_view title); // data, one line
    void ToFront();
    void ToBack();
    void SetZoomed(bool zoomed); // as large as the desktop makes it, or as it was
    void Activate();             // asks for the keyboard; desktops may refuse
    [[nodiscard]] bool IsActive() const;
    [[nodiscard]] Box Geometry() const; // position of the frame, size of its inside
    void SetGeometry(const Box& box);
    [[nodiscard]] Box WorkArea() const; // of the window's screen, what the desktop's bars leave free
    // The Geometry of a window that covers the box with its frame.
    [[nodiscard]] Box InsideOf(const Box& outside) const;

    // Writes what the window shows as a PNG file: a volume path, or a host path that begins with "/". An
    // existing file is replaced only by a whole one. False: IoErr.
    [[nodiscard]] bool SavePicture(std::string_view path);

    [[nodiscard]] NativeWindow& Native() { return *Host; }

private:
    std::unique_ptr<NativeWindow> Host;
    std::unique_ptr<Gadget> Gadgets; // die before the host, in which they lie
};

} // namespace intuition
