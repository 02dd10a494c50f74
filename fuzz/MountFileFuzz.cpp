// Exercises the readers of what others tell about mounts: mounts.toml, the host's list of mounts and
// the labels of disks. What comes through must be fit to be used as it is.
#include "platform/dos/DiskVolumes.h"
#include "platform/dos/MediumInfo.h"
#include "platform/dos/MountFile.h"
#include "platform/utility/Text.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void Require(bool isSo) {
    if (!isSo)
        std::abort();
}

bool IsFit(std::string_view name) {
    return !name.empty() && name.size() <= dos::LongestDeviceText &&
           name.find_first_of(std::string_view(":/\0", 3)) == std::string_view::npos;
}

void CheckMountFile(std::string_view text) {
    const dos::MountFile file = dos::ParseMountFile(text, "/home/u");
    Require(file.Volumes.size() <= dos::MostMountRows && file.Assigns.size() <= dos::MostMountRows);
    for (const dos::MountFileVolume& volume : file.Volumes) {
        Require(IsFit(volume.Info.Volume) && volume.Info.HostRoot.starts_with('/') && volume.Line > 0);
        Require(volume.Info.Device.empty() || IsFit(volume.Info.Device));
    }
    for (const dos::MountFileAssign& assign : file.Assigns) {
        Require(IsFit(assign.Info.Name) && !assign.Info.Targets.empty());
        Require(assign.Info.Targets.size() <= dos::MostMountPaths);
    }
    for (const std::string& problem : file.Problems)
        Require(!problem.empty() && problem.size() < 1000);
}

void CheckMountList(std::string_view text) {
    const auto rows = dos::ParseMountInfo(text);
    for (const dos::VolumeInfo& disk : dos::DisksOf(rows))
        Require(!disk.Device.empty() && IsFit(disk.Volume) && disk.HostRoot.starts_with('/'));
    for (const dos::MountRow& row : rows)
        Require(dos::MountOf(rows, row.Point) != nullptr);
}

void CheckLabel(std::string_view text) {
    const std::string name = dos::FitVolumeName(dos::DecodeHexEscapes(text));
    Require((name.empty() || IsFit(name)) && utility::IsValidUtf8(name));
}

} // namespace

// The first byte says which reader the rest is for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    dos::Places() = {.Numbers = "/nowhere",
                     .Blocks = "/nowhere",
                     .Labels = "/nowhere",
                     .Records = "/nowhere",
                     .Release = "/nowhere"};
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (text.starts_with('L'))
        CheckLabel(text.substr(1));
    else if (text.starts_with('M'))
        CheckMountList(text.substr(1));
    else
        CheckMountFile(text);
    return 0;
}
