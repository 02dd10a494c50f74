// A user at a Shell: lines are run one by one in the drawer "Test:w"; what they print is kept.
#pragma once

#include "platform/commands/Command.h"
#include "platform/commands/Shell.h"
#include "tests/platform/dos/DosTest.h"

#include <filesystem>
#include <gmock/gmock.h>

class CommandTest : public DosTest {
protected:
    CommandTest() {
        Tree.Drawer("ram/t");
        Tree.Drawer("env");
        EXPECT_TRUE(dos::AddVolume({.Device = "RAM", .Volume = "RAM Disk", .HostRoot = Tree.Path("ram")}));
        EXPECT_TRUE(dos::SetAssign("ENV", dos::AssignKind::Directory, {"Test:env"}));
        EXPECT_TRUE(dos::SetAssign("ENVARC", dos::AssignKind::Directory, {"Test:env"}));
        Tree.Drawer("w");
        dos::CurrentDir(dos::Lock("Test:w"));
        Where.Output = [this](std::string_view bytes) {
            Text.append(bytes);
            return true;
        };
    }

    // Runs one line; its output afterwards stands in Text.
    int Run(std::string_view line) {
        Text.clear();
        return commands::RunLine(Where, line);
    }
    // The output of a line that is to succeed.
    std::string Out(std::string_view line) {
        EXPECT_EQ(Run(line), 0) << line << "\n" << Text;
        return Text;
    }

    commands::Context Where;
    std::string Text;
};
