#include "interface/Panes.h"

#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "model/Prefs.h"
#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/Page.h"
#include "platform/intuition/TreeBrowser.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <utility>

namespace solvane {

namespace {

using intuition::Layout;
using intuition::Orientation;

constexpr std::int32_t LeastPane = 1, Whole = 100; // per cent

std::unique_ptr<Layout> BarLayout(Orientation direction) {
    return std::make_unique<Layout>(intuition::LayoutSpec{.Direction = direction, .Bars = true});
}

int Weight(std::int32_t kept) {
    return std::clamp(kept, LeastPane, Whole - LeastPane);
}

// Gives the first of two panes its weight, and the other one the rest.
void Share(Layout& group, std::int32_t first) {
    if (group.Count() == 2) {
        group.SetWeights({Weight(first), Whole - Weight(first)});
    }
}

// The weight of a pane of a group of two; nothing is dragged in a group of one.
std::int32_t WeightAt(const Layout* group, std::size_t position, std::int32_t kept) {
    return group != nullptr && group->Count() == 2 ? Weight(group->Weights()[position]) : kept;
}

std::int32_t& KeptContentSize() {
    return Prefs.PreviewStyle == 0 ? Prefs.ContentHeight : Prefs.ContentWidth;
}

Orientation PreviewDirection() {
    return Prefs.PreviewStyle == 0 ? Orientation::Vertical : Orientation::Horizontal;
}

std::unique_ptr<intuition::TreeBrowser> CreateNavigationPane() {
    auto tree =
        std::make_unique<intuition::TreeBrowser>(GadgetNavigationList, SAK_LocaleString(MSG_MENU_NAVIGATION));
    Objects.Navigation = tree.get();
    return tree;
}

std::unique_ptr<intuition::ListBrowser> CreateContentPane() {
    auto list = std::make_unique<intuition::ListBrowser>(GadgetContentList);
    list->SetStripes(true);
    list->SetSelection(Prefs.PersistentSelect != 0 ? intuition::ListSelection::Persistent
                                                   : intuition::ListSelection::Extended);
    Objects.ContentList = list.get();
    return list;
}

std::unique_ptr<intuition::Page> CreatePreviewPane() {
    auto pages = std::make_unique<intuition::Page>(SAK_LocaleString(MSG_PREVIEW));
    Objects.Preview = pages.get();
    return pages;
}

void ArrangeNavigation() {
    const bool isShown = Objects.Navigation != nullptr;
    if (isShown == (Prefs.NavigationPane != 0)) {
        return;
    }
    if (isShown) {
        Objects.NavCon->Remove(*std::exchange(Objects.Navigation, nullptr));
    } else {
        Objects.NavCon->Insert(0, CreateNavigationPane(), 1);
        Share(*Objects.NavCon, Prefs.NavigationWidth);
    }
}

void ArrangePreview() {
    Objects.ConPre->SetDirection(PreviewDirection());
    const bool isShown = Objects.Preview != nullptr;
    if (isShown && Prefs.PreviewPane == 0) {
        Objects.ConPre->Remove(*std::exchange(Objects.Preview, nullptr));
    } else if (!isShown && Prefs.PreviewPane != 0) {
        Objects.ConPre->Add(CreatePreviewPane(), 1);
    }
    Share(*Objects.ConPre, KeptContentSize());
}

void RemoveDetails() {
    if (Objects.Details != nullptr) {
        ForgetDetailsGadgets();
        Objects.Panes->Remove(*std::exchange(Objects.Details, nullptr));
    }
}

// The Thumbnail pane has nothing to show without the texts and comes and goes with them.
void ArrangeDetails() {
    const bool isShown = Objects.Details != nullptr;
    const std::size_t wanted = ShowsThumbnail() ? 2 : 1;
    if (isShown == (Prefs.DetailsPane != 0) && (!isShown || Objects.Details->Count() == wanted)) {
        return;
    }
    RemoveDetails();
    if (Prefs.DetailsPane == 0) {
        return;
    }
    auto pane = BarLayout(Orientation::Horizontal);
    Objects.Details = pane.get();
    if (ShowsThumbnail()) {
        pane->Add(CreateThumbnailPane(), 1);
    }
    pane->Add(CreateDetailsPaneGroup(), 1);
    Share(*pane, Prefs.ThumbnailPreviewWidth);
    Objects.Panes->Add(std::move(pane), 1);
    Share(*Objects.Panes, Whole - Weight(Prefs.DetailsHeight));
    ShowKeptDetails();
}

} // namespace

std::unique_ptr<Layout> CreateNavConPreDetGroup() {
    auto panes = BarLayout(Orientation::Vertical);
    auto navCon = BarLayout(Orientation::Horizontal);
    auto conPre = BarLayout(PreviewDirection());
    Objects.Panes = panes.get();
    Objects.NavCon = navCon.get();
    Objects.ConPre = conPre.get();
    conPre->Add(CreateContentPane(), 1);
    navCon->Add(std::move(conPre), 1);
    panes->Add(std::move(navCon), 1);
    ArrangePanes();
    return panes;
}

void ArrangePanes() {
    if (Objects.Panes == nullptr) {
        return;
    }
    ArrangeNavigation();
    ArrangePreview();
    ArrangeDetails();
}

std::int32_t GetNavigationWidth() {
    return WeightAt(Objects.NavCon, 0, Prefs.NavigationWidth);
}

std::int32_t GetContentSize() {
    return WeightAt(Objects.ConPre, 0, KeptContentSize());
}

std::int32_t GetThumbnailWidth() {
    return WeightAt(Objects.Details, 0, Prefs.ThumbnailPreviewWidth);
}

std::int32_t GetDetailsHeight() {
    return WeightAt(Objects.Panes, 1, Prefs.DetailsHeight);
}

void CollectPaneWeights() {
    Prefs.NavigationWidth = GetNavigationWidth();
    KeptContentSize() = GetContentSize();
    Prefs.ThumbnailPreviewWidth = GetThumbnailWidth();
    Prefs.DetailsHeight = GetDetailsHeight();
}

} // namespace solvane
