#include "content/RowLabels.h"

#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <string_view>

namespace solvane {

namespace {

// What tells most about a file of its group.
std::string_view FactOf(const ContentNode& node) {
    switch (node.DatatypeGroupValue) {
    case GroupPicture:
    case GroupAnimation:
        return node.Dimensions;
    case GroupSound:
        return TagsOf(node).TagTime;
    default:
        return node.VersionText;
    }
}

std::vector<std::string> TilesLabel(const ContentNode& node) {
    std::vector<std::string> lines;
    if (IsDrawerKind(node.ObjectKind)) {
        lines.emplace_back(SAK_LocaleString(MSG_DRAWER));
        lines.emplace_back(node.DateText.View());
    } else {
        lines.push_back(FormatText("%s     %s", node.DatatypeName, FactOf(node)));
        lines.push_back(
            FormatText("%s     %s     %s", node.DateText, node.EntrySizeText, node.ProtectionText));
    }
    lines.push_back(FormatText("%s ", node.EntryPath));
    return lines;
}

std::vector<std::string> FiguresLabel(const ContentNode& node) {
    std::vector<std::string> lines = {FormatText("%s %s", SAK_LocaleString(MSG_DATE_COLON), node.DateText)};
    if (!node.EntrySizeText.Empty()) {
        lines.push_back(FormatText("%s %s", SAK_LocaleString(MSG_SIZE_COLON), node.EntrySizeText));
    }
    return lines;
}

} // namespace

int LinesOf(RowLabel label) {
    return label == RowLabel::Tiles ? 4 : 2;
}

std::vector<std::string> FormLabel(RowLabel label, const ContentNode& node) {
    switch (label) {
    case RowLabel::Tiles:
        return TilesLabel(node);
    case RowLabel::Figures:
        return FiguresLabel(node);
    case RowLabel::Content:
        break;
    }
    if (IsDrawerKind(node.ObjectKind)) {
        return {};
    }
    return {FormatText("%s %s     %s", SAK_LocaleString(MSG_TYPE_COLON), node.DatatypeName, FactOf(node))};
}

} // namespace solvane
