// A temporary tree of host files that removes itself: TempTree{"a/b.info", "drawer/"}. A name that ends in
// "/" is a drawer, any other an empty file; drawers on the way are made.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

class TempTree {
public:
    TempTree() : TempTree({}) {}
    TempTree(std::initializer_list<std::string_view> names) {
        std::string pattern = (std::filesystem::temp_directory_path() / "solvane-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no temporary drawer: " + pattern);
        // Without links on the way, so that texts made from it compare.
        Top = std::filesystem::canonical(pattern).string();
        Plant(names);
    }
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;
    ~TempTree() {
        std::error_code ignored;
        namespace fs = std::filesystem;
        // Drawers that a test has closed are opened again, or they would stay behind.
        for (fs::recursive_directory_iterator at(Top, ignored), end; at != end; at.increment(ignored))
            if (at->symlink_status(ignored).type() == fs::file_type::directory)
                fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        fs::remove_all(Top, ignored);
    }

    [[nodiscard]] const std::string& Root() const { return Top; }
    [[nodiscard]] std::string Path(std::string_view name) const { return Top + "/" + std::string(name); }

    void Plant(std::initializer_list<std::string_view> names) const {
        for (const std::string_view name : names)
            name.ends_with('/') ? Drawer(name) : static_cast<void>(Write(name, ""));
    }
    void Drawer(std::string_view name) const { std::filesystem::create_directories(Path(name)); }
    // Gives the file's path.
    std::string Write(std::string_view name, std::string_view bytes) const {
        std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
        std::ofstream file(Path(name), std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush())
            throw std::runtime_error("cannot write " + Path(name));
        return Path(name);
    }
    void Link(std::string_view name, std::string_view target) const {
        std::filesystem::create_symlink(std::filesystem::path(target), Path(name));
    }
    void Socket(std::string_view name) const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        Path(name).copy(address.sun_path, sizeof(address.sun_path) - 1);
        const int made = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
            throw std::runtime_error("no socket " + Path(name));
        ::close(made);
    }
    [[nodiscard]] std::string Read(std::string_view name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    [[nodiscard]] bool Exists(std::string_view name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(Path(name)));
    }

private:
    std::string Top;
};
