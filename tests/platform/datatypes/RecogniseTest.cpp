#include "platform/datatypes/Recognise.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_literals;

std::string NameOf(std::string_view bytes, std::string_view name, std::uint64_t size = 0) {
    const auto head = std::as_bytes(std::span(bytes));
    return std::string(datatypes::Recognise(head, name, size == 0 ? bytes.size() : size)->Name);
}

// Bytes that look like nothing, the same in every run.
std::string Noise(std::size_t count, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::string bytes(count, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random() >> 24);
    return bytes;
}

std::string Padded(std::string bytes, std::size_t size) {
    bytes.resize(std::max(bytes.size(), size), '\0');
    return bytes;
}

std::string MarkAt(std::size_t at, const std::string& mark, std::size_t size) {
    std::string bytes(size, '\0');
    return bytes.replace(at, mark.size(), mark);
}

struct Case {
    std::string Bytes, Name, Type;
    std::uint64_t Size = 0; // of the whole file, 0: as many as Bytes
};

void ExpectTypes(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(NameOf(c.Bytes, c.Name, c.Size), c.Type)
            << "name \"" << c.Name << "\", bytes \"" << testing::PrintToString(c.Bytes.substr(0, 24)) << "\"";
    }
}

std::string OldModule() {
    std::string bytes = "title"s;
    bytes.resize(600 + 1024, '\0');
    bytes[20 + 25] = 64; // volume of the first sample
    bytes[470] = 12;     // song length
    return bytes;
}

std::string CdxlHeader() {
    std::string header(32, '\0');
    header[0] = 1;
    header[4] = 0x14; // 32 + 16 * 2 + 160 / 8 * 64 * 4 = 5184 = 0x1440
    header[5] = 0x40;
    header[15] = static_cast<char>(160);
    header[17] = 64;
    header[19] = 4;
    header[21] = 32;
    return header;
}

std::string OldTar() {
    std::string header = Padded("file.txt", 512);
    std::size_t sum = 8 * ' ';
    for (const char c : header)
        sum += static_cast<unsigned char>(c);
    std::string octal = "       ";
    for (std::size_t i = 6; i > 0; --i, sum /= 8)
        octal[i - 1] = static_cast<char>('0' + sum % 8);
    return header.replace(148, octal.size(), octal);
}

TEST(Recognise, KnowsFormatsByTheirBytesWhateverTheirName) {
    ExpectTypes({
        {Padded("FORM\0\0\1\0PBM BMHD"s, 300), "x.txt", "ILBM"},
        {Padded("FORM\0\0\1\0ANIM"s, 300), "noname", "ANIM"},
        {Padded("FORM\0\0\1\0FTXT"s, 300), "", "FTXT"},
        {Padded("FORM\0\0\1\0QQQQ"s, 300), "x.mp3", "IFF"},
        {Padded("RIFF\0\1\0\0WEBPVP8 "s, 300), "x.jpg", "WEBP"},
        {Padded("\xFF\xD8\xFF\xE0\0\x10JFIF"s, 64), "x.png", "JPEG"},
        {Padded("\x1A\x45\xDF\xA3\x9F\x42\x86\x81\1\x42\x82\x84webm"s, 64), "x", "WebM"},
        {Padded("\0\0\0\x18"s
                "ftypM4A "s,
                64),
         "x.mp4", "M4A"},
        {Padded("\0\0\0\x18"s
                "ftypisom"s,
                64),
         "x.m4a", "MP4"},
        {Padded("OggS\0\2"s, 28) + "\1vorbis", "x", "Ogg"},
        {Padded("OggS\0\2"s, 28) + "OpusHead", "x.ogg", "Opus"},
        {Padded("MThd\0\0\0\6"s, 32), "x", "MIDI"},
        {MarkAt(44, "SCRM", 96).replace(28, 1, "\x1A"), "x", "Scream Tracker 3"},
        {MarkAt(1080, "12CH", 2048), "x", "Fasttracker"},
        {Padded("XPKF\0\0\1\0SQSH"s, 44), "x.txt", "XPK"},
        {Padded("PK\5\6"s, 22), "x", "ZIP"},
        {OldTar(), "x", "TAR"},
        {MarkAt(257, "ustar", 1024), "x", "TAR"},
        {Padded("\x7F"
                "ELF\2\1\1"s,
                64),
         "x.txt", "ELF"},
        {Padded("MZ\x90\0\3\0"s, 64), "setup", "EXE"},
        {"%PDF-1.4\n"s, "x", "PDF"},
        {Noise(200) + "%PDF-1.4\n", "scan.pdf", "PDF"},
        {CdxlHeader() + std::string(400, '\x55'), "x", "CDXL", 5184},
    });
}

