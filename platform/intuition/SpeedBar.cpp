#include "platform/intuition/SpeedBar.h"

#include "platform/intuition/Button.h"
#include "platform/intuition/NativeSpeedBar.h"

#include <algorithm>
#include <utility>

namespace intuition {

namespace {

struct BarNative : GadgetNative {
    using GadgetNative::GadgetNative;
    std::vector<HeldImage> Images; // of the buttons
};

SpeedRow& RowOf(SpeedBar& bar) {
    return WidgetOf<SpeedRow>(bar);
}
const SpeedRow& RowOf(const SpeedBar& bar) {
    return WidgetOf<SpeedRow>(bar);
}

} // namespace

SpeedBar::SpeedBar(std::uint16_t id, std::string_view name)
    : Gadget(id, std::make_unique<BarNative>(std::make_unique<SpeedRow>(id))) {
    RowOf(*this).setAccessibleName(DisplayText(name));
}

SpeedBar::~SpeedBar() = default;

void SpeedBar::SetButtons(std::vector<SpeedButton> buttons) {
    auto& held = static_cast<BarNative&>(Native()).Images;
    std::vector<HeldImage> images;
    for (const SpeedButton& button : buttons) {
        for (const ImageId image : {button.Image, button.Selected, button.Ghosted})
            images.emplace_back(image);
    }
    RowOf(*this).SetButtons(buttons);
    held = std::move(images);
}

void SpeedBar::SetButtonDisabled(std::uint16_t code, bool disabled) {
    RowOf(*this).SetButtonDisabled(code, disabled);
}

bool SpeedBar::IsButtonDisabled(std::uint16_t code) const {
    return RowOf(*this).IsButtonDisabled(code);
}

std::size_t SpeedBar::Total() const {
    return static_cast<std::size_t>(RowOf(*this).Total());
}

std::size_t SpeedBar::Visible() const {
    return static_cast<std::size_t>(RowOf(*this).Visible());
}

std::size_t SpeedBar::Top() const {
    return static_cast<std::size_t>(RowOf(*this).Top());
}

void SpeedBar::SetTop(std::size_t top) {
    RowOf(*this).SetTop(static_cast<int>(std::min(top, Total())));
}

int SpeedBar::LeftOf(std::uint16_t code) const {
    return RowOf(*this).LeftOf(code);
}

void SpeedBar::SetEnds(Button& left, Button& right) {
    RowOf(*this).SetEnds(left.Native().Widget.get(), right.Native().Widget.get());
}

} // namespace intuition
