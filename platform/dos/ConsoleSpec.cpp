#include "platform/dos/Console.h"
#include "platform/dos/Errors.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>

namespace dos {

namespace {

constexpr std::size_t MostDigits = 5;
constexpr std::size_t LongestTitle = 255; // bytes

constexpr std::array<std::string_view, 5> Known = {"AUTO", "WAIT", "INACTIVE", "CLOSE", "NOCLOSE"};
constexpr std::array<std::string_view, 12> PassedOver = {"SMALL",  "SIMPLE",   "SMART",    "NODRAG",
                                                         "NOSIZE", "NODEPTH",  "NOBORDER", "BACKDROP",
                                                         "SCROLL", "NOSCROLL", "RAW",      ""};

// Options with a value in the same word: "SCREENWorkbench", "WINDOW0x0", "ALT0/0/..." .
constexpr std::array<std::string_view, 3> WithValue = {"SCREEN", "WINDOW", "ALT"};

std::vector<std::string_view> Split(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('/', at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

bool IsNumber(std::string_view text) {
    return text.size() <= MostDigits && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool AddOption(ConsoleSpec& spec, std::string_view word) {
    const auto same = [word](std::string_view name) { return utility::Stricmp(name, word) == 0; };
    if (const auto known = std::find_if(Known.begin(), Known.end(), same); known != Known.end()) {
        spec.Options.emplace_back(*known);
        return true;
    }
    const auto begins = [word](std::string_view name) {
        return utility::Stricmp(name, word.substr(0, name.size())) == 0;
    };
    return std::any_of(PassedOver.begin(), PassedOver.end(), same) ||
           std::any_of(WithValue.begin(), WithValue.end(), begins);
}

} // namespace

std::optional<ConsoleSpec> ParseConsoleSpec(std::string_view text) {
    const std::vector<std::string_view> parts = Split(text);
    ConsoleSpec spec;
    const std::array<std::string*, 4> numbers = {&spec.Left, &spec.Top, &spec.Width, &spec.Height};
    bool isGood = true;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i < numbers.size()) {
            isGood = isGood && IsNumber(parts[i]);
            *numbers[i] = parts[i];
        } else if (i == numbers.size()) {
            spec.Title = parts[i].substr(0, utility::CutLength(parts[i], LongestTitle));
        } else {
            isGood = isGood && AddOption(spec, parts[i]);
        }
    }
    if (isGood)
        return spec;
    SetIoErr(ErrorBadStreamName);
    return std::nullopt;
}

} // namespace dos
