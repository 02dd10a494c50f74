#include "platform/datatypes/ContentTable.h"

#include <array>

namespace datatypes {

namespace {

using namespace std::string_view_literals;
using enum GroupId;

bool IsGzip(const Specimen& file) {
    return (U8(file.Head, 3) & 0xE0) == 0;
}
bool IsGzippedDisk(const Specimen& file) {
    return file.Extension == "adz";
}
bool IsGzippedTar(const Specimen& file) {
    return file.Extension == "tgz" || file.Name.ends_with(".tar.gz");
}
bool IsCompress(const Specimen& file) {
    const std::uint32_t bits = U8(file.Head, 2) & 0x1F;
    return (U8(file.Head, 2) & 0x60) == 0 && bits >= 9 && bits <= 16;
}
bool IsBzip2(const Specimen& file) {
    return U8(file.Head, 3) >= '1' && U8(file.Head, 3) <= '9' &&
           (HasMark(file.Head, 4, "1AY&SY") || HasMark(file.Head, 4, "\x17\x72\x45\x38\x50\x90"));
}
bool IsLzma(const Specimen& file) {
    return file.Extension == "lzma";
}
bool IsArc(const Specimen& file) {
    return U8(file.Head, 1) >= 1 && U8(file.Head, 1) <= 9 && file.Extension == "arc";
}
bool IsArj(const Specimen& file) {
    return Le16(file.Head, 2) <= 2600 && Le16(file.Head, 2) >= 30;
}

// A tar of the days before "ustar": the sum over the header must be the one it holds.
bool IsOldTar(const Specimen& file) {
    constexpr std::size_t header = 512, sumAt = 148, sumSize = 8;
    if (file.Head.size() < header || U8(file.Head, 0) == 0) {
        return false;
    }
    std::uint32_t sum = 0, stated = 0;
    for (std::size_t i = sumAt; i < sumAt + sumSize; ++i) {
        const std::uint32_t c = U8(file.Head, i);
        if (c >= '0' && c <= '7') {
            stated = stated * 8 + (c - '0');
        } else if (c != ' ' && c != 0) {
            return false;
        }
    }
    for (std::size_t i = 0; i < header; ++i) {
        sum += i >= sumAt && i < sumAt + sumSize ? ' ' : U8(file.Head, i);
    }
    return sum == stated && sum != 256;
}

// The bytes on the last page of a program: letters of a text would make too large a number.
bool IsExe(const Specimen& file) {
    return Le16(file.Head, 2) < 512 && Le16(file.Head, 4) != 0;
}

bool IsEpub(const Specimen& file) {
    return HasMark(file.Head, 38, "application/epub+zip");
}

// Java classes and fat Mach-O programs share a mark; the latter count a few architectures there.
bool IsJavaClass(const Specimen& file) {
    return Be32(file.Head, 4) > 43;
}

bool IsDigit(std::uint32_t c) {
    return c >= '0' && c <= '9';
}

// Documents may be text from end to end, so the version has to follow.
bool IsPdf(const Specimen& file) {
    return IsDigit(U8(file.Head, 5)) && HasMark(file.Head, 6, ".");
}
// Up to a kilobyte of something else may stand before the document, but scripts hold the mark too.
bool IsNamedPdf(const Specimen& file) {
    const std::string_view start = AsText(file.Head).substr(0, 1024);
    return file.Extension == "pdf" && start.find("%PDF-") != std::string_view::npos;
}

// The first value is a text: its length and a colon. Lists of trackers can fill the head with text.
bool IsTorrent(const Specimen& file) {
    std::size_t at = 11;
    while (at < 15 && IsDigit(U8(file.Head, at))) {
        ++at;
    }
    return at > 11 && HasMark(file.Head, at, ":");
}

bool IsTrueType(const Specimen& file) {
    return Be16(file.Head, 4) > 0 && Be16(file.Head, 4) < 128;
}

constexpr std::array Rows = {
    // Archives
    ContentRow{{"EPUB", Document, "epub"}, {0, "PK\3\4"}, {30, "mimetype"}, IsEpub},
    ContentRow{{"ZIP", System, "zip "}, {0, "PK\3\4"}, {}, nullptr, Container::Zip},
    ContentRow{{"ZIP", System, "zip "}, {0, "PK\5\6"}, {}, nullptr, Container::Zip},
    ContentRow{{"ZIP", System, "zip "}, {0, "PK\7\x08"}, {}, nullptr, Container::Zip},
    ContentRow{{"ADZ", System, "adz "}, {0, "\x1F\x8B\x08"}, {}, IsGzippedDisk},
    ContentRow{{"TGZ", System, "tgz "}, {0, "\x1F\x8B\x08"}, {}, IsGzippedTar},
    ContentRow{{"GZIP", System, "gzip"}, {0, "\x1F\x8B\x08"}, {}, IsGzip, Container::Gzip},
    ContentRow{{"Compress", System, "z   "}, {0, "\x1F\x9D"}, {}, IsCompress},
    ContentRow{{"BZIP2", System, "bz2 "}, {0, "BZh"}, {}, IsBzip2},
    ContentRow{{"XZ", System, "xz  "},
               {0, "\xFD"
                   "7zXZ\0"sv}},
    ContentRow{{"LZMA", System, "lzma"}, {0, "\x5D\0\0"sv}, {}, IsLzma},
    ContentRow{{"ZSTD", System, "zstd"}, {0, "\x28\xB5\x2F\xFD"}},
    ContentRow{{"LZ4", System, "lz4 "}, {0, "\x04\x22\x4D\x18"}},
    ContentRow{{"LZIP", System, "lzip"}, {0, "LZIP"}},
    ContentRow{{"7Z", System, "7z  "}, {0, "7z\xBC\xAF\x27\x1C"}},
    ContentRow{{"RAR", System, "rar "}, {0, "Rar!\x1A\x07"}},
    ContentRow{{"TAR", System, "tar "}, {257, "ustar"}},
    ContentRow{{"TAR", System, "tar "}, {}, {}, IsOldTar},
    ContentRow{{"CPIO", System, "cpio"}, {0, "070701"}},
    ContentRow{{"CPIO", System, "cpio"}, {0, "070702"}},
    ContentRow{{"CPIO", System, "cpio"}, {0, "070707"}},
    ContentRow{{"DEB", System, "deb "}, {0, "!<arch>\ndebian-binary"}},
    ContentRow{{"AR", System, "ar  "}, {0, "!<arch>\n"}},
    ContentRow{{"RPM", System, "rpm "}, {0, "\xED\xAB\xEE\xDB"}},
    ContentRow{{"CAB", System, "cab "}, {0, "MSCF\0\0\0\0"sv}},
    ContentRow{{"ZOO", System, "zoo "}, {20, "\xDC\xA7\xC4\xFD"}},
    ContentRow{{"ARC", System, "arc "}, {0, "\x1A"}, {}, IsArc},
    ContentRow{{"ARJ", System, "arj "}, {0, "\x60\xEA"}, {}, IsArj},
    ContentRow{{"ACE", System, "ace "}, {7, "**ACE**"}},
    ContentRow{{"StuffIt", System, "sit "}, {0, "SIT!"}, {10, "rLau"}},
    ContentRow{{"StuffIt", System, "sit "}, {0, "StuffIt (c)"}},
    ContentRow{{"XAR", System, "xar "}, {0, "xar!"}},
    // Programs and their parts
    ContentRow{{"ELF", System, "elf "},
               {0, "\x7F"
                   "ELF"}},
    ContentRow{{"EXE", System, "exe "}, {0, "MZ"}, {}, IsExe},
    ContentRow{{"Java Class", System, "java"}, {0, "\xCA\xFE\xBA\xBE"}, {}, IsJavaClass},
    ContentRow{{"Mach-O", System, "mach"}, {0, "\xCA\xFE\xBA\xBE"}},
    ContentRow{{"Mach-O", System, "mach"}, {0, "\xCF\xFA\xED\xFE"}},
    ContentRow{{"Mach-O", System, "mach"}, {0, "\xCE\xFA\xED\xFE"}},
    ContentRow{{"WASM", System, "wasm"}, {0, "\0asm\1"sv}},
    ContentRow{{"Gettext Catalog", System, "mo  "}, {0, "\xDE\x12\x04\x95"}},
    ContentRow{{"Gettext Catalog", System, "mo  "}, {0, "\x95\x04\x12\xDE"}},
    ContentRow{{"SQLite", System, "sqli"}, {0, "SQLite format 3\0"sv}},
    ContentRow{{"SQUASHFS", System, "sqsh"}, {0, "hsqs"}},
    ContentRow{{"QCOW", System, "qcow"}, {0, "QFI\xFB"}},
    ContentRow{{"Torrent", System, "torr"}, {0, "d8:announce"}, {}, IsTorrent},
    ContentRow{{"PCAP", System, "pcap"}, {0, "\xD4\xC3\xB2\xA1"}},
    ContentRow{{"PCAP", System, "pcap"}, {0, "\xA1\xB2\xC3\xD4"}},
    // Fonts
    ContentRow{{"TrueType", System, "ttf "}, {0, "\0\1\0\0"sv}, {}, IsTrueType},
    ContentRow{{"TrueType", System, "ttf "}, {0, "true\0"sv}},
    ContentRow{{"TrueType", System, "ttf "}, {0, "ttcf\0"sv}},
    ContentRow{{"OpenType", System, "otf "}, {0, "OTTO\0"sv}},
    ContentRow{{"WOFF", System, "woff"}, {0, "wOFF"}},
    ContentRow{{"WOFF", System, "woff"}, {0, "wOF2"}},
    ContentRow{{"PCF", System, "pcf "}, {0, "\1fcp"}},
    ContentRow{{"Type 1", System, "pfb "}, {0, "\x80\1"}, {6, "%!"}},
    // Documents
    ContentRow{{"PDF", Document, "pdf "}, {0, "%PDF-"}, {}, IsPdf},
    ContentRow{{"DOC", Document, "doc "}, {0, "\xDB\xA5-\0"sv}},
    ContentRow{
        {"OLE", Document, "ole "}, {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"}, {}, nullptr, Container::Ole},
    ContentRow{{"WordPerfect", Document, "wpd "}, {0, "\xFFWPC"}},
    ContentRow{{"DVI", Document, "dvi "}, {0, "\xF7\x02\1\x83\x92\xC0"}},
    ContentRow{{"EPS", Document, "eps "}, {0, "\xC5\xD0\xD3\xC6"}},
    ContentRow{{"DjVu", Document, "djvu"}, {0, "AT&TFORM"}, {12, "DJV"}},
    ContentRow{{"CHM", Document, "chm "}, {0, "ITSF\3"}},
    ContentRow{{"MOBI", Document, "mobi"}, {60, "BOOKMOBI"}},
    ContentRow{{"PDF", Document, "pdf "}, {}, {}, IsNamedPdf},
};

} // namespace

std::span<const ContentRow> GeneralFormats() noexcept {
    return Rows;
}

} // namespace datatypes
