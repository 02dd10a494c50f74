// The functions that ARexx scripts find beside those of the interpreter, each a plain function over texts.
// Private to the programs that run scripts.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rexx {

// What a function is called with; an argument that was left out is empty.
class FunctionArguments {
public:
    explicit FunctionArguments(std::span<const std::optional<std::string_view>> words) : Words(words) {}

    [[nodiscard]] bool Has(std::size_t index) const { return index < Words.size() && Words[index]; }
    [[nodiscard]] std::string_view operator[](std::size_t index) const {
        return Has(index) ? *Words[index] : std::string_view();
    }
    // The first letter as a capital, that preset for an argument that was left out.
    [[nodiscard]] char Letter(std::size_t index, char preset) const;
    // A whole number; nothing for what is none.
    [[nodiscard]] std::optional<long> Number(std::size_t index) const;

private:
    std::span<const std::optional<std::string_view>> Words;
};

struct ScriptFunction {
    std::string_view Name;
    std::size_t Least, Most; // arguments
    // The value; nothing makes the call an error of the script.
    std::optional<std::string> (*Run)(const FunctionArguments& arguments);
};

// Ports, clips, libraries, the process.
[[nodiscard]] std::span<const ScriptFunction> SystemFunctions();
// Objects on disks.
[[nodiscard]] std::span<const ScriptFunction> FileFunctions();
// Open files by name.
[[nodiscard]] std::span<const ScriptFunction> StreamFunctions();

// The function of that name in one of the tables, null when there is none. Case counts: capitals.
[[nodiscard]] const ScriptFunction* FindScriptFunction(std::string_view name);

// Ends what scripts have left open; false when a file that was written could not take its place.
[[nodiscard]] bool CloseStreams();
// The names of the files that are open.
[[nodiscard]] std::vector<std::string> OpenStreams();

} // namespace rexx
