// The user's own volumes and assigns:
//
//   [[volume]]
//   name = "Work"            # what stands before the colon
//   path = "~/Amiga/Work"    # a drawer of the host
//   device = "DH3"           # optional; the next free DHn otherwise
//   names = "fold"           # or "exact", the default
//   metadata = "uaem"        # or "xattr", the default
//
//   [[assign]]
//   name = "Games"
//   paths = ["Work:Games", "/srv/games"]   # in order; host paths too

#include "platform/dos/Errors.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/VolumeTable.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#define TOML_EXCEPTIONS 0
#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

namespace dos {

namespace {

constexpr std::size_t LargestMountFile = 1u << 20; // bytes
constexpr int MostDevices = 1000;                  // numbers tried for a device name

void Complain(const toml::node& at, const std::string& text) {
    AddSetUpProblem("mounts.toml, line " + std::to_string(at.source().begin.line) + ": " + text);
}

std::string TextIn(const toml::table& table, std::string_view key) {
    return table[key].value_or(std::string());
}

std::string Expand(const std::string& path, const std::string& home) {
    return path == "~" || path.starts_with("~/") ? home + path.substr(1) : path;
}

// Names that nobody knows are complained of, so that a slip of the pen does not pass unseen.
bool HasOnly(const toml::table& table, std::initializer_list<std::string_view> keys) {
    bool isClean = true;
    for (const auto& [key, value] : table)
        if (std::ranges::find(keys, key.str()) == keys.end()) {
            Complain(value, "unknown key \"" + std::string(key.str()) + "\"");
            isClean = false;
        }
    return isClean;
}

std::string FreeDevice() {
    for (int number = 3; number < MostDevices; ++number)
        if (std::string name = "DH" + std::to_string(number); !IsKnownDevice(name))
            return name;
    return {};
}

bool ReadRules(const toml::table& table, VolumeInfo& volume) {
    const std::string names = table["names"].value_or(std::string("exact"));
    const std::string metadata = table["metadata"].value_or(std::string("xattr"));
    volume.Names = names == "fold" ? NameRule::Fold : NameRule::Exact;
    volume.Metadata = metadata == "uaem" ? MetadataRule::Uaem : MetadataRule::Xattr;
    if (names != "fold" && names != "exact") {
        Complain(table, "names must be \"exact\" or \"fold\", not \"" + names + "\"");
        return false;
    }
    if (metadata != "uaem" && metadata != "xattr") {
        Complain(table, "metadata must be \"xattr\" or \"uaem\", not \"" + metadata + "\"");
        return false;
    }
    return true;
}

void ReadVolume(const toml::table& table, const std::string& home) {
    VolumeInfo volume;
    volume.Volume = TextIn(table, "name");
    volume.Device = TextIn(table, "device");
    volume.HostRoot = Expand(TextIn(table, "path"), home);
    if (!HasOnly(table, {"name", "path", "device", "names", "metadata"}) || !ReadRules(table, volume))
        return;
    if (volume.Volume.empty() || !volume.HostRoot.starts_with('/')) {
        Complain(table, "a volume needs a name and the path of a host drawer");
        return;
    }
    if (volume.Device.empty())
        volume.Device = FreeDevice();
    if (IsKnownDevice(volume.Volume)) {
        Complain(table, "there is already a volume or assign \"" + volume.Volume + "\"");
        return;
    }
    const std::string name = volume.Volume + "\" (" + volume.HostRoot + ")";
    if (!AddVolume(std::move(volume)))
        Complain(table, "volume \"" + name + ": " + Fault(IoErr()));
}

void ReadAssign(const toml::table& table, const std::string& home) {
    const std::string name = TextIn(table, "name");
    if (!HasOnly(table, {"name", "path", "paths"}))
        return;
    std::vector<std::string> targets;
    if (const auto path = table["path"].value<std::string>())
        targets.push_back(FromHostPath(Expand(*path, home)));
    if (const toml::array* paths = table["paths"].as_array())
        for (const toml::node& path : *paths)
            if (const auto text = path.value<std::string>())
                targets.push_back(FromHostPath(Expand(*text, home)));
    if (name.empty() || targets.empty()) {
        Complain(table, "an assign needs a name and at least one path");
        return;
    }
    // Late: a drawer on a disk that comes later is no mistake.
    if (!SetAssign(name, AssignKind::Late, std::move(targets)))
        Complain(table, "assign \"" + name + "\": " + Fault(IoErr()));
}

template <typename Reader>
void ReadEach(const toml::table& root, std::string_view key, Reader read) {
    const toml::node* node = root.get(key);
    if (!node)
        return;
    const toml::array* rows = node->as_array();
    if (!rows) {
        Complain(*node, "write [[" + std::string(key) + "]] for each " + std::string(key));
        return;
    }
    for (const toml::node& row : *rows) {
        if (const toml::table* table = row.as_table())
            read(*table);
        else
            Complain(row, "a " + std::string(key) + " is a table");
    }
}

} // namespace

void ReadMountFile(const std::string& hostPath, const std::string& homeDrawer) {
    const std::optional<std::string> text = ReadHostText(hostPath, LargestMountFile);
    if (!text) {
        if (errno != ENOENT)
            AddSetUpProblem("mounts.toml cannot be read: " + std::string(std::strerror(errno)));
        return;
    }
    const toml::parse_result parsed = toml::parse(*text);
    if (!parsed) {
        AddSetUpProblem("mounts.toml, line " + std::to_string(parsed.error().source().begin.line) + ": " +
                        std::string(parsed.error().description()));
        return;
    }
    const toml::table& root = parsed.table();
    static_cast<void>(HasOnly(root, {"volume", "assign"})); // what is known still counts
    ReadEach(root, "volume", [&](const toml::table& table) { ReadVolume(table, homeDrawer); });
    ReadEach(root, "assign", [&](const toml::table& table) { ReadAssign(table, homeDrawer); });
}

} // namespace dos
