#include "platform/intuition/FuelGauge.h"

#include "platform/intuition/Native.h"

#include <QProgressBar>

#include <algorithm>

namespace intuition {

namespace {

std::unique_ptr<QWidget> MakeBar() {
    auto bar = std::make_unique<QProgressBar>();
    bar->setRange(0, 100);
    bar->setValue(0);
    bar->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return bar;
}

} // namespace

FuelGauge::FuelGauge(std::string_view hint) : Gadget(0, std::make_unique<GadgetNative>(MakeBar())) {
    SetHint(hint);
}

void FuelGauge::SetLevel(int percent) {
    WidgetOf<QProgressBar>(*this).setValue(std::clamp(percent, 0, 100));
}

int FuelGauge::Level() const {
    return WidgetOf<QProgressBar>(*this).value();
}

} // namespace intuition
