#include "platform/datatypes/KnownNames.h"

#include "platform/datatypes/TypeRegistry.h"

#include <algorithm>
#include <array>
#include <string>

namespace datatypes {

namespace {

using enum GroupId;

constexpr std::array Types = {
    DataType{"ARexx", Text, "rexx"},
    DataType{"Script", Text, "scri"},
    DataType{"Amiga E", Text, "e   "},
    DataType{"Assembler", Text, "asm "},
    DataType{"BASIC", Text, "bas "},
    DataType{"Catalog Description", Text, "cd  "},
    DataType{"Catalog Translation", Text, "ct  "},
    DataType{"Makefile", Text, "make"},
    DataType{"FD", Text, "fd  "},
    DataType{"UUEncoded", Text, "uue "},
    DataType{"PGP", Text, "pgp "},
    DataType{"PEM", Text, "pem "},
    DataType{"M3U", Text, "m3u "},
    DataType{"vCard", Text, "vcrd"},
    DataType{"iCalendar", Text, "ical"},
    DataType{"HTML", Text, "html"},
    DataType{"XML", Text, "xml "},
    DataType{"SVG", Picture, "svg "},
    DataType{"XPM", Picture, "xpm "},
    DataType{"XBM", Picture, "xbm "},
    DataType{"Radiance", Picture, "hdr "},
    DataType{"AmigaGuide", Document, "guid"},
    DataType{"PostScript", Document, "ps  "},
    DataType{"RTF", Document, "rtf "},
    DataType{"Type 1", System, "pfb "},
};

struct NameRow {
    std::string_view Name;
    std::string_view Type;
};

// Extensions of texts, in order of the bytes.
constexpr std::array<NameRow, 25> TextExtensions = {{
    {"a", "Assembler"},   {"amos", "BASIC"},
    {"arexx", "ARexx"},   {"asm", "Assembler"},
    {"bas", "BASIC"},     {"cd", "Catalog Description"},
    {"ced", "ARexx"},     {"ct", "Catalog Translation"},
    {"diz", "ASCII"},     {"doc", "ASCII"},
    {"dopus5", "ARexx"},  {"e", "Amiga E"},
    {"fd", "FD"},         {"guide", "ASCII"}, // one that begins with @database is known by that
    {"i", "Assembler"},   {"installer", "Script"},
    {"me", "ASCII"},      {"nfo", "ASCII"},
    {"readme", "ASCII"},  {"rexx", "ARexx"},
    {"rx", "ARexx"},      {"s", "Assembler"},
    {"script", "Script"}, {"sfd", "FD"},
    {"uaem", "ASCII"},
}};

// Whole names of texts, lower-case, in order of the bytes.
constexpr std::array<NameRow, 9> WholeNames = {{
    {"cmakelists.txt", "Makefile"},
    {"gnumakefile", "Makefile"},
    {"lmkfile", "Makefile"},
    {"makefile", "Makefile"},
    {"shell-startup", "Script"},
    {"smakefile", "Makefile"},
    {"startup-sequence", "Script"},
    {"user-shell", "Script"},
    {"user-startup", "Script"},
}};

// Extensions of Amiga formats that the host's databases do not know or take for others, in order.
constexpr std::array<std::string_view, 35> ContentExtensions = {
    "8svx",   "adf",     "adz", "ahx", "anim", "catalog", "cdxl", "class", "dbm",   "device",  "dms", "font",
    "gadget", "handler", "hdf", "iff", "ilbm", "info",    "ipf",  "lbm",   "lha",   "library", "lzh", "lzx",
    "mcc",    "mcp",     "med", "mmd", "mod",  "otag",    "p61",  "prefs", "slave", "xl",      "xpk",
};

static_assert(std::ranges::is_sorted(TextExtensions, {}, &NameRow::Name));
static_assert(std::ranges::is_sorted(ContentExtensions));
static_assert(std::ranges::is_sorted(WholeNames, {}, &NameRow::Name));

template <std::size_t Count>
const DataType* TypeInRows(const std::array<NameRow, Count>& rows, std::string_view name) {
    const auto row = std::ranges::lower_bound(rows, name, {}, &NameRow::Name);
    return row != rows.end() && row->Name == name ? FindType(row->Type) : nullptr;
}

} // namespace

std::span<const DataType> KnownTypes() noexcept {
    return Types;
}

const DataType* TextTypeByWholeName(std::string_view name) {
    constexpr std::size_t longest = 16;
    if (name.size() > longest) {
        return nullptr;
    }
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return TypeInRows(WholeNames, lower);
}

const DataType* TextTypeByExtension(std::string_view extension) {
    return TypeInRows(TextExtensions, extension);
}

bool IsContentExtension(std::string_view extension) noexcept {
    return std::ranges::binary_search(ContentExtensions, extension);
}

} // namespace datatypes
