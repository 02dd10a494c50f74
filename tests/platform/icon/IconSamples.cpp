#include "tests/platform/icon/IconSamples.h"

#include "tests/support/Bytes.h"

std::string Sample(const std::string& name) {
    return BytesOf(SOLVANE_TEST_DATA "/icons/" + name + ".info");
}

std::optional<icon::DiskObject> Parse(std::string_view bytes) {
    return icon::ParseDiskObject(std::as_bytes(std::span(bytes)));
}

std::string Long(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

std::string Text(const std::string& text) {
    return Long(static_cast<std::uint32_t>(text.size() + 1)) + text + '\0';
}

std::string ProjectIcon(const std::vector<std::string>& toolTypes) {
    std::string file(78, '\0');
    file.replace(0, 4, std::string("\xE3\x10\0\1", 4));
    file[0x30] = static_cast<char>(icon::IconType::Project);
    file[0x36] = 1; // tool types are there
    file += Long(static_cast<std::uint32_t>(toolTypes.size() + 1) * 4);
    for (const std::string& text : toolTypes)
        file += Text(text);
    return file;
}

std::string PlanarIcon(const std::vector<std::string>& rows, char gadgetFlags) {
    std::string file(78, '\0');
    file.replace(0, 4, std::string("\xE3\x10\0\1", 4));
    file[0x11] = gadgetFlags;
    file[0x16] = 1; // the image is there
    file[0x2F] = 1; // revision
    file[0x30] = static_cast<char>(icon::IconType::Project);
    const std::string size = {'\0', static_cast<char>(rows[0].size()), '\0', static_cast<char>(rows.size())};
    file += std::string(4, '\0') + size + std::string("\0\2\0\0\0\1\3\0\0\0\0\0", 12);
    for (int plane = 0; plane < 2; ++plane)
        for (const std::string& row : rows) {
            std::uint32_t bits = 0;
            for (std::size_t x = 0; x < row.size(); ++x)
                bits |= static_cast<std::uint32_t>(row[x] - '0') >> plane & 1 ? 0x8000U >> x : 0;
            file += Long(bits).substr(2);
        }
    return file;
}
