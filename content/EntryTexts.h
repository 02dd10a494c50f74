// Texts of an entry that are computed while a drawer is scanned: size, date, protection, order prefix.
// Entries with the same value share one block of text; a scan of many thousands stays small by it.
#pragma once

#include "model/ContentNode.h"
#include "sak/Text.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace solvane {

// "hsparwed" with "-" for each bit that does not show: h, s, p and a show when set, r, w, e and d when clear.
[[nodiscard]] const Text<10>& ProtectionTextOf(std::uint32_t bits);

// The character before the name that an entry sorts by, by Prefs.DrawersOrder.
[[nodiscard]] char SortPrefixOf(EntryKind kind);

// The text that BytesToUnit forms, and the date in the effective date format. Values met before are answered
// from memory as long as the object lives; make one for each scan, since the format may change between scans.
class EntryTexts {
public:
    EntryTexts();
    ~EntryTexts();
    [[nodiscard]] Text<15> SizeText(std::uint64_t bytes);
    [[nodiscard]] Text<35> DateText(std::uint32_t amigaSeconds);

private:
    static constexpr std::size_t Slots = 4096; // each value has one slot; a newcomer takes it
    template <class Value, std::size_t N>
    struct Slot {
        Value Key = 0;
        bool Used = false;
        Text<N> Formed;
    };
    struct Remembered {
        std::array<Slot<std::uint64_t, 15>, Slots> Sizes;
        std::array<Slot<std::uint32_t, 35>, Slots> Dates;
    };
    std::unique_ptr<Remembered> Known;
    std::string Scratch;
};

} // namespace solvane
