// Echo, Type, Join, Sort: texts and contents of files.
#include "platform/commands/FileReader.h"
#include "platform/commands/Runs.h"
#include "platform/commands/TextOutput.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace commands {

namespace {

constexpr std::size_t LargestSorted = 64u << 20; // bytes of a file whose lines are sorted in memory
constexpr std::size_t MostSorted = 4u << 20;     // lines of it
constexpr std::size_t HexRow = 16;               // bytes in a row of Type HEX
constexpr std::size_t NumberWidth = 5;

std::string HexDigits(std::uint64_t value, std::size_t digits) {
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    std::string text(digits, '0');
    for (std::size_t i = digits; i-- > 0; value >>= 4)
        text[i] = hexDigits[value & 15];
    return text;
}

// "0010: 48656C6C 6F20...  Hello ..."
std::string HexLine(std::uint64_t position, std::string_view bytes) {
    std::string line = HexDigits(position, position > 0xffff ? 8 : 4) + ": ";
    std::string shown;
    for (std::size_t i = 0; i < HexRow; ++i) {
        if (i < bytes.size()) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            line += HexDigits(byte, 2);
            shown += byte >= 0x20 && byte < 0x7f ? bytes[i] : '.';
        } else {
            line += "  ";
        }
        line += i % 4 == 3 ? " " : "";
    }
    return line + " " + shown;
}

int TypeHex(Context& context, FileReader& file) {
    std::uint64_t position = 0;
    std::string row;
    while (file.Take(HexRow, row) && !IsStopped(context)) {
        PrintLine(context, HexLine(position, row));
        position += row.size();
    }
    return ReturnOk;
}

int TypeNumbered(Context& context, FileReader& file) {
    std::string line;
    for (std::uint64_t number = 1; file.Line(line) && !IsStopped(context); ++number)
        Print(context, PadLeft(std::to_string(number), NumberWidth) + " " + line + "\n");
    return ReturnOk;
}

int TypePlain(Context& context, FileReader& file) {
    std::string block;
    while (file.Take(FileReader::BlockSize, block) && !IsStopped(context))
        Print(context, block);
    return ReturnOk;
}

enum class TypeForm { Plain, Hex, Numbered };

int TypeFile(Context& context, const Found& object, TypeForm form) {
    FileReader file(object.Path);
    if (!file.IsOpen())
        return Complain(context, object.Text);
    if (form == TypeForm::Hex)
        TypeHex(context, file);
    else if (form == TypeForm::Numbered)
        TypeNumbered(context, file);
    else
        TypePlain(context, file);
    if (IsStopped(context))
        return Complain(context);
    return file.HasFailed() ? Complain(context, object.Text) : ReturnOk;
}

// Appends the contents of one file to the joined one.
int AppendFile(Context& context, const Found& object, dos::FileHandle& to) {
    FileReader file(object.Path);
    if (!file.IsOpen())
        return Complain(context, object.Text);
    std::string block;
    while (file.Take(FileReader::BlockSize, block)) {
        if (IsStopped(context) || dos::Write(to, std::as_bytes(std::span(block.data(), block.size()))) < 0)
            return Complain(context, object.Text);
    }
    return file.HasFailed() ? Complain(context, object.Text) : ReturnOk;
}

struct SortOrder {
    std::size_t Column = 0; // bytes of a line passed over
    bool IsCase = false, IsNumeric = false;
};

// The number with which the text begins, behind blanks; 0 without one.
long double LeadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    long double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// What lines are compared by, made once for each.
struct SortLine {
    std::string_view Text;
    std::string Key;
    long double Number = 0;
};

