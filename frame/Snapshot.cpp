#include "frame/Snapshot.h"

#include "content/ColumnInfo.h"
#include "content/PlaceRows.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/WorkingSet.h"
#include "platform/application/Start.h"
#include "platform/dos/Errors.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Requesters.h"
#include "platform/intuition/WishedImages.h"
#include "platform/utility/Text.h"
#include "sak/Format.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace solvane {

namespace {

constexpr std::size_t PrintedRows = 40;
constexpr int PaintRounds = 5; // rounds of the pump until the first paint is through

const std::string& Picture() {
    static const std::string File = application::SnapshotFile();
    return File;
}

// Names are data: whatever would move the cursor of a terminal is shown as a mark.
std::string Printable(std::string_view text) {
    std::string line = utility::ReplaceInvalidUtf8(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; }, '?');
    return line;
}

void PrintLine(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

void PrintRow(const ContentNode& node) {
    PrintLine(FormatText("%-40s %12s  %-20s %-16s %s  %s", Printable(node.EntryName.View()),
                         node.EntrySizeText.View(), Printable(node.DateText.View()),
                         Printable(node.DatatypeName.View()), node.ProtectionText.View(),
                         Printable(node.Comment.View())));
}

// What the list shows of a place, cell by cell.
void PrintPlace(std::size_t row) {
    std::string line;
    for (std::size_t column = 1; ActiveSet.RowSource && column < NumberOfColumns; ++column) {
        const intuition::CellLook cell = ActiveSet.RowSource->Cell(row, column);
        std::string text(cell.Text);
        for (const std::string& more : cell.More) {
            text.append("  ").append(more);
        }
        if (cell.Gauge) {
            text += FormatText(text.empty() ? "%s%%" : "  %s%%", std::to_string(*cell.Gauge));
        }
        line += FormatText(column == 1 ? "%-40s" : "  %-20s", Printable(text));
    }
    PrintLine(line);
}

void PrintContent() {
    PrintLine(Printable(CurrentPath.View()));
    std::size_t printed = 0;
    for (const ListRow& row : lblist2) {
        if (printed == PrintedRows) {
            PrintLine(FormatText("... and %lu more", lblist2.size() - printed));
            break;
        }
        if (row.Record != nullptr && IsPlace(*row.Record)) {
            PrintPlace(static_cast<std::size_t>(&row - lblist2.data()));
        } else if (row.Record != nullptr) {
            PrintRow(*row.Record);
        }
        ++printed;
    }
    PrintLine(Printable(StatusBarBuffer1.View()) + "  " + Printable(StatusBarBuffer2.View()));
}

} // namespace

bool TakeSnapshot() {
    if (Picture().empty() || !MainWindow) {
        return false;
    }
    BlockMainWindow(-1);
    for (int round = 0; round < PaintRounds; ++round) {
        static_cast<void>(exec::CheckSignal(0));
        intuition::FinishWishedImages();
    }
    PrintContent();
    if (!MainWindow->SavePicture(Picture())) {
        PrintLine(dos::Fault(dos::IoErr(), Picture()));
    }
    return true;
}

void AnswerRequestersOfSnapshot() {
    if (Picture().empty()) {
        return;
    }
    intuition::SetRequestHandler([](const intuition::EasyRequestSpec& request) {
        PrintLine("[" + request.Title + "] " + Printable(request.Text));
        return 0;
    });
}

} // namespace solvane
