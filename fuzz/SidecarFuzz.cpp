// Exercises the reader and the writer of ".uaem" sidecars: what was read is written so that it reads
// the same again, and is written the same from then on.
#include "platform/dos/Sidecar.h"
#include "platform/utility/Text.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void Require(bool isSo) {
    if (!isSo)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const dos::SidecarFacts facts = dos::ParseSidecar({reinterpret_cast<const char*>(data), size});
    Require(utility::IsValidUtf8(facts.Comment));
    if (!facts.Protection || !facts.Date)
        return 0;
    const std::string line = dos::FormatSidecar(facts);
    const dos::SidecarFacts again = dos::ParseSidecar(line);
    Require(again.Protection == facts.Protection && again.Date == facts.Date);
    Require(again.Hundredths == facts.Hundredths && again.Comment == facts.Comment);
    Require(dos::FormatSidecar(again) == line);
    return 0;
}
