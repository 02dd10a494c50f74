// Texts of the code sets that catalogs name by number, as UTF-8. Knows the sets whose characters are one byte
// each, as far as the host knows them. Private to platform/locale.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace locale {

class CodeSetDecoder {
public:
    // The number is 0 for ISO 8859-1 or one of the public register of character sets. A set that is not known
    // is taken for ISO 8859-1.
    explicit CodeSetDecoder(std::uint32_t codeSet);

    // Valid UTF-8 for any bytes; a byte that is nothing in the set becomes a replacement mark.
    [[nodiscard]] std::string Decode(std::string_view bytes) const;

private:
    bool IsUtf8;
    bool HasTable = false;                   // else it is ISO 8859-1
    std::array<std::string, 256> Characters; // what each byte stands for
};

} // namespace locale
