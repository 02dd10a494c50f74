#include "platform/datatypes/ContentTable.h"

#include <algorithm>
#include <array>

namespace datatypes {

namespace {

using namespace std::string_view_literals;
using enum GroupId;

bool Contains(const Specimen& file, std::string_view word) {
    return AsText(file.Head).find(word) != std::string_view::npos;
}

// Pictures without a sure mark: the fields of the header must make sense together.

bool IsJpeg(const Specimen& file) {
    return U8(file.Head, 3) >= 0xC0 && U8(file.Head, 3) != 0xFF;
}

bool IsBmp(const Specimen& file) {
    constexpr std::array<std::uint32_t, 8> headers = {12, 16, 40, 52, 56, 64, 108, 124};
    return std::ranges::find(headers, Le32(file.Head, 14)) != headers.end() && Le32(file.Head, 6) == 0;
}

bool IsPcx(const Specimen& file) {
    const Bytes h = file.Head;
    const std::uint32_t bits = U8(h, 3);
    return h.size() >= 128 && U8(h, 1) <= 5 && U8(h, 2) <= 1 &&
           (bits == 1 || bits == 2 || bits == 4 || bits == 8) && Le16(h, 8) >= Le16(h, 4) &&
           Le16(h, 10) >= Le16(h, 6) && U8(h, 64) == 0;
}

// Icons and cursors of Windows: the first entry must lie behind the directory and inside the file.
bool IsIconDirectory(const Specimen& file) {
    const std::uint64_t count = Le16(file.Head, 4);
    const std::uint64_t size = Le32(file.Head, 14), at = Le32(file.Head, 18);
    return file.Head.size() >= 22 && count > 0 && U8(file.Head, 9) == 0 && at >= 6 + count * 16 &&
           at + size <= file.Size;
}

bool IsTga(const Specimen& file) {
    const Bytes h = file.Head;
    const std::uint32_t kind = U8(h, 2), bits = U8(h, 16);
    const bool named = file.Extension == "tga" || file.Extension == "targa";
    return named && h.size() >= 18 && U8(h, 1) <= 1 &&
           (kind == 1 || kind == 2 || kind == 3 || (kind >= 9 && kind <= 11)) &&
           (bits == 8 || bits == 15 || bits == 16 || bits == 24 || bits == 32) && Le16(h, 12) != 0 &&
           Le16(h, 14) != 0;
}

bool IsBlank(std::uint32_t c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsDigit(std::uint32_t c) {
    return c >= '0' && c <= '9';
}

// Where the number ends that stands there behind blanks and comments; 0 when there is none.
std::size_t EndOfNumber(Bytes head, std::size_t at) {
    const std::size_t start = at;
    for (bool comment = false; comment || IsBlank(U8(head, at)) || U8(head, at) == '#'; ++at) {
        if (at >= head.size()) {
            return 0;
        }
        comment = (comment || U8(head, at) == '#') && U8(head, at) != '\n';
    }
    const std::size_t number = at;
    while (IsDigit(U8(head, at))) {
        ++at;
    }
    const bool ends = at >= head.size() || IsBlank(U8(head, at)) || U8(head, at) == '#';
    return number > start && at > number && ends ? at : 0;
}

// Width and height follow, and the highest value of a pixel where that is not a bit.
bool IsNetpbm(const Specimen& file) {
    const std::uint32_t kind = U8(file.Head, 1);
    if (kind < '1' || kind > '6') {
        return false;
    }
    std::size_t at = 2;
    for (int numbers = kind == '1' || kind == '4' ? 2 : 3; numbers > 0 && at != 0; --numbers) {
        at = EndOfNumber(file.Head, at);
    }
    return at != 0;
}

bool IsFlic(const Specimen& file) {
    const std::uint32_t magic = Le16(file.Head, 4), depth = Le16(file.Head, 12);
    return (magic == 0xAF11 || magic == 0xAF12) && Le16(file.Head, 8) != 0 && Le16(file.Head, 10) != 0 &&
           depth % 8 == 0 && depth <= 32;
}

// MPEG audio: two frame headers of one stream, the second where the first one says.

constexpr std::array<std::array<std::uint16_t, 15>, 3> Mpeg1Rates = {{
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
}};
constexpr std::array<std::array<std::uint16_t, 15>, 2> Mpeg2Rates = {{
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
}};
constexpr std::array<std::uint32_t, 3> SampleRates = {44100, 48000, 32000};

// The bytes of the frame whose header is given, 0 when it is none. layer is 1 to 3.
std::uint32_t FrameLength(std::uint32_t header, std::uint32_t& layer) {
    const std::uint32_t version = header >> 19 & 3, layerBits = header >> 17 & 3;
    const std::uint32_t rateIndex = header >> 12 & 15, sampleIndex = header >> 10 & 3;
    if (header >> 21 != 0x7FF || version == 1 || layerBits == 0 || rateIndex == 0 || rateIndex == 15 ||
        sampleIndex == 3) {
        return 0;
    }
    layer = 4 - layerBits;
    const bool first = version == 3;
    const std::uint32_t kilobits =
        first ? Mpeg1Rates[layer - 1][rateIndex] : Mpeg2Rates[layer == 1 ? 0 : 1][rateIndex];
    const std::uint32_t rate = SampleRates[sampleIndex] >> (first ? 0 : version == 2 ? 1 : 2);
    const std::uint32_t padding = header >> 9 & 1;
    if (layer == 1) {
        return (12000 * kilobits / rate + padding) * 4;
    }
    const std::uint32_t perFrame = layer == 3 && !first ? 72000 : 144000;
    return perFrame * kilobits / rate + padding;
}

// Whether frames of that layer start here; a lone frame must be the whole rest of the file.
bool FramesStartAt(const Specimen& file, std::size_t at, std::uint32_t wanted) {
    std::uint32_t layer = 0, nextLayer = 0;
    const std::uint32_t length = FrameLength(Be32(file.Head, at), layer);
    if (length == 0 || layer != wanted) {
        return false;
    }
    const std::uint64_t next = at + length;
    if (next + 4 > file.Head.size()) {
        return next == file.Size || (next + 128 == file.Size && HasMark(file.Head, next, "TAG"));
    }
    if (HasMark(file.Head, next, "TAG")) {
        return true;
    }
    constexpr std::uint32_t sameStream = 0xFFFE0C00; // sync, version, layer, sample rate
    const std::uint32_t header = Be32(file.Head, next);
    return FrameLength(header, nextLayer) != 0 && ((header ^ Be32(file.Head, at)) & sameStream) == 0;
}

// A sound file that calls itself so may have some bytes of something else before its first frame.
bool IsNamedMp3(const Specimen& file) {
    if (file.Extension != "mp3") {
        return false;
    }
    for (std::size_t at = 0; at + 4 <= file.Head.size(); ++at) {
        if (file.Head[at] == std::byte{0xFF} && FramesStartAt(file, at, 3)) {
            return true;
        }
    }
    return false;
}
bool IsMp3(const Specimen& file) {
    return FramesStartAt(file, 0, 3);
}
bool IsMp2(const Specimen& file) {
    return FramesStartAt(file, 0, 2);
}

// An ID3 tag stands before several kinds of sound; the end of the tag is where the sound starts.
std::uint64_t TagEnd(const Specimen& file) {
    const Bytes h = file.Head;
    return 10 + (std::uint64_t{U8(h, 6) & 0x7F} << 21 | (U8(h, 7) & 0x7F) << 14 | (U8(h, 8) & 0x7F) << 7 |
                 (U8(h, 9) & 0x7F));
}
bool IsTaggedFlac(const Specimen& file) {
    const std::uint64_t end = TagEnd(file);
    return end + 4 <= file.Head.size() ? HasMark(file.Head, static_cast<std::size_t>(end), "fLaC")
                                       : file.Extension == "flac";
}
bool IsTaggedAac(const Specimen& file) {
    return file.Extension == "aac";
}
bool IsTagged(const Specimen& file) {
    return U8(file.Head, 3) >= 2 && U8(file.Head, 3) <= 4;
}

bool IsAdts(const Specimen& file) {
    const Bytes h = file.Head;
    const std::size_t length = (U8(h, 3) & 3) << 11 | U8(h, 4) << 3 | U8(h, 5) >> 5;
    return (Be16(h, 0) & 0xFFF6) == 0xFFF0 && length > 7 && (Be16(h, length) & 0xFFF6) == 0xFFF0;
}

// Sample rate, bit rate and version of the format must be in their ranges.
bool IsAc3(const Specimen& file) {
    const std::uint32_t rates = U8(file.Head, 4);
    return rates >> 6 != 3 && (rates & 0x3F) < 38 && U8(file.Head, 5) >> 3 <= 10;
}

bool IsTheora(const Specimen& file) {
    return Contains(file, "theora");
}
bool IsOpus(const Specimen& file) {
    return Contains(file, "OpusHead");
}
bool IsSpeex(const Specimen& file) {
    return Contains(file, "Speex   ");
}
bool IsOggFlac(const Specimen& file) {
    return Contains(file, "\x7F"
                          "FLAC");
}
bool IsWebm(const Specimen& file) {
    return Contains(file, "webm");
}
bool IsMatroskaSound(const Specimen& file) {
    return file.Extension == "mka";
}
bool IsWma(const Specimen& file) {
    return file.Extension == "wma";
}
bool IsRealAudio(const Specimen& file) {
    return file.Extension == "ra";
}

bool IsTransportStream(const Specimen& file) {
    for (const std::size_t packet : {std::size_t{188}, std::size_t{192}}) {
        const std::size_t first = packet - 188;
        if (U8(file.Head, first) == 0x47 && U8(file.Head, first + packet) == 0x47 &&
            U8(file.Head, first + packet * 2) == 0x47) {
            return true;
        }
    }
    return false;
}

// The atoms of these files begin with their length; 0 and 1 stand for lengths told elsewhere.
bool IsAtom(const Specimen& file) {
    const std::uint32_t length = Be32(file.Head, 0);
    return length <= 1 || (length >= 8 && length <= file.Size);
}

// Marks that texts may begin with need a second look.
bool IsFlash(const Specimen& file) {
    const std::uint32_t version = U8(file.Head, 3);
    return version >= 1 && version <= 60 && (Le32(file.Head, 4) == file.Size || U8(file.Head, 8) == 0x78);
}
bool IsApe(const Specimen& file) {
    return Le16(file.Head, 4) >= 3200 && Le16(file.Head, 4) <= 4200;
}
bool IsMusepack(const Specimen& file) {
    return (U8(file.Head, 3) & 15) == 7;
}
bool IsAu(const Specimen& file) {
    return Be32(file.Head, 4) >= 24 && Be32(file.Head, 4) <= file.Size;
}
bool IsDds(const Specimen& file) {
    return Le32(file.Head, 4) == 124;
}
bool IsDsf(const Specimen& file) {
    return Le32(file.Head, 4) == 28;
}
bool IsMo3(const Specimen& file) {
    return U8(file.Head, 3) <= 5;
}
bool HasDosEnd(const Specimen& file) {
    return U8(file.Head, 28) == 0x1A;
}

constexpr std::array Rows = {
    // Pictures
    ContentRow{{"GIF", Picture, "gif "}, {0, "GIF87a"}},
    ContentRow{{"GIF", Picture, "gif "}, {0, "GIF89a"}},
    ContentRow{{"PNG", Picture, "png "}, {0, "\x89PNG\r\n\x1A\n"}},
    ContentRow{{"JPEG", Picture, "jpeg"}, {0, "\xFF\xD8\xFF"}, {}, IsJpeg},
    ContentRow{{"BMP", Picture, "bmp "}, {0, "BM"}, {}, IsBmp},
    ContentRow{{"TIFF", Picture, "tiff"}, {0, "II*\0"sv}, {}, nullptr, Container::Tiff},
    ContentRow{{"TIFF", Picture, "tiff"}, {0, "MM\0*"sv}, {}, nullptr, Container::Tiff},
    ContentRow{{"TIFF", Picture, "tiff"}, {0, "II+\0"sv}},
    ContentRow{{"TIFF", Picture, "tiff"}, {0, "MM\0+"sv}},
    ContentRow{{"WEBP", Picture, "webp"}, {0, "RIFF"}, {8, "WEBP"}},
    ContentRow{{"PCX", Picture, "pcx "}, {0, "\x0A"}, {}, IsPcx},
    ContentRow{{"PSD", Picture, "psd "}, {0, "8BPS\0"sv}},
    ContentRow{{"XCF", Picture, "xcf "}, {0, "gimp xcf"}},
    ContentRow{{"ICO", Picture, "ico "}, {0, "\0\0\1\0"sv}, {}, IsIconDirectory},
    ContentRow{{"CUR", Picture, "cur "}, {0, "\0\0\2\0"sv}, {}, IsIconDirectory},
    ContentRow{{"Netpbm", Picture, "pnm "}, {0, "P"}, {}, IsNetpbm},
    ContentRow{{"Netpbm", Picture, "pnm "}, {0, "P7\nWIDTH"}},
    ContentRow{{"Sun Raster", Picture, "sun "}, {0, "\x59\xA6\x6A\x95"}},
    ContentRow{{"SGI", Picture, "sgi "}, {0, "\x01\xDA\0\1"sv}},
    ContentRow{{"SGI", Picture, "sgi "}, {0, "\x01\xDA\1\1"}},
    ContentRow{{"JP2", Picture, "jp2 "}, {0, "\0\0\0\x0CjP  \r\n\x87\n"sv}},
    ContentRow{{"JP2", Picture, "jp2 "}, {0, "\xFF\x4F\xFF\x51"}},
    ContentRow{{"JXL", Picture, "jxl "}, {0, "\0\0\0\x0CJXL \r\n\x87\n"sv}},
    ContentRow{{"HEIF", Picture, "heif"}, {4, "ftyphei"}, {}, IsAtom},
    ContentRow{{"HEIF", Picture, "heif"}, {4, "ftypmif1"}, {}, IsAtom},
    ContentRow{{"AVIF", Picture, "avif"}, {4, "ftypavif"}, {}, IsAtom},
    ContentRow{{"OpenEXR", Picture, "exr "}, {0, "\x76\x2F\x31\x01"}},
    ContentRow{{"DDS", Picture, "dds "}, {0, "DDS "}, {}, IsDds},
    ContentRow{{"QOI", Picture, "qoi "}, {0, "qoif"}},
    ContentRow{{"FITS", Picture, "fits"}, {0, "SIMPLE  ="}, {80, "BITPIX  ="}},
    ContentRow{{"DPX", Picture, "dpx "}, {0, "SDPX"}},
    ContentRow{{"DPX", Picture, "dpx "}, {0, "XPDS"}},
    ContentRow{{"WMF", Picture, "wmf "}, {0, "\xD7\xCD\xC6\x9A"}},
    ContentRow{{"EMF", Picture, "emf "}, {0, "\1\0\0\0"sv}, {40, " EMF"}},
    // Animations and movies
    ContentRow{{"FLC", Animation, "flc "}, {}, {}, IsFlic},
    ContentRow{{"MNG", Animation, "mng "}, {0, "\x8AMNG\r\n\x1A\n"}},
    ContentRow{{"ANI", Animation, "ani "}, {0, "RIFF"}, {8, "ACON"}},
    ContentRow{{"SWF", Animation, "swf "}, {0, "FWS"}, {}, IsFlash},
    ContentRow{{"SWF", Animation, "swf "}, {0, "CWS"}, {}, IsFlash},
    ContentRow{{"AVI", Movie, "avi "}, {0, "RIFF"}, {8, "AVI "}},
    ContentRow{{"MPEG", Movie, "mpeg"}, {0, "\0\0\1\xBA"sv}},
    ContentRow{{"MPEG", Movie, "mpeg"}, {0, "\0\0\1\xB3"sv}},
    ContentRow{{"MPEG", Movie, "mpeg"}, {0, "RIFF"}, {8, "CDXA"}},
    ContentRow{{"MPEG", Movie, "mpeg"}, {}, {}, IsTransportStream},
    ContentRow{{"M4A", Sound, "m4a "}, {4, "ftypM4A"}, {}, IsAtom},
    ContentRow{{"M4A", Sound, "m4a "}, {4, "ftypM4B"}, {}, IsAtom},
    ContentRow{{"QuickTime", Movie, "qt  "}, {4, "ftypqt"}, {}, IsAtom},
    ContentRow{{"3GP", Movie, "3gp "}, {4, "ftyp3g"}, {}, IsAtom},
    ContentRow{{"MP4", Movie, "mp4 "}, {4, "ftyp"}, {}, IsAtom},
    ContentRow{{"QuickTime", Movie, "qt  "}, {4, "moov"}, {}, IsAtom},
    ContentRow{{"QuickTime", Movie, "qt  "}, {4, "mdat"}, {}, IsAtom},
    ContentRow{{"QuickTime", Movie, "qt  "}, {4, "wide"}, {12, "mdat"}},
    ContentRow{{"Ogg Video", Movie, "ogv "}, {0, "OggS"}, {}, IsTheora},
    ContentRow{{"WebM", Movie, "webm"}, {0, "\x1A\x45\xDF\xA3"}, {}, IsWebm},
    ContentRow{{"Matroska Audio", Sound, "mka "}, {0, "\x1A\x45\xDF\xA3"}, {}, IsMatroskaSound},
    ContentRow{{"Matroska", Movie, "mkv "}, {0, "\x1A\x45\xDF\xA3"}},
    ContentRow{{"WMA", Sound, "wma "}, {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"}, {}, IsWma},
    ContentRow{{"WMV", Movie, "wmv "}, {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"}},
    ContentRow{{"FLV", Movie, "flv "}, {0, "FLV\1"}},
    ContentRow{{"RealAudio", Sound, "ra  "}, {0, ".ra\xFD"}},
    ContentRow{{"RealAudio", Sound, "ra  "}, {0, ".RMF"}, {}, IsRealAudio},
    ContentRow{{"RealMedia", Movie, "rm  "}, {0, ".RMF"}},
    // Sounds
    ContentRow{{"WAV", Sound, "wave"}, {0, "RIFF"}, {8, "WAVE"}},
    ContentRow{{"WAV", Sound, "wave"}, {0, "RIFX"}, {8, "WAVE"}},
    ContentRow{{"WAV", Sound, "wave"}, {0, "RF64"}, {8, "WAVE"}},
    ContentRow{{"FLAC", Sound, "flac"}, {0, "fLaC"}},
    ContentRow{{"FLAC", Sound, "flac"}, {0, "ID3"}, {}, IsTaggedFlac},
    ContentRow{{"AAC", Sound, "aac "}, {0, "ID3"}, {}, IsTaggedAac},
    ContentRow{{"MP3", Sound, "mp3 "}, {0, "ID3"}, {}, IsTagged},
    ContentRow{{"MP3", Sound, "mp3 "}, {0, "\xFF"}, {}, IsMp3},
    ContentRow{{"MP2", Sound, "mp2 "}, {0, "\xFF"}, {}, IsMp2},
    ContentRow{{"AAC", Sound, "aac "}, {0, "\xFF"}, {}, IsAdts},
    ContentRow{{"MP3", Sound, "mp3 "}, {}, {}, IsNamedMp3},
    ContentRow{{"Opus", Sound, "opus"}, {0, "OggS"}, {}, IsOpus},
    ContentRow{{"Speex", Sound, "spx "}, {0, "OggS"}, {}, IsSpeex},
    // The tags of such a file are not where a FLAC file has them: it goes as Ogg.
    ContentRow{{"Ogg", Sound, "ogg "}, {0, "OggS"}, {}, IsOggFlac},
    ContentRow{{"Ogg", Sound, "ogg "}, {0, "OggS"}},
    ContentRow{{"AU", Sound, "au  "}, {0, ".snd"}, {}, IsAu},
    ContentRow{{"VOC", Sound, "voc "}, {0, "Creative Voice File\x1A"}},
    ContentRow{{"CAF", Sound, "caf "}, {0, "caff\0\1"sv}},
    ContentRow{{"APE", Sound, "ape "}, {0, "MAC "}, {}, IsApe},
    ContentRow{{"WVPK", Sound, "wvpk"}, {0, "wvpk"}},
    ContentRow{{"Musepack", Sound, "mpc "}, {0, "MPCK"}},
    ContentRow{{"Musepack", Sound, "mpc "}, {0, "MP+"}, {}, IsMusepack},
    ContentRow{{"TTA", Sound, "tta "}, {0, "TTA1"}},
    ContentRow{{"AMR", Sound, "amr "}, {0, "#!AMR"}},
    ContentRow{{"AC3", Sound, "ac3 "}, {0, "\x0B\x77"}, {}, IsAc3},
    ContentRow{{"DTS", Sound, "dts "}, {0, "\x7F\xFE\x80\x01"}},
    ContentRow{{"DSF", Sound, "dsf "}, {0, "DSD "}, {}, IsDsf},
    // Instruments and music of other systems
    ContentRow{{"SoundFont", Instrument, "sf2 "}, {0, "RIFF"}, {8, "sfbk"}},
    ContentRow{{"DLS", Instrument, "dls "}, {0, "RIFF"}, {8, "DLS "}},
    ContentRow{{"MIDI", Music, "midi"}, {0, "MThd"}},
    ContentRow{{"MIDI", Music, "midi"}, {0, "RIFF"}, {8, "RMID"}},
    ContentRow{{"RIFF", System, "riff"}, {0, "RIFF"}},
    ContentRow{{"Fasttracker 2", Music, "xm  "}, {0, "Extended Module: "}},
    ContentRow{{"Scream Tracker 3", Music, "s3m "}, {44, "SCRM"}, {}, HasDosEnd},
    ContentRow{{"Scream Tracker", Music, "stm "}, {20, "!Scream!"}, {}, HasDosEnd},
    ContentRow{{"Impulse Tracker", Music, "it  "}, {0, "IMPM"}},
    ContentRow{{"MultiTracker", Music, "mtm "}, {0, "MTM\x10"}},
    ContentRow{{"PolyTracker", Music, "ptm "}, {44, "PTMF"}, {}, HasDosEnd},
    ContentRow{{"Farandole", Music, "far "}, {0, "FAR\xFE"}},
    ContentRow{{"UltraTracker", Music, "ult "}, {0, "MAS_UTrack_V00"}},
    ContentRow{{"MO3", Music, "mo3 "}, {0, "MO3"}, {}, IsMo3},
    ContentRow{{"NSF", Music, "nsf "}, {0, "NESM\x1A"}},
    ContentRow{{"SPC", Music, "spc "}, {0, "SNES-SPC700"}},
    ContentRow{{"VGM", Music, "vgm "}, {0, "Vgm "}},
    ContentRow{{"TGA", Picture, "tga "}, {}, {}, IsTga},
};

} // namespace

std::span<const ContentRow> MediaFormats() noexcept {
    return Rows;
}

} // namespace datatypes
