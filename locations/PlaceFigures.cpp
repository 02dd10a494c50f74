#include "locations/PlaceFigures.h"

#include "content/DetailsPane.h"
#include "interface/MenuState.h"
#include "locations/PlaceLists.h"
#include "model/Content.h"

namespace solvane {

Figures FiguresOnShow() {
    switch (LBLocation) {
    case LocationKind::Computer:
    case LocationKind::Assigns:
        return Figures::OfPlaces;
    case LocationKind::Bookmarks:
    case LocationKind::Favorites:
    case LocationKind::FTPSites:
        return Figures::Counts;
    case LocationKind::OS4Depot:
    case LocationKind::Aminet:
        return Figures::Online;
    default:
        return Figures::Bytes;
    }
}

void TellContentSelection() {
    switch (FiguresOnShow()) {
    case Figures::OfPlaces:
        DetailsPane4();
        break;
    case Figures::Counts:
        DetailsPane5();
        break;
    case Figures::Online:
        DetailsPaneBrowsers();
        break;
    case Figures::Bytes:
        DetailsPane3();
        break;
    }
    SetMenuState();
    SetToolbarState();
}

void TellPlace() {
    if (FiguresOnShow() != Figures::Bytes) {
        TellContentSelection();
        return;
    }
    DetailsPane2();
    SetMenuState();
    SetToolbarState();
}

} // namespace solvane
