#include "platform/intuition/Page.h"

#include "platform/intuition/Native.h"

#include <QFrame>
#include <QStackedWidget>

namespace intuition {

namespace {

constexpr int LeastWidth = 60, LeastHeight = 40; // layout units

std::unique_ptr<GadgetNative> MakePages() {
    auto pages = std::make_unique<QStackedWidget>();
    pages->setMinimumSize(LeastWidth, LeastHeight);
    auto empty = std::make_unique<QFrame>();
    empty->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    empty->setBackgroundRole(QPalette::Base);
    empty->setAutoFillBackground(true);
    pages->addWidget(empty.release()); // the stack owns its pages
    return std::make_unique<GadgetNative>(std::move(pages));
}

} // namespace

Page::Page(std::string_view name) : Gadget(0, MakePages()) {
    WidgetOf<QStackedWidget>(*this).setAccessibleName(DisplayText(name));
}

} // namespace intuition
