#include "platform/locale/CodeSets.h"

#include "platform/locale/CatalogFile.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <iconv.h>
#include <optional>

namespace locale {
namespace {

struct CodeSetRow {
    std::uint32_t Number;
    const char* HostName;
};

// By the numbers of the register, but for 2 and 14 to 16: those are parts of ISO 8859 as one catalog compiler
// counts, and what the register has there no catalog is in. The Amiga's own Cyrillic set (2104) has its
// letters where Windows has them.
constexpr CodeSetRow Rows[] = {
    {2, "ISO-8859-2"},      {3, "ASCII"},           {5, "ISO-8859-2"},      {6, "ISO-8859-3"},
    {7, "ISO-8859-4"},      {8, "ISO-8859-5"},      {9, "ISO-8859-6"},      {10, "ISO-8859-7"},
    {11, "ISO-8859-8"},     {12, "ISO-8859-9"},     {13, "ISO-8859-10"},    {14, "ISO-8859-14"},
    {15, "ISO-8859-15"},    {16, "ISO-8859-16"},    {109, "ISO-8859-13"},   {110, "ISO-8859-14"},
    {111, "ISO-8859-15"},   {112, "ISO-8859-16"},   {2009, "CP850"},        {2010, "CP852"},
    {2011, "CP437"},        {2027, "MACINTOSH"},    {2046, "CP855"},        {2084, "KOI8-R"},
    {2086, "CP866"},        {2088, "KOI8-U"},       {2104, "WINDOWS-1251"}, {2109, "CP874"},
    {2250, "WINDOWS-1250"}, {2251, "WINDOWS-1251"}, {2252, "WINDOWS-1252"}, {2253, "WINDOWS-1253"},
    {2254, "WINDOWS-1254"}, {2255, "WINDOWS-1255"}, {2256, "WINDOWS-1256"}, {2257, "WINDOWS-1257"},
    {2258, "WINDOWS-1258"}, {2259, "TIS-620"},
};

// Null for ISO 8859-1, which needs no help of the host.
const char* HostNameOf(std::uint32_t codeSet) {
    const auto* row = std::ranges::find(Rows, codeSet, &CodeSetRow::Number);
    return row != std::end(Rows) ? row->HostName : nullptr;
}

class Converter {
public:
    explicit Converter(const char* from) : Handle(::iconv_open("UTF-8", from)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (IsOpen())
            ::iconv_close(Handle);
    }

    [[nodiscard]] bool IsOpen() const { return Handle != reinterpret_cast<iconv_t>(-1); }

    // The UTF-8 form of one byte, a replacement mark when there is none.
    [[nodiscard]] std::string Convert(char byte) const {
        std::array<char, 16> out{};
        char* in = &byte;
        char* end = out.data();
        std::size_t left = 1;
        std::size_t room = out.size();
        const bool isGood = ::iconv(Handle, &in, &left, &end, &room) == 0;
        // Some sets keep a character back until they know what follows; this gives it out and begins anew.
        ::iconv(Handle, nullptr, nullptr, &end, &room);
        return isGood && room < out.size() ? std::string(out.data(), end) : "\xEF\xBF\xBD";
    }

private:
    iconv_t Handle;
};

} // namespace

CodeSetDecoder::CodeSetDecoder(std::uint32_t codeSet) : IsUtf8(codeSet == CodeSetUtf8) {
    const char* const name = IsUtf8 ? nullptr : HostNameOf(codeSet);
    const std::optional<Converter> converter = name ? std::make_optional<Converter>(name) : std::nullopt;
    if (!converter || !converter->IsOpen())
        return;
    HasTable = true;
    for (std::size_t byte = 0; byte < Characters.size(); ++byte)
        Characters[byte] = converter->Convert(static_cast<char>(byte));
}

std::string CodeSetDecoder::Decode(std::string_view bytes) const {
    if (IsUtf8)
        return utility::ReplaceInvalidUtf8(bytes);
    if (!HasTable)
        return utility::Utf8FromLatin1(bytes);
    std::string text;
    for (const char byte : bytes)
        text += Characters[static_cast<unsigned char>(byte)];
    return text;
}

} // namespace locale
