#include "platform/intuition/SpeedBar.h"

#include "platform/intuition/Button.h"
#include "platform/intuition/NativeSpeedBar.h"

#include <algorithm>
#include <utility>

namespace intuition {

namespace {

SpeedRow& RowOf(SpeedBar& bar) {
    return WidgetOf<SpeedRow>(bar);
}
const SpeedRow& RowOf(const SpeedBar& bar) {
    return WidgetOf<SpeedRow>(bar);
}

struct BarNative : GadgetNative {
    using GadgetNative::GadgetNative;

    // A picture that has come, or has gone since, is shown.
    void ShowWished(std::size_t at) {
        const SpeedButton& button = Buttons[at];
        const ImageId picture = Wished->Image(at, [&button] { return button.Wish; });
        RetainImage(picture);
        HeldImage held(picture);
        const bool isThere = SizeOfImage(picture).Width > 0;
        if (isThere || WishedInUse[at].Get() != ImageId::None) {
            const SpeedButton look = isThere ? SpeedButton{.Image = picture}
                                             : SpeedButton{.Text = button.Text, .Image = button.Image};
            static_cast<SpeedRow&>(*Widget).SetButtonLook(static_cast<int>(at), look);
        }
        WishedInUse[at] = std::move(held);
    }
    void ShowAllWished() {
        Wished.reset(); // wishes of former buttons are not loaded any more
        WishedInUse.clear();
        WishedInUse.resize(Buttons.size());
        Wished = std::make_unique<WishedImages>(
            WishedImages::Hooks{.Redraw = [this](std::size_t at) { ShowWished(at); },
                                .IsOnScreen = [](std::size_t) { return true; }});
        for (std::size_t at = 0; at < Buttons.size(); ++at) {
            if (!Buttons[at].Wish.Steps.empty())
                ShowWished(at);
        }
    }

    std::vector<SpeedButton> Buttons;
    std::vector<HeldImage> Images;      // of the buttons
    std::vector<HeldImage> WishedInUse; // by the position of the button
    std::unique_ptr<WishedImages> Wished;
};

BarNative& NativeOf(SpeedBar& bar) {
    return static_cast<BarNative&>(bar.Native());
}

} // namespace

SpeedBar::SpeedBar(std::uint16_t id, std::string_view name)
    : Gadget(id, std::make_unique<BarNative>(std::make_unique<SpeedRow>(id))) {
    RowOf(*this).setAccessibleName(DisplayText(name));
}

SpeedBar::~SpeedBar() = default;

void SpeedBar::SetButtons(std::vector<SpeedButton> buttons) {
    std::vector<HeldImage> images;
    for (const SpeedButton& button : buttons) {
        for (const ImageId image : {button.Image, button.Selected, button.Ghosted})
            images.emplace_back(image);
    }
    RowOf(*this).SetButtons(buttons);
    BarNative& native = NativeOf(*this);
    native.Images = std::move(images);
    native.Buttons = std::move(buttons);
    native.ShowAllWished();
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
