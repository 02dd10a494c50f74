#include "platform/dos/Aliases.h"

#include "platform/dos/NameEscapes.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cstdint>

namespace dos {

namespace {

constexpr std::string_view IconSuffix = ".info";
constexpr std::size_t LongestExtension = 16; // bytes, dot included; a longer one is cut with the head
constexpr std::size_t DigestDigits = 8;

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

// FNV-1a over 64 bits, folded to 32.
std::uint32_t Digest(std::string_view name, unsigned salt) {
    std::uint64_t hash = 14695981039346656037u ^ (salt * 0x9E3779B97F4A7C15u);
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

std::string DigestText(std::uint32_t digest) {
    std::string text(DigestDigits, '0');
    for (std::size_t i = DigestDigits; i-- > 0; digest >>= 4)
        text[i] = "0123456789abcdef"[digest & 15];
    return text;
}

std::string WithoutColons(std::string_view name) {
    std::string out;
    for (const char c : name)
        c == ':' ? void(out.append(AliasColon)) : out.push_back(c);
    return out;
}

bool HasIconSuffix(std::string_view name) {
    return name.size() > IconSuffix.size() &&
           utility::Stricmp(name.substr(name.size() - IconSuffix.size()), IconSuffix) == 0;
}

std::string_view ExtensionOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || name.size() - dot > LongestExtension)
        return {};
    return name.substr(dot);
}

} // namespace

bool NeedsAlias(std::string_view hostName) noexcept {
    return hostName.size() > LongestName || hostName.find(':') != std::string_view::npos;
}

std::string MakeAlias(std::string_view hostName, unsigned salt) {
    if (HasIconSuffix(hostName)) {
        const std::string_view owner = hostName.substr(0, hostName.size() - IconSuffix.size());
        if (NeedsAlias(owner))
            return MakeAlias(owner, salt).append(hostName.substr(owner.size()));
    }
    const std::string_view extension = ExtensionOf(hostName);
    const std::string tail = "~" + DigestText(Digest(hostName, salt)) + WithoutColons(extension);
    const std::string head = WithoutColons(hostName.substr(0, hostName.size() - extension.size()));
    // Room for the suffix of its icon stays free. Colons can make an extension three times as long.
    const std::size_t room = LongestName - IconSuffix.size() - std::min<std::size_t>(tail.size(), 60);
    return head.substr(0, utility::CutLength(head, room)) + tail;
}

bool LooksLikeAlias(std::string_view name) noexcept {
    for (std::size_t mark = name.find('~'); mark != std::string_view::npos; mark = name.find('~', mark + 1)) {
        const std::string_view digits = name.substr(mark + 1, DigestDigits);
        const std::size_t end = mark + 1 + DigestDigits;
        if (digits.size() == DigestDigits && std::ranges::all_of(digits, IsHexDigit) &&
            (end == name.size() || name[end] == '.'))
            return true;
    }
    return false;
}

void AliasFinder::Add(std::string_view hostName) {
    const bool isEscape = Rule == MetadataRule::Uaem && IsEscape(hostName);
    const std::string own = isEscape ? UnescapedName(hostName) : std::string();
    const std::string_view shown = isEscape ? own : hostName;
    if (NeedsAlias(shown))
        Needing.emplace_back(hostName);
    else if (LooksLikeAlias(shown))
        Suspects.emplace(shown);
    if (isEscape)
        Escapes.emplace(hostName);
    else if (Rule == MetadataRule::Uaem && !NeedsAlias(shown) && NeedsEscape(hostName))
        Unescaped.emplace_back(hostName);
}

AliasTable AliasFinder::Table() {
    if (!Escapes.empty())
        std::ranges::copy_if(Unescaped, std::back_inserter(Needing),
                             [&](const std::string& name) { return Escapes.contains(EscapedName(name)); });
    std::ranges::sort(Needing); // the same answer whatever the order of the drawer
    AliasTable table;
    for (const std::string& name : Needing) {
        std::string alias = MakeAlias(name, 0);
        for (unsigned salt = 1; Suspects.contains(alias) || table.RealOf.contains(alias); ++salt)
            alias = MakeAlias(name, salt);
        table.AliasOf.emplace(name, alias);
        table.RealOf.emplace(std::move(alias), name);
    }
    return table;
}

} // namespace dos
