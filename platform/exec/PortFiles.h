// The files by which public ports are known: "<stem>.lock" holds the port's name and is locked as
// long as the owner lives, "<stem>.port" is its socket. For the sources of this folder.
#pragma once

#include "platform/exec/Descriptor.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace exec {

// Not empty, not too long, no control characters.
[[nodiscard]] bool IsPortName(std::string_view name);
// What its files are called: short, the same for names that differ in case only.
[[nodiscard]] std::string PortFileStem(std::string_view name);
[[nodiscard]] std::string SocketName(const std::string& stem);
// "ports" in the runtime directory, made when missing; not open when it is not to be trusted.
[[nodiscard]] Descriptor OpenPortDirectory();

// A name that this process holds; given free when the object goes.
class PortClaim {
public:
    PortClaim(Descriptor directory, Descriptor lock, std::string stem) noexcept;
    ~PortClaim();
    PortClaim(PortClaim&&) = default;
    PortClaim& operator=(PortClaim&&) = delete;

    [[nodiscard]] const Descriptor& Directory() const noexcept { return Ports; }
    [[nodiscard]] const std::string& Stem() const noexcept { return FileStem; }

private:
    Descriptor Ports;
    Descriptor Lock; // locked; closing it gives the name free
    std::string FileStem;
};

// Claims the name and clears what lies in its socket's place; nothing when a living process has it
// or the files cannot be made. Under Forbid.
[[nodiscard]] std::optional<PortClaim> ClaimPort(std::string_view name);
// True while a living process holds the claim; leftovers of a dead one are removed.
[[nodiscard]] bool IsPortAlive(const Descriptor& directory, const std::string& stem);
// The names of the living ports in the order of their claims.
[[nodiscard]] std::vector<std::string> LivingPorts(const Descriptor& directory);

} // namespace exec
