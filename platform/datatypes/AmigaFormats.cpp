#include "platform/datatypes/ContentTable.h"

#include <algorithm>
#include <array>

namespace datatypes {

namespace {

using namespace std::string_view_literals;
using enum GroupId;

// Words like "FORM" and "CAT " begin texts as well: the size of the group must fit the file.
bool IsGroup(const Specimen& file) {
    return Be32(file.Head, 4) >= 4 && Be32(file.Head, 4) <= file.Size;
}

constexpr std::uint64_t TrackSize = 11 * 512; // bytes of one side of a double density track

bool HasExtension(const Specimen& file, std::initializer_list<std::string_view> extensions) {
    return std::ranges::find(extensions, file.Extension) != extensions.end();
}

// Disk images hold whole cylinders: 80 of them, or a few more on disks made to hold more.
bool HasFloppySize(const Specimen& file) {
    for (const std::uint64_t track : {TrackSize, TrackSize * 2}) {
        if (file.Size % (track * 2) == 0 && file.Size >= track * 160 && file.Size <= track * 168) {
            return true;
        }
    }
    return false;
}

bool IsDosDisk(const Specimen& file) {
    return U8(file.Head, 3) <= 7 && file.Size % 512 == 0;
}
bool IsDosFloppy(const Specimen& file) {
    return IsDosDisk(file) && HasFloppySize(file);
}
// Games often have a boot block of their own: then the name and the size have to do.
bool IsForeignFloppy(const Specimen& file) {
    return file.Extension == "adf" && HasFloppySize(file);
}
bool IsHardFile(const Specimen& file) {
    return file.Extension == "hdf" && file.Size % 512 == 0 && file.Size > TrackSize * 336;
}

// Load files begin: hunk id, no resident library names, table size, first, last, sizes, code hunk.
std::size_t FirstHunkStart(const Specimen& file) {
    const std::uint32_t hunks = Be32(file.Head, 8);
    const std::size_t codeHunk = 20 + std::size_t{hunks} * 4;
    return hunks == 0 || hunks > 512 || codeHunk + 8 > file.Head.size() ? 0 : codeHunk + 8;
}

// A disk font: a code hunk with "moveq #-1,d0; rts" (or so), a node and then the font file id.
bool IsBitmapFont(const Specimen& file) {
    const std::size_t start = FirstHunkStart(file);
    return start != 0 && Be16(file.Head, start + 18) == 0x0F80;
}
bool IsGameSlave(const Specimen& file) {
    const std::size_t start = FirstHunkStart(file);
    return start != 0 && HasMark(file.Head, start + 4, "WHDLOADS");
}
bool IsLibrary(const Specimen& file) {
    return HasExtension(file, {"library", "gadget", "class", "image", "datatype", "mcc", "mcp"});
}
bool IsDevice(const Specimen& file) {
    return file.Extension == "device";
}
bool IsHandler(const Specimen& file) {
    return HasExtension(file, {"handler", "filesystem"}) || file.Name.ends_with("-handler");
}

bool IsIcon(const Specimen& file) {
    return Be16(file.Head, 2) == 1;
}
bool IsIconByName(const Specimen& file) {
    return file.Extension == "info";
}

bool IsLhA(const Specimen& file) {
    const std::string_view methods = "01234567dsz"; // -lh0- ... -lhd-, -lzs-, -lz4-, -lz5-
    const char family = static_cast<char>(U8(file.Head, 4));
    const char method = static_cast<char>(U8(file.Head, 5));
    return (family == 'h' || family == 'z') && methods.find(method) != methods.npos &&
           HasMark(file.Head, 6, "-") && U8(file.Head, 20) <= 3;
}

bool HasDigitAt(const Specimen& file, std::size_t at) {
    return U8(file.Head, at) >= '1' && U8(file.Head, at) <= '9';
}
bool IsFewChannels(const Specimen& file) {
    return HasDigitAt(file, 1080);
}
bool IsManyChannels(const Specimen& file) {
    return HasDigitAt(file, 1080) && (HasDigitAt(file, 1081) || U8(file.Head, 1081) == '0');
}
bool IsSoundMon(const Specimen& file) {
    return U8(file.Head, 29) <= 64 && Be16(file.Head, 30) > 0 && Be16(file.Head, 30) <= 1024;
}
bool IsSid(const Specimen& file) {
    return Be16(file.Head, 4) >= 1 && Be16(file.Head, 4) <= 4;
}

// Modules of 15 samples have no mark: the sample table must make sense, and the name must say so.
bool IsOldModule(const Specimen& file) {
    constexpr std::size_t firstSample = 20, sampleSize = 30, samples = 15, orders = 472;
    const bool named = HasExtension(file, {"mod", "stk", "nst"}) || file.Name.starts_with("mod.") ||
                       file.Name.starts_with("MOD.");
    const std::uint32_t length = U8(file.Head, 470);
    if (!named || file.Head.size() < 600 || length == 0 || length > 128) {
        return false;
    }
    for (std::size_t i = 0; i < samples; ++i) {
        const std::size_t sample = firstSample + i * sampleSize;
        if (U8(file.Head, sample + 24) > 15 || U8(file.Head, sample + 25) > 64 ||
            Be16(file.Head, sample + 22) > 0x8000) {
            return false;
        }
    }
    const Bytes order = file.Head.subspan(orders, 128);
    return std::ranges::all_of(order, [](std::byte b) { return b < std::byte{64}; });
}

// CDXL frames have no mark; their header must add up to the size of the first frame.
bool IsCdxl(const Specimen& file) {
    const Bytes h = file.Head;
    const std::uint64_t width = Be16(h, 14), height = Be16(h, 16), planes = Be16(h, 18);
    const std::uint64_t palette = Be16(h, 20), audio = Be16(h, 22), chunk = Be32(h, 2);
    if (h.size() < 32 || U8(h, 0) > 1 || Be32(h, 6) != 0 || width == 0 || width > 1024 || height == 0 ||
        height > 1024 || planes == 0 || planes > 24 || palette > 512 || chunk > file.Size) {
        return false;
    }
    const std::uint64_t picture = (width + 15) / 16 * 2 * height * planes;
    const std::uint64_t least = 32 + palette + picture + audio;
    return palette % 2 == 0 && chunk >= least && chunk <= least + audio + 64;
}

bool IsKickstart(const Specimen& file) {
    const bool jump = Be16(file.Head, 2) == 0x4EF9;
    return jump && (file.Size == 262144 || file.Size == 524288 || file.Size == 1048576);
}

bool IsPackedByte(const Specimen& file) {
    return U8(file.Head, 3) <= 7;
}
// Four bytes say how many bits a distance has in each of the packer's modes.
bool IsPowerPacked(const Specimen& file) {
    const Bytes bits = file.Head.subspan(std::min<std::size_t>(4, file.Head.size()));
    return bits.size() >= 4 && std::ranges::all_of(bits.first(4), [](std::byte b) {
               return b >= std::byte{9} && b <= std::byte{13};
           });
}
bool IsThx(const Specimen& file) {
    return U8(file.Head, 3) <= 3;
}
bool IsFontContents(const Specimen& file) {
    return file.Extension == "font" && Be16(file.Head, 2) > 0 && Be16(file.Head, 2) < 64;
}
bool IsOutline(const Specimen& file) {
    return file.Extension == "otag";
}

constexpr std::array Rows = {
    // IFF
    ContentRow{{"ILBM", Picture, "ilbm"}, {0, "FORM"}, {8, "ILBM"}},
    ContentRow{{"ILBM", Picture, "ilbm"}, {0, "FORM"}, {8, "PBM "}},
    ContentRow{{"ACBM", Picture, "acbm"}, {0, "FORM"}, {8, "ACBM"}},
    ContentRow{{"DEEP", Picture, "deep"}, {0, "FORM"}, {8, "DEEP"}},
    ContentRow{{"RGB8", Picture, "rgb8"}, {0, "FORM"}, {8, "RGB8"}},
    ContentRow{{"RGBN", Picture, "rgbn"}, {0, "FORM"}, {8, "RGBN"}},
    ContentRow{{"DR2D", Picture, "dr2d"}, {0, "FORM"}, {8, "DR2D"}},
    ContentRow{{"ANIM", Animation, "anim"}, {0, "FORM"}, {8, "ANIM"}},
    ContentRow{{"YAFA", Animation, "yafa"}, {0, "FORM"}, {8, "YAFA"}},
    ContentRow{{"8SVX", Sound, "8svx"}, {0, "FORM"}, {8, "8SVX"}},
    ContentRow{{"16SV", Sound, "16sv"}, {0, "FORM"}, {8, "16SV"}},
    ContentRow{{"AIFF", Sound, "aiff"}, {0, "FORM"}, {8, "AIFF"}},
    ContentRow{{"AIFF", Sound, "aiff"}, {0, "FORM"}, {8, "AIFC"}},
    ContentRow{{"MAUD", Sound, "maud"}, {0, "FORM"}, {8, "MAUD"}},
    ContentRow{{"SAMP", Instrument, "samp"}, {0, "FORM"}, {8, "SAMP"}},
    ContentRow{{"SMUS", Music, "smus"}, {0, "FORM"}, {8, "SMUS"}},
    ContentRow{{"CMUS", Music, "cmus"}, {0, "FORM"}, {8, "CMUS"}},
    ContentRow{{"Quadra Composer", Music, "emod"}, {0, "FORM"}, {8, "EMOD"}},
    ContentRow{{"FTXT", Text, "ftxt"}, {0, "FORM"}, {8, "FTXT"}},
    ContentRow{{"Catalog", System, "ctlg"}, {0, "FORM"}, {8, "CTLG"}},
    ContentRow{{"Prefs", System, "pref"}, {0, "FORM"}, {8, "PREF"}},
    ContentRow{{"ProWrite", Document, "word"}, {0, "FORM"}, {8, "WORD"}},
    ContentRow{{"Wordworth", Document, "wowo"}, {0, "FORM"}, {8, "WOWO"}},
    ContentRow{{"Final Writer", Document, "swrt"}, {0, "FORM"}, {8, "SWRT"}},
    ContentRow{{"TDDD", System, "tddd"}, {0, "FORM"}, {8, "TDDD"}},
    ContentRow{{"LWO", System, "lwob"}, {0, "FORM"}, {8, "LWOB"}},
    ContentRow{{"LWO", System, "lwob"}, {0, "FORM"}, {8, "LWO2"}},
    ContentRow{{"Blorb", System, "ifrs"}, {0, "FORM"}, {8, "IFRS"}},
    ContentRow{{"IFF", System, "iff "}, {0, "FORM"}, {}, IsGroup},
    ContentRow{{"IFF", System, "iff "}, {0, "LIST"}, {}, IsGroup},
    ContentRow{{"IFF", System, "iff "}, {0, "CAT "}, {}, IsGroup},
    // Icons
    ContentRow{{"Icon", Picture, "icon"}, {0, "\xE3\x10"}, {}, IsIcon},
    ContentRow{{"Icon", Picture, "icon"}, {0, "\x89PNG\r\n\x1A\n"}, {}, IsIconByName},
    // Load files
    ContentRow{{"Font", System, "font"}, {0, "\0\0\x03\xF3"sv}, {}, IsBitmapFont},
    ContentRow{{"WHDLoad", System, "whdl"}, {0, "\0\0\x03\xF3"sv}, {}, IsGameSlave},
    ContentRow{{"Library", System, "libr"}, {0, "\0\0\x03\xF3"sv}, {}, IsLibrary},
    ContentRow{{"Device", System, "devi"}, {0, "\0\0\x03\xF3"sv}, {}, IsDevice},
    ContentRow{{"Handler", System, "hand"}, {0, "\0\0\x03\xF3"sv}, {}, IsHandler},
    ContentRow{{"Executable", System, "exec"}, {0, "\0\0\x03\xF3"sv}},
    ContentRow{{"Object", System, "obj "}, {0, "\0\0\x03\xE7"sv}},
    ContentRow{{"Link Library", System, "llib"}, {0, "\0\0\x03\xFA"sv}},
    ContentRow{{"Font", System, "font"}, {0, "\x0F\0"sv}, {}, IsFontContents},
    ContentRow{{"Font", System, "font"}, {0, "\x0F\x02"}, {}, IsFontContents},
    ContentRow{{"Font", System, "font"}, {0, "\x0F\x03"}, {}, IsFontContents},
    ContentRow{{"Outline Font", System, "otag"}, {0, "\x80\0"sv}, {}, IsOutline},
    // Disks
    ContentRow{{"ADF", System, "adf "}, {0, "DOS"}, {}, IsDosFloppy},
    ContentRow{{"HDF", System, "hdf "}, {0, "DOS"}, {}, IsDosDisk},
    ContentRow{{"ADF", System, "adf "}, {0, "UAE-1ADF"}},
    ContentRow{{"ADF", System, "adf "}, {0, "UAE--ADF"}},
    ContentRow{{"HDF", System, "hdf "}, {0, "RDSK"}},
    ContentRow{{"HDF", System, "hdf "}, {0, "SFS\0"sv}},
    ContentRow{{"HDF", System, "hdf "}, {0, "PFS\1"}},
    ContentRow{{"HDF", System, "hdf "}, {0, "PDS\3"}},
    ContentRow{{"IPF", System, "ipf "}, {0, "CAPS\0\0\0\x0C"sv}},
    ContentRow{{"DMS", System, "dms "}, {0, "DMS!"}},
    ContentRow{{"WARP", System, "warp"}, {0, "Warp v1."}},
    ContentRow{{"ZOOM", System, "zoom"}, {0, "ZOM5"}},
    ContentRow{{"PackDisk", System, "pdsk"}, {0, "PDSK"}},
    ContentRow{{"Kickstart", System, "kick"}, {0, "\x11\x11"}, {}, IsKickstart},
    ContentRow{{"Kickstart", System, "kick"}, {0, "\x11\x14"}, {}, IsKickstart},
    ContentRow{{"Kickstart", System, "kick"}, {0, "\x11\x16"}, {}, IsKickstart},
    ContentRow{{"Kickstart", System, "kick"}, {0, "AMIROMTYPE1"}},
    // Archives and packed files
    ContentRow{{"LhA", System, "lha "}, {2, "-l"}, {}, IsLhA},
    ContentRow{{"PMA", System, "pma "}, {2, "-pm"}, {6, "-"}},
    ContentRow{{"LZX", System, "lzx "}, {0, "LZX"}, {}, IsPackedByte},
    ContentRow{{"PP20", System, "pp20"}, {0, "PP20"}, {}, IsPowerPacked},
    ContentRow{{"PX20", System, "px20"}, {0, "PX20"}},
    ContentRow{{"XPK", System, "xpk "}, {0, "XPKF"}},
    ContentRow{{"IMP", System, "imp "}, {0, "IMP!"}},
    ContentRow{{"CrM", System, "crm "}, {0, "CrM!"}},
    ContentRow{{"CrM", System, "crm "}, {0, "CrM2"}},
    ContentRow{{"StoneCracker", System, "s404"}, {0, "S403"}},
    ContentRow{{"StoneCracker", System, "s404"}, {0, "S404"}},
    ContentRow{{"RNC", System, "rnc "}, {0, "RNC\1"}},
    ContentRow{{"RNC", System, "rnc "}, {0, "RNC\2"}},
    // Music
    ContentRow{{"Protracker", Music, "ptmd"}, {1080, "M.K."}},
    ContentRow{{"Protracker", Music, "ptmd"}, {1080, "M!K!"}},
    ContentRow{{"Protracker", Music, "ptmd"}, {1080, "M&K!"}},
    ContentRow{{"Protracker", Music, "ptmd"}, {1080, "N.T."}},
    ContentRow{{"Startrekker", Music, "flt "}, {1080, "FLT4"}},
    ContentRow{{"Startrekker", Music, "flt "}, {1080, "FLT8"}},
    ContentRow{{"Octalyser", Music, "cd81"}, {1080, "CD81"}},
    ContentRow{{"Octalyser", Music, "cd81"}, {1080, "OKTA"}},
    ContentRow{{"Fasttracker", Music, "ftmd"}, {1081, "CHN"}, {}, IsFewChannels},
    ContentRow{{"Fasttracker", Music, "ftmd"}, {1082, "CH"}, {}, IsManyChannels},
    ContentRow{{"Fasttracker", Music, "ftmd"}, {1082, "CN"}, {}, IsManyChannels},
    ContentRow{{"Soundtracker", Music, "stk "}, {}, {}, IsOldModule},
    ContentRow{{"MED", Music, "med "}, {0, "MMD0"}},
    ContentRow{{"MED", Music, "med "}, {0, "MMD1"}},
    ContentRow{{"MED", Music, "med "}, {0, "MMD2"}},
    ContentRow{{"MED", Music, "med "}, {0, "MMD3"}},
    ContentRow{{"MED", Music, "med "}, {0, "MED\4"}},
    ContentRow{{"Oktalyzer", Music, "okta"}, {0, "OKTASONG"}},
    ContentRow{{"AHX", Music, "ahx "}, {0, "THX"}, {}, IsThx},
    ContentRow{{"HivelyTracker", Music, "hvl "}, {0, "HVL"}, {}, IsThx},
    ContentRow{{"DigiBooster", Music, "dbm "}, {0, "DBM0"}},
    ContentRow{{"DigiBooster", Music, "dbm "}, {0, "DIGI Booster module"}},
    ContentRow{{"Future Composer", Music, "fc  "}, {0, "FC14"}},
    ContentRow{{"Future Composer", Music, "fc  "}, {0, "SMOD"}},
    ContentRow{{"TFMX", Music, "tfmx"}, {0, "TFMX-SONG"}},
    ContentRow{{"TFMX", Music, "tfmx"}, {0, "TFMX_SONG"}},
    ContentRow{{"TFMX", Music, "tfmx"}, {0, "tfmxsong"}},
    ContentRow{{"Art of Noise", Music, "aon "}, {0, "AON4"}},
    ContentRow{{"Art of Noise", Music, "aon "}, {0, "AON8"}},
    ContentRow{{"The Player", Music, "p60a"}, {0, "P60A"}},
    ContentRow{{"The Player", Music, "p60a"}, {0, "P61A"}},
    ContentRow{{"SoundMon", Music, "bp  "}, {26, "V.2"}, {}, IsSoundMon},
    ContentRow{{"SoundMon", Music, "bp  "}, {26, "V.3"}, {}, IsSoundMon},
    ContentRow{{"SID", Music, "sid "}, {0, "PSID"}, {}, IsSid},
    ContentRow{{"SID", Music, "sid "}, {0, "RSID"}, {}, IsSid},
    // Others
    ContentRow{{"AMOS", System, "amos"}, {0, "AMOS Basic"}},
    ContentRow{{"AMOS", System, "amos"}, {0, "AMOS Pro"}},
    ContentRow{{"AMOS Bank", System, "ambk"}, {0, "AmBk"}},
    ContentRow{{"AMOS Bank", System, "ambk"}, {0, "AmBs"}},
    ContentRow{{"AMOS Bank", System, "ambk"}, {0, "AmSp"}},
    ContentRow{{"AmigaBASIC", System, "abas"}, {0, "\xF5\0\0"sv}},
    ContentRow{{"CDXL", Animation, "cdxl"}, {}, {}, IsCdxl},
    ContentRow{{"ADF", System, "adf "}, {}, {}, IsForeignFloppy},
    ContentRow{{"HDF", System, "hdf "}, {}, {}, IsHardFile},
};

} // namespace

std::span<const ContentRow> AmigaFormats() noexcept {
    return Rows;
}

} // namespace datatypes
