#include "content/ContentRows.h"

#include "content/ColumnInfo.h"
#include "content/PlaceRows.h"
#include "content/RowLabels.h"
#include "model/Content.h"
#include "model/Prefs.h"

#include <charconv>
#include <span>
#include <utility>

namespace solvane {

namespace {

using intuition::Rgb;

constexpr std::string_view DefaultText = "000000";
constexpr std::string_view DefaultStripe1 = "CFCFCF", DefaultStripe2 = "C0C0C0";
constexpr int HalfBright = 128;

// Text in no colour of its own stays readable on a background that the user has chosen.
Rgb ReadableOn(const Rgb& background) {
    const int bright = (background.Red * 299 + background.Green * 587 + background.Blue * 114) / 1000;
    return bright < HalfBright ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
}

} // namespace

std::optional<Rgb> OwnColour(std::string_view digits, std::string_view defaultDigits) {
    std::uint32_t value = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const bool whole = parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
    if (digits.size() != 6 || !whole || Text<10>(digits) == defaultDigits) {
        return std::nullopt;
    }
    return Rgb{static_cast<std::uint8_t>(value >> 16 & 0xFF), static_cast<std::uint8_t>(value >> 8 & 0xFF),
               static_cast<std::uint8_t>(value & 0xFF)};
}

std::string_view CellText(const ContentNode& node, DetailsColumn column) {
    switch (column) {
    case DetailsColumn::Icon:
        return {};
    case DetailsColumn::Name:
        return node.EntryName;
    case DetailsColumn::Size:
        return node.EntrySizeText;
    case DetailsColumn::Date:
        return node.DateText;
    case DetailsColumn::Filenote:
        return IsLinkKind(node.ObjectKind) ? node.EntryPath.View() : node.Comment.View();
    case DetailsColumn::Time:
        return TagsOf(node).TagTime;
    case DetailsColumn::BitRate:
        return TagsOf(node).TagBitRateText;
    case DetailsColumn::SampleRate:
        return TagsOf(node).TagSampleRateText;
    case DetailsColumn::Version:
        return node.VersionText;
    default:
        return TextKey(node, column); // what these columns sort by is what they show
    }
}

RowLooks LooksInForce(std::int32_t style) {
    return {.Drawers = {OwnColour(Prefs.DrawersColor, DefaultText), Prefs.DrawersBold != 0,
                        Prefs.DrawersItalic != 0, Prefs.DrawersUnderline != 0},
            .Files = {OwnColour(Prefs.FilesColor, DefaultText), Prefs.FilesBold != 0, Prefs.FilesItalic != 0,
                      Prefs.FilesUnderline != 0},
            .Links = {OwnColour(Prefs.LinksColor, DefaultText), Prefs.LinksBold != 0, Prefs.LinksItalic != 0,
                      Prefs.LinksUnderline != 0},
            .Devices = {OwnColour(Prefs.DevicesColor, DefaultText), Prefs.DevicesBold != 0,
                        Prefs.DevicesItalic != 0, Prefs.DevicesUnderline != 0},
            .Assigns = {OwnColour(Prefs.AssignsColor, DefaultText), Prefs.AssignsBold != 0,
                        Prefs.AssignsItalic != 0, Prefs.AssignsUnderline != 0},
            .Stripes = {OwnColour(Prefs.Background1Color, DefaultStripe1),
                        OwnColour(Prefs.Background2Color, DefaultStripe2)},
            .Picture = BoxOf(style),
            .ActualIcons = Prefs.ShowActualIcons != 0};
}

ContentRows::ContentRows(std::vector<DetailsColumn> columns, std::int32_t style, intuition::ListBrowser* list)
    : Columns(std::move(columns)), Style(style), Looks(LooksInForce(style)), Pictures(style, list) {}

std::size_t ContentRows::RowCount() const {
    return lblist2.size();
}

const KindLook& ContentRows::LookOf(const ContentNode& node) const {
    if (node.PlaceFacts) {
        return DeviceOf(node) != nullptr ? Looks.Devices : Looks.Assigns;
    }
    if (IsLinkKind(node.ObjectKind)) {
        return Looks.Links;
    }
    return IsDrawerKind(node.ObjectKind) ? Looks.Drawers : Looks.Files;
}

// The name, with its label where the style has one.
intuition::CellLook ContentRows::NameCell(std::size_t row, const ContentNode& node) const {
    const KindLook& look = LookOf(node);
    const auto& background = Looks.Stripes[row % 2];
    Label.clear();
    if (Style == ViewTiles || Style == ViewContent) {
        Label = FormLabel(Style == ViewTiles ? RowLabel::Tiles : RowLabel::Content, node);
    }
    return {.Text = node.EntryName,
            .More = Label,
            .Colour = !look.Colour && background ? ReadableOn(*background) : look.Colour,
            .Bold = look.Bold,
            .Italic = look.Italic,
            .Underline = look.Underline};
}

// A cell of a device or assign.
intuition::CellLook ContentRows::PlaceCell(std::size_t row, std::size_t column,
                                           const ContentNode& node) const {
    const KindLook& look = LookOf(node);
    const auto& background = Looks.Stripes[row % 2];
    PlaceTexts texts = PlaceCellTexts(node, Columns[column], Style);
    Label = std::move(texts.More);
    return {.Text = texts.Text,
            .More = Label,
            .Gauge = texts.Gauge,
            .Colour = !look.Colour && background ? ReadableOn(*background) : look.Colour,
            .Bold = look.Bold,
            .Italic = look.Italic,
            .Underline = look.Underline};
}

intuition::CellLook ContentRows::Cell(std::size_t row, std::size_t column) const {
    const ContentNode* node = lblist2[row].Record;
    if (node == nullptr || column >= Columns.size()) {
        return {};
    }
    intuition::CellLook cell;
    if (Columns[column] == DetailsColumn::Icon) {
        cell.Image = Pictures.Of(row, *node);
        return cell;
    }
    if (IsPlace(*node)) {
        return PlaceCell(row, column, *node);
    }
    cell = NameCell(row, *node);
    if (IsDetailsStyle(Style)) {
        cell.Text = CellText(*node, Columns[column]);
    } else if (Columns[column] != DetailsColumn::Name) {
        Label = FormLabel(RowLabel::Figures, *node);
        const auto& background = Looks.Stripes[row % 2];
        cell = {.Text = Label.front(),
                .More = std::span(Label).subspan(1),
                .Colour = background ? std::optional(ReadableOn(*background)) : std::nullopt};
    }
    return cell;
}

intuition::RowLook ContentRows::Row(std::size_t row) const {
    const ContentNode* node = lblist2[row].Record;
    return {.Background = Looks.Stripes[row % 2], .Disabled = node == nullptr};
}

std::string_view ContentRows::Name(std::size_t row) const {
    const ContentNode* node = lblist2[row].Record;
    return node != nullptr ? node->EntryName.View() : std::string_view();
}

} // namespace solvane