TEST(Recognise, AsksForMoreThanAMarkWhereATextMayBeginAlike) {
    for (const char* text :
         {"FORM 27B must be signed", "CAT food is in the shed", "LIST of things to do", "MAC address: none",
          "BM is short for", "MZ is a German maker", "DDS stands for", "P1 of the plan is this",
          "caffeine helps", "MP+ means more", "FWS is an agency", "CWS too, says the page",
          "DSD audio notes here", "Version 1 of all things. V.2 follows", "the mdat atom holds the data",
          "ID3 is a tag"})
        EXPECT_EQ(NameOf(text, "readme"), "ASCII") << text;
}

// A line of text that begins like a format, and the start of a file of that format.
TEST(Recognise, TellsLinesFromFilesThatBeginWithTheSameLetters) {
    struct Row {
        const char* Line;
        std::string Bytes;
        const char* Type;
    };
    const std::string cpio(104, '0');
    const std::string card = "SIMPLE  =                    T";
    for (const Row& row : {
             Row{"PP20 tickets are left", "PP20\x09\x0A\x0B\x0B packed"s, "PP20"},
             {"IMP! and other devils", "IMP!\0\0\1\0"s, "IMP"},
             {"S404 is on the second floor", "S404\0\0\0\0"s, "StoneCracker"},
             {"LZIP is a packer", "LZIP\1\x0C"s, "LZIP"},
             {"xar! he shouted", "xar!\0\x1C\0\1"s, "XAR"},
             {"MMD1 modules have blocks", "MMD1\0\0\1\0"s, "MED"},
             {"TTA1 is the mark of", "TTA1\1\0\2\0"s, "TTA"},
             {"fLaC stands at the start", "fLaC\0\0\0\x22"s, "FLAC"},
             {"070701 is a phone number", "070701" + cpio + "name\0"s, "CPIO"},
             {"070707 is another", "070707" + cpio + "name\0"s, "CPIO"},
             {"hsqs\n", "hsqs\7\0\0\0"s, "SQUASHFS"},
             {"AmSp banks hold sprites", "AmSp\0\1\0\1"s, "AMOS Bank"},
             {"PDSK is the disk packer", "PDSK\0\0\1\0"s, "PackDisk"},
             {"qoif is lossless", "qoif\0\0\1\0\0\0\1\0\4\0"s, "QOI"},
             {"IMPM is for trackers", "IMPMtitle\0\0"s, "Impulse Tracker"},
             {"SDPX is in big endian", "SDPX\0\0\x08\0"s, "DPX"},
             {"Warp v1.1 is out", "Warp v1.1\0\0"s, "WARP"},
             {"MThd is how they start", "MThd\0\0\0\6"s, "MIDI"},
             {"GIF89a is a format", "GIF89a\x40\1\0\1\xF7\0\0"s, "GIF"},
             {"GIF87a was before", "GIF87a\x40\1\0\1\xF7\0\0"s, "GIF"},
             {"P1 5 items", "P1\n# made by hand\n2 2\n1 0 0 1\n", "Netpbm"},
             {"P3 5 items", "P3 2 2 255\n1 2 3\n", "Netpbm"},
             {"P6 2 wheels", "P6\n#\n2 2\n255\n\1\2\3", "Netpbm"},
             {"RIFF raff", "RIFF\x10\0\0\0QQQQ"s, "RIFF"},
             {"SIMPLE  = easy", card + std::string(80 - card.size(), ' ') + "BITPIX  =     8", "FITS"},
             {"d8:announce is a key", "d8:announce20:http://tracker.local/4:infod", "Torrent"},
             {"%PDF-files are documents", "%PDF-1.4\nall of it text\n", "PDF"},
             {"#!/bin/sh\nhead -c 5 $1 | grep %PDF-1\n", "\r\n%PDF-1.4\n", "PDF"},
         }) {
        EXPECT_TRUE(NameOf(row.Line, "x") == "ASCII" || NameOf(row.Line, "x") == "Script") << row.Line;
        EXPECT_EQ(NameOf(row.Bytes, "x.pdf"), row.Type) << row.Line;
    }
    EXPECT_EQ(NameOf("A note\nabout %PDF-1.4 files", "note.txt"), "ASCII");
}

