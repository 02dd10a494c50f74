// Which program of the host opens a type of file, as the desktop's own database says: mimeapps.list,
// mimeinfo.cache and the entries in applications drawers. Reads files only; nothing is started here.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

struct DesktopEntry {
    std::string Name;
    std::string File; // of the host
    std::string Icon;
    std::vector<std::string> Exec; // words with quotes removed and field codes as they stand
    bool NeedsTerminal = false;
};

// The entry's words as they are written by the rules for its Exec line. Nothing when a quote is not closed or
// a character stands unquoted that has to be quoted.
[[nodiscard]] std::optional<std::vector<std::string>> ParseExec(std::string_view exec);

// Reads the text of an entry. Nothing for one that is hidden, no application, or has no sound Exec line.
[[nodiscard]] std::optional<DesktopEntry> ParseDesktopEntry(std::string_view text, const std::string& file);

// The words that start the entry with one host path. A path is one word whatever it holds.
[[nodiscard]] std::vector<std::string> CommandFor(const DesktopEntry& entry, const std::string& hostPath);

// The entry that opens files of the first of these types that any opens; most special first.
[[nodiscard]] std::optional<DesktopEntry> DefaultApplication(const std::vector<std::string>& mimeTypes);

} // namespace workbench
