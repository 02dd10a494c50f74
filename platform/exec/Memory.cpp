#include "platform/exec/Memory.h"

#include <algorithm>
#include <fstream>
#include <string>

namespace exec {

MemoryFigures AvailMem() {
    constexpr std::uint64_t Unit = 1024; // bytes; the list counts in these
    MemoryFigures figures;
    std::ifstream list("/proc/meminfo");
    std::string label;
    std::uint64_t value = 0;
    std::string unit;
    while (list >> label >> value && std::getline(list, unit)) {
        if (label == "MemTotal:")
            figures.Total = value * Unit;
        else if (label == "MemAvailable:")
            figures.Free = value * Unit;
    }
    figures.Free = std::min(figures.Free, figures.Total);
    return figures;
}

} // namespace exec