TEST(Recognise, NeedsNameAndSenseForFormatsWithoutMark) {
    std::string broken = OldModule();
    broken[20 + 25] = 65; // louder than there is
    std::string floppy = Padded("\0\0\1\0"s + Noise(512), 4096);
    ExpectTypes({
        {OldModule(), "mod.classic", "Soundtracker"},
        {OldModule(), "classic.mod", "Soundtracker"},
        {broken, "mod.classic", "BINARY"},
        {floppy, "game.adf", "ADF", 901120},
        {floppy, "game.adf", "BINARY", 901121},
        {Padded("DOS\1"s, 1024), "x", "ADF", 901120},
        {Padded("DOS\1"s, 1024), "x", "HDF", 16 << 20},
        {MarkAt(2, "\2", 64).replace(12, 5, "\x40\0\x40\0\x18"s), "x.tga", "TGA"},
    });
    EXPECT_NE(NameOf(OldModule(), "classic"), "Soundtracker");
}

TEST(Recognise, TellsKindsOfText) {
    ExpectTypes({
        {"@DATABASE x.guide\n", "x", "AmigaGuide"},
        {"no database here\n", "x.guide", "ASCII"},
        {"\xEF\xBB\xBF<!DOCTYPE HTML>\n", "x", "HTML"},
        {"<?xml version=\"1.0\"?>\n<a/>", "x", "XML"},
        {"<?xml version=\"1.0\"?>\n<svg/>", "x.xml", "SVG"},
        {"int main() {}\n", "x.c", "C"},
        {"int main() {}\n", "x.C", "C++"},
        {"# Title\n", "x.md", "Markdown"},
        {"Short: a thing\n", "thing.readme", "ASCII"},
        {"All about it\n", "thing.doc", "ASCII"},
        {"opt 0\n", "x.e", "Amiga E"},
        {"#!/usr/bin/env python3\n", "tool", "Python"},
        {"#!/bin/sh\n", "tool", "Script"},
        {"/* a program */\nOPTIONS RESULTS\n", "tool", "ARexx"},
        {"/* a program */\nint a;\n", "tool", "ASCII"},
        {"say 'hello'\n", "x.REXX", "ARexx"},
        {".KEY file/A\n.bra {\n", "tool", "Script"},
        {"all:\n", "Makefile", "Makefile"},
        {"assign T: RAM:T\n", "Startup-Sequence", "Script"},
        {"MSG_ONE (//)\nOne\n", "x.cd", "Catalog Description"},
        {"%!PS-Adobe-3.0\n", "x", "PostScript"},
        {"{\\rtf1 text}", "x.doc", "RTF"},
        {"begin 644 x.lha\n", "x", "UUEncoded"},
        {"\x1B[1mbold\x9Bm text\a\f\n", "x", "ASCII"},
        {"Gr\xFC\xDF"
         "e aus K\xF6ln, sch\xF6n hier",
         "x", "ASCII"},
        {"\xFF\xFEh\0i\0"s, "x", "ASCII"},
        {"\xFE\xFF\0h\0i"s, "x", "ASCII"},
        {"x", "x", "ASCII"},
    });
}

