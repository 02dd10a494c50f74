#include "platform/rexx/ScriptFunctions.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <charconv>

namespace rexx {

char FunctionArguments::Letter(std::size_t index, char preset) const {
    const std::string_view word = (*this)[index];
    return word.empty() ? preset
                        : static_cast<char>(utility::ToUpper(static_cast<unsigned char>(word.front())));
}

std::optional<long> FunctionArguments::Number(std::size_t index) const {
    std::string_view word = (*this)[index];
    const std::size_t start = word.find_first_not_of(' ');
    word = start == std::string_view::npos ? std::string_view() : word.substr(start);
    word = word.substr(0, word.find_last_not_of(' ') + 1);
    long number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size() ? std::optional(number) : std::nullopt;
}

const ScriptFunction* FindScriptFunction(std::string_view name) {
    for (const std::span<const ScriptFunction> table :
         {SystemFunctions(), FileFunctions(), StreamFunctions()}) {
        const auto found = std::find_if(table.begin(), table.end(), [name](const ScriptFunction& function) {
            return function.Name == name;
        });
        if (found != table.end()) {
            return &*found;
        }
    }
    return nullptr;
}

} // namespace rexx
