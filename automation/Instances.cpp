#include "automation/Instances.h"

#include "interface/MainLayout.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/exec/PublicPorts.h"
#include "platform/exec/Timer.h"
#include "prefs/LoadSavePrefs.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

namespace solvane {

namespace {

using intuition::Box;

constexpr std::string_view PortMark = "SOLVANE.";
constexpr std::uint32_t FirstInstance = 1;
constexpr int MostQuitRounds = 10;       // for instances that do not end
constexpr std::uint32_t RoundTicks = 25; // fiftieths of a second
constexpr int CascadeStep = 10;          // pixels

struct Instance {
    std::string Port;
    std::uint32_t Number;
};

// In the order of the ports, this one included.
std::vector<Instance> OpenInstances() {
    std::vector<Instance> instances;
    for (std::string& port : exec::ListPorts()) {
        if (const auto number = InstanceOfPort(port)) {
            instances.push_back({std::move(port), *number});
        }
    }
    return instances;
}

std::vector<Instance> OtherInstances() {
    std::vector<Instance> instances = OpenInstances();
    std::erase_if(instances, [](const Instance& one) { return one.Number == PortNumber; });
    return instances;
}

// One that has gone meanwhile is passed over.
void Send(std::string_view port, std::string_view command) {
    static_cast<void>(exec::PostCommand(port, command));
}

void PlaceOwnWindow(const Box& box) {
    MainWindow->SetGeometry(box);
    BringWindowToFront();
}

void PlaceWindow(const Instance& instance, const Box& box) {
    if (instance.Number == PortNumber) {
        PlaceOwnWindow(box);
        return;
    }
    const auto measure = [](int value) { return std::to_string(std::max(value, 0)); };
    Send(instance.Port, "CHANGEWINDOW X=" + measure(box.Left) + " Y=" + measure(box.Top) +
                            " W=" + measure(box.Width) + " H=" + measure(box.Height));
    Send(instance.Port, "WINDOWTOFRONT");
    Send(instance.Port, "ACTIVATEWINDOW");
}

void CascadeWindows() {
    const Box own = MainWindow->Geometry();
    int rank = 0;
    for (const Instance& other : OtherInstances()) {
        PlaceWindow(other, CascadeBox(own, ++rank));
    }
}

} // namespace

std::optional<std::uint32_t> InstanceOfPort(std::string_view port) {
    if (port.find(PortMark) == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view digits = port.substr(port.rfind('.') + 1);
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return number;
}

QuitRound NextQuitRound(const std::vector<std::string>& ports, std::set<std::string>& told) {
    QuitRound round;
    for (const std::string& port : ports) {
        const auto number = InstanceOfPort(port);
        if (!number || *number == PortNumber) {
            continue;
        }
        if (told.insert(port).second) {
            round.ToTell.push_back(port);
        }
        round.SomeAreAwaited = round.SomeAreAwaited || *number != FirstInstance;
    }
    return round;
}

void CloseAllButThisWindow() {
    BlockMainWindow(1);
    std::set<std::string> told;
    for (int rounds = 0; rounds < MostQuitRounds; ++rounds) {
        const QuitRound round = NextQuitRound(exec::ListPorts(), told);
        for (const std::string& port : round.ToTell) {
            Send(port, "QUITNOSAVE");
        }
        if (!round.SomeAreAwaited) {
            break;
        }
        exec::Delay(RoundTicks);
    }
    BlockMainWindow(0);
}

Box TileOf(Arrangement how, const Box& workArea, std::size_t place) {
    const std::size_t columns = how == Arrangement::Horizontal ? 1 : 2;
    const std::size_t rows = how == Arrangement::Vertical ? 1 : 2;
    const int width = workArea.Width / static_cast<int>(columns);
    const int height = workArea.Height / static_cast<int>(rows);
    const auto column = static_cast<int>(place % columns);
    const auto row = static_cast<int>(place / columns % rows);
    return {workArea.Left + column * width, workArea.Top + row * height, width, height};
}

Box CascadeBox(const Box& own, int rank) {
    return {own.Left + rank * CascadeStep, own.Top + rank * CascadeStep, own.Width, own.Height};
}

Box CentredBox(const Box& workArea, int width, int height) {
    return {workArea.Left + (workArea.Width - width) / 2, workArea.Top + (workArea.Height - height) / 2,
            width, height};
}

Box BoxOfPart(const Box& workArea, ScreenPart part) {
    return CentredBox(workArea, workArea.Width / part.Of * part.Parts,
                      workArea.Height / part.Of * part.Parts);
}

void ArrangeWindows(Arrangement how) {
    if (!IsWindowOpen()) {
        return;
    }
    if (how == Arrangement::Cascade) {
        CascadeWindows();
        return;
    }
    const Box workArea = MainWindow->WorkArea();
    std::size_t place = 0;
    for (const Instance& instance : OpenInstances()) {
        PlaceWindow(instance, MainWindow->InsideOf(TileOf(how, workArea, place++)));
    }
}

void CenterWindow() {
    if (!IsWindowOpen()) {
        return;
    }
    const Box own = MainWindow->Geometry();
    const Box inside = MainWindow->InsideOf(own);
    const int frameWidth = own.Width - inside.Width, frameHeight = own.Height - inside.Height;
    MainWindow->SetGeometry(MainWindow->InsideOf(
        CentredBox(MainWindow->WorkArea(), own.Width + frameWidth, own.Height + frameHeight)));
}

void SizeToPartOfScreen(ScreenPart part) {
    if (IsWindowOpen()) {
        MainWindow->SetGeometry(MainWindow->InsideOf(BoxOfPart(MainWindow->WorkArea(), part)));
    }
}

void FullScreen() {
    if (!IsWindowOpen()) {
        return;
    }
    if (GoFullScreen == 0) {
        CollectPrefs();
        BoxBeforeFullScreen = MainWindow->Geometry(); // the stored one may be older
        GoFullScreen = 1;                             // from here on the box is not collected
        MainWindow->SetGeometry(MainWindow->InsideOf(MainWindow->WorkArea()));
    } else {
        MainWindow->SetGeometry(BoxBeforeFullScreen);
        GoFullScreen = 0;
    }
}

} // namespace solvane
