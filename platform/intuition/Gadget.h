// What all gadgets have in common: an id, a hint, being disabled, sizes. A gadget belongs to the layout or
// window it was added to and dies with it; it works only between OpenDisplay and CloseDisplay, on its task.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace intuition {

struct GadgetNative; // the host's side, Native.h

struct Box {
    int Left = 0, Top = 0, Width = 0, Height = 0;
};

struct Rgb {
    std::uint8_t Red = 0, Green = 0, Blue = 0;

    bool operator==(const Rgb&) const = default;
};

enum class Align { Left, Centre, Right };

class Gadget {
public:
    virtual ~Gadget();
    Gadget(const Gadget&) = delete;
    Gadget& operator=(const Gadget&) = delete;

    [[nodiscard]] std::uint16_t Id() const { return GadgetId; }

    void SetDisabled(bool disabled);
    // Takes the gadget out of its layout, which closes up, and back; it is the same gadget all the time.
    void SetShown(bool shown);
    // Shown when the pointer rests on the gadget; also what a screen reader calls a gadget without text.
    // Plain text, lines separated by newlines.
    void SetHint(std::string_view hint);
    void SetMinimum(int width, int height); // -1: as the gadget likes
    // A fixed width or height; -1 leaves that side free again.
    void SetFixed(int width, int height);
    // Gives the gadget the keyboard. Nothing happens while its window is closed.
    void Activate();
    // Inside the window; zero sizes while it is not laid out.
    [[nodiscard]] Box Geometry() const;

    [[nodiscard]] GadgetNative& Native() { return *Host; }
    [[nodiscard]] const GadgetNative& Native() const { return *Host; }

protected:
    Gadget(std::uint16_t id, std::unique_ptr<GadgetNative> host);

private:
    std::uint16_t GadgetId;
    std::unique_ptr<GadgetNative> Host;
};

} // namespace intuition
