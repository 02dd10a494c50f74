#include "interface/StateTable.h"

#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>

namespace solvane {
namespace {

// Where items are on: a location's number, with "s" behind it where something must be selected.
const std::map<int, std::string> OnAt = {
    {26, "4 8 9 12 13 4s 8s 9s 12s 13s"},
    {27, "4s 10s 11s 13s"},
    {29, "4 13 4s 13s"},
    {45, "7s 10s 11s 13s 2s 3s 12s"},
    {46, "4 13 13s"},
    {60, "10s 11s 13s"},
    {54, "12 4s 10s 11s 12s 13s"},
    {53, "12 12s 13s"},
    {64, "8s 9s"},
    {66, "4s"},
    {67, "4s 5s 10s 11s 13s"},
    {68, "5 13 2s 3s 4s 5s 7s 10s 11s 13s"},
    {76, "4 5 6 8 9 13 4s 5s 6s 13s"},
    {129, "5s"},
};

constexpr WindowState Everything{.OneSelected = true,
                                 .HasEntries = true,
                                 .ClipExists = true,
                                 .IsLhAArchive = true,
                                 .DeviceAllows = true,
                                 .DeviceFormats = true};

// The states in which an item is on, in the notation above.
std::string States(int item, WindowState state) {
    std::ostringstream states;
    for (const bool selected : {false, true}) {
        for (int location = 2; location <= 13; ++location) {
            state.Location = static_cast<LocationKind>(location);
            state.Selected = selected;
            if (IsEnabled(static_cast<MenuId>(item), state))
                states << ' ' << location << (selected ? "s" : "");
        }
    }
    return states.str();
}

std::string All() {
    return States(MenuAbout, Everything); // always on
}

std::string Sorted(const std::string& states) {
    std::string sorted;
    std::istringstream words(All());
    for (std::string word; words >> word;)
        sorted += (" " + states + " ").find(" " + word + " ") != std::string::npos ? " " + word : "";
    return sorted;
}

TEST(StateTableTest, ItemsAreOnWhereTheyHaveSomethingToActOn) {
    for (const auto& [item, states] : OnAt)
        EXPECT_EQ(States(item, Everything), Sorted(states)) << item;
}

TEST(StateTableTest, WhatAnItemNeedsBesidesItsLocation) {
    struct Row {
        MenuId Item;
        bool WindowState::*Missing;
        std::string Left;
    };
    const Row rows[] = {
        {MenuSetBackground, &WindowState::OneSelected, ""},
        {MenuSelectByType, &WindowState::HasEntries, ""},
        {MenuPattern, &WindowState::HasEntries, ""},
        {MenuSelectAll, &WindowState::HasEntries, " 5 6 5s 6s"},
        {MenuSelectNone, &WindowState::HasEntries, " 5 6 5s 6s"},
        {MenuToggleSelection, &WindowState::HasEntries, " 5 6 5s 6s"},
        {MenuPaste, &WindowState::ClipExists, ""},
        {MenuPasteTo, &WindowState::ClipExists, ""},
        {MenuDelete, &WindowState::IsLhAArchive, " 2s 3s 7s 10s 11s 13s"},
        {MenuRelabel, &WindowState::DeviceAllows, ""},
        {MenuFormat, &WindowState::DeviceAllows, " 5s"},
        {MenuFormat, &WindowState::DeviceFormats, ""},
    };
    for (const Row& row : rows) {
        WindowState state = Everything;
        state.*row.Missing = false;
        EXPECT_EQ(States(row.Item, state), row.Left) << row.Item;
    }
}

TEST(StateTableTest, OnAnotherMachineFewItemsAreLeftAndOnlyInItsDrawers) {
    WindowState state = Everything;
    state.AtFTPMount = true;
    std::map<bool, std::string> left;
    for (int item = 1; item < 160; ++item) {
        for (const bool selected : {false, true}) {
            state.Selected = selected;
            const bool isOn = IsEnabled(static_cast<MenuId>(item), state);
            left[selected] +=
                isOn && States(item, Everything) != All() ? std::to_string(item) + " " : std::string();
        }
    }
    EXPECT_EQ(left[false], "26 29 46 139 ");
    EXPECT_EQ(left[true], "26 27 28 29 45 46 47 68 119 139 140 ");
    EXPECT_FALSE(IsEnabled(MenuSelectAll, state));
    EXPECT_TRUE(IsEnabled(MenuQuit, state));
    state.Location = LocationKind::Computer;
    EXPECT_TRUE(IsEnabled(MenuSelectAll, state));
}

TEST(StateTableTest, OneInstanceHasNoFurtherWindows) {
    WindowState state = Everything;
    state.OneInstance = true;
    for (const int item : {8, 143, 144, 145, 146, 148, 168})
        EXPECT_EQ(States(item, state), "") << item;
    EXPECT_EQ(States(MenuNewTab, state), All());
}

} // namespace
} // namespace solvane
