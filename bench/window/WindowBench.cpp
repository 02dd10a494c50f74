// The main window on a drawer, on a display without a screen:
//   solvane_window styles DRAWER    from the choice of another style to its first paint, every style to every
//   other solvane_window scroll DRAWER    end to end by page keys, wheel and thumb, in every style: the
//   longest time that
//                                   the task of the window was busy with one step; -r: with the entries' own
//                                   icons
//   solvane_window select DRAWER    clicks, selection commands, patterns and keys, each until it is painted
//   solvane_window pictures DRAWER  until all thumbnails on show are painted; their files are listed for a
//                                   yardstick. The cache of thumbnails is that of XDG_CACHE_HOME, empty or
//                                   full as it is found
//   solvane_window memory DRAWER    all rows shown as thumbnails of the largest size
// All tell the most memory that the process had. Of a busy machine, look at the processor times.
#include "automation/ContentEvents.h"
#include "automation/SelectCommands.h"
#include "automation/TypeAhead.h"
#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/Drawers.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/Volumes.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/WishedImages.h"
#include "sak/Memory.h"
#include "tests/automation/PressKey.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTreeView>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <vector>

namespace solvane {

namespace {

constexpr std::array StyleNames = {
    "List", "Details", "Tiles", "Content", "Thumbnail", "Thumbnail + Details", "Filmstrip"};
constexpr std::int32_t Styles = StyleNames.size();
constexpr double Frame = 16; // milliseconds

std::string HostDrawer;

double Milliseconds(clockid_t clock) {
    struct timespec now = {};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Wall time, processor time of this thread and of the whole process since it was made.
struct Stopwatch {
    double Wall = Milliseconds(CLOCK_MONOTONIC), Own = Milliseconds(CLOCK_THREAD_CPUTIME_ID),
           All = Milliseconds(CLOCK_PROCESS_CPUTIME_ID);

    [[nodiscard]] Stopwatch Since() const {
        const Stopwatch now;
        return {now.Wall - Wall, now.Own - Own, now.All - All};
    }
};

// --- The window ---

class PaintWatch : public QObject {
public:
    std::function<void(const QRegion&)> Painted;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && Painted) {
            Painted(static_cast<QPaintEvent*>(event)->region());
        }
        return false;
    }
};

QTreeView* View = nullptr;
std::unique_ptr<PaintWatch> Watch; // while the window is open

bool OpenOn(const char* drawer) {
    HostDrawer = std::filesystem::absolute(drawer).string();
    dos::VolumeInfo volume;
    volume.Device = "BD0";
    volume.Volume = "Bench";
    volume.HostRoot = HostDrawer;
    static std::string name = "solvane_window";
    static std::array<char*, 2> arguments = {name.data(), nullptr};
    if (!dos::AddVolume(volume) || !SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize) ||
        !intuition::OpenDisplay(1, arguments.data())) {
        return false;
    }
    ContentList = SAK_CreateGenericList<ContentNode>();
    LinksList = SAK_CreateGenericList<LinksNode>();
    ShowDetailsColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
    Prefs.MonitorDrawer = 0;
    Prefs.EffectiveDateFormat = "%d-%b-%y %T";
    Prefs.WindowWidth = 1200;
    Prefs.WindowHeight = 900;
    LBLocation = LocationKind::Drawer;
    CurrentPath = "Bench:";
    if (!CreateColumnInfoAll() || !CreateMainLayout() || !MainWindow->Open() || !ScanDrawer()) {
        return false;
    }
    View = static_cast<QTreeView*>(Objects.ContentList->Native().Widget.get());
    Watch = std::make_unique<PaintWatch>();
    View->viewport()->installEventFilter(Watch.get());
    return true;
}

void Close() {
    Watch.reset();
    FreeContentRows();
    CloseWindowObject();
    intuition::CloseDisplay();
    FreeContentList(1);
    ContentList.reset();
    LinksList.reset();
    ShowDetailsColumnsList.reset();
    SAK_MemoryCleanup();
}

void Pump() {
    static_cast<void>(exec::CheckSignal(0));
}

// Changes the style and returns when the rows of the new one have been painted.
Stopwatch ChangeTo(std::int32_t style) {
    if (style == Prefs.ContentViewStyle) {
        return Stopwatch().Since();
    }
    bool painted = false;
    const Stopwatch watch;
    ChangeViewStyle(style);
    Watch->Painted = [&painted](const QRegion&) { painted = true; };
    while (!painted) {
        Pump();
    }
    Watch->Painted = nullptr;
    return watch.Since();
}