TEST(Recognise, TextThatEndsInsideACharacterAtTheEndOfTheHeadIsText) {
    std::string text;
    while (text.size() < datatypes::HeadSize)
        text += "\xE6\x97\xA5";
    EXPECT_EQ(NameOf(std::string_view(text).substr(0, datatypes::HeadSize), "x", 10000), "ASCII");
}

TEST(Recognise, LooksIntoContainersByName) {
    const std::string zip = Padded("PK\3\4\x14\0\6\0"s, 64), gzip = "\x1F\x8B\x08\0"s + Noise(40);
    ExpectTypes({
        {zip, "letter.docx", "DOCX"},
        {zip, "letter.odt", "ODT"},
        {zip, "program.jar", "JAR"},
        {zip, "picture.jpg", "ZIP"},
        {zip, "x", "ZIP"},
        {gzip, "disk.adz", "ADZ"},
        {gzip, "tree.tar.gz", "TGZ"},
        {gzip, "drawing.svgz", "SVGZ"},
        {gzip, "text.gz", "GZIP"},
        {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"s + Noise(64), "letter.doc", "DOC"},
        {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"s + Noise(64), "x", "OLE"},
        {"<?xml version=\"1.0\"?>\n<x/>", "book.fb2", "FB2"},
    });
}

TEST(Recognise, DoesNotBelieveANameThatTheContentDenies) {
    for (const char* name : {"a.jpg", "a.PNG", "a.mp3", "a.lha", "a.info", "a.txt", "a.c", "a.pdf", "a.docx",
                             "a.library", "a.iff", "a.wav", "a.guide", "a.svg", "noname", "a.001", "a.doc"})
        EXPECT_EQ(NameOf(Noise(2000), name), "BINARY") << name;
    ExpectTypes({{"just words", "a.jpg", "ASCII"}, {"just words", "a.mp3", "ASCII"}});
}

TEST(Recognise, TakesNamesForFormatsWhoseContentSaysNothing) {
    EXPECT_EQ(NameOf(Noise(2000), "cd.iso"), "ISO");
    EXPECT_EQ(NameOf(Noise(2000), "x.blend"), "BLENDER");
}

TEST(Recognise, AsksTheMagicDatabaseForTheRest) {
    EXPECT_EQ(NameOf(Padded("\xCE\x9A\x57\x13"s, 200), "names"), "GDBM");
}

TEST(Recognise, EmptyFilesGoByNameOnlyWhenTheyMayBeText) {
    EXPECT_EQ(NameOf("", "x.txt"), "ASCII");
    EXPECT_EQ(NameOf("", "x.c"), "C");
    for (const char* name : {"x", "", "x.jpg", "x.lha", ".txt", "x.", "x.iso"})
        EXPECT_EQ(NameOf("", name), "BINARY") << name;
}

TEST(Recognise, CutHeadsNeverReadBeyondTheirEnd) {
    const std::vector<std::string> whole = {CdxlHeader(),
                                            OldModule(),
                                            OldTar(),
                                            "\0\0\x03\xF3\0\0\0\0\0\0\0\1\0\0\0\0"s + Noise(64),
                                            "\xFF\xFB\x90\x64"s + Noise(500),
                                            "ID3\3\0\0\0\0\1\0"s + Noise(100),
                                            "\x0A\5\1\x08\0\0\0\0"s + Noise(130),
                                            "\0\0\1\0\1\0"s + Noise(20)};
    for (const std::string& bytes : whole) {
        for (std::size_t length = 0; length < std::min<std::size_t>(bytes.size(), 700); ++length) {
            // Each cut lies in memory of its own, so that a sanitizer sees a step too far.
            const std::vector<char> cut(bytes.begin(), bytes.begin() + static_cast<long>(length));
            EXPECT_NE(datatypes::Recognise(std::as_bytes(std::span(cut)), "mod.x", length), nullptr);
        }
    }
}

} // namespace
