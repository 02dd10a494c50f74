// Switching between two tabs, and what tabs cost.
//   solvane_tabs DRAWER DRAWER
// Prints the milliseconds of a switch and of the paint after it (median, least, most), and the bytes that a
// tab takes beside its rows. The lines "switching" and "switched" on the error output are marks for a trace
// of system calls: between them neither drawer is looked at.
#include "content/ColumnInfo.h"
#include "interface/MainLayout.h"
#include "locations/EnterDrawer.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/Volumes.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"
#include "platform/intuition/WishedImages.h"
#include "prefs/PrefsLists.h"
#include "sak/Memory.h"
#include "sak/Notify.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <malloc.h>
#include <string>
#include <vector>

namespace solvane {

namespace {

constexpr int Switches = 100, ManyTabs = 300, PaintRounds = 3;

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void Paint() {
    for (int round = 0; round < PaintRounds; ++round) {
        static_cast<void>(exec::CheckSignal(0));
    }
}

void Print(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-28s median %7.3f ms, least %7.3f, most %7.3f\n", what, times[times.size() / 2],
                times.front(), times.back());
}

std::size_t BytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

bool SetUp() {
    if (!SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize) || !CreatePrefsLists() || !SAK_SetUpNotify()) {
        return false;
    }
    CommandLineTabsList = SAK_CreateGenericList<TabsNode>();
    Prefs.DetermineDatatype = 2;
    Prefs.EffectiveDateFormat = "%d-%b-%y %T";
    if (!CreateColumnInfoAll() || !SetUpTabs() || !CreateMainLayout()) {
        return false;
    }
    SetColumnInfo();
    return MainWindow->Open();
}

void MeasureSwitches() {
    std::vector<double> switches, whole;
    for (std::uint32_t tab = 1; tab <= 2; ++tab) { // what is drawn first is looked up once
        SwitchToTabNumber(tab);
        Paint();
        intuition::FinishWishedImages();
    }
    std::fputs("switching\n", stderr);
    for (int at = 0; at < Switches; ++at) {
        const Clock::time_point start = Clock::now();
        SwitchToTabNumber(at % 2 == 0 ? 1 : 2);
        switches.push_back(MillisecondsSince(start));
        Paint();
        whole.push_back(MillisecondsSince(start));
    }
    std::fputs("switched\n", stderr);
    Print("switch", switches);
    Print("switch and paint", whole);
}

void MeasureManyTabs() {
    const std::size_t before = BytesInUse();
    std::vector<double> times;
    for (int at = 0; at < ManyTabs; ++at) {
        const Clock::time_point start = Clock::now();
        OpenNewTab(1);
        times.push_back(MillisecondsSince(start));
    }
    Print("one of 300 blank tabs", times);
    std::printf("%-28s %zu bytes\n", "a blank tab", (BytesInUse() - before) / ManyTabs);
}

void Run(const std::string& first, const std::string& second) {
    SetFirstTab();
    PopulateContent2("first", first);
    Paint();
    OpenNewTab(1);
    PopulateContent2("second", second);
    Paint();
    std::printf("%u entries in the second drawer\n", TotalNodes);
    MeasureSwitches();
    std::puts("all entries of one selected:");
    Objects.ContentList->SelectAll();
    MeasureSwitches();
    MeasureManyTabs();
}

// Makes the drawer a volume of its own; its path.
std::string AddDrawer(const std::string& name, const char* drawer) {
    dos::VolumeInfo volume;
    volume.Device = "B" + name;
    volume.Volume = name;
    volume.HostRoot = std::filesystem::absolute(drawer).string();
    return dos::AddVolume(volume) ? name + ":" : std::string();
}

void TidyUp() {
    FreeAllTabs();
    CloseWindowObject();
    SAK_ShutDownNotify();
    CommandLineTabsList.reset();
    FreePrefsLists();
}

} // namespace

} // namespace solvane

int main(int count, char** arguments) {
    if (count != 3 || !intuition::OpenDisplay(count, arguments)) {
        std::fputs("usage: solvane_tabs DRAWER DRAWER\n", stderr);
        return 1;
    }
    if (solvane::SetUp()) {
        solvane::Run(solvane::AddDrawer("First", arguments[1]), solvane::AddDrawer("Second", arguments[2]));
        solvane::TidyUp();
    }
    intuition::CloseDisplay();
    return 0;
}