void PrintMemory() {
    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("most memory: %ld MB\n", usage.ru_maxrss / 1024);
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// --- Styles ---

void MeasureStyles() {
    constexpr int Rounds = 5;
    for (std::int32_t from = 0; from < Styles; ++from) {
        for (std::int32_t to = 0; to < Styles; ++to) {
            std::vector<double> wall, all;
            for (int round = 0; from != to && round < Rounds; ++round) {
                static_cast<void>(ChangeTo(from));
                const Stopwatch took = ChangeTo(to);
                wall.push_back(took.Wall);
                all.push_back(took.All);
            }
            if (from != to) {
                std::printf("%-20s to %-20s  median %6.1f ms [%6.1f - %6.1f], processor %6.1f ms\n",
                            StyleNames[static_cast<std::size_t>(from)],
                            StyleNames[static_cast<std::size_t>(to)], Median(wall),
                            *std::min_element(wall.begin(), wall.end()),
                            *std::max_element(wall.begin(), wall.end()), Median(all));
            }
        }
    }
}

// --- Scrolling ---

struct Scrolling {
    const char* Name;
    int Steps; // at most so many
    std::function<void()> Step;
};

void PressPageDown() {
    static_cast<void>(PressKey(intuition::rawkey::PageDown, 0));
}

void TurnWheel() {
    constexpr int Notch = 120;
    const QPointF middle(100, 100);
    QWheelEvent event(middle, View->viewport()->mapToGlobal(middle), {}, {0, -Notch}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(View->viewport(), &event);
}

void DragThumb() {
    constexpr int Parts = 400;
    QScrollBar* bar = View->verticalScrollBar();
    bar->setSliderDown(true);
    bar->setSliderPosition(std::min(bar->value() + std::max(bar->maximum() / Parts, 1), bar->maximum()));
    bar->setSliderDown(false);
}

// Every step is one input and whatever the window does about it; pictures arrive in between.
void MeasureScrolling(std::int32_t style, const Scrolling& way) {
    QScrollBar* bar = View->verticalScrollBar();
    Objects.ContentList->SetCurrent(0);
    bar->setValue(0);
    Pump();
    std::vector<double> wall, own;
    for (int step = 0; step < way.Steps && bar->value() < bar->maximum(); ++step) {
        const Stopwatch watch;
        way.Step();
        Pump();
        const Stopwatch took = watch.Since();
        wall.push_back(took.Wall);
        own.push_back(took.Own);
        while (Milliseconds(CLOCK_MONOTONIC) - watch.Wall < Frame) { // the next input comes a frame later
            const Stopwatch arrival;
            Pump();
            own.push_back(arrival.Since().Own);
            wall.push_back(arrival.Since().Wall);
            const struct timespec pause = {0, 500'000};
            nanosleep(&pause, nullptr);
        }
    }
    const auto over =
        std::count_if(own.begin(), own.end(), [](double milliseconds) { return milliseconds > Frame; });
    std::printf("%-20s %-6s %6zu steps, longest %6.1f ms of processor (%ld over %g), %6.1f ms of wall\n",
                StyleNames[static_cast<std::size_t>(style)], way.Name, own.size(),
                *std::max_element(own.begin(), own.end()), static_cast<long>(over), Frame,
                *std::max_element(wall.begin(), wall.end()));
}

void MeasureScrolls() {
    const std::array<Scrolling, 3> ways = {
        {{"keys", 400, PressPageDown}, {"wheel", 400, TurnWheel}, {"thumb", 400, DragThumb}}};
    for (std::int32_t style = 0; style < Styles; ++style) {
        static_cast<void>(ChangeTo(style));
        for (const Scrolling& way : ways) {
            MeasureScrolling(style, way);
        }
    }
}

// --- Selection ---

// The deed, and what the window does until it has painted the list again.
void MeasureDeed(const char* name, int times, const std::function<void(int)>& deed) {
    std::vector<double> wall, own;
    for (int time = 0; time < times; ++time) {
        bool painted = false;
        Pump();
        const Stopwatch watch;
        deed(time);
        Watch->Painted = [&painted](const QRegion&) { painted = true; };
        while (!painted) {
            Pump();
        }
        const Stopwatch took = watch.Since();
        Watch->Painted = nullptr;
        wall.push_back(took.Wall);
        own.push_back(took.Own);
    }
    std::printf("%-28s median %6.1f ms, processor %6.1f ms, longest %6.1f ms; %d selected\n", name,
                Median(wall), Median(own), *std::max_element(own.begin(), own.end()), NumSelected);
}

// Presses the first button on a row on show and serves what comes of it as the program does.
void ClickOn(int row, Qt::KeyboardModifiers held) {
    const QPointF place(60, View->visualRect(View->indexAt({60, 5})).height() * (row + 0.5));
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons down = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, place, View->viewport()->mapToGlobal(place), Qt::LeftButton, down, held);
        QCoreApplication::sendEvent(View->viewport(), &event);
    }
    while (MainWindow->NextEvent()) {
        HandleContentListBrowser();
    }
}

void MeasureSelection() {
    constexpr int Rounds = 9, Rows = 15;
    const auto click = [](int time) { ClickOn(time % Rows + 1, Qt::NoModifier); };
    MeasureDeed("click", Rounds, click);
    MeasureDeed("select all", Rounds, [](int) { SelectAll(); });
    MeasureDeed("control click, all selected", Rounds,
                [](int time) { ClickOn(time % Rows + 1, Qt::ControlModifier); });
    MeasureDeed("toggle", Rounds, [](int) { ToggleSelection(); });
    MeasureDeed("select none", Rounds, [](int) { SelectNone(); });
    for (const char* pattern : {"*7*", "file#?(1|2|3)", "~(#?5#?)"}) {
        MeasureDeed(pattern, Rounds, [pattern](int) {
            SelectNone();
            Pattern(pattern, false);
        });
    }
    MeasureDeed("key down", Rounds, [](int) { static_cast<void>(PressKey(intuition::rawkey::Down, 0)); });
    MeasureDeed("type ahead, last row", Rounds, [](int) {
        SameJumpTo = 0;
        FindFirstNodeByLetter(lblist2.back().Record->EntryName);
    });
}

// --- Pictures ---

// The rows that are on show and bring a picture along, by number.
std::vector<std::size_t> PicturesOnShow() {
    std::vector<std::size_t> rows;
    const std::size_t top = Objects.ContentList->Top();
    const auto height = static_cast<std::size_t>(View->viewport()->height());
    const auto rowHeight = static_cast<std::size_t>(View->sizeHintForRow(0));
    for (std::size_t row = top; row < lblist2.size() && (row - top) * rowHeight < height; ++row) {
        if (lblist2[row].Record->DatatypeGroupValue == GroupPicture) {
            rows.push_back(row);
        }
    }
    return rows;
}

// Pumps until nothing has been painted for a while; what it took up to the last painting.
Stopwatch LastPainting(const Stopwatch& begin) {
    constexpr double Quiet = 3000; // milliseconds
    Stopwatch last = begin.Since();
    Watch->Painted = [&](const QRegion&) { last = begin.Since(); };
    while (begin.Since().Wall - last.Wall < Quiet) {
        Pump();
        const struct timespec pause = {0, 200'000};
        nanosleep(&pause, nullptr);
    }
    Watch->Painted = nullptr;
    return last;
}

void MeasurePictures() {
    const Stopwatch begin;
    static_cast<void>(ChangeTo(ViewThumbnail));
    const std::vector<std::size_t> rows = PicturesOnShow();
    const Stopwatch took = LastPainting(begin);
    for (const std::size_t row : rows) {
        std::printf("shown %s\n", lblist2[row].Record->EntryName.CStr());
    }
    std::printf("%zu thumbnails: %.1f ms, processor %.1f ms\n", rows.size(), took.Wall, took.All);
    intuition::FinishWishedImages();
}

void MeasureMemory() {
    constexpr std::int32_t Largest = 7;
    Prefs.ThumbnailSize = Largest;
    static_cast<void>(ChangeTo(ViewThumbnail));
    QScrollBar* bar = View->verticalScrollBar();
    for (;;) {
        intuition::FinishWishedImages();
        Pump();
        if (bar->value() >= bar->maximum()) {
            return;
        }
        bar->setValue(bar->value() + View->viewport()->height() / 2);
        Pump();
    }
}

bool Measure(std::string_view what) {
    const struct {
        std::string_view Name;
        void (*Run)();
    } kinds[] = {{"styles", MeasureStyles},
                 {"scroll", MeasureScrolls},
                 {"select", MeasureSelection},
                 {"pictures", MeasurePictures},
                 {"memory", MeasureMemory}};
    for (const auto& kind : kinds) {
        if (kind.Name == what) {
            kind.Run();
            PrintMemory();
            return true;
        }
    }
    return false;
}

} // namespace

} // namespace solvane

int main(int count, char** arguments) {
    const bool real = count == 4 && std::string_view(arguments[3]) == "-r";
    solvane::Prefs.ShowActualIcons = real ? 1 : 0;
    if ((count != 3 && !real) || !solvane::OpenOn(arguments[2]) || !solvane::Measure(arguments[1])) {
        std::fprintf(stderr, "usage: solvane_window styles|scroll|select|pictures|memory DRAWER [-r]\n");
        return 2;
    }
    solvane::Close();
    return 0;
}
