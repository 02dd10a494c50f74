#include "content/EntryTexts.h"

#include "model/Prefs.h"
#include "platform/locale/Locale.h"
#include "sak/Numbers.h"

namespace solvane {

namespace {

constexpr std::uint32_t KnownBits = 0xFF;        // group and other bits have no letter
constexpr std::string_view Letters = "hsparwed"; // bit 7 first
constexpr std::uint32_t InvertedBits = 0x0F;

std::string FormProtection(std::uint32_t bits) {
    std::string text(Letters);
    const std::uint32_t shown = bits ^ InvertedBits;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (((shown >> (7 - at)) & 1U) == 0) {
            text[at] = '-';
        }
    }
    return text;
}

std::array<Text<10>, KnownBits + 1> FormAllProtections() {
    std::array<Text<10>, KnownBits + 1> all;
    for (std::uint32_t bits = 0; bits <= KnownBits; ++bits) {
        all[bits] = FormProtection(bits);
    }
    return all;
}

} // namespace

const Text<10>& ProtectionTextOf(std::uint32_t bits) {
    static const std::array<Text<10>, KnownBits + 1> Forms = FormAllProtections();
    return Forms[bits & KnownBits];
}

char SortPrefixOf(EntryKind kind) {
    if (Prefs.DrawersOrder == 0) {
        return IsDrawerKind(kind) ? '0' : '1';
    }
    if (Prefs.DrawersOrder == 2) {
        return IsDrawerKind(kind) ? '1' : '0';
    }
    return ' ';
}

EntryTexts::EntryTexts() : Known(std::make_unique<Remembered>()) {}
EntryTexts::~EntryTexts() = default;

Text<15> EntryTexts::SizeText(std::uint64_t bytes) {
    auto& slot = Known->Sizes[bytes % Slots];
    if (!slot.Used || slot.Key != bytes) {
        slot = {bytes, true, Text<15>(BytesToUnit(bytes))};
    }
    return slot.Formed;
}

Text<35> EntryTexts::DateText(std::uint32_t amigaSeconds) {
    auto& slot = Known->Dates[amigaSeconds % Slots];
    if (!slot.Used || slot.Key != amigaSeconds) {
        Scratch.clear();
        locale::AppendDate(Scratch, Prefs.EffectiveDateFormat, amigaSeconds);
        slot = {amigaSeconds, true, Text<35>(Scratch)};
    }
    return slot.Formed;
}

} // namespace solvane
