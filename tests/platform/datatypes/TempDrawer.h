// A drawer of files that goes away with the test.
#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>

class TempDrawer {
public:
    TempDrawer() : Root(Make()) {}
    TempDrawer(const TempDrawer&) = delete;
    TempDrawer& operator=(const TempDrawer&) = delete;
    ~TempDrawer() {
        std::error_code ignored;
        std::filesystem::remove_all(Root, ignored);
    }

    [[nodiscard]] std::string Path(std::string_view name) const { return Root + "/" + std::string(name); }
    std::string Write(std::string_view name, std::string_view bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

    const std::string Root;

private:
    static std::string Make() {
        std::string pattern = (std::filesystem::temp_directory_path() / "solvane-datatypes-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary drawer");
        }
        return pattern;
    }
};
