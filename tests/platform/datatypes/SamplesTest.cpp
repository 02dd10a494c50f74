#include "platform/datatypes/HostFiles.h"
#include "platform/datatypes/Pictures.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct Sample {
    std::string File, Name, Group;
    std::uint32_t Width = 0, Height = 0, Depth = 0; // 0: the file has no picture size
    std::uint32_t Frames = 0;                       // 0: frames are not counted in this format
};

TEST(Samples, HaveTheirTypeSizeAndFrames) {
    for (const Sample& sample : {Sample{"AmigaLimitsFinetune.mod", "Protracker", "musi"},
                                 Sample{"SoundFX_suomi.catalog", "Catalog", "syst"},
                                 Sample{"classic_drawer_8x8.info", "Icon", "pict"},
                                 Sample{"flt_am_envelope.mod", "Startrekker", "musi"},
                                 Sample{"gen_1frame_87a.gif", "GIF", "pict", 40, 30, 1, 1},
                                 Sample{"gen_2frames_zero_delay.gif", "GIF", "pict", 40, 30, 2, 2},
                                 Sample{"gen_4frames_partial.gif", "GIF", "pict", 40, 30, 2, 4},
                                 Sample{"no_palette.gif", "GIF", "pict", 1, 1, 1, 2},
                                 Sample{"gen_ADT_edge_cases", "ASCII", "text"},
                                 Sample{"gen_all.uaem", "ASCII", "text"},
                                 Sample{"gen_all_fields.readme", "ASCII", "text"},
                                 Sample{"gen_commands.guide", "AmigaGuide", "docu"},
                                 Sample{"gen_ehb_64x32.iff", "ILBM", "pict", 64, 32, 6},
                                 Sample{"gen_p2_maskplane_21x13.iff", "ILBM", "pict", 21, 13, 2},
                                 Sample{"gen_elf_object.elf", "ELF", "syst"},
                                 Sample{"gen_empty_file.lha", "BINARY", "syst"},
                                 Sample{"gen_grayscale.jpg", "JPEG", "pict", 80, 48, 8},
                                 Sample{"gen_orient_6.jpg", "JPEG", "pict", 48, 80, 24},
                                 Sample{"gen_progressive.jpg", "JPEG", "pict", 80, 48, 24},
                                 Sample{"gen_truncated.jpg", "JPEG", "pict"},
                                 Sample{"gen_hunk_program", "Executable", "syst"},
                                 Sample{"gen_hunk_resident.library", "Library", "syst"},
                                 Sample{"gen_instrument_3oct_16726.8svx", "8SVX", "soun"},
                                 Sample{"gen_latin1", "ASCII", "text"},
                                 Sample{"gen_text_crlf", "ASCII", "text"},
                                 Sample{"gen_long.txt.gz", "GZIP", "syst"},
                                 Sample{"gen_no_tags_64k_mono.mp3", "MP3", "soun"},
                                 Sample{"gen_v1_only.mp3", "MP3", "soun"},
                                 Sample{"gen_not_an_archive.lha", "ASCII", "text"},
                                 Sample{"gen_pcm8_mono_8000.wav", "WAV", "soun"},
                                 Sample{"gen_sowt.aifc", "AIFF", "soun"},
                                 Sample{"gen_picture_short_file.flac", "FLAC", "soun"},
                                 Sample{"gen_png_single_rgba.info", "Icon", "pict"},
                                 Sample{"gen_protection_filenotes_l0.lha", "LhA", "syst"},
                                 Sample{"gen_protection_filenotes_l1.lha", "LhA", "syst"},
                                 Sample{"gen_protection_filenotes_l2.lha", "LhA", "syst"},
                                 Sample{"gen_script.rexx", "ARexx", "text"},
                                 Sample{"gen_tree.7z", "7Z", "syst"},
                                 Sample{"gen_tree.tar.bz2", "BZIP2", "syst"},
                                 Sample{"gen_tree.tar.gz", "TGZ", "syst"},
                                 Sample{"gen_truncated.zip", "ZIP", "syst"},
                                 Sample{"rle_small.dms", "DMS", "syst"},
                                 Sample{"tree.lzx", "LZX", "syst"}}) {
        SCOPED_TRACE(sample.File);
        const std::string path = SOLVANE_TEST_DATA "/datatypes/" + sample.File;
        const datatypes::DataType* type = datatypes::ObtainHostFileType(path);
        ASSERT_NE(type, nullptr);
        EXPECT_EQ(type->Name, sample.Name);
        EXPECT_EQ(static_cast<std::uint32_t>(type->Group), datatypes::FourCharacters(sample.Group));
        const auto size = datatypes::HostPictureSize(path);
        ASSERT_EQ(size.has_value(), sample.Width != 0);
        if (size) {
            const datatypes::PictureSize wanted{sample.Width, sample.Height, sample.Depth};
            EXPECT_EQ(*size, wanted) << size->Width << "x" << size->Height << "x" << size->Depth;
        }
        EXPECT_EQ(datatypes::HostFrameCount(path).value_or(0), sample.Frames);
    }
}

} // namespace