std::vector<SortLine> SortedLines(std::string_view text, const SortOrder& order) {
    std::vector<SortLine> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        SortLine line{text.substr(0, end), {}, 0};
        const std::string_view rest = line.Text.substr(std::min(order.Column, line.Text.size()));
        if (order.IsNumeric)
            line.Number = LeadingNumber(rest);
        else
            line.Key = order.IsCase ? std::string(rest) : utility::Fold(rest);
        lines.push_back(std::move(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    std::stable_sort(lines.begin(), lines.end(), [&](const SortLine& a, const SortLine& b) {
        return order.IsNumeric ? a.Number < b.Number : a.Key < b.Key;
    });
    return lines;
}

} // namespace

int RunEcho(Context& context, const dos::ArgResults& arguments) {
    std::string text;
    for (const std::string& word : arguments.Multi(""))
        text += (text.empty() ? "" : " ") + word;
    const long first = std::max(arguments.Number("FIRST").value_or(1), 1L);
    const auto length = arguments.Number("LEN");
    const auto from = std::min(static_cast<std::size_t>(first - 1), text.size());
    // LEN without FIRST is the end of the text.
    if (length && !arguments.Number("FIRST"))
        text.erase(0, text.size() - std::min(text.size(), static_cast<std::size_t>(std::max(*length, 0L))));
    else
        text =
            text.substr(from, length ? static_cast<std::size_t>(std::max(*length, 0L)) : std::string::npos);
    TextOutput to(context, arguments.Text("TO"));
    if (!to.IsOpen())
        return Complain(context, *arguments.Text("TO"));
    Print(context, arguments.Flag("NOLINE") ? text : text + "\n");
    return to.Finish();
}

int RunType(Context& context, const dos::ArgResults& arguments) {
    const std::string options = utility::Fold(arguments.Text("OPT").value_or(""));
    if (options.find_first_not_of("hn") != std::string::npos) {
        ComplainWith(context, "", "OPT takes the letters H and N");
        return ReturnFail;
    }
    TypeForm form = TypeForm::Plain;
    if (arguments.Flag("HEX") || options.find('h') != std::string::npos)
        form = TypeForm::Hex;
    else if (arguments.Flag("NUMBER") || !options.empty())
        form = TypeForm::Numbered;
    TextOutput to(context, arguments.Text("TO"));
    if (!to.IsOpen())
        return Complain(context, *arguments.Text("TO"));
    int code = ReturnOk;
    for (const std::string& path : arguments.Multi("FROM")) {
        code = std::max(code, ForEach(context, path, Depth::Objects,
                                      [&](const Found& object) { return TypeFile(context, object, form); }));
        if (IsStopped(context))
            break;
    }
    return std::max(code, to.Finish());
}

int RunJoin(Context& context, const dos::ArgResults& arguments) {
    const std::string name = arguments.Text("AS").value_or("");
    dos::FileHandle to = dos::Open(name, dos::OpenMode::New);
    if (!to)
        return Complain(context, name);
    for (const std::string& path : arguments.Multi("FILE")) {
        const int code = ForEach(context, path, Depth::Objects,
                                 [&](const Found& object) { return AppendFile(context, object, to); });
        if (code != ReturnOk) // nothing is made of a part
            return std::max(code, ReturnError);
    }
    return dos::Close(to) ? ReturnOk : Complain(context, name);
}

int RunSort(Context& context, const dos::ArgResults& arguments) {
    const std::string from = *arguments.Text("FROM");
    const std::string to = *arguments.Text("TO");
    SortOrder order;
    order.Column = static_cast<std::size_t>(std::max(arguments.Number("COLSTART").value_or(1), 1L) - 1);
    order.IsCase = arguments.Flag("CASE");
    order.IsNumeric = arguments.Flag("NUMERIC");
    const auto text = dos::ReadWhole(from, LargestSorted);
    if (text && std::count(text->begin(), text->end(), '\n') >= static_cast<std::ptrdiff_t>(MostSorted)) {
        dos::SetIoErr(dos::ErrorObjectTooLarge);
        return Complain(context, from);
    }
    if (!text)
        return Complain(context, from);
    std::string sorted;
    sorted.reserve(text->size() + 1);
    for (const SortLine& line : SortedLines(*text, order))
        sorted.append(line.Text).append("\n");
    return dos::WriteWhole(to, sorted) ? ReturnOk : Complain(context, to);
}

} // namespace commands
