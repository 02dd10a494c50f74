// What tests of a window start from: a drawer test with the window open, without a screen.
#pragma once

#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "interface/MainLayout.h"
#include "platform/intuition/Application.h"
#include "tests/content/DrawerTest.h"

#include <algorithm>

namespace solvane {

class OpenWindow : public DrawerTest {
protected:
    OpenWindow() {
        Prefs.DetermineDatatype = 2;
        EXPECT_TRUE(intuition::OpenDisplay(0, nullptr));
        EXPECT_TRUE(CreateMainLayout());
        SetColumnInfo();
        EXPECT_TRUE(MainWindow->Open());
    }
    ~OpenWindow() override {
        FreeContentRows();
        CloseWindowObject();
        intuition::CloseDisplay();
    }

    static std::size_t RowOf(std::string_view name) {
        const auto row = std::ranges::find_if(lblist2, [name](const ListRow& each) {
            return each.Record != nullptr && each.Record->EntryName == name;
        });
        return row != lblist2.end() ? static_cast<std::size_t>(row - lblist2.begin()) : intuition::NoRow;
    }
    static void SelectAlone(std::string_view name) {
        Objects.ContentList->ClearSelection();
        Objects.ContentList->Select(RowOf(name), true);
    }
};

} // namespace solvane
