// Icon files for tests: samples from the tests' data, and small ones made here.
#pragma once

#include "platform/icon/Icon.h"
#include "platform/icon/IconPicture.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Sizes, and hashes of the pixels of both states (0: no second picture), from decoders of other code.
struct SampleRow {
    const char* Name;
    std::uint32_t Width, Height, Normal, Selected;
};
inline constexpr SampleRow SampleRows[] = {
    {"classic_drawer_2plane", 57, 14, 0x6D5C9D9E, 0xD01A861E},
    {"classic_drawer_8x8", 8, 8, 0x7303EB85, 0xB2E16045},
    {"classic_project_8plane", 48, 33, 0x829FEEF6, 0xBBB9BA2F},
    {"classic_project_many_tooltypes", 54, 22, 0x8081D668, 0},
    {"classic_project_single_image", 54, 22, 0xCE5B45B6, 0},
    {"classic_tool_2plane", 52, 22, 0x7A1D1D7E, 0xEC2B1386},
    {"classic_tool_3plane_latin1_tooltype", 50, 32, 0x4EEE472A, 0x1C1840A0},
    {"gen_png_single_rgba", 32, 32, 0x308647F5, 0},
    {"gen_png_two_images", 32, 32, 0x308647F5, 0x428B67C5},
    {"newicon_drawer_8col", 36, 40, 0x2665F292, 0xD4E0DAFB},
    {"newicon_drawer_8x8_opaque", 8, 8, 0xFDF6FAC5, 0x47E23F85},
    {"newicon_project_11col", 36, 40, 0x1CBA6C57, 0xEB1DA7AD},
    {"os35_drawer_small", 8, 8, 0xFDF6FAC5, 0x47E23F85},
    {"os35_drawer_uncompressed_palette", 46, 46, 0x1D5AB222, 0xC8DB37F2},
    {"os35_project_language_tooltype", 46, 46, 0xECCC734C, 0x3CC72BFE},
    {"os35_project_name_with_blanks", 42, 46, 0x94BF0CC4, 0xDA314044},
    {"os35_project_one_image", 42, 46, 0x94BF0CC4, 0},
    {"os35_project_tooltypes", 46, 46, 0xECCC734C, 0x3CC72BFE},
    {"os4_argb_tool", 64, 64, 0x2F94F52E, 0xCD605ECE},
    {"png_icon_with_icon_chunk", 46, 46, 0xBD75605D, 0x7AF4481B},
};

std::string Sample(const std::string& name);
std::optional<icon::DiskObject> Parse(std::string_view bytes);

// Big-endian, and a text with its length as classic icons have them.
std::string Long(std::uint32_t value);
std::string Text(const std::string& text);

// A project icon of revision 0 without pictures that has these tool types.
std::string ProjectIcon(const std::vector<std::string>& toolTypes);
// A planar project icon; each row is a text of at most 16 pens "0" to "3".
std::string PlanarIcon(const std::vector<std::string>& rows, char gadgetFlags);
