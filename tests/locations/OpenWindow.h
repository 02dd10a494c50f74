// What tests of a window start from: a drawer test with the window open, without a screen.
#pragma once

#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "interface/MainLayout.h"
#include "platform/intuition/Application.h"
#include "tests/content/DrawerTest.h"

#include <array>
#include <string>

namespace solvane {

class OpenWindow : public DrawerTest {
protected:
    OpenWindow() {
        static std::string name = "solvane";
        static std::array<char*, 2> arguments = {name.data(), nullptr};
        Prefs.DetermineDatatype = 2;
        EXPECT_TRUE(intuition::OpenDisplay(1, arguments.data()));
        EXPECT_TRUE(CreateMainLayout());
        SetColumnInfo();
        EXPECT_TRUE(MainWindow->Open());
    }
    ~OpenWindow() override {
        FreeContentRows();
        CloseWindowObject();
        intuition::CloseDisplay();
    }
};

} // namespace solvane
