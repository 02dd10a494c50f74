#include "platform/locale/CatalogFile.h"

#include "platform/iffparse/ByteReader.h"
#include "platform/iffparse/IffReader.h"
#include "platform/iffparse/IffWriter.h"
#include "platform/locale/CodeSets.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <charconv>

namespace locale {
namespace {

using iffparse::ByteReader;
using iffparse::MakeId;

constexpr iffparse::ChunkId IdCatalog = MakeId("CTLG");
constexpr iffparse::ChunkId IdVersion = MakeId("FVER");
constexpr iffparse::ChunkId IdLanguage = MakeId("LANG");
constexpr iffparse::ChunkId IdCodeSet = MakeId("CSET");
constexpr iffparse::ChunkId IdTexts = MakeId("STRS");

constexpr std::size_t CodeSetReserved = 28; // bytes of CSET behind its number
constexpr std::size_t TextAlignment = 4;
constexpr std::size_t EntryHead = 8;     // bytes of STRS before each text: number, length
constexpr std::size_t WordOfVersion = 2; // "$VER:", name, version

std::string_view UntilNul(std::string_view field) {
    return field.substr(0, field.find('\0'));
}

std::size_t Aligned(std::size_t length) {
    return (length + TextAlignment - 1) / TextAlignment * TextAlignment;
}

// A length counts the NUL behind the text or does not, as the compiler's maker liked it. What pads a text is
// no part of it, whatever stands there; the last one may lack its padding. Zeros at the end that are too few
// for an entry pad the chunk.
void ParseTexts(std::string_view data, CatalogFile& catalog) {
    ByteReader reader(data);
    while (reader.Left() >= EntryHead) {
        const auto id = static_cast<std::int32_t>(reader.Long());
        const std::uint32_t length = reader.Long();
        if (length > reader.Left()) {
            catalog.IsDamaged = true;
            return;
        }
        catalog.Texts.push_back({id, std::string(UntilNul(reader.Raw(length)))});
        reader.Raw(std::min(Aligned(length) - length, reader.Left()));
    }
    const std::string_view rest = reader.Raw(reader.Left());
    catalog.IsDamaged = catalog.IsDamaged || rest.find_first_not_of('\0') != std::string_view::npos;
}

void TakeChunk(const iffparse::IffChunk& chunk, CatalogFile& catalog) {
    switch (chunk.Id) {
    case IdVersion:
        catalog.VersionText = UntilNul(chunk.Data);
        break;
    case IdLanguage:
        catalog.Language = UntilNul(chunk.Data);
        break;
    case IdCodeSet:
        catalog.CodeSet = ByteReader(chunk.Data).Long();
        break;
    default:
        ParseTexts(chunk.Data, catalog);
    }
}

// The code set may stand behind the texts, so all are converted at the end.
void DecodeAll(CatalogFile& catalog) {
    const CodeSetDecoder decoder(catalog.CodeSet);
    catalog.VersionText = decoder.Decode(catalog.VersionText);
    catalog.Language = decoder.Decode(catalog.Language);
    for (CatalogText& text : catalog.Texts)
        text.Text = decoder.Decode(text.Text);
}

void SortTexts(std::vector<CatalogText>& texts) {
    std::ranges::stable_sort(texts, {}, &CatalogText::Id);
    const auto isSameId = [](const CatalogText& a, const CatalogText& b) { return a.Id == b.Id; };
    texts.erase(std::unique(texts.begin(), texts.end(), isSameId), texts.end());
}

// False when an id comes twice or a text cannot be encoded.
bool WriteTexts(iffparse::IffWriter& writer, const CatalogFile& catalog) {
    std::vector<const CatalogText*> texts;
    for (const CatalogText& text : catalog.Texts)
        texts.push_back(&text);
    std::ranges::sort(texts, {}, &CatalogText::Id);
    if (std::ranges::adjacent_find(texts, {}, &CatalogText::Id) != texts.end())
        return false;
    for (const CatalogText* text : texts) {
        std::optional<std::string> bytes = EncodeText(text->Text, catalog.CodeSet);
        if (!bytes || bytes->size() >= iffparse::MaxIffSize)
            return false;
        const std::size_t length = bytes->size() + 1;
        bytes->resize(Aligned(length), '\0');
        writer.WriteLong(static_cast<std::uint32_t>(text->Id));
        writer.WriteLong(static_cast<std::uint32_t>(length));
        writer.Write(*bytes);
    }
    return true;
}

bool WriteTextChunk(iffparse::IffWriter& writer, iffparse::ChunkId id, std::string_view text,
                    std::uint32_t codeSet) {
    const std::optional<std::string> bytes = EncodeText(text, codeSet);
    if (!bytes)
        return false;
    writer.PushChunk(id);
    writer.Write(*bytes);
    writer.WriteByte(0);
    writer.PopChunk();
    return true;
}

void WriteCodeSet(iffparse::IffWriter& writer, std::uint32_t codeSet) {
    writer.PushChunk(IdCodeSet);
    writer.WriteLong(codeSet);
    writer.WriteField({}, CodeSetReserved);
    writer.PopChunk();
}

} // namespace

CatalogVersion VersionOf(std::string_view versionText) {
    for (std::size_t word = 0; word < WordOfVersion; ++word) {
        versionText.remove_prefix(std::min(versionText.find(' '), versionText.size()));
        versionText.remove_prefix(std::min(versionText.find_first_not_of(' '), versionText.size()));
    }
    const char* const end = versionText.data() + versionText.size();
    CatalogVersion version;
    const auto dot = std::from_chars(versionText.data(), end, version.Version);
    if (dot.ec != std::errc())
        return {};
    if (dot.ptr != end && *dot.ptr == '.')
        std::from_chars(dot.ptr + 1, end, version.Revision);
    return version;
}

std::optional<CatalogFile> ParseCatalog(std::string_view bytes) {
    iffparse::IffReader reader(bytes);
    const iffparse::IffChunk* form = reader.Step();
    if (form == nullptr || form->Id != iffparse::IdForm || form->Type != IdCatalog)
        return std::nullopt;
    for (const auto id : {IdVersion, IdLanguage, IdCodeSet, IdTexts})
        reader.StopChunk(IdCatalog, id);
    CatalogFile catalog;
    while (const iffparse::IffChunk* chunk = reader.Scan())
        TakeChunk(*chunk, catalog);
    catalog.IsDamaged = catalog.IsDamaged || reader.Error() != iffparse::IffError::None;
    DecodeAll(catalog);
    SortTexts(catalog.Texts);
    return catalog;
}

std::optional<std::string> EncodeText(std::string_view text, std::uint32_t codeSet) {
    if (!utility::IsValidUtf8(text) || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    if (codeSet == CodeSetUtf8)
        return std::string(text);
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        const utility::Character c = utility::Decode(text, at);
        if (codeSet != CodeSetDefault || c.Code > 0xFF)
            return std::nullopt;
        bytes += static_cast<char>(c.Code);
        at += c.Length;
    }
    return bytes;
}

std::optional<std::string> WriteCatalog(const CatalogFile& catalog) {
    iffparse::IffWriter writer;
    writer.PushChunk(IdCatalog, iffparse::IdForm);
    if (!WriteTextChunk(writer, IdVersion, catalog.VersionText, catalog.CodeSet) ||
        !WriteTextChunk(writer, IdLanguage, catalog.Language, catalog.CodeSet))
        return std::nullopt;
    WriteCodeSet(writer, catalog.CodeSet);
    writer.PushChunk(IdTexts);
    if (!WriteTexts(writer, catalog))
        return std::nullopt;
    writer.PopChunk();
    writer.PopChunk();
    return writer.Finish();
}

} // namespace locale
