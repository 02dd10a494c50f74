#include "interface/DetailsGadgets.h"

#include "model/Prefs.h"
#include "model/WorkingSet.h"
#include "platform/intuition/FuelGauge.h"
#include "platform/intuition/ImageGadget.h"
#include "platform/intuition/Label.h"
#include "platform/intuition/WishedImages.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <array>
#include <string>
#include <utility>

namespace solvane {

Text<128>&Details1Buffer = ActiveSet.Details[0], &Details2Buffer = ActiveSet.Details[1],
                                                 &Details3Buffer = ActiveSet.Details[2];
Text<128>&Details4Buffer = ActiveSet.Details[3], &Details5Buffer = ActiveSet.Details[4],
                                                 &Details6Buffer = ActiveSet.Details[5];
Text<128>&Details7Buffer = ActiveSet.Details[6], &Details8Buffer = ActiveSet.Details[7];
Text<128> Details9Buffer;

namespace {

constexpr int Rows = 3;
constexpr int GaugeWidth = 120, PictureSide = 64; // layout units
constexpr std::array Buffers = {&Details1Buffer, &Details2Buffer, &Details3Buffer,
                                &Details4Buffer, &Details5Buffer, &Details6Buffer,
                                &Details7Buffer, &Details8Buffer, &Details9Buffer};
constexpr std::array ColumnWeights = {45, 30, 25}; // names are longer than figures

// All null without a pane.
struct DetailsObjects {
    intuition::ImageGadget* Picture = nullptr;
    std::array<intuition::Label*, Buffers.size()> Texts = {};
    intuition::FuelGauge* Gauge = nullptr;
};
DetailsObjects Gadgets;

std::unique_ptr<intuition::WishedImages> Wished; // made at the first wish, goes with the window
intuition::HeldImage UsualPicture;               // what the last wish falls back to
std::size_t LastWish = 0;

// The gadget takes a use of its own.
void ShowPicture() {
    if (Gadgets.Picture != nullptr) {
        intuition::RetainImage(ActiveSet.DetailsPicture.Get());
        Gadgets.Picture->SetImage(ActiveSet.DetailsPicture.Get());
    }
}

// Takes a use.
void KeepPicture(intuition::ImageId picture) {
    intuition::RetainImage(picture);
    ActiveSet.DetailsPicture = intuition::HeldImage(picture);
    ShowPicture();
}

bool IsAwaited(std::size_t wish) {
    return wish == ActiveSet.DetailsPictureWish;
}

// One that was wished for by a tab that is left, or before another wish, is not taken.
void TakePicture(std::size_t wish) {
    if (IsAwaited(wish)) {
        ActiveSet.DetailsPictureSteps.clear();
        KeepPicture(Wished->Image(wish, [] { return intuition::ImageWish(); }));
    }
}

// Asks for the picture that the tab on show still awaits. Its disk may answer late or never.
void AskForPicture() {
    if (Wished) {
        Wished->Clear();
    }
    if (Gadgets.Picture == nullptr || ActiveSet.DetailsPictureSteps.empty()) {
        return;
    }
    if (!Wished) {
        Wished = std::make_unique<intuition::WishedImages>(
            intuition::WishedImages::Hooks{.Redraw = TakePicture, .IsOnScreen = IsAwaited});
    }
    ActiveSet.DetailsPictureWish = ++LastWish;
    const intuition::ImageId usual = ActiveSet.DetailsPicture.Get();
    intuition::RetainImage(usual);
    UsualPicture = intuition::HeldImage(usual);
    const intuition::ImageId known = Wished->Image(LastWish, [usual] {
        return intuition::ImageWish{ActiveSet.DetailsPictureSteps, PictureSide, PictureSide, usual};
    });
    if (known != usual) {
        ActiveSet.DetailsPictureSteps.clear();
        KeepPicture(known);
    }
}

std::unique_ptr<intuition::Layout> Column(std::size_t column) {
    auto texts = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Vertical, .Spacing = 2});
    for (std::size_t at = column * Rows; at < (column + 1) * Rows; ++at) {
        auto label = std::make_unique<intuition::Label>(Buffers[at]->View());
        Gadgets.Texts[at] = label.get();
        texts->Add(std::move(label));
    }
    return texts;
}

} // namespace

std::unique_ptr<intuition::Layout> CreateDetailsPaneGroup() {
    auto pane = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Spacing = 12, .Margin = 4});
    for (std::size_t column = 0; column < ColumnWeights.size(); ++column) {
        pane->Add(Column(column), ColumnWeights[column]);
    }
    auto gauge = std::make_unique<intuition::FuelGauge>(SAK_LocaleString(MSG_USED));
    Gadgets.Gauge = gauge.get();
    gauge->SetFixed(GaugeWidth, -1);
    gauge->SetShown(false);
    pane->Add(std::move(gauge));
    return pane;
}

std::unique_ptr<intuition::Gadget> CreateThumbnailPane() {
    auto picture = std::make_unique<intuition::ImageGadget>(PictureSide, PictureSide);
    Gadgets.Picture = picture.get();
    return picture;
}

void ForgetDetailsGadgets() {
    Gadgets = DetailsObjects();
    Wished.reset();
    UsualPicture = intuition::HeldImage();
}

void ClearDetailsBuffers() {
    for (Text<128>* buffer : Buffers) {
        buffer->Clear();
    }
}

void SetDetailsGadBuffer(int column) {
    if (Gadgets.Gauge == nullptr || column < 0 || column >= DetailsColumns) {
        return;
    }
    const std::size_t first = static_cast<std::size_t>(column) * Rows;
    for (std::size_t at = first; at < first + Rows; ++at) {
        Gadgets.Texts[at]->SetText(Buffers[at]->View());
    }
}

void SetDetailsGadBufferAll() {
    for (int column = 0; column < DetailsColumns; ++column) {
        SetDetailsGadBuffer(column);
    }
}

void ShowKeptDetails() {
    SetDetailsGadBufferAll();
    SetFuelGaugeImage(ActiveSet.GaugeLevel);
    ShowPicture();
    AskForPicture();
}

void SetFuelGaugeImage(int percent) {
    ActiveSet.GaugeLevel = percent;
    if (Gadgets.Gauge != nullptr) {
        Gadgets.Gauge->SetLevel(percent);
        Gadgets.Gauge->SetShown(percent >= 0);
    }
}

bool ShowsThumbnail() {
    return Prefs.DetailsPane != 0 && Prefs.ThumbnailPane != 0;
}

void SetThumbnailImage(std::vector<intuition::ImageStep> steps, std::string_view usual) {
    const intuition::HeldImage own(usual.empty() ? intuition::ImageId::None : intuition::ObtainImage(usual));
    ActiveSet.DetailsPictureSteps = std::move(steps);
    ActiveSet.DetailsPictureWish = 0;
    KeepPicture(own.Get());
    AskForPicture();
}

} // namespace solvane
