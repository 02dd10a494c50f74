// A file descriptor of the host that closes itself. For the sources of this folder.
#pragma once

#include <utility>

namespace exec {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) noexcept : Number(number) {}
    ~Descriptor() { Close(); }
    Descriptor(Descriptor&& other) noexcept : Number(std::exchange(other.Number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            Close();
            Number = std::exchange(other.Number, -1);
        }
        return *this;
    }

    [[nodiscard]] bool IsOpen() const noexcept { return Number >= 0; }
    [[nodiscard]] int Get() const noexcept { return Number; }
    void Close() noexcept;

private:
    int Number = -1;
};

// A directory of this user alone: no link, owned by the user, nobody else has any right on it. Made
// when missing; not open when it is not such a directory.
[[nodiscard]] Descriptor OpenPrivateDirectory(int parent, const char* path);

} // namespace exec
