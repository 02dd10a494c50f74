#include "locations/NavigationList.h"

namespace solvane {

void UpdateAllLists() {}

void BuildNavigationList() {}

void FreeNavigationList() {}

void OpenAppMenuObjects() {}

} // namespace solvane
