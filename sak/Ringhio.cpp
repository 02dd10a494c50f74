#include "sak/Ringhio.h"

namespace solvane {

std::uint32_t RinghioMessage(std::string_view /*title*/, std::string_view /*text*/,
                             std::string_view /*placement*/, std::string_view /*image*/,
                             std::string_view /*extra*/) {
    return RinghioAnswer;
}

} // namespace solvane
