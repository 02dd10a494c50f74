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
constexpr int GaugeWidth = 120; // layout units
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

// The gadget takes a use of its own.
void ShowPicture() {
    if (Gadgets.Picture != nullptr) {
        intuition::RetainImage(ActiveSet.DetailsPicture.Get());
        Gadgets.Picture->SetImage(ActiveSet.DetailsPicture.Get());
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
    auto picture = std::make_unique<intuition::ImageGadget>(DetailsPictureSide, DetailsPictureSide);
    Gadgets.Picture = picture.get();
    return picture;
}

void ForgetDetailsGadgets() {
    Gadgets = DetailsObjects();
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
}

void SetFuelGaugeImage(int percent) {
    ActiveSet.GaugeLevel = percent;
    if (Gadgets.Gauge != nullptr) {
        Gadgets.Gauge->SetLevel(percent);
        Gadgets.Gauge->SetShown(percent >= 0);
    }
}

bool SetThumbnailImage(std::string_view path) {
    if (!ShowsThumbnail()) {
        return false;
    }
    const intuition::ImageId picture =
        intuition::LoadImage({{{std::string(path)}}, DetailsPictureSide, DetailsPictureSide});
    if (picture == intuition::ImageId::None) {
        return false;
    }
    SetDetailsPicture(picture);
    return true;
}

void SetThumbnailImageBlank() {
    SetDetailsPicture(intuition::ImageId::None);
}

bool ShowsThumbnail() {
    return Prefs.DetailsPane != 0 && Prefs.ThumbnailPane != 0;
}

void SetDetailsPicture(intuition::ImageId picture) {
    ActiveSet.DetailsPicture = intuition::HeldImage(picture);
    ShowPicture();
}

} // namespace solvane
