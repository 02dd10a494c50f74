// Compiles the sources of catalogs. What is wrong with them goes to the error output, and nothing is written.
//
// usage: solvane_compile_catalog names DESCRIPTION OUT           the numbers as a C++ header
//        solvane_compile_catalog table DESCRIPTION OUT           the built-in texts as C++ source
//        solvane_compile_catalog catalog DESCRIPTION TRANSLATION OUT
#include "Catalogs/compile/CatalogSource.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

namespace {

std::string ReadSource(const std::string& path, catalogs::Findings& findings) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        findings.push_back(path + ":1: cannot be read");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

bool WriteOutput(const std::string& path, std::string_view bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        std::cerr << path << ": cannot be written\n";
    }
    return static_cast<bool>(file);
}

// As it stands between quotes in C++.
std::string Literal(std::string_view text) {
    std::string literal = "\"";
    for (const char c : text) {
        if (c == '\n') {
            literal += "\\n";
        } else {
            literal.append(c == '"' || c == '\\' ? "\\" : "").push_back(c);
        }
    }
    return literal + '"';
}

std::string NamesOf(const catalogs::Description& description) {
    std::string out = "// The numbers of the program's texts. Made by the build from Catalogs/solvane.cd.\n"
                      "#pragma once\n\n#include <cstdint>\n\nnamespace solvane {\n\n"
                      "enum MessageNumber : std::int32_t {\n";
    for (const catalogs::DescribedText& text : description.Texts) {
        out += "    " + text.Name + " = " + std::to_string(text.Number) + ", // " + Literal(text.Text) + "\n";
    }
    return out + "};\n\n} // namespace solvane\n";
}

// All numbers up to the last one, so that a reserved one has its entry.
std::string TableOf(const catalogs::Description& description) {
    std::string out = "// The built-in texts. Made by the build from Catalogs/solvane.cd.\n"
                      "#include \"sak/Locale.h\"\n\nnamespace solvane {\n\n"
                      "namespace {\n\nconstexpr CatCompString Strings[] = {\n";
    auto text = description.Texts.begin();
    for (std::int32_t number = 1; number <= catalogs::LastNumber; ++number) {
        const bool isThere = text != description.Texts.end() && text->Number == number;
        out += "    {" + std::to_string(number) + ", " + Literal(isThere ? (text++)->Text : "") + "},\n";
    }
    return out +
           "};\n\n} // namespace\n\nconstinit const std::span<const CatCompString> CatCompArray = Strings;\n"
           "constinit const std::uint32_t SAK_NumAppStrings = " +
           std::to_string(catalogs::LastNumber) + ";\n\n} // namespace solvane\n";
}

std::optional<std::string> Compile(const std::vector<std::string>& arguments, catalogs::Findings& findings) {
    const auto description =
        catalogs::ParseDescription(ReadSource(arguments[1], findings), arguments[1], findings);
    if (arguments[0] == "names") {
        return NamesOf(description);
    }
    if (arguments[0] == "table") {
        return TableOf(description);
    }
    const auto catalog =
        catalogs::ParseTranslation(ReadSource(arguments[2], findings), arguments[2], description, findings);
    auto bytes = locale::WriteCatalog(catalog);
    if (!bytes) {
        findings.push_back(arguments[2] + ":1: its texts do not go into its code set");
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool isCatalog = arguments.size() == 4 && arguments[0] == "catalog";
    if (!isCatalog && (arguments.size() != 3 || (arguments[0] != "names" && arguments[0] != "table"))) {
        std::cerr << "usage: solvane_compile_catalog names|table DESCRIPTION OUT\n"
                     "       solvane_compile_catalog catalog DESCRIPTION TRANSLATION OUT\n";
        return 2;
    }
    catalogs::Findings findings;
    const auto bytes = Compile(arguments, findings);
    for (const std::string& finding : findings) {
        std::cerr << finding << '\n';
    }
    return findings.empty() && bytes && WriteOutput(arguments.back(), *bytes) ? 0 : 1;
}
