#include "platform/dos/MediumInfo.h"

#include "platform/dos/HostDirectory.h"

#include <algorithm>
#include <charconv>
#include <fcntl.h>

namespace dos {

namespace {

constexpr std::size_t LargestFact = 65536; // bytes of one of these files
constexpr int DeepestMapping = 8;          // encrypted on striped on ... on a disk
constexpr std::uint32_t SectorSize = 512;  // bytes; the unit of the kernel's sizes
constexpr std::uint32_t LargestBlock = 65536;

std::string LastPart(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

// A name that stays in its drawer when it is put behind a slash.
bool IsPlainName(std::string_view name) {
    return !name.empty() && name.front() != '.' && name.find('/') == std::string_view::npos;
}

bool IsNumber(std::string_view number) {
    const std::size_t colon = number.find(':');
    return colon != std::string_view::npos && colon > 0 && colon + 1 < number.size() &&
           number.find_first_not_of("0123456789:") == std::string_view::npos;
}

std::string LineOf(const std::string& hostPath) {
    std::string text = ReadHostText(hostPath, LargestFact).value_or(std::string());
    text.resize(std::min(text.find('\n'), text.size()));
    return text;
}

std::uint64_t NumberIn(const std::string& hostPath) {
    const std::string text = LineOf(hostPath);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? number : 0;
}

std::string LinkText(const std::string& hostPath) {
    return ReadLinkText(AT_FDCWD, hostPath.c_str());
}

// The kernel's name of the device: by number, or by the device file where a file system has a
// number of its own.
std::string NameOfBlock(const MountRow& row) {
    std::string name;
    if (IsNumber(row.Number) && !row.Number.starts_with("0:"))
        name = LastPart(LinkText(Places().Numbers + "/" + row.Number));
    if (name.empty() && row.Source.starts_with("/dev/")) {
        const std::string link = LinkText(row.Source); // "/dev/mapper/x" to "../dm-0"
        name = LastPart(link.empty() ? row.Source : link);
    }
    return IsPlainName(name) ? name : std::string();
}

std::string FirstNameIn(const std::string& drawer) {
    std::string first;
    const HostFd open(Host().Openat(AT_FDCWD, drawer.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    const bool isRead = open && ForEachName(open.Get(), [&](std::string_view name) {
                            if (IsPlainName(name) && (first.empty() || name < first))
                                first = name;
                        });
    return isRead ? first : std::string();
}

// The whole device: a partition lies in the drawer of its disk.
std::string WholeOf(const std::string& name) {
    const std::string link = LinkText(Places().Blocks + "/" + name);
    if (!LineOf(Places().Blocks + "/" + name + "/partition").empty()) {
        const std::string disk = LastPart(link.substr(0, link.rfind('/')));
        if (IsPlainName(disk))
            return disk;
    }
    return name;
}

// Down through mappings to a device that stands on a bus.
std::string CarrierOf(const std::string& name) {
    std::string whole = WholeOf(name);
    for (int depth = 0; depth < DeepestMapping; ++depth) {
        const std::string below = FirstNameIn(Places().Blocks + "/" + whole + "/slaves");
        if (below.empty())
            break;
        whole = WholeOf(below);
    }
    return whole;
}

std::uint32_t BlockSizeOf(const std::string& whole) {
    const std::uint64_t size = NumberIn(Places().Blocks + "/" + whole + "/queue/logical_block_size");
    const bool isSound = size >= SectorSize && size <= LargestBlock && (size & (size - 1)) == 0;
    return isSound ? static_cast<std::uint32_t>(size) : SectorSize;
}

void MeasureMedium(MediumFacts& facts) {
    const std::uint64_t sectors = NumberIn(Places().Blocks + "/" + facts.Name + "/size");
    if (sectors == 0)
        return;
    facts.BlockSize = BlockSizeOf(WholeOf(facts.Name));
    facts.Blocks = sectors / (facts.BlockSize / SectorSize);
}

std::string LabelByLink(const std::string& name) {
    const std::string& place = Places().Labels;
    const HostFd drawer(Host().Openat(AT_FDCWD, place.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    std::string label;
    const bool isRead = drawer && ForEachName(drawer.Get(), [&](std::string_view entry) {
                            const std::string link(entry);
                            if (label.empty() && LastPart(ReadLinkText(drawer.Get(), link.c_str())) == name)
                                label = DecodeHexEscapes(entry);
                        });
    return isRead ? label : std::string();
}

// The value of a line "E:key=value".
std::string RecordValue(std::string_view record, std::string_view key) {
    while (!record.empty()) {
        const std::size_t end = std::min(record.find('\n'), record.size());
        std::string_view line = record.substr(0, end);
        record.remove_prefix(std::min(end + 1, record.size()));
        if (!line.starts_with("E:") || !line.substr(2).starts_with(key))
            continue;
        line.remove_prefix(2 + key.size());
        if (line.starts_with('='))
            return std::string(line.substr(1));
    }
    return {};
}

std::string RecordOf(const MountRow& row, const std::string& name) {
    std::string number = row.Number;
    if (!IsNumber(number) || number.starts_with("0:"))
        number = LineOf(Places().Blocks + "/" + name + "/dev");
    if (!IsNumber(number))
        return {};
    return ReadHostText(Places().Records + "/b" + number, LargestFact).value_or(std::string());
}

void ReadLabel(const MountRow& row, MediumFacts& facts) {
    const std::string record = RecordOf(row, facts.Name);
    facts.Content = RecordValue(record, "ID_FS_TYPE");
    facts.Label = LabelByLink(facts.Name);
    if (facts.Label.empty())
        facts.Label = DecodeHexEscapes(RecordValue(record, "ID_FS_LABEL_ENC"));
    if (facts.Label.empty())
        facts.Label = RecordValue(record, "ID_FS_LABEL");
}

// The device manager looks whether a disc is in; the kernel's size is that of the last one.
bool HasNoDisc(const std::string& name) {
    const std::string record = RecordOf(MountRow(), name);
    return !record.empty() && RecordValue(record, "ID_CDROM_MEDIA") != "1";
}

bool IsEmptyDrive(const std::string& name) {
    constexpr std::uint64_t NoFloppy = 8; // sectors that the kernel gives for a floppy that it does not know
    const std::string drive = Places().Blocks + "/" + name;
    if (!LineOf(drive + "/partition").empty())
        return false;
    const std::string size = LineOf(drive + "/size");
    if (name.starts_with("sr"))
        return size == "0" || HasNoDisc(name);
    if (name.starts_with("fd"))
        return !size.empty() && NumberIn(drive + "/size") <= NoFloppy;
    return size == "0" && NumberIn(drive + "/removable") != 0;
}

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

MediumPlaces& Places() {
    static MediumPlaces places;
    return places;
}

std::string DecodeHexEscapes(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text.substr(i, 2) == "\\x" && i + 3 < text.size();
        const int high = isEscape ? HexValue(text[i + 2]) : -1;
        const int low = isEscape ? HexValue(text[i + 3]) : -1;
        if (high >= 0 && low >= 0) {
            out.push_back(static_cast<char>(high * 16 + low));
            i += 3;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

MediumFacts FactsOfMedium(const MountRow& row) {
    MediumFacts facts;
    facts.Name = NameOfBlock(row);
    if (facts.Name.empty())
        return facts;
    facts.Carrier = CarrierOf(facts.Name);
    const std::string carrier = Places().Blocks + "/" + facts.Carrier;
    facts.OnUsb = LinkText(carrier).find("/usb") != std::string::npos;
    facts.Removable = NumberIn(carrier + "/removable") != 0;
    facts.BackingFile = LineOf(carrier + "/loop/backing_file");
    MeasureMedium(facts);
    ReadLabel(row, facts);
    return facts;
}

std::vector<std::string> EmptyDriveNames() {
    std::vector<std::string> names;
    const std::string& place = Places().Blocks;
    const HostFd drawer(Host().Openat(AT_FDCWD, place.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    const bool isRead = drawer && ForEachName(drawer.Get(), [&](std::string_view name) {
                            if (IsPlainName(name))
                                names.emplace_back(name);
                        });
    if (!isRead)
        return {};
    std::erase_if(names, [](const std::string& name) { return !IsEmptyDrive(name); });
    std::ranges::sort(names);
    return names;
}

std::string HostRelease() {
    const std::string text = LineOf(Places().Release);
    const std::size_t point = text.find('.');
    if (point == std::string::npos)
        return {};
    return text.substr(0, std::min(text.find_first_not_of("0123456789", point + 1), text.size()));
}

} // namespace dos
